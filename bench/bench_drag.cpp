// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The cost of mouse events over a graph, from the event to the painted window, compared with a
// repaint of the whole view:
//   GRAPH/repaint      the whole view
//   GRAPH/drag         a step of ten pixels each way; the counter "longest" is its slowest step, in
//                      milliseconds
//   GRAPH/press        a press and the first move, in the window as it opens: processor time, the
//                      largest of three places. GRAPH is a sample's name, or walk:W and surface:W
//                      with lines of width W
//
//   GRAPH/begin, GRAPH/zoom, GRAPH/Escape, GRAPH/resize
//                      what a user waits for at each step of a zoom and of what follows, in the
//                      default window: the longest of three places
//
//   bench_drag [GOOGLE-BENCHMARK-OPTION...] [FOLDER [SAMPLES]]
//
// FOLDER (default: $PLOTVW_STREAMS) contains walk.plf and surface.plf; SAMPLES contains the other
// graphs to press on. Runs in the X server of $DISPLAY if QT_QPA_PLATFORM is xcb.
#include "app/appwindow.h"
#include "app/drawview.h"
#include "app/state/globals.h"
#include "bench/graphs.h"
#include "support/text.h"
#include "tests/kit/files.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>

#include <algorithm>
#include <cstdlib>
#include <string>

#include <sys/resource.h>

namespace {

constexpr int kWidths[] = {0, 4, 16};
constexpr int kSteppedWidth = 16;
constexpr QPoint kPlaces[] = {{60, 60}, {300, 200}, {580, 400}};

constexpr QPoint kStart(40, 30);
constexpr QPoint kEnd(990, 740);
constexpr QPoint kStep(10, 7);

void Send(QWidget* view, QEvent::Type type, Qt::MouseButtons held, QPoint at)
{
    const auto button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, at, view->mapToGlobal(at), button, held, Qt::NoModifier);
    QCoreApplication::sendEvent(view, &event);
    QCoreApplication::processEvents();
}

void Settle()
{
    for (int i = 0; i < 3; ++i)
        QCoreApplication::processEvents();
}

// A view with four units per pixel in both directions.
constexpr QSize kEvenScale(1024, 780);
// The view of a window that opens for the first time: the scales differ. A window opens as the last
// one was left.
constexpr QSize kDefaultView(640, 446);

// A window with a graph. With an empty size, the view has its initial size.
class Viewer
{
public:
    explicit Viewer(const std::string& graph, QSize size = kEvenScale)
    {
        if (!CopyText(gszPlffileOrig, graph.c_str()))
            Fail(graph, "is too long a name.");
        window = gpMainwnd = new AppWindow;
        gpDraw = new DrawView(window);
        window->setCentralWidget(gpDraw);
        window->show();
        while (!window->windowHandle()->isExposed())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        Settle();
        window->resize(window->size() + size - gpDraw->size());
        Settle();
    }
    ~Viewer()
    {
        window->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    Viewer(const Viewer&) = delete;
    Viewer& operator=(const Viewer&) = delete;

private:
    AppWindow* window;
};

void Repaint(benchmark::State& state, const std::string& graph)
{
    const Viewer viewer(graph);
    for ([[maybe_unused]] const auto& iteration : state)
        gpDraw->repaint();
}

void Drag(benchmark::State& state, const std::string& graph)
{
    const Viewer viewer(graph);
    QPoint at = kEnd;
    double longest = 0;
    for ([[maybe_unused]] const auto& iteration : state) {
        if (at.x() >= kEnd.x() || at.y() >= kEnd.y()) {
            state.PauseTiming();
            Send(gpDraw, QEvent::MouseButtonRelease, Qt::NoButton, at);
            gpDraw->ClearZoom();
            gpDraw->repaint();
            at = kStart;
            Send(gpDraw, QEvent::MouseButtonPress, Qt::LeftButton, at);
            state.ResumeTiming();
        }
        QElapsedTimer timer;
        timer.start();
        at += kStep;
        Send(gpDraw, QEvent::MouseMove, Qt::LeftButton, at);
        longest = std::max(longest, static_cast<double>(timer.nsecsElapsed()) / 1e6);
    }
    state.counters["longest"] = longest;
}

// Processor time of this process, seconds.
double ProcessorTime()
{
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double PressAndMove(QPoint at)
{
    const double begin = ProcessorTime();
    Send(gpDraw, QEvent::MouseButtonPress, Qt::LeftButton, at);
    Send(gpDraw, QEvent::MouseMove, Qt::LeftButton, at + kStep);
    const double end = ProcessorTime();
    Send(gpDraw, QEvent::MouseButtonRelease, Qt::NoButton, at + kStep);
    gpDraw->ClearZoom();
    gpDraw->repaint();
    return end - begin;
}

void Press(benchmark::State& state, const std::string& graph)
{
    const Viewer viewer(graph, kDefaultView);
    for ([[maybe_unused]] const auto& iteration : state) {
        double longest = 0;
        for (const QPoint& at : kPlaces)
            longest = std::max(longest, PressAndMove(at));
        state.SetIterationTime(longest);
    }
}

// Tells when a widget has been painted.
class PaintWatch : public QObject
{
public:
    explicit PaintWatch(QWidget* painted) { painted->installEventFilter(this); }
    bool eventFilter(QObject* /*object*/, QEvent* event) override
    {
        isPainted = isPainted || event->type() == QEvent::Paint;
        return false;
    }
    void Await()
    {
        while (!isPainted)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

private:
    bool isPainted = false;
};

// Seconds until a widget shows what an action changed.
template <typename Action> double Wait(QWidget* painted, Action action)
{
    QElapsedTimer timer;
    timer.start();
    PaintWatch watch(painted);
    action();
    watch.Await();
    return static_cast<double>(timer.nsecsElapsed()) / 1e9;
}

// The longest waits of some zooms.
struct Waits {
    double press = 0, zoom = 0, escape = 0, resize = 0;

    void ZoomAt(QPoint at);
    void Resize();
};

void Waits::ZoomAt(QPoint at)
{
    static constexpr QPoint kSelected(-40,
                                      -30); // up and to the left, where there is room at each place
    const auto longest = [](double& before, double now) { before = std::max(before, now); };
    longest(press, Wait(gpDraw, [at] {
                Send(gpDraw, QEvent::MouseButtonPress, Qt::LeftButton, at + kSelected);
            }));
    Send(gpDraw, QEvent::MouseMove, Qt::LeftButton, at);
    longest(zoom,
            Wait(gpDraw, [at] { Send(gpDraw, QEvent::MouseButtonRelease, Qt::NoButton, at); }));
    longest(escape, Wait(gpDraw, [] { QTest::keyClick(gpMainwnd, Qt::Key_Escape); }));
}

void Waits::Resize()
{
    for (const int more : {20, -20}) {
        const QSize size = gpMainwnd->size() + QSize(more, more);
        resize = std::max(resize, Wait(gpDraw, [&size] { gpMainwnd->resize(size); }));
        Settle();
    }
}

void Step(benchmark::State& state, const std::string& graph, double Waits::*step)
{
    const Viewer viewer(graph, kDefaultView);
    for ([[maybe_unused]] const auto& iteration : state) {
        Waits waits;
        for (const QPoint& at : kPlaces)
            waits.ZoomAt(at);
        waits.Resize();
        state.SetIterationTime(waits.*step);
    }
}

void RegisterSteps(const std::string& name, const std::string& graph)
{
    constexpr struct {
        const char* name;
        double Waits::*wait;
    } kSteps[] = {{"/begin", &Waits::press},
                  {"/zoom", &Waits::zoom},
                  {"/Escape", &Waits::escape},
                  {"/resize", &Waits::resize}};
    for (const auto& step : kSteps) {
        benchmark::RegisterBenchmark(
            (name + step.name).c_str(),
            [graph, wait = step.wait](benchmark::State& state) { Step(state, graph, wait); })
            ->UseManualTime()
            ->Iterations(1)
            ->Unit(benchmark::kMillisecond);
    }
}

void RegisterPress(const std::string& name, const std::string& graph)
{
    constexpr int kTimes = 3; // the graph is drawn between two presses
    benchmark::RegisterBenchmark((name + "/press").c_str(),
                                 [graph](benchmark::State& state) { Press(state, graph); })
        ->UseManualTime()
        ->Iterations(kTimes)
        ->Unit(benchmark::kMillisecond);
}

// A copy of a graph whose lines have another width.
std::string CopyWithWidth(const QTemporaryDir& folder, const std::string& graph,
                          const std::string& name, int width)
{
    std::string copy = folder.filePath(QString::fromStdString(name)).toStdString();
    if (!WriteFile(copy, WithWidth(ReadBytes(graph), width)))
        Fail(copy, "cannot be written.");
    return copy;
}

void RegisterPresses(const QTemporaryDir& copies, const std::string& folder, const char* samples)
{
    for (const std::string name : {"walk", "surface"}) {
        for (const int width : kWidths) {
            const std::string full = name + ':' + std::to_string(width);
            const std::string copy =
                CopyWithWidth(copies, folder + '/' + name + ".plf", full, width);
            RegisterPress(full, copy);
            if (width == kSteppedWidth)
                RegisterSteps(full, copy);
        }
    }
    if (samples == nullptr)
        return;
    const QDir all(QString::fromLocal8Bit(samples), QStringLiteral("*.plf"));
    for (const QFileInfo& graph : all.entryInfoList())
        RegisterPress(graph.baseName().toStdString(), graph.filePath().toStdString());
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    const QTemporaryDir home; // the user's own settings are not used
    setenv("HOME", qPrintable(home.path()), 1);
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    qputenv("QT_LOGGING_RULES", "*.debug=false");
    const QApplication application(argc, argv);
    const std::string folder = GraphFolder(
        argc, argv, 3, "bench_drag [FOLDER [SAMPLES]]    FOLDER is made by samples/make-large.sh");
    QApplication::setQuitOnLastWindowClosed(false);
    for (const std::string name : {"walk", "surface"}) {
        const std::string graph = folder + '/' + name + ".plf";
        benchmark::RegisterBenchmark((name + "/repaint").c_str(), [graph](benchmark::State& state) {
            Repaint(state, graph);
        })->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark((name + "/drag").c_str(), [graph](benchmark::State& state) {
            Drag(state, graph);
        })->Unit(benchmark::kMillisecond);
    }
    const QTemporaryDir copies;
    RegisterPresses(copies, folder, argc > 2 ? argv[2] : nullptr);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
