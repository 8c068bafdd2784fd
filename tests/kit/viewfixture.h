// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What tests of the view share: a window whose view has a file and a size, and a mouse over it.
#pragma once

#include "tests/kit/appfixture.h"

#include <QLine>
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

/// A drag over a good part of such a view.
constexpr Drag kSelection = {{100, 80}, {300, 230}};

/// The part of the file under a drag in a view of a size.
QRect AreaUnder(const Drag& drag, QSize view);

/// Lines that cross the area, as the file has them: y upward.
constexpr QLine kCross[] = {{1000, 0, 1000, 3119}, {0, 2000, 4095, 2000}, {0, 0, 4095, 3119}};
constexpr int kCrossWidth = 24;

/// A file of them: a red cross on green, or on white when the background is white.
std::string CrossFile();

/// A base of tests of the view: the background is the file's own.
class ViewTest : public WindowTest
{
protected:
    void Begin();
    std::string Cross() { return directories->Write("cross.plf", CrossFile()); }
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
