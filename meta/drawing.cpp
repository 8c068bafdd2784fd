// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/drawing.h"

#include "meta/address.h"
#include "meta/drawingsink.h"
#include "meta/observer.h"
#include "meta/passrun.h"
#include "support/numbers.h"

#include <algorithm>

void DrawingSink::Text(std::string_view shown, int x, int y)
{
    if (shown.empty())
        return; // also one that was too long
    drawing.texts.push_back({std::string(shown), x, WrapSubtract(kPlfHeight, y),
                             drawing.vectors.size(), next.color, text.szFontName, text.iFontSize,
                             text.iTextColor, (text.dwTextAttr & kBold) != 0,
                             (text.dwTextAttr & kItalic) != 0});
}

namespace {

constexpr char kGs = 29;

// About how many vectors there are: addresses end with low X, and those after GS draw none. Where
// it is too few the block grows, and what is too much is never touched.
size_t GuessVectors(const PlfBytes& graph)
{
    const auto ends = std::count_if(
        graph.data, graph.End(), [](char byte) { return byte >= kFirstLowX && byte <= kLastLowX; });
    return static_cast<size_t>(
        std::max<ptrdiff_t>(ends - std::count(graph.data, graph.End(), kGs), 0));
}

} // namespace

PlfDrawing ReadDrawing(const PlfBytes& graph, PlfObserver& observer)
{
    PlfPass pass;
    pass.graph = graph;
    pass.whiteBackground = false;
    PlfDrawing drawing;
    drawing.vectors.reserve(GuessVectors(graph));
    PassRun run(pass);
    DrawingSink sink(drawing, run.values.text);
    const PlfResult result = run.Skim(sink, observer);
    drawing.background = result.background;
    drawing.textsRefused = result.textsRefused;
    return drawing;
}

PlfDrawing ReadDrawing(const PlfBytes& graph)
{
    NoObserver nobody;
    return ReadDrawing(graph, nobody);
}
