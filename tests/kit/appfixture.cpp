// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/kit/appfixture.h"

namespace fixture {

bool IsNear(const QImage& a, const QImage& b)
{
    constexpr int kShades = 16;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QColor left = a.pixelColor(x, y);
            const QColor right = b.pixelColor(x, y);
            if (std::abs(left.red() - right.red()) > kShades ||
                std::abs(left.green() - right.green()) > kShades ||
                std::abs(left.blue() - right.blue()) > kShades)
                return false;
        }
    }
    return a.size() == b.size();
}

void WindowTest::Begin()
{
    directories = std::make_unique<Directories>();
    dialogs = std::make_unique<Dialogs>();
}

void WindowTest::End()
{
    QCOMPARE(dialogs->Strangers(), QStringList());
    QCOMPARE(dialogs->Pending(), 0);
}

void WindowTest::OpenView(Window& window, const std::string& path, QSize size)
{
    window.AddViewOf(path);
    QVERIFY(window.Show());
    window.ResizeView(size);
    Settle();
}

void WindowTest::OpenEmpty(Window& window)
{
    dialogs->Expect<QFileDialog>([](QFileDialog& dialog) { dialog.reject(); });
    window.AddView();
    QVERIFY(window.Show());
}

} // namespace fixture
