// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What wide lines cost where the scales differ, as in the default window:
//   LINES/pen:N/painter      one call of QPainter for each line
//   LINES/pen:N/filler       the same lines through LineFiller
//   GRAPH/width:N/painter    the lines of a graph, decoded before, by one call each
//   GRAPH/width:N/draw       the whole pass
// LINES are random ones: length:L, of L units; diagonals, across the whole; zoomed, of 60 units
// where a tenth of the graph across and down is shown. A pen is in units and half as wide as the
// width in a file.
//
//   bench_fill [GOOGLE-BENCHMARK-OPTION...] [FOLDER]
//
// FOLDER, or $PLOTVW_STREAMS when it is left out, holds walk.plf and surface.plf.
#include "app/state/globals.h"
#include "bench/graphs.h"
#include "meta/fill/linefiller.h"
#include "meta/palette.h"
#include "meta/plfbuffer.h"

#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QImage>
#include <QLine>
#include <QPainter>
#include <QTransform>

#include <cmath>
#include <cstdlib>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr QSize kWindow(640, 446);
constexpr QSize kGraphShape(640, 487);
constexpr int kLines = 2000;

using Lines = std::vector<QLine>;

// A picture of lines.
struct Picture {
    Lines lines;
    int pen;
    QSize size = kWindow;
    double zoom = 1;

    [[nodiscard]] QTransform Mapping() const
    {
        return QTransform::fromScale(zoom * size.width() / kPlfWidth,
                                     zoom * size.height() / kPlfHeight);
    }
};

// Lines of that length in all directions, whose starts are in the picture.
Lines RandomLines(int length, double zoom)
{
    constexpr double kTurn = 6.283185307179586;
    std::minstd_rand random(1);
    const auto fraction = [&random] { return static_cast<double>(random()) / 0x1p31; };
    Lines lines;
    for (int i = 0; i < kLines; ++i) {
        const double turn = kTurn * fraction();
        const QPoint start(static_cast<int>(fraction() * kPlfWidth / zoom),
                           static_cast<int>(fraction() * kPlfHeight / zoom));
        const QPoint way(static_cast<int>(std::lround(length * std::cos(turn))),
                         static_cast<int>(std::lround(length * std::sin(turn))));
        lines.emplace_back(start, start + way);
    }
    return lines;
}

Lines Diagonals()
{
    constexpr int kCount = 200;
    Lines lines;
    for (int i = 0; i < kCount; ++i)
        lines.emplace_back(i, 0, kPlfWidth - 1, kPlfHeight - 1);
    return lines;
}

QImage NewImage(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    return image;
}

void PaintLines(benchmark::State& state, const Picture& picture)
{
    QImage image = NewImage(picture.size);
    for ([[maybe_unused]] const auto& iteration : state) {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setTransform(picture.Mapping());
        painter.setPen(QPen(Qt::black, picture.pen));
        for (const QLine& line : picture.lines)
            painter.drawLine(line);
    }
    state.SetItemsProcessed(static_cast<int64_t>(picture.lines.size()) * state.iterations());
}

void FillLines(benchmark::State& state, const Picture& picture)
{
    QImage image = NewImage(picture.size);
    for ([[maybe_unused]] const auto& iteration : state) {
        LineFiller filler(image, image.rect(), picture.Mapping());
        filler.SetPen(QPen(Qt::black, picture.pen));
        for (const QLine& line : picture.lines)
            filler.Line(line.x1(), line.y1(), line.x2(), line.y2());
    }
    state.SetItemsProcessed(static_cast<int64_t>(picture.lines.size()) * state.iterations());
}

void PaintGraph(benchmark::State& state, const std::string& graph, int width)
{
    LoadBytes(WithWidth(graph, width));
    PaintLines(state, {CollectLines(), width / 2});
}

void DrawGraph(benchmark::State& state, const std::string& graph, int width)
{
    LoadBytes(WithWidth(graph, width));
    QImage image = NewImage(kWindow);
    for ([[maybe_unused]] const auto& iteration : state) {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        Draw(&painter, 0);
    }
    state.SetItemsProcessed(static_cast<int64_t>(gdwVectorCnt) * state.iterations());
}

using Measure = std::function<void(benchmark::State&)>;

void Add(const std::string& name, const Measure& measure)
{
    benchmark::RegisterBenchmark(name.c_str(), measure)->Unit(benchmark::kMillisecond);
}

void RegisterPicture(std::string name, const Picture& picture)
{
    name += "/pen:" + std::to_string(picture.pen);
    Add(name + "/painter", [picture](auto& state) { PaintLines(state, picture); });
    Add(name + "/filler", [picture](auto& state) { FillLines(state, picture); });
}

void RegisterGraph(const std::string& name, const std::string& graph)
{
    for (const int width : {4, 16, 80}) {
        const std::string start = name + "/width:" + std::to_string(width);
        Add(start + "/painter", [&graph, width](auto& state) { PaintGraph(state, graph, width); });
        Add(start + "/draw", [&graph, width](auto& state) { DrawGraph(state, graph, width); });
    }
}

void RegisterLines()
{
    for (const int length : {5, 60, 300, 600}) {
        for (const int pen : {1, 2, 4, 8, 16, 40, 80})
            RegisterPicture("length:" + std::to_string(length), {RandomLines(length, 1), pen});
    }
    RegisterPicture("diagonals", {Diagonals(), 56, kGraphShape});
    constexpr double kZoom = 10;
    for (const int pen : {13, 65, 260})
        RegisterPicture("zoomed", {RandomLines(60, kZoom), pen, kWindow, kZoom});
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    const QGuiApplication application(argc, argv);
    const char* folder = argc > 1 ? argv[1] : getenv("PLOTVW_STREAMS");
    if (folder == nullptr || argc > 2)
        Fail("usage", "bench_fill [FOLDER]    made by samples/make-large.sh");
    initGraphics();
    gbBkClrWhite = true;
    const std::string walk = ReadBytes(std::string(folder) + "/walk.plf");
    const std::string surface = ReadBytes(std::string(folder) + "/surface.plf");
    RegisterLines();
    RegisterGraph("walk", walk);
    RegisterGraph("surface", surface);
    benchmark::RunSpecifiedBenchmarks();
    FreePlfBuffer();
    return 0;
}
