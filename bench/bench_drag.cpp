// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What a step of the mouse costs while a rubber band is dragged over a graph, from the event to the
// painted window, and beside it a repaint of the whole view:
//   GRAPH/repaint      the whole view
//   GRAPH/drag         a step of ten pixels each way; the counter "longest" is its slowest step, in
//                      milliseconds
//
//   bench_drag [GOOGLE-BENCHMARK-OPTION...] [FOLDER]
//
// FOLDER, or $PLOTVW_STREAMS when it is left out, holds walk.plf and surface.plf.
#include "app/appwindow.h"
#include "app/drawview.h"
#include "app/globals.h"
#include "bench/graphs.h"
#include "support/text.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdlib>
#include <string>

namespace {

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

// A window whose view has four units to a pixel, both ways.
class Viewer
{
public:
    explicit Viewer(const std::string& graph)
    {
        if (!CopyText(gszPlffileOrig, graph.c_str()))
            Fail(graph, "is too long a name.");
        window = gpMainwnd = new AppWindow;
        gpDraw = new DrawView(window);
        window->setCentralWidget(gpDraw);
        window->show();
        QCoreApplication::processEvents();
        window->resize(window->size() + QSize(1024, 780) - gpDraw->size());
        QCoreApplication::processEvents();
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

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    const QTemporaryDir home; // the user's own settings stay out of it, and untouched
    setenv("HOME", qPrintable(home.path()), 1);
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    qputenv("QT_LOGGING_RULES", "*.debug=false");
    const QApplication application(argc, argv);
    const char* folder = argc > 1 ? argv[1] : getenv("PLOTVW_STREAMS");
    if (folder == nullptr || argc > 2)
        Fail("usage", "bench_drag [FOLDER]    made by samples/make-large.sh");
    QApplication::setQuitOnLastWindowClosed(false);
    for (const std::string name : {"walk", "surface"}) {
        const std::string graph = std::string(folder) + '/' + name + ".plf";
        benchmark::RegisterBenchmark((name + "/repaint").c_str(), [graph](benchmark::State& state) {
            Repaint(state, graph);
        })->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark((name + "/drag").c_str(), [graph](benchmark::State& state) {
            Drag(state, graph);
        })->Unit(benchmark::kMillisecond);
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
