// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/lookahead.h"

#include "meta/fill/coveredtiles.h"
#include "meta/paintersink.h"

#include <algorithm>

namespace {

using Event = Tape::Event;

// The pen width before a block, and from each of its events on.
std::vector<int> PenWidths(const Tape::Block& block, int penWidth)
{
    std::vector<int> widths = {penWidth};
    widths.reserve(block.events.size() + 1);
    for (const Event& event : block.events) {
        if (event.kind == Event::Kind::kPen)
            penWidth = PenWidthOf(event.first, penWidth);
        widths.push_back(penWidth);
    }
    return widths;
}

// Looks at a block from its end.
Tape::Hidden HiddenIn(const Tape::Block& block, int penWidth, double minPenWidth,
                      CoveredTiles& tiles)
{
    const std::vector<int> widths = PenWidths(block, penWidth);
    Tape::Hidden hidden(block.lines.size());
    size_t end = hidden.size();
    for (size_t i = widths.size(); i-- > 0;) {
        tiles.SetWidth(std::max<double>(widths[i], minPenWidth));
        const size_t begin = i == 0 ? 0 : block.events[i - 1].at;
        for (; end > begin; --end) {
            const Tape::Line& line = block.lines[end - 1];
            hidden[end - 1] = tiles.Take(line.x1, line.y1, line.x2, line.y2);
        }
    }
    return hidden;
}

} // namespace

int WidthAfter(const Tape::Block& block, int penWidth)
{
    for (const Event& event : block.events) {
        if (event.kind == Event::Kind::kPen)
            penWidth = PenWidthOf(event.first, penWidth);
    }
    return penWidth;
}

bool MayHide(const Tape::Block& block, int penWidth, const QTransform& toDevice, double minPenWidth)
{
    const std::vector<int> widths = PenWidths(block, penWidth);
    return std::any_of(widths.begin(), widths.end(), [&](int width) {
        return CoveredTiles::CanCover(std::max<double>(width, minPenWidth), toDevice);
    });
}

std::vector<Tape::Hidden> FindHidden(const Tape& tape, size_t first, int penWidth,
                                     const QRect& pixels, const QTransform& toDevice,
                                     double minPenWidth)
{
    const size_t count = tape.AwaitEnd() - first;
    if (tape.HowItEnded() != Tape::End::kWhole)
        return {};
    std::vector<int> widths = {penWidth}; // before each block
    for (size_t i = 0; i + 1 < count; ++i)
        widths.push_back(WidthAfter(*tape.Await(first + i), widths.back()));
    CoveredTiles tiles(pixels, toDevice);
    std::vector<Tape::Hidden> hidden(count);
    for (size_t i = count; i-- > 0;)
        hidden[i] = HiddenIn(*tape.Await(first + i), widths[i], minPenWidth, tiles);
    return hidden;
}
