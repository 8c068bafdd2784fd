// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What the mouse costs and shows: which of its steps draw the graph, and what is seen under and
// around the rubber band. Graphs with wide lines take long to draw, so that a pass too many is a
// program that seems dead.
#include "app/drawview.h"
#include "app/statustext.h"
#include "meta/palette.h"
#include "meta/passwatch.h"
#include "support/log.h"
#include "tests/kit/appfixture.h"
#include "tests/kit/recorder.h"
#include "tests/kit/viewfixture.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QScreen>
#include <QStatusBar>

using fixture::kSelection;
using fixture::Settle;
using fixture::View;
using fixture::Window;

namespace {

// Wide lines in two colors all over the area, on green.
std::string WideFile()
{
    constexpr int kWide = 40;
    constexpr int kStep = 256;
    std::string file = plf::Start() + plf::ColorMapEntry(2, 90, 50, 100) + plf::Width(kWide);
    for (int at = 0; at < 4096; at += kStep) {
        file += plf::LineIndex(at % (2 * kStep) == 0 ? 1 : 2);
        file += plf::Line(at, 0, 4095 - at, 3119);
    }
    constexpr int kGreen = 10;
    return plf::WithBackground(file, kGreen) + plf::End();
}

// Counts passes over graphs by the interpreter's own trace messages.
class PassCounter
{
public:
    explicit PassCounter(const std::string& path) : file(QString::fromStdString(path))
    {
        gdwDebug = 2; // the level of these messages
        gpLog = new CLog(path.c_str(), 0);
    }
    ~PassCounter()
    {
        UnInitLogFile();
        gdwDebug = 1;
    }
    PassCounter(const PassCounter&) = delete;
    PassCounter& operator=(const PassCounter&) = delete;

    // Passes since the last call.
    int Take()
    {
        if (!file.isOpen() && !file.open(QIODevice::ReadOnly))
            return -1;
        return static_cast<int>(file.readAll().count("CPlfMeta constructor"));
    }

private:
    QFile file;
};

// What the screen shows of a view.
QImage Screen(const View& view)
{
    Settle();
    const QImage window = view->screen()->grabWindow(view.window->winId()).toImage();
    return window.copy(QRect(view->pos(), view->size()));
}

// A picture with the rubber band on top, where it is shown.
QImage WithBand(QImage picture, const View& view)
{
    if (view.Band()->isVisible()) {
        QPainter painter(&picture);
        view.Band()->render(&painter, view.Band()->pos(), QRegion(), QWidget::DrawChildren);
    }
    return picture;
}

// Brings a view with the whole graph into a state, with the rectangle of kSelection but for none.
void Enter(View& view, ZoomState state)
{
    if (state == kZoomNone)
        return;
    view.BeginDrag(kSelection);
    if (state == kZoomMoving)
        view.Press(Qt::RightButton, kSelection.to);
    else if (state == kZoomed)
        view.Release(Qt::LeftButton, kSelection.to);
    Settle();
}

constexpr ZoomState kStates[] = {kZoomNone, kZoomSelecting, kZoomMoving, kZoomed};
constexpr const char* kStateNames[] = {"none", "selecting", "moving", "zoomed"};

// Somebody who is drawn to, slowly: each line waits for the cursor.
class SlowEngine : public RecordingEngine
{
public:
    SlowEngine() : RecordingEngine(false) {}

    void drawLines(const QLine* /*lines*/, int /*count*/) override { Wait(); }
    void drawLines(const QLineF* /*lines*/, int /*count*/) override { Wait(); }

    bool wasShownAtFirst = false;
    bool wasShown = false;

private:
    void Wait()
    {
        const QCursor* cursor = QGuiApplication::overrideCursor();
        wasShown = wasShown || (cursor != nullptr && cursor->shape() == Qt::WaitCursor);
        if (std::exchange(isFirst, false)) {
            wasShownAtFirst = cursor != nullptr;
            const QDeadlineTimer patience(PassWatch::kPatience);
            while (!patience.hasExpired())
                QThread::yieldCurrentThread();
        }
    }

    bool isFirst = true;
};

class SlowDevice : public QPaintDevice
{
public:
    [[nodiscard]] QPaintEngine* paintEngine() const override { return &engine; }
    mutable SlowEngine engine;

protected:
    [[nodiscard]] int metric(PaintDeviceMetric metric) const override
    {
        return metric == PdmDevicePixelRatioScaled ? 65536 : 100;
    }
};

constexpr int kUsedUp = 1500; // milliseconds, of 2000

// Waits until that is left of a status text's time. No event is handled, as in a pass. Returns the
// text's timer, or null when there is none.
const QTimer* UseUpStatusTime(const View& view)
{
    const auto* timer = view.window->statusBar()->findChild<QTimer*>();
    if (timer == nullptr || !timer->isActive())
        return nullptr;
    const QDeadlineTimer patience(10000);
    while (timer->remainingTime() > kUsedUp && !patience.hasExpired())
        QThread::yieldCurrentThread();
    return timer;
}

} // namespace

Q_DECLARE_METATYPE(Qt::MouseButton)

class TestBand : public QObject, protected fixture::WindowTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void press_drawsNoGraph_data();
    void press_drawsNoGraph();
    void move_drawsNoGraph_data();
    void move_drawsNoGraph();
    void release_drawsTheGraphOnlyWhereTheViewChanges_data();
    void release_drawsTheGraphOnlyWhereTheViewChanges();
    void drag_showsWhatWasShown_data();
    void drag_showsWhatWasShown();
    void repaint_ofAnotherCause_showsTheRectanglesPart();
    void repaint_ofThePartUnderTheBand_showsTheRectanglesPart();
    void repaint_thatWaits_isMadeWholeByAPress();
    void grab_whileSelecting_leavesTheScreenAlone();
    void resize_whileSelecting_showsTheRectanglesPart();

    void firstPaint_isOfAnEmptyView();
    void waitCursor_comesInALongPassAndGoes();
    void statusText_beforeAPass_hasItsTimeAfterIt();
    void statusText_withoutAPass_isNotProlongedByOne();

private:
    std::string Wide() { return directories->Write("wide.plf", WideFile()); }

    std::unique_ptr<PassCounter> passes;
};

void TestBand::init()
{
    Begin();
    passes = std::make_unique<PassCounter>(directories->Path("trace.log"));
    gbBkClrWhite = false;
}

void TestBand::cleanup()
{
    passes.reset();
    End();
}

void TestBand::press_drawsNoGraph_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<Qt::MouseButton>("button");
    for (const ZoomState state : kStates) {
        QTest::addRow("left, %s", kStateNames[state]) << int{state} << Qt::LeftButton;
        QTest::addRow("right, %s", kStateNames[state]) << int{state} << Qt::RightButton;
        QTest::addRow("middle, %s", kStateNames[state]) << int{state} << Qt::MiddleButton;
    }
}

void TestBand::press_drawsNoGraph()
{
    QFETCH(int, state);
    QFETCH(Qt::MouseButton, button);
    View view(Wide());
    Enter(view, static_cast<ZoomState>(state));
    passes->Take();
    const QImage before = Screen(view);
    const bool startsABand = state == kZoomNone && button == Qt::LeftButton;
    view.Press(button, {60, 50});
    if (startsABand) {
        const QRect band = view.Band()->geometry();
        QCOMPARE(band, QRect(60, 50, 1, 1));
        QCOMPARE(Screen(view), WithBand(before, view));
    } else {
        QCOMPARE(Screen(view), before);
    }
    QCOMPARE(passes->Take(), 0);
}

void TestBand::move_drawsNoGraph_data()
{
    QTest::addColumn<int>("state");
    for (const ZoomState state : kStates)
        QTest::newRow(kStateNames[state]) << int{state};
}

void TestBand::move_drawsNoGraph()
{
    QFETCH(int, state);
    View view(Wide());
    Enter(view, static_cast<ZoomState>(state));
    passes->Take();
    for (const QPoint at : {QPoint(320, 250), QPoint(400, 380), QPoint(150, 120), QPoint(20, 10)}) {
        view.Move(at);
        Settle();
        QCOMPARE(passes->Take(), 0);
    }
}

void TestBand::release_drawsTheGraphOnlyWhereTheViewChanges_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QPoint>("at");
    QTest::addColumn<Qt::MouseButton>("button");
    QTest::addColumn<int>("count");
    const QPoint far = kSelection.to;
    const QPoint near = kSelection.from + QPoint(19, 100);
    QTest::newRow("none") << int{kZoomNone} << far << Qt::LeftButton << 0;
    QTest::newRow("selecting, a click") << int{kZoomSelecting} << near << Qt::LeftButton << 1;
    QTest::newRow("selecting") << int{kZoomSelecting} << far << Qt::LeftButton << 1;
    QTest::newRow("moving") << int{kZoomMoving} << far << Qt::RightButton << 0;
    QTest::newRow("zoomed, left") << int{kZoomed} << far << Qt::LeftButton << 0;
    QTest::newRow("zoomed, right") << int{kZoomed} << far << Qt::RightButton << 0;
}

void TestBand::release_drawsTheGraphOnlyWhereTheViewChanges()
{
    QFETCH(int, state);
    QFETCH(QPoint, at);
    QFETCH(Qt::MouseButton, button);
    QFETCH(int, count);
    View view(Wide());
    Enter(view, static_cast<ZoomState>(state));
    passes->Take();
    view.Release(button, at);
    Settle();
    QCOMPARE(passes->Take(), count);
}

void TestBand::drag_showsWhatWasShown_data()
{
    QTest::addColumn<bool>("zoomed");
    QTest::newRow("whole graph") << false;
    QTest::newRow("zoomed") << true;
}

// Inside the band, through it, and where it was.
void TestBand::drag_showsWhatWasShown()
{
    QFETCH(bool, zoomed);
    View view(Wide());
    if (zoomed)
        view.Select(kSelection);
    const QImage before = Screen(view);
    const auto shows = [&] { return Screen(view) == WithBand(before, view); };
    view.Press(zoomed ? Qt::RightButton : Qt::LeftButton, {60, 50});
    QVERIFY(shows());
    for (const QPoint at : {QPoint(100, 90), QPoint(400, 300), QPoint(150, 120), QPoint(30, 20)}) {
        view.Move(at);
        QVERIFY(shows());
    }
    view.Press(Qt::RightButton, {30, 20});
    view.Move({130, 90});
    QVERIFY(view.Band()->isVisible());
    QVERIFY(shows());
    view.Release(Qt::RightButton, {130, 90});
    QVERIFY(!view.Band()->isVisible());
    QCOMPARE(Screen(view), before);
}

void TestBand::repaint_ofAnotherCause_showsTheRectanglesPart()
{
    View view(Wide());
    view.BeginDrag(kSelection);
    const QImage before = Screen(view);
    passes->Take();
    view->updateIt();
    Settle();
    QCOMPARE(passes->Take(), 1);
    QVERIFY(Screen(view) != before);
    QCOMPARE(Screen(view), view->grab().toImage().convertToFormat(before.format()));
}

// It covers no more than what the band could have asked for.
void TestBand::repaint_ofThePartUnderTheBand_showsTheRectanglesPart()
{
    View view(Wide());
    view.BeginDrag(kSelection);
    const QImage before = Screen(view);
    const QRect part(150, 120, 60, 50);
    view->update(part);
    Settle();
    QVERIFY(Screen(view).copy(part) != before.copy(part));
    QCOMPARE(Screen(view).copy(0, 0, 512, 120), before.copy(0, 0, 512, 120));
}

void TestBand::repaint_thatWaits_isMadeWholeByAPress()
{
    View view(Wide());
    const QImage before = Screen(view);
    passes->Take();
    gbBkClrWhite = true;
    view->updateIt();
    view.Press(Qt::LeftButton, {60, 50});
    Settle();
    QCOMPARE(passes->Take(), 1);
    QVERIFY(Screen(view) != before);
}

// A picture of the view shows the rectangle's part; what the band uncovers later does not.
void TestBand::grab_whileSelecting_leavesTheScreenAlone()
{
    View view(Wide());
    const QImage before = Screen(view);
    view.BeginDrag(kSelection);
    view->grab();
    view.Move({140, 110});
    QCOMPARE(Screen(view), WithBand(before, view));
}

void TestBand::resize_whileSelecting_showsTheRectanglesPart()
{
    View view(Wide());
    view.BeginDrag(kSelection);
    passes->Take();
    view.Resize(QSize(600, 400));
    Settle();
    QVERIFY(passes->Take() >= 1);
    view.Move({310, 240});
    Settle();
    QCOMPARE(passes->Take(), 0);
}

// The window and its menus are on the screen before a pass that may take long.
void TestBand::firstPaint_isOfAnEmptyView()
{
    // Looks at the screen when the view is asked to paint for the second time.
    struct SecondPaint : QObject {
        bool eventFilter(QObject* object, QEvent* event) override
        {
            if (event->type() == QEvent::Paint && ++paints == 2) {
                auto* view = qobject_cast<QWidget*>(object);
                const WId window = view->window()->winId();
                seen = view->screen()->grabWindow(window).toImage();
                passesBefore = counter->Take();
            }
            return false;
        }
        PassCounter* counter = nullptr;
        int paints = 0;
        int passesBefore = -1;
        QImage seen;
    } watcher;
    watcher.counter = passes.get();
    Window window;
    window.AddViewOf(Wide());
    window->view->installEventFilter(&watcher);
    QVERIFY(window.Show());
    QTRY_VERIFY(watcher.paints >= 2);
    Settle();
    QCOMPARE(watcher.passesBefore, 0);
    const QRect place(window->view->pos(), window->view->size());
    QImage empty(place.size(), watcher.seen.format());
    empty.fill(window->view->palette().color(QPalette::Base));
    QCOMPARE(watcher.seen.copy(place), empty);
    QCOMPARE(passes->Take(), 1);
}

void TestBand::waitCursor_comesInALongPassAndGoes()
{
    const View view(Wide());
    SlowDevice device;
    QPainter painter(&device);
    view->drawIt(&painter);
    QVERIFY(!device.engine.wasShownAtFirst);
    QVERIFY(device.engine.wasShown);
    QCOMPARE(QGuiApplication::overrideCursor(), nullptr);
}

// Until the pass has ended, the screen shows nothing new.
void TestBand::statusText_beforeAPass_hasItsTimeAfterIt()
{
    const View view(Wide());
    view.window->load(QString::fromStdString(Wide()));
    const QTimer* timer = UseUpStatusTime(view);
    QVERIFY(timer != nullptr);
    Settle();
    QVERIFY(timer->remainingTime() > kUsedUp);
}

// It has been seen all the while.
void TestBand::statusText_withoutAPass_isNotProlongedByOne()
{
    const View view(Wide());
    view.window->statusText()->Show(QStringLiteral("a text"), kSuccessTime);
    Settle();
    const QTimer* timer = UseUpStatusTime(view);
    QVERIFY(timer != nullptr);
    passes->Take();
    view->updateIt();
    Settle();
    QCOMPARE(passes->Take(), 1);
    QVERIFY(timer->remainingTime() <= kUsedUp);
}

QTEST_MAIN(TestBand)
#include "test_band.moc"
