// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What wide lines cost where the scales differ, as in the default window:
//   LINES/pen:N/painter      one call of QPainter for each line
//   LINES/pen:N/filler       the same lines through LineFiller
//   GRAPH/SIZE/width:N/painter    the lines of a graph, decoded before, by one call each
//   GRAPH/SIZE/width:N/one, two   the whole pass, with so many threads
//   GRAPH/SIZE/width:N/zoom:Z/P   with one, a part of the graph at five places
//   GRAPH/SIZE/width:N/bands:B    all that B threads would do, by one
//   GRAPH/decode                  the pass without a painter
// LINES are random ones: length:L, of L units; diagonals, across the whole; zoomed, of 60 units
// where a tenth of the graph across and down is shown. A pen is in units and half as wide as the
// width in a file.
//
//   bench_fill [GOOGLE-BENCHMARK-OPTION...] [FOLDER]
//
// GRAPH is walk, surface or long, of 100,000 lines of 600 units.
//
// FOLDER, or $PLOTVW_STREAMS when it is left out, holds walk.plf, surface.plf and long.plf.
#include "app/state/globals.h"
#include "bench/graphs.h"
#include "meta/bands.h"
#include "meta/fill/linefiller.h"
#include "meta/palette.h"
#include "meta/pass.h"
#include "meta/plfbuffer.h"

#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QImage>
#include <QLine>
#include <QPainter>
#include <QTransform>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr QSize kWindow(640, 446);
constexpr QSize kLargeWindow(1280, 892);
constexpr QSize kGraphShape(640, 487);
constexpr QSize kLargeGraphShape(1024, 780);
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
        image.fill(Qt::white);
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
        image.fill(Qt::white); // what is black already would be left out
        LineFiller filler(image, image.rect(), picture.Mapping());
        filler.SetPen(QPen(Qt::black, picture.pen));
        for (const QLine& line : picture.lines)
            filler.Line(line.x1(), line.y1(), line.x2(), line.y2());
    }
    state.SetItemsProcessed(static_cast<int64_t>(picture.lines.size()) * state.iterations());
}

// How a graph is looked at.
struct Look {
    QSize size;
    int width;
    Rect zoom = {};
};

PlfPass PassOf(const Look& look)
{
    PlfPass pass;
    pass.graph = LoadedPlf();
    pass.zoom = look.zoom;
    return pass;
}

void PaintGraphPlainly(benchmark::State& state, const std::string& graph, const Look& look)
{
    LoadBytes(WithWidth(graph, look.width));
    PaintLines(state, {CollectLines(), look.width / 2, look.size});
}

void DrawGraph(benchmark::State& state, const std::string& graph, const Look& look, int threads)
{
    LoadBytes(WithWidth(graph, look.width));
    QImage image = NewImage(look.size);
    PlfPass pass = PassOf(look);
    pass.threads = threads;
    for ([[maybe_unused]] const auto& iteration : state) {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        PaintGraph(pass, painter);
    }
}

// All that so many threads would do for a picture, done by one.
void DrawBands(benchmark::State& state, const std::string& graph, const Look& look, int bands)
{
    LoadBytes(WithWidth(graph, look.width));
    QImage image = NewImage(look.size);
    PlfPass pass = PassOf(look);
    for ([[maybe_unused]] const auto& iteration : state) {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        pass.threads = bands;
        const RowCuts cuts = FindCuts(pass, painter);
        pass.threads = 1;
        PaintInBands(pass, painter, cuts);
    }
}

void DecodeGraph(benchmark::State& state, const std::string& graph)
{
    LoadBytes(graph);
    for ([[maybe_unused]] const auto& iteration : state)
        CountVectors(PassOf({}));
}

using Measure = std::function<void(benchmark::State&)>;

void Add(const std::string& name, const Measure& measure)
{
    benchmark::RegisterBenchmark(name.c_str(), measure)
        ->Unit(benchmark::kMillisecond)
        ->MeasureProcessCPUTime()
        ->UseRealTime();
}

void RegisterPicture(std::string name, const Picture& picture)
{
    name += "/pen:" + std::to_string(picture.pen);
    Add(name + "/painter", [picture](auto& state) { PaintLines(state, picture); });
    Add(name + "/filler", [picture](auto& state) { FillLines(state, picture); });
}

// A part of the graph whose middle is there, so many times enlarged.
Rect ZoomAt(double x, double y, double times)
{
    const auto low = [times](double at, int all) {
        return static_cast<int>(at * all - all / times / 2);
    };
    Rect zoom = {};
    const int left = low(x, kPlfWidth);
    const int top = low(y, kPlfHeight);
    SetRect(&zoom, left, top, left + std::max(static_cast<int>(kPlfWidth / times), 1),
            top + std::max(static_cast<int>(kPlfHeight / times), 1));
    return zoom;
}

void RegisterZooms(const std::string& name, const std::string& graph, int width)
{
    constexpr struct {
        double x, y;
    } kPlaces[] = {{0.5, 0.5}, {0.25, 0.25}, {0.75, 0.25}, {0.25, 0.75}, {0.75, 0.75}};
    for (const int times : {10, 100, kPlfWidth}) {
        int number = 0;
        for (const auto& place : kPlaces) {
            const Look look = {kWindow, width, ZoomAt(place.x, place.y, times)};
            Add(name + "/zoom:" + std::to_string(times) + "/" + std::to_string(number++),
                [&graph, look](auto& state) { DrawGraph(state, graph, look, 1); });
        }
    }
}

void RegisterBands(const std::string& name, const std::string& graph, const Look& look)
{
    for (const int bands : {1, 2, 4, 8})
        Add(name + "/bands:" + std::to_string(bands),
            [&graph, look, bands](auto& state) { DrawBands(state, graph, look, bands); });
}

void RegisterGraph(const std::string& graphName, const std::string& graph)
{
    for (const QSize size : {kWindow, kLargeWindow, kLargeGraphShape}) {
        for (const int width : {0, 4, 16, 80}) {
            const Look look = {size, width};
            const std::string name = graphName + "/" + std::to_string(size.width()) + "x" +
                                     std::to_string(size.height()) +
                                     "/width:" + std::to_string(width);
            Add(name + "/painter",
                [&graph, look](auto& state) { PaintGraphPlainly(state, graph, look); });
            Add(name + "/one", [&graph, look](auto& state) { DrawGraph(state, graph, look, 1); });
            Add(name + "/two", [&graph, look](auto& state) { DrawGraph(state, graph, look, 2); });
            if (size == kWindow) {
                RegisterZooms(name, graph, width);
                RegisterBands(name, graph, look);
            }
        }
    }
    Add(graphName + "/decode", [&graph](auto& state) { DecodeGraph(state, graph); });
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
    const std::string folder =
        GraphFolder(argc, argv, 2, "bench_fill [FOLDER]    as ../bench.sh makes it");
    initGraphics();
    gbBkClrWhite = true;
    const std::string walk = ReadBytes(folder + "/walk.plf");
    const std::string surface = ReadBytes(folder + "/surface.plf");
    RegisterLines();
    RegisterGraph("walk", walk);
    RegisterGraph("surface", surface);
    const std::string longLines = ReadBytes(folder + "/long.plf");
    RegisterGraph("long", longLines);
    benchmark::RunSpecifiedBenchmarks();
    FreePlfBuffer();
    return 0;
}
