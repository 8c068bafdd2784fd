// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The view: what it draws, and what the mouse does to the part of the graph that it shows.
#include "app/drawview.h"

#include "support/settings.h"
#include "tests/kit/appfixture.h"
#include "tests/kit/viewfixture.h"

#include <QFileDialog>
#include <QPrinter>
#include <QScreen>
#include <QWindow>

using fixture::Box;
using fixture::Drag;
using fixture::kViewSize;
using fixture::kWholeArea;
using fixture::Settle;
using fixture::ShownArea;
using fixture::TypeName;
using fixture::View;
using fixture::Window;

namespace {

constexpr int kGreen = 10;   // palette index
constexpr int kRedHue = 90;  // degrees
constexpr int kRedIndex = 2; // line index

// The rectangle that a drag leaves, for a comparison with the rubber band.
QRect Band(const Drag& drag)
{
    const QPoint extent = drag.to - drag.from;
    return {drag.from, QSize(qMax(extent.x(), 1), qMax(extent.y(), 1))};
}

int Scaled(int at, int pixels, int units)
{
    return static_cast<int>(static_cast<double>(at) / pixels * units);
}

// The part of the file under a rectangle in a view of a size.
QRect AreaUnder(const Drag& drag, QSize view)
{
    const auto x = [&](int at) { return Scaled(at, view.width(), 4096); };
    const auto y = [&](int at) { return Scaled(at, view.height(), 3120); };
    return {QPoint(x(drag.from.x()), y(drag.from.y())),
            QPoint(x(drag.to.x()) - 1, y(drag.to.y()) - 1)};
}

// Lines that cross the area, as the file has them: y upward.
constexpr QLine kCross[] = {{1000, 0, 1000, 3119}, {0, 2000, 4095, 2000}, {0, 0, 4095, 3119}};
constexpr int kCrossWidth = 24;

// A red cross on green, or on white when the background is white.
std::string CrossFile()
{
    std::string file = plf::Start() + plf::ColorMapEntry(kRedIndex, kRedHue, 50, 100) +
                       plf::LineIndex(kRedIndex) + plf::Width(kCrossWidth);
    for (const QLine& line : kCross)
        file += plf::Line(line.x1(), line.y1(), line.x2(), line.y2());
    return plf::WithBackground(file, kGreen) + plf::End();
}

// The same, painted here: the window mapping and the pen are the caller's.
QImage CrossPicture(QSize size, const QRect& area, int penWidth, const QColor& base)
{
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(base);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setWindow(area);
    painter.fillRect(kWholeArea, QColor(0, 255, 0));
    painter.setPen(QPen(QColor(255, 0, 0), penWidth));
    for (const QLine& line : kCross)
        painter.drawLine(line.x1(), 3120 - line.y1(), line.x2(), 3120 - line.y2());
    return picture;
}

// The toolkit begins a line where the exposed part does, which moves the shades of a slanting one.
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

// Counts the quit requests that the application gets.
class QuitCounter : public QObject
{
public:
    QuitCounter() { qApp->installEventFilter(this); }
    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (object == qApp && event->type() == QEvent::Quit)
            ++count;
        return false;
    }
    int count = 0;
};

constexpr Drag kSelection = {{100, 80}, {300, 230}};

void ButtonRows()
{
    QTest::addColumn<Qt::MouseButton>("button");
    QTest::newRow("left") << Qt::LeftButton;
    QTest::newRow("middle") << Qt::MiddleButton;
    QTest::newRow("right") << Qt::RightButton;
}

} // namespace

Q_DECLARE_METATYPE(Qt::MouseButton)

class TestDrawView : public QObject, protected fixture::WindowTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void constructor_withAFile_loadsIt();
    void constructor_withABadFile_reportsIt();
    void constructor_withoutAFile_asksForOne();
    void constructor_withoutAFile_loadsTheChosenOne();
    void start_dialogCancelled_leavesAnOpenWindow();
    void start_errorConfirmed_leavesAnOpenWindow();
    void constructor_isTheWindowsViewBeforeItLoads();
    void constructor_becomesAChildAtTheCorner();
    void constructor_hidesTheRubberBand();

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
    void selecting_aRepaintShowsTheRectanglesPart();
    void drag_throughTheWindow_reachesTheView();
    void drag_repaintsOnlyWhatTheBandChanges();
    void drag_leavesTheGraphAroundTheBandAsItWas_data();
    void drag_leavesTheGraphAroundTheBandAsItWas();
    void exposedPart_isDrawnAsInTheWholePicture_data();
    void exposedPart_isDrawnAsInTheWholePicture();

    void picture_wholeGraph_data();
    void picture_wholeGraph();
    void picture_zoomed_data();
    void picture_zoomed();
    void picture_whiteBackground_isWhite();
    void picture_withoutAFile_isTheBaseColor();
    void picture_afterAFailedLoad_isTheBaseColor();
    void picture_onTheScreen_isTheSame();
    void zoom_resizedWindow_keepsTheSelectionInPixels();
    void zoom_anotherFile_isKept();
    void zoom_refresh_endsIt();

    void drawIt_withoutAFile_touchesNothing();
    void drawIt_penWidth_followsTheViewsWidth_data();
    void drawIt_penWidth_followsTheViewsWidth();
    void drawIt_penWidth_growsWithTheZoom();
    void drawIt_printing_mapsThePage();
    void drawIt_withoutAPainter_walksTheFile();
    void drawIt_emptyRectangle_showsTheWholeGraph();
    void drawIt_viewWithoutASize_isSurvived();
    void drawIt_shortForms_areSlotsToo();
    void updateIt_repaints();
    void customEventSlot_doesNothing();

    void postCmdargDone_clearsTheJobsBit_data();
    void postCmdargDone_clearsTheJobsBit();
    void postCmdargDone_processesEventsFirst();
    void postCmdargDone_quitAndNothingPending_asksToQuit();
    void postCmdargDone_lastJobDone_asksToQuit();
    void postCmdargDone_withoutQuit_staysOpen();
    void postCmdargDone_jobPending_staysOpen();
    void postCmdargDone_beforeTheLoop_changesNothing();
    void postCmdargDone_windowClosedMeanwhile_isSurvived();

    void slots_haveTheirOrder();
    void signals_areNone();
    void metacast_knowsItsNames();

private:
    std::string Cross() { return directories->Write("cross.plf", CrossFile()); }
    int QuitRequests(int job);
};

void TestDrawView::init()
{
    Begin();
    gbBkClrWhite = false;
    static_cast<void>(WriteSettingsFile());
}

void TestDrawView::cleanup()
{
    End();
}

void TestDrawView::constructor_withAFile_loadsIt()
{
    Window window;
    window.AddViewOf(Cross());
    QCOMPARE(window->windowTitle(), QStringLiteral("KORVEL Viewer - cross.plf"));
    QCOMPARE(window->view, gpDraw);
    QVERIFY(gpPlfmembuf != nullptr);
}

void TestDrawView::constructor_withABadFile_reportsIt()
{
    Window window;
    Box box;
    fixture::ExpectBox(*dialogs, box);
    window.AddViewOf(directories->Path("none.plf"));
    QCOMPARE(box.shown, 1);
    QCOMPARE(QByteArray(gszPlffileOrig), QByteArray());
}

void TestDrawView::constructor_withoutAFile_asksForOne()
{
    Window window;
    int asked = 0;
    dialogs->Expect<QFileDialog>([&](QFileDialog& dialog) {
        ++asked;
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Open File"));
        QVERIFY(!window->isVisible());
        QVERIFY(window->view != nullptr);
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    window.AddView();
    QCOMPARE(asked, 1);
    QCOMPARE(QByteArray(gszPlffileOrig), QByteArray());
    QVERIFY(window.Show());
    QCOMPARE(window->centralWidget(), window->view);
}

void TestDrawView::constructor_withoutAFile_loadsTheChosenOne()
{
    const QString path = QString::fromStdString(Cross());
    Window window;
    dialogs->Expect<QFileDialog>([&](QFileDialog& dialog) { TypeName(dialog, path); });
    window.AddView();
    QCOMPARE(window->windowTitle(), QStringLiteral("KORVEL Viewer - cross.plf"));
}

// Runs the event loop as the program does, until everything that waits at its start has happened,
// and returns whether the window is still there.
static bool StaysOpen(Window& window)
{
    constexpr int kStillRunning = 5;
    window.Get()->show();
    gpDraw->PostCmdargDone(0);
    bool visible = false;
    QTimer::singleShot(50, qApp, [&] {
        visible = !window.IsGone() && window->isVisible();
        QCoreApplication::exit(kStillRunning);
    });
    return QApplication::exec() == kStillRunning && visible;
}

// The dialog is the program's only window then, and its last.
void TestDrawView::start_dialogCancelled_leavesAnOpenWindow()
{
    Window window;
    dialogs->Expect<QFileDialog>(
        [](QFileDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    window.AddView();
    QVERIFY(StaysOpen(window));
}

void TestDrawView::start_errorConfirmed_leavesAnOpenWindow()
{
    Window window;
    Box box;
    fixture::ExpectBox(*dialogs, box);
    window.AddViewOf(directories->Path("none.plf"));
    QVERIFY(StaysOpen(window));
}

void TestDrawView::constructor_isTheWindowsViewBeforeItLoads()
{
    Window window;
    const DrawView* view = nullptr;
    dialogs->Expect<QMessageBox>([&](QMessageBox& box) {
        view = window->view;
        QVERIFY(view != nullptr);
        QCOMPARE(view->parentWidget(), nullptr);
        QVERIFY(view->findChild<QRubberBand*>() != nullptr);
        box.accept();
    });
    window.AddViewOf(directories->Path("none.plf"));
    QCOMPARE(view, window->view);
}

void TestDrawView::constructor_becomesAChildAtTheCorner()
{
    const QSize ownSize = QWidget().size();
    Window window;
    QVERIFY(CopyText(gszPlffileOrig, Cross().c_str()));
    DrawView view(window.Get());
    QCOMPARE(view.parentWidget(), window.Get());
    QVERIFY(!view.isWindow());
    QCOMPARE(view.geometry(), QRect(QPoint(0, 0), ownSize));
    QCOMPARE(view.backgroundRole(), QPalette::Base);
    QVERIFY(view.autoFillBackground());
    window->view = nullptr;
}

void TestDrawView::constructor_hidesTheRubberBand()
{
    const View view(Cross());
    QCOMPARE(view->findChildren<QRubberBand*>().size(), 1);
    QCOMPARE(view.Band()->parentWidget(), view.Get());
    QCOMPARE(view.Band()->shape(), QRubberBand::Rectangle);
    QVERIFY(!view.Band()->isVisible());
    QCOMPARE(view.Shown(), kWholeArea);
}

void TestDrawView::leftPress_startsAOnePixelBand()
{
    View view(Cross());
    view.Press(Qt::LeftButton, {40, 30});
    QCOMPARE(view.Band()->geometry(), QRect(40, 30, 1, 1));
    QVERIFY(view.Band()->isVisible());
    QCOMPARE(view.Shown(), AreaUnder({{40, 30}, {41, 31}}, kViewSize));
}

void TestDrawView::leftPress_selecting_doesNothing()
{
    View view(Cross());
    view.BeginDrag(kSelection);
    view.Press(Qt::LeftButton, {10, 10});
    QCOMPARE(view.Band()->geometry(), Band(kSelection));
    QCOMPARE(view.Shown(), AreaUnder(kSelection, kViewSize));
}

void TestDrawView::leftPress_zoomed_doesNothing()
{
    View view(Cross());
    view.Select(kSelection);
    view.Press(Qt::LeftButton, {10, 10});
    QVERIFY(!view.Band()->isVisible());
    QCOMPARE(view.Shown(), AreaUnder(kSelection, kViewSize));
}

void TestDrawView::rightPress_noZoom_movesAnEmptyRectangle()
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

void TestDrawView::rightPress_selecting_movesTheRectangle()
{
    View view(Cross());
    view.BeginDrag(kSelection);
    view.Press(Qt::RightButton, {10, 10});
    QCOMPARE(view.Band()->geometry(), Band(kSelection));
    view.Move({25, 14});
    QCOMPARE(view.Band()->geometry(), Band(kSelection).translated(15, 4));
}

void TestDrawView::rightPress_moving_startsAgainFromThere()
{
    View view(Cross());
    view.BeginDrag(kSelection);
    view.Press(Qt::RightButton, {10, 10});
    view.Move({15, 15});
    view.Press(Qt::RightButton, {100, 100});
    view.Move({101, 102});
    QCOMPARE(view.Band()->geometry(), Band(kSelection).translated(6, 7));
}

void TestDrawView::rightPress_zoomed_movesTheRectangle()
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

void TestDrawView::middlePress_doesNothing()
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

void TestDrawView::move_noZoom_doesNothing()
{
    View view(Cross());
    view.Press(Qt::MiddleButton, {40, 30});
    view.Move({140, 130});
    QVERIFY(!view.Band()->isVisible());
    QCOMPARE(view.Shown(), kWholeArea);
}

void TestDrawView::move_withoutAButton_doesNothing()
{
    View view(Cross());
    view.Move({140, 130});
    QVERIFY(!view.Band()->isVisible());
    view.Select(kSelection);
    view.Move({10, 10});
    QVERIFY(!view.Band()->isVisible());
    QCOMPARE(view.Shown(), AreaUnder(kSelection, kViewSize));
}

void TestDrawView::move_selecting_followsTheMouse()
{
    View view(Cross());
    view.Press(Qt::LeftButton, {40, 30});
    for (const QPoint to : {QPoint(60, 70), QPoint(200, 35), QPoint(41, 31), QPoint(511, 389)}) {
        view.Move(to);
        QCOMPARE(view.Band()->geometry(), Band({{40, 30}, to}));
        QVERIFY(view.Band()->isVisible());
    }
}

void TestDrawView::move_moving_shiftsTheRectangle()
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

void TestDrawView::move_zoomed_showsTheBand()
{
    View view(Cross());
    view.Select(kSelection);
    view.Press(Qt::LeftButton, {10, 10});
    view.Move({50, 60});
    QVERIFY(view.Band()->isVisible());
    QCOMPARE(view.Band()->geometry(), Band(kSelection));
    QCOMPARE(view.Shown(), AreaUnder(kSelection, kViewSize));
}

void TestDrawView::release_moving_goesBackToSelecting_data()
{
    ButtonRows();
}

void TestDrawView::release_moving_goesBackToSelecting()
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

void TestDrawView::release_selecting_decidesByDistance_data()
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

void TestDrawView::release_selecting_decidesByDistance()
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

void TestDrawView::release_selecting_anyButtonEndsIt_data()
{
    ButtonRows();
}

void TestDrawView::release_selecting_anyButtonEndsIt()
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

void TestDrawView::release_click_repaintsAndLeavesTheBand()
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

void TestDrawView::release_selection_repaintsAndHidesTheBand()
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

void TestDrawView::release_noZoom_hidesTheBand_data()
{
    ButtonRows();
}

void TestDrawView::release_noZoom_hidesTheBand()
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

void TestDrawView::release_zoomed_hidesTheBand_data()
{
    ButtonRows();
}

void TestDrawView::release_zoomed_hidesTheBand()
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

void TestDrawView::release_elsewhere_keepsTheLastMovesCorner()
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

void TestDrawView::invertedDrag_givesTheBandOnePixel_data()
{
    QTest::addColumn<QPoint>("to");
    QTest::addColumn<QRect>("band");
    QTest::newRow("up and left") << QPoint(100, 90) << QRect(200, 180, 1, 1);
    QTest::newRow("up") << QPoint(250, 90) << QRect(200, 180, 50, 1);
    QTest::newRow("left") << QPoint(100, 200) << QRect(200, 180, 1, 20);
    QTest::newRow("nowhere") << QPoint(200, 180) << QRect(200, 180, 1, 1);
}

void TestDrawView::invertedDrag_givesTheBandOnePixel()
{
    QFETCH(QPoint, to);
    QFETCH(QRect, band);
    View view(Cross());
    view.BeginDrag({{200, 180}, to});
    QCOMPARE(view.Band()->geometry(), band);
    QVERIFY(view.Band()->isVisible());
}

void TestDrawView::invertedDrag_zoomsWithItsNumbers_data()
{
    QTest::addColumn<QPoint>("to");
    QTest::addColumn<bool>("showsAll");
    QTest::newRow("up and left") << QPoint(100, 90) << true;
    QTest::newRow("left") << QPoint(100, 200) << true;
    QTest::newRow("up") << QPoint(250, 90) << false;
}

// A part of negative width counts as none; one of negative height stays upside down.
void TestDrawView::invertedDrag_zoomsWithItsNumbers()
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

void TestDrawView::rightButtonWhileSelecting_movesAndThenSizesAgain()
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

void TestDrawView::leftReleasedFirst_endsWithTheRightRelease()
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

void TestDrawView::rightDrag_zoomed_thenLeftDrag_resizesFromTheMovedCorner()
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
void TestDrawView::rightDrag_zoomed_doesNotRepaintTheView()
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
void TestDrawView::doubleClick_showsTheWholeGraph()
{
    View view(Cross());
    QTest::mouseDClick(view.Get(), Qt::LeftButton, {}, QPoint(40, 30));
    view.Release(Qt::LeftButton, {40, 30});
    QCOMPARE(view.Shown(), kWholeArea);
    QCOMPARE(view.Band()->geometry(), QRect(40, 30, 1, 1));
    view.Press(Qt::LeftButton, {10, 10});
    QCOMPARE(view.Band()->geometry(), QRect(10, 10, 1, 1));
}

void TestDrawView::selecting_aRepaintShowsTheRectanglesPart()
{
    View view(Cross());
    view.BeginDrag(kSelection);
    QCOMPARE(view.Shown(), AreaUnder(kSelection, kViewSize));
    view.Press(Qt::RightButton, {10, 10});
    view.Move({18, 26});
    QCOMPARE(view.Shown(), AreaUnder({{108, 96}, {308, 246}}, kViewSize));
}

// The rubber band does not come between the mouse and the view.
void TestDrawView::drag_throughTheWindow_reachesTheView()
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

// Everything under the band would be as slow as the whole graph.
void TestDrawView::drag_repaintsOnlyWhatTheBandChanges()
{
    View view(Cross());
    view.BeginDrag({{100, 80}, {300, 230}});
    Settle();
    fixture::PaintLog paints(view.Get());
    view.Move({310, 240});
    Settle();
    QVERIFY(paints.Covers(QRect(100, 80, 210, 2)));
    QVERIFY(paints.Covers(QRect(298, 80, 12, 160)));
    QVERIFY(paints.Covers(QRect(100, 228, 210, 12)));
    QVERIFY(!paints.Touches(QRect(110, 90, 180, 130)));
    QVERIFY(!paints.Touches(QRect(320, 0, 100, 390)));
}

void TestDrawView::drag_leavesTheGraphAroundTheBandAsItWas_data()
{
    QTest::addColumn<bool>("zoomed");
    QTest::newRow("whole graph") << false;
    QTest::newRow("zoomed") << true;
}

// What the band covered and uncovers again, and what it covered when it was hidden.
void TestDrawView::drag_leavesTheGraphAroundTheBandAsItWas()
{
    QFETCH(bool, zoomed);
    View view(Cross());
    if (zoomed)
        view.Select(kSelection);
    const auto screen = [&view] {
        Settle();
        const QImage window = view->screen()->grabWindow(view.window->winId()).toImage();
        return window.copy(QRect(view->pos(), view->size()));
    };
    const QImage before = screen();
    view.Press(zoomed ? Qt::RightButton : Qt::LeftButton, {60, 50});
    for (const QPoint at : {QPoint(100, 90), QPoint(400, 300), QPoint(150, 120)})
        view.Move(at);
    const QRect band = view.Band()->geometry();
    QImage during = screen();
    QVERIFY(during != before);
    QPainter painter(&during);
    painter.drawImage(band.topLeft(), before, band);
    painter.end();
    QVERIFY(IsNear(during, before));
}

void TestDrawView::exposedPart_isDrawnAsInTheWholePicture_data()
{
    QTest::addColumn<QRegion>("part");
    const QRegion frame = QRegion(50, 40, 300, 200) - QRegion(54, 44, 292, 192);
    QRegion manyParts;
    for (int i = 0; i < 20; ++i)
        manyParts += QRect(20 * i, 15 * i, 9, 7);
    QTest::newRow("strip") << QRegion(0, 200, 512, 10);
    QTest::newRow("frame") << frame;
    QTest::newRow("many parts") << manyParts;
    QTest::newRow("pixel on a line") << QRegion(125, 200, 1, 1);
}

void TestDrawView::exposedPart_isDrawnAsInTheWholePicture()
{
    QFETCH(QRegion, part);
    View view(Cross());
    const QImage whole = view.Picture();
    QImage exposed(kViewSize, QImage::Format_RGB32);
    exposed.fill(Qt::magenta);
    QImage expected = exposed;
    view->render(&exposed, part.boundingRect().topLeft(), part);
    QPainter painter(&expected);
    painter.setClipRegion(part);
    painter.drawImage(0, 0, whole);
    painter.end();
    QVERIFY(IsNear(exposed, expected));
}

void TestDrawView::picture_wholeGraph_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("penWidth");
    QTest::newRow("512 x 390") << QSize(512, 390) << 9;
    QTest::newRow("640 x 300") << QSize(640, 300) << 12;
    QTest::newRow("333 x 555") << QSize(333, 555) << 6;
}

void TestDrawView::picture_wholeGraph()
{
    QFETCH(QSize, size);
    QFETCH(int, penWidth);
    const View view(Cross(), size);
    QCOMPARE(view.Picture(),
             CrossPicture(size, kWholeArea, penWidth, view->palette().color(QPalette::Base)));
}

void TestDrawView::picture_zoomed_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QPoint>("from");
    QTest::addColumn<QPoint>("to");
    QTest::addColumn<int>("penWidth");
    QTest::newRow("a quarter") << QSize(512, 390) << QPoint(128, 90) << QPoint(256, 188) << 38;
    QTest::newRow("off the pixel grid")
        << QSize(640, 301) << QPoint(101, 57) << QPoint(302, 209) << 38;
    QTest::newRow("flat") << QSize(512, 390) << QPoint(50, 100) << QPoint(350, 150) << 16;
    QTest::newRow("beyond the corner")
        << QSize(512, 390) << QPoint(384, 300) << QPoint(640, 480) << 19;
}

void TestDrawView::picture_zoomed()
{
    QFETCH(QSize, size);
    QFETCH(QPoint, from);
    QFETCH(QPoint, to);
    QFETCH(int, penWidth);
    View view(Cross(), size);
    QPalette colors = view->palette();
    colors.setColor(QPalette::Base, Qt::magenta); // seen where the file ends
    view->setPalette(colors);
    view.Select({from, to});
    QCOMPARE(view.Picture(),
             CrossPicture(size, AreaUnder({from, to}, size), penWidth, Qt::magenta));
}

void TestDrawView::picture_whiteBackground_isWhite()
{
    const View view(Cross());
    QCOMPARE(view.Picture().pixelColor(10, 10), QColor(0, 255, 0));
    gbBkClrWhite = true;
    QCOMPARE(view.Picture().pixelColor(10, 10), QColor(255, 255, 255));
}

void TestDrawView::picture_withoutAFile_isTheBaseColor()
{
    Window window;
    dialogs->Expect<QFileDialog>([](QFileDialog& dialog) { dialog.reject(); });
    window.AddView();
    QVERIFY(window.Show());
    QPalette colors = window->view->palette();
    colors.setColor(QPalette::Base, Qt::cyan);
    window->view->setPalette(colors);
    QImage expected(window->view->size(), QImage::Format_RGB32);
    expected.fill(Qt::cyan);
    QCOMPARE(window->view->grab().toImage().convertToFormat(QImage::Format_RGB32), expected);
}

void TestDrawView::picture_afterAFailedLoad_isTheBaseColor()
{
    const View view(Cross());
    Box box;
    fixture::ExpectBox(*dialogs, box);
    view.window->load(QString::fromStdString(directories->Path("none.plf")));
    QImage expected(kViewSize, QImage::Format_RGB32);
    expected.fill(view->palette().color(QPalette::Base));
    QCOMPARE(view.Picture(), expected);
}

// Not only what the view would draw, but what its window holds.
void TestDrawView::picture_onTheScreen_isTheSame()
{
    View view(Cross());
    view.Select(kSelection);
    const QRect place(view->mapTo(view.window.Get(), QPoint(0, 0)), kViewSize);
    const QImage window = view.window->grab().toImage().convertToFormat(QImage::Format_RGB32);
    QCOMPARE(window.copy(place), view.Picture());
}

void TestDrawView::zoom_resizedWindow_keepsTheSelectionInPixels()
{
    View view(Cross());
    view.Select(kSelection);
    for (const QSize size : {QSize(700, 500), QSize(300, 390), QSize(512, 390)}) {
        view.Resize(size);
        QCOMPARE(view.Shown(), AreaUnder(kSelection, size));
    }
}

void TestDrawView::zoom_anotherFile_isKept()
{
    View view(Cross());
    view.Select(kSelection);
    view.window->load(QString::fromStdString(directories->Write("b.plf", CrossFile())));
    QCOMPARE(view.window->windowTitle(), QStringLiteral("KORVEL Viewer - b.plf"));
    QCOMPARE(view.Shown(), AreaUnder(kSelection, kViewSize));
    view.Press(Qt::LeftButton, {10, 10});
    QVERIFY2(!view.Band()->isVisible(), "still zoomed");
}

void TestDrawView::zoom_refresh_endsIt()
{
    View view(Cross());
    const QImage whole = view.Picture();
    view.Select(kSelection);
    QVERIFY(view.Picture() != whole);
    QTest::keyClick(view.window.Get(), Qt::Key_Escape);
    QCOMPARE(view.Picture(), whole);
    view.Press(Qt::LeftButton, {10, 10});
    QCOMPARE(view.Band()->geometry(), QRect(10, 10, 1, 1));
}

void TestDrawView::drawIt_withoutAFile_touchesNothing()
{
    const View view(Cross());
    gszPlffileOrig[0] = 0;
    gdwVectorCnt = 77;
    QImage image(10, 10, QImage::Format_RGB32);
    image.fill(Qt::blue);
    QPainter painter(&image);
    view->drawIt(&painter);
    QCOMPARE(painter.window(), QRect(0, 0, 10, 10));
    QCOMPARE(image.pixelColor(5, 5), QColor(Qt::blue));
    QCOMPARE(gdwVectorCnt, 77UL);
}

// The width of the pen that drew a file's last line.
static int LastPenWidth(DrawView& view, bool printing = false)
{
    QImage image(100, 100, QImage::Format_RGB32);
    QPainter painter(&image);
    view.drawIt(&painter, printing);
    return painter.pen().width();
}

void TestDrawView::drawIt_penWidth_followsTheViewsWidth_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("width");
    QTest::newRow("640") << QSize(640, 390) << 60;
    QTest::newRow("640, less high") << QSize(640, 200) << 60;
    QTest::newRow("320") << QSize(320, 390) << 30;
    QTest::newRow("1000") << QSize(1000, 390) << 93; // 187 units
}

void TestDrawView::drawIt_penWidth_followsTheViewsWidth()
{
    QFETCH(QSize, size);
    QFETCH(int, width);
    const std::string file = plf::Start() + plf::Width(120) + plf::Line(0, 0, 9, 9) + plf::End();
    const View view(directories->Write("wide.plf", file), size);
    QCOMPARE(LastPenWidth(*view.Get()), width);
    // On paper a pen is not halved but doubled.
    QCOMPARE(LastPenWidth(*view.Get(), true), 2 * (120 * size.width() / 640));
}

void TestDrawView::drawIt_penWidth_growsWithTheZoom()
{
    const std::string file = plf::Start() + plf::Width(20) + plf::Line(0, 0, 9, 9) + plf::End();
    View view(directories->Write("wide.plf", file), QSize(640, 390));
    view.Select({{100, 100}, {260, 200}});
    QCOMPARE(LastPenWidth(*view.Get()), 40); // four times as wide
    view.Resize(QSize(320, 390));
    QCOMPARE(LastPenWidth(*view.Get()), 10);
}

void TestDrawView::drawIt_printing_mapsThePage()
{
    const View view(Cross());
    const QPrinter printer(QPrinter::HighResolution);
    QImage image(100, 100, QImage::Format_RGB32);
    QPainter painter(&image);
    view->drawIt(&painter, true, 0);
    const double dpi = printer.logicalDpiX();
    QCOMPARE(painter.viewport(), QRect(static_cast<int>(dpi * 0.8), static_cast<int>(dpi * 0.6),
                                       static_cast<int>(dpi * 9.0), static_cast<int>(dpi * 6.855)));
    QPainter screen;
    painter.end();
    QVERIFY(screen.begin(&image));
    view->drawIt(&screen);
    QCOMPARE(screen.viewport(), QRect(0, 0, 100, 100));
}

void TestDrawView::drawIt_withoutAPainter_walksTheFile()
{
    const View view(Cross());
    gdwVectorCnt = 0;
    view->drawIt(nullptr);
    QCOMPARE(gdwVectorCnt, 3UL);
}

// The rectangle of a right press at the start has no width: everything is divided by zero.
void TestDrawView::drawIt_emptyRectangle_showsTheWholeGraph()
{
    View view(Cross());
    view.Press(Qt::RightButton, {40, 30});
    QCOMPARE(view.Shown(), kWholeArea);
    QCOMPARE(view.Picture().pixelColor(10, 10), QColor(0, 255, 0));
    view->repaint();
    QCOMPARE(gdwVectorCnt, 3UL);
}

void TestDrawView::drawIt_viewWithoutASize_isSurvived()
{
    View view(Cross());
    view.Select(kSelection);
    view.window->takeCentralWidget();
    view->resize(0, 0);
    gdwVectorCnt = 0;
    view->drawIt(nullptr);
    QCOMPARE(gdwVectorCnt, 3UL);
    static_cast<void>(view.Shown());
    view.window->setCentralWidget(view.Get());
}

void TestDrawView::drawIt_shortForms_areSlotsToo()
{
    const View view(Cross());
    QImage image(100, 100, QImage::Format_RGB32);
    QPainter painter(&image);
    QPainter* target = &painter;
    gdwVectorCnt = 0;
    QVERIFY(QMetaObject::invokeMethod(view.Get(), "drawIt", Q_ARG(QPainter*, target)));
    QCOMPARE(gdwVectorCnt, 3UL);
    QCOMPARE(painter.viewport(), QRect(0, 0, 100, 100));
    QVERIFY(QMetaObject::invokeMethod(view.Get(), "drawIt", Q_ARG(QPainter*, target),
                                      Q_ARG(bool, true)));
    QVERIFY(painter.viewport() != QRect(0, 0, 100, 100));
}

void TestDrawView::updateIt_repaints()
{
    const View view(Cross());
    fixture::PaintLog paints(view.Get());
    view->updateIt();
    QVERIFY(!paints.Covers(view->rect()));
    Settle();
    QVERIFY(paints.Covers(view->rect()));
}

void TestDrawView::customEventSlot_doesNothing()
{
    const View view(Cross());
    fixture::PaintLog paints(view.Get());
    QCustomEvent event;
    QVERIFY(QMetaObject::invokeMethod(view.Get(), "customEvent", Q_ARG(QCustomEvent*, &event)));
    QEvent user(QEvent::User);
    QCoreApplication::sendEvent(view.Get(), &user); // the event handler of that name is another
    Settle();
    QVERIFY(!paints.Covers(view->rect()));
    QCOMPARE(view.Shown(), kWholeArea);
}

// Jobs run before the event loop as well, where a window that is closed goes at once.
void TestDrawView::postCmdargDone_windowClosedMeanwhile_isSurvived()
{
    Window window;
    window.AddViewOf(Cross());
    QVERIFY(window.Show());
    giCmdArg = kJobPrint | kJobJpeg | kJobEps;
    QTimer::singleShot(0, window.Get(), &AppWindow::close);
    QTimer::singleShot(0, window.Get(), &QObject::deleteLater);
    QTimer::singleShot(0,
                       [] { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); });
    window->view->PostCmdargDone(0);
    QVERIFY(window.IsGone());
}

void TestDrawView::postCmdargDone_clearsTheJobsBit_data()
{
    QTest::addColumn<int>("pending");
    QTest::addColumn<int>("job");
    QTest::addColumn<int>("left");
    QTest::newRow("print") << 1 << 1 << 0;
    QTest::newRow("JPEG") << 2 << 2 << 0;
    QTest::newRow("EPS") << 4 << 3 << 0;
    QTest::newRow("none of them") << 8 << 0 << 8; // a bit that no job has
    QTest::newRow("less than none") << 8 << -1 << 8;
    QTest::newRow("print alone") << 9 << 1 << 8;
    QTest::newRow("JPEG alone") << 10 << 2 << 8;
    QTest::newRow("EPS alone") << 12 << 3 << 8;
    QTest::newRow("one that is not pending") << 8 << 2 << 8;
    QTest::newRow("nothing is pending") << 0 << 1 << 0;
}

void TestDrawView::postCmdargDone_clearsTheJobsBit()
{
    QFETCH(int, pending);
    QFETCH(int, job);
    QFETCH(int, left);
    const View view(Cross());
    giCmdArg = pending;
    view->PostCmdargDone(job);
    QCOMPARE(giCmdArg, left);
}

void TestDrawView::postCmdargDone_processesEventsFirst()
{
    const View view(Cross());
    int seen = -1;
    QTimer::singleShot(0, view.Get(), [&] { seen = giCmdArg; });
    giCmdArg = 1;
    view->PostCmdargDone(1);
    QCOMPARE(seen, 1); // before the bit was cleared
}

// Calls PostCmdargDone within the event loop and says how often it asked to quit.
int TestDrawView::QuitRequests(int job)
{
    View view(Cross());
    QuitCounter quits;
    int requests = -1;
    QTimer::singleShot(0, view.Get(), [&] {
        view->PostCmdargDone(job);
        requests = quits.count;
        QCoreApplication::exit();
    });
    QApplication::exec();
    return requests;
}

void TestDrawView::postCmdargDone_quitAndNothingPending_asksToQuit()
{
    gbCmdQuit = true;
    QCOMPARE(QuitRequests(0), 1);
}

void TestDrawView::postCmdargDone_lastJobDone_asksToQuit()
{
    gbCmdQuit = true;
    giCmdArg = 4;
    QCOMPARE(QuitRequests(3), 1);
}

void TestDrawView::postCmdargDone_withoutQuit_staysOpen()
{
    QCOMPARE(QuitRequests(0), 0);
}

void TestDrawView::postCmdargDone_jobPending_staysOpen()
{
    gbCmdQuit = true;
    giCmdArg = 8; // a bit that no job has
    QCOMPARE(QuitRequests(1), 0);
}

void TestDrawView::postCmdargDone_beforeTheLoop_changesNothing()
{
    View view(Cross());
    gbCmdQuit = true;
    view->PostCmdargDone(0);
    Settle();
    QVERIFY(!view.window.IsGone());
    QVERIFY(view.window->isVisible());
}

void TestDrawView::slots_haveTheirOrder()
{
    const QStringList table = {
        QStringLiteral("updateIt()"),
        QStringLiteral("printIt()"),
        QStringLiteral("cmdPrint()"),
        QStringLiteral("customEvent(QCustomEvent*)"),
        QStringLiteral("PostCmdargDone(int)"),
        QStringLiteral("drawIt(QPainter*,bool,int)"),
        QStringLiteral("drawIt(QPainter*,bool)"),
        QStringLiteral("drawIt(QPainter*)"),
    };
    QCOMPARE(fixture::OwnMethods(DrawView::staticMetaObject, QMetaMethod::Slot), table);
}

void TestDrawView::signals_areNone()
{
    QCOMPARE(fixture::OwnMethods(DrawView::staticMetaObject, QMetaMethod::Signal), QStringList());
}

void TestDrawView::metacast_knowsItsNames()
{
    const View view(Cross());
    QCOMPARE(view->qt_metacast("DrawView"), static_cast<void*>(view.Get()));
    QVERIFY(view->qt_metacast("QWidget") != nullptr);
    QCOMPARE(view->qt_metacast("AppWindow"), nullptr);
    QCOMPARE(QByteArray(view->metaObject()->className()), QByteArray("DrawView"));
}

QTEST_MAIN(TestDrawView)
#include "test_drawview.moc"
