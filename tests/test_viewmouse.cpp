// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What the mouse does to the part of the graph that the view shows.
#include "tests/kit/viewfixture.h"

#include <QWindow>

using fixture::AreaUnder;
using fixture::Drag;
using fixture::kSelection;
using fixture::kViewSize;
using fixture::kWholeArea;
using fixture::Settle;
using fixture::View;

namespace {

// The rectangle that a drag leaves, for a comparison with the rubber band.
QRect Band(const Drag& drag)
{
    const QPoint extent = drag.to - drag.from;
    return {drag.from, QSize(qMax(extent.x(), 1), qMax(extent.y(), 1))};
}

void ButtonRows()
{
    QTest::addColumn<Qt::MouseButton>("button");
    QTest::newRow("left") << Qt::LeftButton;
    QTest::newRow("middle") << Qt::MiddleButton;
    QTest::newRow("right") << Qt::RightButton;
}

} // namespace

Q_DECLARE_METATYPE(Qt::MouseButton)

class TestViewMouse : public QObject, protected fixture::ViewTest
{
    Q_OBJECT

private slots:
    void init() { Begin(); }
    void cleanup() { End(); }

    void leftPress_startsAOnePixelBand();
    void leftPress_selecting_doesNothing();
    void leftPress_zoomed_doesNothing();
    void rightPress_noZoom_movesAnEmptyRectangle();
    void rightPress_selecting_movesTheRectangle();
    void rightPress_moving_startsAgainFromThere();
    void rightPress_zoomed_movesTheRectangle();
    void middlePress_doesNothing();
    void move_noZoom_doesNothing();
    void move_withoutAButton_doesNothing();
    void move_selecting_followsTheMouse();
    void move_moving_shiftsTheRectangle();
    void move_zoomed_showsTheBand();
    void release_moving_goesBackToSelecting_data();
    void release_moving_goesBackToSelecting();
    void release_selecting_decidesByDistance_data();
    void release_selecting_decidesByDistance();
    void release_selecting_anyButtonEndsIt_data();
    void release_selecting_anyButtonEndsIt();
    void release_click_repaintsAndLeavesTheBand();
    void release_selection_repaintsAndHidesTheBand();
    void release_noZoom_hidesTheBand_data();
    void release_noZoom_hidesTheBand();
    void release_zoomed_hidesTheBand_data();
    void release_zoomed_hidesTheBand();
    void release_elsewhere_keepsTheLastMovesCorner();

    void invertedDrag_givesTheBandOnePixel_data();
    void invertedDrag_givesTheBandOnePixel();
    void invertedDrag_zoomsWithItsNumbers_data();
    void invertedDrag_zoomsWithItsNumbers();
    void rightButtonWhileSelecting_movesAndThenSizesAgain();
    void leftReleasedFirst_endsWithTheRightRelease();
    void rightDrag_zoomed_thenLeftDrag_resizesFromTheMovedCorner();
    void rightDrag_zoomed_doesNotRepaintTheView();
    void doubleClick_showsTheWholeGraph();
    void drag_throughTheWindow_reachesTheView();
};

void TestViewMouse::leftPress_startsAOnePixelBand()
{
    View view(Cross());
    view.Press(Qt::LeftButton, {40, 30});
    QCOMPARE(view.Band()->geometry(), QRect(40, 30, 1, 1));
    QVERIFY(view.Band()->isVisible());
    QCOMPARE(view.Shown(), AreaUnder({{40, 30}, {41, 31}}, kViewSize));
}

void TestViewMouse::leftPress_selecting_doesNothing()
{
    View view(Cross());
    view.BeginDrag(kSelection);
    view.Press(Qt::LeftButton, {10, 10});
    QCOMPARE(view.Band()->geometry(), Band(kSelection));
    QCOMPARE(view.Shown(), AreaUnder(kSelection, kViewSize));
}

void TestViewMouse::leftPress_zoomed_doesNothing()
{
    View view(Cross());
    view.Select(kSelection);
    view.Press(Qt::LeftButton, {10, 10});
    QVERIFY(!view.Band()->isVisible());
    QCOMPARE(view.Shown(), AreaUnder(kSelection, kViewSize));
}

void TestViewMouse::rightPress_noZoom_movesAnEmptyRectangle()
{
    View view(Cross());
    view.Press(Qt::RightButton, {40, 30});
    QVERIFY(!view.Band()->isVisible());
    QCOMPARE(view.Shown(), kWholeArea);
    view.Move({47, 33});
    QCOMPARE(view.Band()->geometry(), QRect(7, 3, 1, 1));
    QVERIFY(view.Band()->isVisible());
    QCOMPARE(view.Shown(), kWholeArea);
}

void TestViewMouse::rightPress_selecting_movesTheRectangle()
{
    View view(Cross());
    view.BeginDrag(kSelection);
    view.Press(Qt::RightButton, {10, 10});
    QCOMPARE(view.Band()->geometry(), Band(kSelection));
    view.Move({25, 14});
    QCOMPARE(view.Band()->geometry(), Band(kSelection).translated(15, 4));
}

void TestViewMouse::rightPress_moving_startsAgainFromThere()
{
    View view(Cross());
    view.BeginDrag(kSelection);
    view.Press(Qt::RightButton, {10, 10});
    view.Move({15, 15});
    view.Press(Qt::RightButton, {100, 100});
    view.Move({101, 102});
    QCOMPARE(view.Band()->geometry(), Band(kSelection).translated(6, 7));
}

void TestViewMouse::rightPress_zoomed_movesTheRectangle()
{
    View view(Cross());
    view.Select(kSelection);
    view.Press(Qt::RightButton, {10, 10});
    QVERIFY(!view.Band()->isVisible());
    QCOMPARE(view.Shown(), AreaUnder(kSelection, kViewSize));
    view.Move({20, 30});
    QCOMPARE(view.Band()->geometry(), Band(kSelection).translated(10, 20));
    QVERIFY(view.Band()->isVisible());
}

void TestViewMouse::middlePress_doesNothing()
{
    View view(Cross());
    view.Press(Qt::MiddleButton, {40, 30});
    QVERIFY(!view.Band()->isVisible());
    QCOMPARE(view.Shown(), kWholeArea);
    view.Release(Qt::MiddleButton, {40, 30});
    view.BeginDrag(kSelection);
    view.Press(Qt::MiddleButton, {10, 10});
    QCOMPARE(view.Band()->geometry(), Band(kSelection));
    view.Move({200, 200}); // still sizing
    QCOMPARE(view.Band()->geometry(), Band({kSelection.from, {200, 200}}));
}

void TestViewMouse::move_noZoom_doesNothing()
{
    View view(Cross());
    view.Press(Qt::MiddleButton, {40, 30});
    view.Move({140, 130});
    QVERIFY(!view.Band()->isVisible());
    QCOMPARE(view.Shown(), kWholeArea);
}

void TestViewMouse::move_withoutAButton_doesNothing()
{
    View view(Cross());
    view.Move({140, 130});
    QVERIFY(!view.Band()->isVisible());
    view.Select(kSelection);
    view.Move({10, 10});
    QVERIFY(!view.Band()->isVisible());
    QCOMPARE(view.Shown(), AreaUnder(kSelection, kViewSize));
}

void TestViewMouse::move_selecting_followsTheMouse()
{
    View view(Cross());
    view.Press(Qt::LeftButton, {40, 30});
    for (const QPoint to : {QPoint(60, 70), QPoint(200, 35), QPoint(41, 31), QPoint(511, 389)}) {
        view.Move(to);
        QCOMPARE(view.Band()->geometry(), Band({{40, 30}, to}));
        QVERIFY(view.Band()->isVisible());
    }
}

void TestViewMouse::move_moving_shiftsTheRectangle()
{
    View view(Cross());
    view.BeginDrag(kSelection);
    view.Press(Qt::RightButton, {200, 200});
    for (const QPoint to : {QPoint(210, 190), QPoint(150, 260), QPoint(200, 200), QPoint(1, 0)}) {
        view.Move(to);
        QCOMPARE(view.Band()->geometry(), Band(kSelection).translated(to - QPoint(200, 200)));
        QVERIFY(view.Band()->isVisible());
    }
}

void TestViewMouse::move_zoomed_showsTheBand()
{
    View view(Cross());
    view.Select(kSelection);
    view.Press(Qt::LeftButton, {10, 10});
    view.Move({50, 60});
    QVERIFY(view.Band()->isVisible());
    QCOMPARE(view.Band()->geometry(), Band(kSelection));
    QCOMPARE(view.Shown(), AreaUnder(kSelection, kViewSize));
}

void TestViewMouse::release_moving_goesBackToSelecting_data()
{
    ButtonRows();
}

void TestViewMouse::release_moving_goesBackToSelecting()
{
    QFETCH(Qt::MouseButton, button);
    View view(Cross());
    view.BeginDrag(kSelection);
    view.Press(Qt::RightButton, kSelection.to);
    view.Release(button, kSelection.to);
    QVERIFY(!view.Band()->isVisible());
    view.Press(Qt::LeftButton, {400, 380}); // so that there is a button to move with
    view.Move({310, 300});
    QVERIFY(view.Band()->isVisible());
    QCOMPARE(view.Band()->geometry(), Band({kSelection.from, {310, 300}}));
}

void TestViewMouse::release_selecting_decidesByDistance_data()
{
    QTest::addColumn<QPoint>("extent");
    QTest::addColumn<bool>("zooms");
    QTest::newRow("0") << QPoint(0, 0) << false;
    QTest::newRow("19 to the right") << QPoint(19, 30) << false;
    QTest::newRow("20 to the right") << QPoint(20, 30) << true;
    QTest::newRow("19 to the left") << QPoint(-19, 30) << false;
    QTest::newRow("20 to the left") << QPoint(-20, 30) << true;
    QTest::newRow("only downward") << QPoint(0, 150) << false;
    QTest::newRow("only upward") << QPoint(19, -150) << false;
    QTest::newRow("20 wide and 0 high") << QPoint(20, 0) << true;
}

void TestViewMouse::release_selecting_decidesByDistance()
{
    QFETCH(QPoint, extent);
    QFETCH(bool, zooms);
    constexpr QPoint kFrom(200, 180);
    View view(Cross());
    view.BeginDrag({kFrom, kFrom + extent});
    view.Release(Qt::LeftButton, kFrom + extent);
    QCOMPARE(view.Band()->isVisible(), !zooms);
    // Only a zoomed view keeps its rectangle when a new selection begins.
    view.Press(Qt::LeftButton, {10, 10});
    QCOMPARE(view.Band()->isVisible(), !zooms);
    QCOMPARE(view.Band()->geometry() == QRect(10, 10, 1, 1), !zooms);
}

void TestViewMouse::release_selecting_anyButtonEndsIt_data()
{
    ButtonRows();
}

void TestViewMouse::release_selecting_anyButtonEndsIt()
{
    QFETCH(Qt::MouseButton, button);
    View view(Cross());
    view.BeginDrag(kSelection);
    view.Release(button, kSelection.to);
    QVERIFY(!view.Band()->isVisible());
    QCOMPARE(view.Shown(), AreaUnder(kSelection, kViewSize));
    view.Move({400, 380}); // the left button may still be down; nothing is sized any more
    QCOMPARE(view.Shown(), AreaUnder(kSelection, kViewSize));
}

void TestViewMouse::release_click_repaintsAndLeavesTheBand()
{
    View view(Cross());
    view.BeginDrag({{40, 30}, {50, 60}});
    Settle();
    fixture::PaintLog paints(view.Get());
    view.Release(Qt::LeftButton, {50, 60});
    Settle();
    QVERIFY(paints.Covers(view->rect()));
    QCOMPARE(view.Shown(), kWholeArea);
    QVERIFY(view.Band()->isVisible());
    QCOMPARE(view.Band()->geometry(), QRect(40, 30, 10, 30));
}

void TestViewMouse::release_selection_repaintsAndHidesTheBand()
{
    View view(Cross());
    view.BeginDrag(kSelection);
    Settle();
    fixture::PaintLog paints(view.Get());
    view.Release(Qt::LeftButton, kSelection.to);
    QVERIFY(!view.Band()->isVisible());
    Settle();
    QVERIFY(paints.Covers(view->rect()));
    QCOMPARE(view.Shown(), AreaUnder(kSelection, kViewSize));
}

void TestViewMouse::release_noZoom_hidesTheBand_data()
{
    ButtonRows();
}

void TestViewMouse::release_noZoom_hidesTheBand()
{
    QFETCH(Qt::MouseButton, button);
    View view(Cross());
    view.BeginDrag({{40, 30}, {50, 60}});
    view.Release(Qt::LeftButton, {50, 60});
    QVERIFY(view.Band()->isVisible());
    view.Release(button, {50, 60});
    QVERIFY(!view.Band()->isVisible());
    QCOMPARE(view.Shown(), kWholeArea);
}

void TestViewMouse::release_zoomed_hidesTheBand_data()
{
    ButtonRows();
}

void TestViewMouse::release_zoomed_hidesTheBand()
{
    QFETCH(Qt::MouseButton, button);
    View view(Cross());
    view.Select(kSelection);
    view.Press(Qt::LeftButton, {10, 10});
    view.Move({50, 60});
    QVERIFY(view.Band()->isVisible());
    view.Release(button, {50, 60});
    QVERIFY(!view.Band()->isVisible());
    QCOMPARE(view.Shown(), AreaUnder(kSelection, kViewSize));
}

void TestViewMouse::release_elsewhere_keepsTheLastMovesCorner()
{
    View view(Cross());
    view.BeginDrag(kSelection);
    view.Release(Qt::LeftButton, {500, 380});
    QCOMPARE(view.Shown(), AreaUnder(kSelection, kViewSize));
    View other(Cross());
    other.BeginDrag(kSelection);
    other.Release(Qt::LeftButton, kSelection.from + QPoint(19, 0));
    QCOMPARE(other.Shown(), kWholeArea);
}

void TestViewMouse::invertedDrag_givesTheBandOnePixel_data()
{
    QTest::addColumn<QPoint>("to");
    QTest::addColumn<QRect>("band");
    QTest::newRow("up and left") << QPoint(100, 90) << QRect(200, 180, 1, 1);
    QTest::newRow("up") << QPoint(250, 90) << QRect(200, 180, 50, 1);
    QTest::newRow("left") << QPoint(100, 200) << QRect(200, 180, 1, 20);
    QTest::newRow("nowhere") << QPoint(200, 180) << QRect(200, 180, 1, 1);
}

void TestViewMouse::invertedDrag_givesTheBandOnePixel()
{
    QFETCH(QPoint, to);
    QFETCH(QRect, band);
    View view(Cross());
    view.BeginDrag({{200, 180}, to});
    QCOMPARE(view.Band()->geometry(), band);
    QVERIFY(view.Band()->isVisible());
}

void TestViewMouse::invertedDrag_zoomsWithItsNumbers_data()
{
    QTest::addColumn<QPoint>("to");
    QTest::addColumn<bool>("showsAll");
    QTest::newRow("up and left") << QPoint(100, 90) << true;
    QTest::newRow("left") << QPoint(100, 200) << true;
    QTest::newRow("up") << QPoint(250, 90) << false;
}

// A part of negative width counts as none; one of negative height stays upside down.
void TestViewMouse::invertedDrag_zoomsWithItsNumbers()
{
    QFETCH(QPoint, to);
    QFETCH(bool, showsAll);
    const Drag drag = {{200, 180}, to};
    View view(Cross());
    view.Select(drag);
    QCOMPARE(view.Shown(), showsAll ? kWholeArea : AreaUnder(drag, kViewSize));
    QVERIFY(!view.Band()->isVisible());
    view.Press(Qt::LeftButton, {10, 10}); // zoomed: nothing begins
    QVERIFY(!view.Band()->isVisible());
}

void TestViewMouse::rightButtonWhileSelecting_movesAndThenSizesAgain()
{
    View view(Cross());
    view.BeginDrag({{100, 100}, {200, 150}});
    view.Press(Qt::RightButton, {200, 150});
    view.Move({230, 170});
    QCOMPARE(view.Band()->geometry(), QRect(130, 120, 100, 50));
    view.Release(Qt::RightButton, {230, 170});
    QVERIFY(!view.Band()->isVisible());
    view.Move({260, 200});
    QVERIFY(view.Band()->isVisible());
    QCOMPARE(view.Band()->geometry(), QRect(130, 120, 130, 80));
    view.Release(Qt::LeftButton, {260, 200});
    QVERIFY(!view.Band()->isVisible());
    QCOMPARE(view.Shown(), AreaUnder({{130, 120}, {260, 200}}, kViewSize));
}

void TestViewMouse::leftReleasedFirst_endsWithTheRightRelease()
{
    View view(Cross());
    view.BeginDrag(kSelection);
    view.Press(Qt::RightButton, kSelection.to);
    view.Release(Qt::LeftButton, kSelection.to);
    QVERIFY(!view.Band()->isVisible());
    view.Release(Qt::RightButton, kSelection.to);
    QCOMPARE(view.Shown(), AreaUnder(kSelection, kViewSize));
    view.Press(Qt::LeftButton, {10, 10}); // zoomed: nothing begins
    QVERIFY(!view.Band()->isVisible());
}

void TestViewMouse::rightDrag_zoomed_thenLeftDrag_resizesFromTheMovedCorner()
{
    View view(Cross());
    view.Select(kSelection);
    view.Press(Qt::RightButton, {50, 50});
    view.Move({60, 45});
    view.Release(Qt::RightButton, {60, 45});
    QVERIFY(!view.Band()->isVisible());
    QCOMPARE(view.Shown(), AreaUnder({{110, 75}, {310, 225}}, kViewSize));
    view.Press(Qt::LeftButton, {400, 350});
    QVERIFY(!view.Band()->isVisible());
    view.Move({400, 300});
    QCOMPARE(view.Band()->geometry(), QRect(110, 75, 290, 225));
    view.Release(Qt::LeftButton, {400, 300});
    QCOMPARE(view.Shown(), AreaUnder({{110, 75}, {400, 300}}, kViewSize));
}

// Only what the band uncovers is painted.
void TestViewMouse::rightDrag_zoomed_doesNotRepaintTheView()
{
    View view(Cross());
    view.Select(kSelection);
    fixture::PaintLog paints(view.Get());
    view.Press(Qt::RightButton, {50, 50});
    view.Move({60, 45});
    view.Release(Qt::RightButton, {60, 45});
    Settle();
    QVERIFY(!paints.Covers(QRect(0, 0, 10, 10)));
}

// A double click is two clicks.
void TestViewMouse::doubleClick_showsTheWholeGraph()
{
    View view(Cross());
    QTest::mouseDClick(view.Get(), Qt::LeftButton, {}, QPoint(40, 30));
    view.Release(Qt::LeftButton, {40, 30});
    QCOMPARE(view.Shown(), kWholeArea);
    QCOMPARE(view.Band()->geometry(), QRect(40, 30, 1, 1));
    view.Press(Qt::LeftButton, {10, 10});
    QCOMPARE(view.Band()->geometry(), QRect(10, 10, 1, 1));
}

// The rubber band does not come between the mouse and the view.
void TestViewMouse::drag_throughTheWindow_reachesTheView()
{
    View view(Cross());
    QWindow* window = view.window->windowHandle();
    const QPoint corner = view->pos();
    QTest::mousePress(window, Qt::LeftButton, {}, corner + kSelection.from);
    QTest::mouseMove(window, corner + QPoint(400, 380));
    QTest::mouseMove(window, corner + kSelection.to);
    QCOMPARE(view.Band()->geometry(), Band(kSelection));
    QTest::mouseRelease(window, Qt::LeftButton, {}, corner + kSelection.to);
    QVERIFY(!view.Band()->isVisible());
    QCOMPARE(view.Shown(), AreaUnder(kSelection, kViewSize));
}

QTEST_MAIN(TestViewMouse)
#include "test_viewmouse.moc"
