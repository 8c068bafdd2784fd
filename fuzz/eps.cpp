// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Input: a graph file. It is written as EPS, with options selected by its last byte, and compared
// with the output of the plain interpreter of the tests.
#include "fuzz/target.h"
#include "meta/bytesink.h"
#include "meta/pass.h"
#include "tests/reference/reference.h"

#include <iterator>
#include <string>

namespace {

// Maximum bytes of EPS per byte of the graph: an address may be one byte and become "4095 3120
// moveto 4095 3120 lineto ", a width needs slightly less.
constexpr size_t kEpsBytes = 40;
// The lines of every file; numbers may be long, because the scale may be any number.
constexpr size_t kEpsHead = 4096;

struct Way {
    reference::View view;
    reference::EpsOptions options;
};

const Way kWays[] = {
    {{}, {}},
    {{false, 0.1}, {1.0, 5, false, true, 0}},
    {{false, 2.5, 1000, 800, 1800, 1500}, {0.25, 1, true, true, 0}},
    {{true, 1e300, 2000, 1500, 2001, 1500}, {1e300, 5, false, true, 0}},
    {{true, -3.0, 3000, 2500, 100, 200}, {-0.5, 0, false, true, 15}},
};

PlfPass PassOf(const PlfBytes& graph, const Way& way)
{
    PlfPass pass;
    pass.graph = graph;
    SetRect(&pass.zoom, static_cast<int>(way.view.zoomLeft), static_cast<int>(way.view.zoomTop),
            static_cast<int>(way.view.zoomRight), static_cast<int>(way.view.zoomBottom));
    pass.whiteBackground = way.view.whiteBackground;
    pass.widthScale = way.view.widthScale;
    const reference::EpsOptions& options = way.options;
    pass.eps = {options.scale, options.minLineWidth, options.linesToBlack, options.fillBackground,
                options.backgroundIndex};
    return pass;
}

void Compare(const PlfBytes& graph)
{
    const std::string bytes(graph.data, graph.size);
    const Way& way = kWays[static_cast<uint8_t>(bytes.back()) % std::size(kWays)];
    StringSink eps;
    WriteEps(PassOf(graph, way), eps);
    fuzz::Require(eps.Text().size() <= kEpsHead + kEpsBytes * bytes.size(),
                  "the EPS is as long as the graph explains");
    fuzz::Require(eps.Text() == reference::DrawEps(bytes, way.view, way.options),
                  "the EPS is that of the plain interpreter");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    fuzz::PrepareQt();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const char* problem = nullptr;
    const PlfGraph graph =
        PlfGraph::FromBytes({reinterpret_cast<const char*>(data), size}, &problem);
    fuzz::Require(graph.IsLoaded() == (problem == nullptr), "a refusal is explained");
    if (graph.IsLoaded())
        Compare(graph.Bytes());
    return 0;
}
