// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/kit/appfixture.h"

namespace fixture {

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
