// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/fill/tilegrid.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace {

// A line that runs over so many tiles across or down, or fewer, is hardly ever beside tiles of the
// box that it and its width take, so that it is not worth being looked at row by row.
constexpr double kFewTiles = 1;

int TilesIn(int pixels)
{
    return (pixels + TileGrid::kSide - 1) / TileGrid::kSide;
}

} // namespace

// What is 0 or more is rounded down by leaving its fraction out, which takes far less time than
// std::floor.
inline int TileGrid::Axis::From(double place) const
{
    return static_cast<int>(std::clamp(place, 0.0, 1.0 * count));
}

// Where there is no tile, -1.
inline int TileGrid::Axis::To(double place) const
{
    return static_cast<int>(std::clamp(place + 1, 0.0, 1.0 * count)) - 1;
}

inline TileGrid::Columns TileGrid::Near(double fromX, double toX) const
{
    return {across.From(std::min(fromX, toX) - across.reach),
            across.To(std::max(fromX, toX) + across.reach)};
}

TileGrid::TileGrid(const QRect& part, const QTransform& toDevice, double beyond)
    : pixels(part),
      margin(beyond / kSide), across{toDevice.m11() / kSide, (toDevice.dx() - part.left()) / kSide,
                                     TilesIn(part.width()), 0},
      down{toDevice.m22() / kSide, (toDevice.dy() - part.top()) / kSide, TilesIn(part.height()), 0},
      columns(static_cast<size_t>(down.count))
{
}

void TileGrid::SetWidth(double width)
{
    // The corner of a square end.
    const double reach = width / 2 * std::numbers::sqrt2;
    across.reach = reach * std::abs(across.scale) + margin;
    down.reach = reach * std::abs(down.scale) + margin;
}

// The tiles of each row that the line comes near enough to touch. Returns false if there are none.
bool TileGrid::Locate(int x1, int y1, int x2, int y2)
{
    Place from = {across.At(x1), down.At(y1)};
    Place to = {across.At(x2), down.At(y2)};
    if (from.y > to.y)
        std::swap(from, to);
    firstRow = down.From(from.y - down.reach);
    lastRow = down.To(to.y + down.reach);
    const Columns box = Near(from.x, to.x);
    if (firstRow > lastRow || box.first > box.last)
        return false;
    const bool isSlanted = std::min(to.y - from.y, std::abs(to.x - from.x)) > kFewTiles;
    const double slope = (to.x - from.x) / (to.y - from.y);
    Columns* const inRows = columns.data();
    for (int row = firstRow; row <= lastRow; ++row) {
        if (isSlanted && std::isfinite(slope)) {
            const double top = std::clamp(row - down.reach, from.y, to.y) - from.y;
            const double bottom = std::clamp(row + 1 + down.reach, from.y, to.y) - from.y;
            inRows[row] = Near(from.x + top * slope, from.x + bottom * slope);
        } else {
            inRows[row] = box;
        }
    }
    return true;
}

bool TileGrid::Locate(const QRect& touched)
{
    const QRect here = (touched & pixels).translated(-pixels.topLeft());
    firstRow = here.top() / kSide;
    lastRow = here.isEmpty() ? firstRow - 1 : here.bottom() / kSide;
    for (int row = firstRow; row <= lastRow; ++row)
        columns[static_cast<size_t>(row)] = {here.left() / kSide, here.right() / kSide};
    return !here.isEmpty();
}

QRect TileGrid::PixelsOf(int row, int column) const
{
    const QRect tile(pixels.left() + column * kSide, pixels.top() + row * kSide, kSide, kSide);
    return tile & pixels;
}
