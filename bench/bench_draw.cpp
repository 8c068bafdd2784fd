// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The cost of a repaint, each figure with one to compare it with:
//   GRAPH/decode          the pass without a painter
//   GRAPH/bytes           the same bytes through the smallest possible reader of addresses
//   GRAPH/draw/pen:N      the pass onto an image, lines N pixels wide
//   GRAPH/lines/pen:N     the same lines from memory, by Qt's fastest call
//   GRAPH/zoomed          a hundredth of the graph's area, onto the same image
//   GRAPH/strip           a strip of the image, ten pixels high
//   growth/decode/N, growth/draw/N    random walks of N vectors
//   even/..., separate/...    some of these for 800,000 short vectors that are spread evenly over
//   the
//                         area, joined and each with a move of its own
//
//   bench_draw [GOOGLE-BENCHMARK-OPTION...] [FOLDER]
//
// FOLDER (default: $PLOTVW_STREAMS) contains walk.plf and surface.plf.
#include "app/state/globals.h"
#include "bench/graphs.h"
#include "meta/palette.h"
#include "meta/plfbuffer.h"
#include "tests/kit/plf.h"

#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QImage>
#include <QLine>
#include <QPainter>

#include <cstdlib>
#include <functional>
#include <initializer_list>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr QSize kImage(1024, 780); // four units per pixel in both directions
constexpr int kUnitsPerPixel = 4;
constexpr QRect kStrip(0, 385, 1024, 10);
constexpr int kBatch = 1024;

// The graph with lines of this width in pixels.
std::string WithPen(const std::string& graph, int pixels)
{
    return WithWidth(graph,
                     2 * kUnitsPerPixel * pixels); // a pen is half as wide as the command says
}

void SetUp(QPainter& painter)
{
    painter.setRenderHint(QPainter::Antialiasing);
}

void Decode(benchmark::State& state, const std::string& graph)
{
    LoadBytes(graph);
    for ([[maybe_unused]] const auto& iteration : state)
        Draw(nullptr, 0);
    state.SetItemsProcessed(static_cast<int64_t>(gdwVectorCnt) * state.iterations());
}

// Reads all addresses of the bytes and returns the sum of their coordinates, so that the compiler
// cannot leave anything out. Ignores commands.
int64_t SumAddresses(const std::string& graph)
{
    int hiX = 0;
    int hiY = 0;
    int loY = 0;
    int extra = 0;
    int lows = 0;
    int64_t sum = 0;
    for (const char c : graph) {
        const int part = c & 31;
        switch (static_cast<unsigned char>(c) >> 5) {
        case 1:
            (lows != 0 ? hiX : hiY) = part;
            lows = 0;
            break;
        case 2:
            lows = 0;
            sum += ((hiX << 5) + part) * 4 + (extra & 3);
            sum += ((hiY << 5) + loY) * 4 + (extra >> 2);
            break;
        case 3:
            if (lows++ != 0)
                extra = loY;
            loY = part;
            break;
        default:
            break;
        }
    }
    return sum;
}

void Bytes(benchmark::State& state, const std::string& graph)
{
    for ([[maybe_unused]] const auto& iteration : state)
        benchmark::DoNotOptimize(SumAddresses(graph));
}

void DrawGraph(benchmark::State& state, const std::string& graph, int pen)
{
    LoadBytes(WithPen(graph, pen));
    QImage image(kImage, QImage::Format_RGB32);
    for ([[maybe_unused]] const auto& iteration : state) {
        QPainter painter(&image);
        SetUp(painter);
        Draw(&painter, 0);
    }
    state.SetItemsProcessed(static_cast<int64_t>(gdwVectorCnt) * state.iterations());
}

void DrawLines(benchmark::State& state, const std::string& graph, int pen)
{
    LoadBytes(WithPen(graph, pen));
    const std::vector<QLine> lines = CollectLines();
    QImage image(kImage, QImage::Format_RGB32);
    for ([[maybe_unused]] const auto& iteration : state) {
        QPainter painter(&image);
        SetUp(painter);
        painter.setWindow(0, 0, kPlfWidth, kPlfHeight);
        painter.eraseRect(0, 0, kPlfWidth, kPlfHeight);
        painter.setPen(QPen(Qt::black, pen * kUnitsPerPixel));
        for (size_t at = 0; at < lines.size(); at += kBatch) {
            const size_t count = std::min<size_t>(kBatch, lines.size() - at);
            painter.drawLines(lines.data() + at, static_cast<int>(count));
        }
    }
    state.SetItemsProcessed(static_cast<int64_t>(lines.size()) * state.iterations());
}

void DrawZoomed(benchmark::State& state, const std::string& graph)
{
    LoadBytes(graph);
    Rect zoom = {};
    const int left = kPlfWidth / 2;
    const int top = kPlfHeight / 2;
    SetRect(&zoom, left, top, left + kPlfWidth / 10, top + kPlfHeight / 10);
    QImage image(kImage, QImage::Format_RGB32);
    for ([[maybe_unused]] const auto& iteration : state) {
        QPainter painter(&image);
        SetUp(painter);
        Draw(&painter, 0, zoom);
    }
}

void DrawStrip(benchmark::State& state, const std::string& graph)
{
    LoadBytes(graph);
    QImage image(kImage, QImage::Format_RGB32);
    for ([[maybe_unused]] const auto& iteration : state) {
        QPainter painter(&image);
        SetUp(painter);
        painter.setClipRect(kStrip);
        Draw(&painter, 0);
    }
}

// Writes addresses as plotting programs do, without unchanged parts.
class AddressWriter
{
public:
    void Append(std::string& graph, int x, int y)
    {
        const Parts to = {y >> 7, (y & 3) * 4 + (x & 3), (y >> 2) & 31, x >> 7};
        const bool newExtra = to.extra != last.extra;
        const bool newHiX = to.hiX != last.hiX;
        if (to.hiY != last.hiY)
            graph += static_cast<char>(32 + to.hiY);
        if (newExtra)
            graph += static_cast<char>(96 + to.extra);
        if (newExtra || newHiX || to.loY != last.loY)
            graph += static_cast<char>(96 + to.loY);
        if (newHiX)
            graph += static_cast<char>(32 + to.hiX);
        graph += static_cast<char>(64 + ((x >> 2) & 31));
        last = to;
    }

private:
    struct Parts {
        int hiY = -1, extra = -1, loY = -1, hiX = -1;
    };
    Parts last;
};

std::string Begin()
{
    return std::string(gszPlfhdr, kPlfHeaderSize) + "0000\x1bGT0";
}

// A number from -limit to limit.
int Near(std::minstd_rand& random, int limit)
{
    return static_cast<int>(random() % static_cast<unsigned>(2 * limit + 1)) - limit;
}

// A walk over the whole area with steps of up to 30 units.
std::string RandomWalk(int64_t vectors)
{
    std::string graph = Begin() + '\x1d';
    AddressWriter writer;
    std::minstd_rand random(1);
    const auto step = [&random](int at, int limit) {
        const int next = at + Near(random, 30);
        return next < 0 || next >= limit ? at : next;
    };
    int x = kPlfWidth / 2;
    int y = kPlfHeight / 2;
    for (int64_t i = 0; i <= vectors; ++i) {
        writer.Append(graph, x, y);
        x = step(x, kPlfWidth);
        y = step(y, kPlfHeight);
    }
    return graph + '\x07';
}

// Distance of the points of the two graphs below, units.
constexpr int kSpacing = 4;

// Vectors evenly over the whole area, row by row: joined, or each with a move of its own.
std::string EvenVectors(bool joined)
{
    std::string graph = Begin();
    AddressWriter writer;
    std::minstd_rand random(1);
    for (int y = kSpacing; y < kPlfHeight - kSpacing; y += kSpacing) {
        graph += '\x1d';
        for (int x = kSpacing; x < kPlfWidth - kSpacing; x += kSpacing) {
            if (!joined) {
                graph += '\x1d';
                writer.Append(graph, x, y);
            }
            writer.Append(graph, x + Near(random, kSpacing), y + Near(random, kSpacing));
        }
    }
    return graph + '\x07';
}

void Grow(benchmark::State& state, bool draws)
{
    LoadBytes(RandomWalk(state.range(0)));
    QImage image(kImage, QImage::Format_RGB32);
    for ([[maybe_unused]] const auto& iteration : state) {
        QPainter painter(&image);
        SetUp(painter);
        Draw(draws ? &painter : nullptr, 0);
    }
    if (gdwVectorCnt != static_cast<unsigned long>(state.range(0)))
        state.SkipWithError("another number of vectors was drawn");
    state.SetItemsProcessed(state.range(0) * state.iterations());
}

using Measure = std::function<void(benchmark::State&)>;

void Add(const std::string& name, const Measure& measure)
{
    benchmark::RegisterBenchmark(name.c_str(), measure)->Unit(benchmark::kMillisecond);
}

void RegisterPen(const std::string& name, const std::string& graph, int pen)
{
    const std::string suffix = "/pen:" + std::to_string(pen);
    Add(name + "/draw" + suffix, [&graph, pen](auto& state) { DrawGraph(state, graph, pen); });
    Add(name + "/lines" + suffix, [&graph, pen](auto& state) { DrawLines(state, graph, pen); });
}

void Register(const std::string& name, const std::string& graph, std::initializer_list<int> pens)
{
    Add(name + "/decode", [&graph](auto& state) { Decode(state, graph); });
    Add(name + "/bytes", [&graph](auto& state) { Bytes(state, graph); });
    for (const int pen : pens)
        RegisterPen(name, graph, pen);
    Add(name + "/zoomed", [&graph](auto& state) { DrawZoomed(state, graph); });
    Add(name + "/strip", [&graph](auto& state) { DrawStrip(state, graph); });
}

void RegisterGrowth()
{
    constexpr int64_t kSmallest = 10'000;
    constexpr int64_t kLargest = 10'000'000;
    for (const bool draws : {false, true}) {
        benchmark::RegisterBenchmark(draws ? "growth/draw" : "growth/decode",
                                     [draws](benchmark::State& state) { Grow(state, draws); })
            ->RangeMultiplier(10)
            ->Range(kSmallest, kLargest)
            ->Unit(benchmark::kMillisecond);
    }
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    const QGuiApplication application(argc, argv);
    const std::string folder =
        GraphFolder(argc, argv, 2, "bench_draw [FOLDER]    made by samples/make-large.sh");
    initGraphics();
    gbBkClrWhite = true;
    const std::string walk = ReadBytes(folder + "/walk.plf");
    const std::string surface = ReadBytes(folder + "/surface.plf");
    const std::string joined = EvenVectors(true);
    const std::string separate = EvenVectors(false);
    Register("walk", walk, {0, 2, 8});
    Register("surface", surface, {0, 2, 8});
    Register("even", joined, {0});
    Register("separate", separate, {0});
    RegisterGrowth();
    benchmark::RunSpecifiedBenchmarks();
    FreePlfBuffer();
    return 0;
}
