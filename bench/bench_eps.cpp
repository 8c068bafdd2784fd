// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// How fast a graph is written as EPS, in vectors per second, and the limits of that:
//   decode   the same pass without any output
//   export   the pass that writes the file
//   fprintf  the same file from a list of its vectors, one fprintf for each
//   write    the same file from memory, with one write
//
//   bench_eps [GOOGLE-BENCHMARK-OPTION...] [FOLDER]
//
// FOLDER (default: $PLOTVW_STREAMS) contains walk.plf and surface.plf; files are written to
// $TMPDIR.
#include "app/state/globals.h"
#include "bench/graphs.h"
#include "meta/palette.h"
#include "meta/plfbuffer.h"
#include "support/files.h"
#include "support/text.h"

#include <benchmark/benchmark.h>

#include <QFile>
#include <QTemporaryDir>

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

namespace {

// What one fprintf writes: the end of a vector and, where a path begins, its start.
struct PathItem {
    bool starts = false;
    int x1 = 0, y1 = 0, x2 = 0, y2 = 0; // file units, y upward
};

struct Graph {
    std::string plf;             // the graph's file
    std::string eps;             // the bytes of its EPS: these lines,
    std::string head;            //   the ones before the first vector,
    std::vector<PathItem> items; //   the vectors, kItemsPerLine on each line,
                                 //   and kTail
};

constexpr int kItemsPerLine = 4;
constexpr char kTail[] = "\nstroke\n";

std::string Output()
{
    QFile file(QString::fromLocal8Bit(gszCvtFilename));
    return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
}

std::vector<PathItem> ReadItems(std::istream& text)
{
    std::vector<PathItem> items;
    PathItem item;
    std::string word;
    while (text >> item.x2 >> item.y2 >> word) {
        item.starts = word == "moveto";
        if (item.starts) {
            item.x1 = item.x2;
            item.y1 = item.y2;
            text >> item.x2 >> item.y2 >> word;
        }
        items.push_back(item);
    }
    return items;
}

Graph Prepare(const std::string& plf)
{
    Graph graph{plf, {}, {}, {}};
    Load(graph.plf);
    Draw(nullptr, kConvertEps);
    graph.eps = Output();
    const size_t firstLine = graph.eps.rfind('\n', graph.eps.find(" moveto ")) + 1;
    graph.head = graph.eps.substr(0, firstLine);
    std::istringstream vectors(graph.eps.substr(firstLine));
    graph.items = ReadItems(vectors);
    return graph;
}

void Print(FILE* file, const PathItem& item)
{
    if (item.starts)
        fprintf(file, "%d %d moveto %d %d lineto ", item.x1, item.y1, item.x2, item.y2);
    else
        fprintf(file, "%d %d lineto ", item.x2, item.y2);
}

void PrintGraph(const Graph& graph)
{
    const FilePtr file(fopen(gszCvtFilename, "w"));
    fprintf(file.get(), "%s", graph.head.c_str());
    int onLine = 0;
    for (const PathItem& item : graph.items) {
        Print(file.get(), item);
        if (++onLine == kItemsPerLine) {
            fputc('\n', file.get());
            onLine = 0;
        }
    }
    fprintf(file.get(), "%s", kTail);
}

void WriteGraph(const Graph& graph)
{
    const int file = open(gszCvtFilename, O_WRONLY | O_CREAT | O_TRUNC, 0666);
    if (write(file, graph.eps.data(), graph.eps.size()) != static_cast<ssize_t>(graph.eps.size()))
        Fail(gszCvtFilename, "cannot be written.");
    close(file);
}

// Only exports that write the whole file are measured.
void CheckOutput(const Graph& graph)
{
    if (Output() != graph.eps)
        Fail(graph.plf, "another file than the export's was written.");
}

void SetCounters(benchmark::State& state, const Graph& graph, bool writes)
{
    const auto total = [&state](size_t each) {
        return static_cast<int64_t>(each) * state.iterations();
    };
    state.SetItemsProcessed(total(graph.items.size()));
    if (writes)
        state.SetBytesProcessed(total(graph.eps.size()));
}

void Decode(benchmark::State& state, Graph& graph)
{
    Load(graph.plf);
    for ([[maybe_unused]] const auto& iteration : state)
        Draw(nullptr, 0);
    SetCounters(state, graph, false);
}

void Export(benchmark::State& state, Graph& graph)
{
    Load(graph.plf);
    for ([[maybe_unused]] const auto& iteration : state)
        Draw(nullptr, kConvertEps);
    CheckOutput(graph);
    SetCounters(state, graph, true);
}

void Fprintf(benchmark::State& state, Graph& graph)
{
    for ([[maybe_unused]] const auto& iteration : state)
        PrintGraph(graph);
    CheckOutput(graph);
    SetCounters(state, graph, true);
}

void Write(benchmark::State& state, Graph& graph)
{
    for ([[maybe_unused]] const auto& iteration : state)
        WriteGraph(graph);
    CheckOutput(graph);
    SetCounters(state, graph, true);
}

void Register(const std::string& name, Graph& graph)
{
    const auto add = [&](const char* what, void (*function)(benchmark::State&, Graph&)) {
        const auto run = [function, &graph](benchmark::State& state) { function(state, graph); };
        benchmark::RegisterBenchmark((name + '/' + what).c_str(), run)
            ->Unit(benchmark::kMillisecond)
            ->UseRealTime();
    };
    add("decode", Decode);
    add("export", Export);
    add("fprintf", Fprintf);
    add("write", Write);
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    const std::string folder =
        GraphFolder(argc, argv, 2, "bench_eps [FOLDER]    made by samples/make-large.sh");
    const QTemporaryDir temporary;
    const QByteArray output = QFile::encodeName(temporary.filePath(QStringLiteral("graph.eps")));
    if (!temporary.isValid() || !CopyText(gszCvtFilename, output.constData()))
        Fail(output.toStdString(), "cannot be written.");
    initGraphics();
    Graph walk = Prepare(folder + "/walk.plf");
    Graph surface = Prepare(folder + "/surface.plf");
    Register("walk", walk);
    Register("surface", surface);
    benchmark::RunSpecifiedBenchmarks();
    FreePlfBuffer();
    return 0;
}
