// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What tests of the view share: a window whose view has a file and a size, and a mouse over it.
#pragma once

#include "tests/kit/appfixture.h"

#include <QRubberBand>

#include <string>

namespace fixture {

/// In a view of this size a pixel shows 8 by 8 units.
constexpr QSize kViewSize(512, 390);

/// A drag of the mouse with the left button, view pixels.
struct Drag {
    QPoint from;
    QPoint to;
};

/// A shown window whose view has a file and a size.
class View
{
public:
    explicit View(const std::string& path, QSize size = kViewSize)
    {
        window.AddViewOf(path);
        Prepare(size);
    }

    void Resize(QSize size) { window.ResizeView(size); }

    void Press(Qt::MouseButton button, QPoint at) { QTest::mousePress(Get(), button, {}, at); }
    void Move(QPoint to) { QTest::mouseMove(Get(), to); }
    void Release(Qt::MouseButton button, QPoint at) { QTest::mouseRelease(Get(), button, {}, at); }

    /// All but the release.
    void BeginDrag(const Drag& drag)
    {
        Press(Qt::LeftButton, drag.from);
        Move(drag.to);
    }

    void Select(const Drag& drag)
    {
        BeginDrag(drag);
        Release(Qt::LeftButton, drag.to);
        Settle();
    }

    [[nodiscard]] QRubberBand* Band() const { return Get()->findChild<QRubberBand*>(); }
    [[nodiscard]] QRect Shown() const { return ShownArea(*Get()); }
    [[nodiscard]] QImage Picture() const
    {
        return Get()->grab().toImage().convertToFormat(QImage::Format_RGB32);
    }
    DrawView* operator->() const { return Get(); }
    [[nodiscard]] DrawView* Get() const { return window->view; }

    Window window;

private:
    void Prepare(QSize size)
    {
        QVERIFY(window.Show());
        Resize(size);
        Settle();
    }
};

} // namespace fixture
