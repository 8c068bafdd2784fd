// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/lookahead.h"

#include "meta/fill/coveredtiles.h"
#include "meta/paintersink.h"
#include "meta/tape.h"

#include <algorithm>
#include <cstddef>

namespace {

// The pen width from each event on.
std::vector<double> PenWidths(const Tape& tape, int penWidth, double minPenWidth)
{
    std::vector<double> widths;
    widths.reserve(tape.Events().size());
    for (const Tape::Event& event : tape.Events()) {
        if (event.kind == Tape::Event::Kind::kPen)
            penWidth = PenWidthOf(event.first, penWidth);
        widths.push_back(std::max<double>(penWidth, minPenWidth));
    }
    return widths;
}

} // namespace

std::vector<bool> FindHidden(const Tape& tape, const QRect& pixels, const QTransform& toDevice,
                             int penWidth, double minPenWidth)
{
    const std::vector<double> widths = PenWidths(tape, penWidth, minPenWidth);
    if (std::none_of(widths.begin(), widths.end(),
                     [&](double width) { return CoveredTiles::CanCover(width, toDevice); }))
        return {};
    CoveredTiles tiles(pixels, toDevice);
    std::vector<bool> hidden(tape.Lines().size());
    size_t end = hidden.size();
    for (size_t i = widths.size(); i-- > 0;) {
        tiles.SetWidth(widths[i]);
        for (; end > tape.Events()[i].at; --end) {
            const Tape::Line& line = tape.Lines()[end - 1];
            hidden[end - 1] = tiles.Take(line.x1, line.y1, line.x2, line.y2);
        }
    }
    return hidden;
}
