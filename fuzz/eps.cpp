// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Input: a graph file. It is written as EPS, the way that its last byte chooses, and compared with
// what the plain interpreter of the tests writes.
#include "app/globals.h"
#include "fuzz/target.h"
#include "meta/palette.h"
#include "meta/plfmeta.h"
#include "support/text.h"
#include "tests/reference/reference.h"

#include <iterator>
#include <string>

namespace {

// Bytes of EPS for a byte of the graph, at most: an address may be one byte and become
// "4095 3120 moveto 4095 3120 lineto ", a width takes a little less.
constexpr size_t kEpsBytes = 40;
// The lines that every file has; numbers may be long, as the scale is any number.
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

void SetOptions(const Way& way)
{
    gbBkClrWhite = way.view.whiteBackground;
    gdEpsCvtScale = way.options.scale;
    giEpsMinLineWidth = way.options.minLineWidth;
    gfEpsCvt2Blk = way.options.linesToBlack ? 1 : 0;
    gfEpsUseBkClr = way.options.fillBackground ? 1 : 0;
    gdwBackClrEPS = way.options.backgroundIndex;
}

QByteArray Eps(const Way& way)
{
    static fuzz::MemoryFile output;
    SetOptions(way);
    fuzz::Require(CopyText(gszCvtFilename, output.Path()), "a short path fits");
    Rect zoom = {};
    SetRect(&zoom, static_cast<int>(way.view.zoomLeft), static_cast<int>(way.view.zoomTop),
            static_cast<int>(way.view.zoomRight), static_cast<int>(way.view.zoomBottom));
    Rect whole = fuzz::WholeArea();
    char name[] = "fuzz.plf";
    CPlfMeta meta(name, nullptr, nullptr, way.view.widthScale, kConvertEps);
    meta.DrawPlf(&zoom, &whole);
    return output.Contents();
}

void Compare(const std::string& graph)
{
    const Way& way = kWays[static_cast<uint8_t>(graph.back()) % std::size(kWays)];
    const QByteArray eps = Eps(way);
    fuzz::Require(static_cast<size_t>(eps.size()) <= kEpsHead + kEpsBytes * graph.size(),
                  "the EPS is as long as the graph explains");
    fuzz::Require(eps.toStdString() == reference::DrawEps(graph, way.view, way.options),
                  "the EPS is that of the plain interpreter");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    fuzz::PrepareToolkit();
    initGraphics();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (fuzz::LoadGraph(data, size))
        Compare(std::string(data, data + size));
    fuzz::ResetGlobals();
    giEpsMinLineWidth = 5;
    gdwBackClrEPS = 0;
    return 0;
}
