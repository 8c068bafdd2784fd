// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/fill/coveredtiles.h"

#include "meta/fill/wideline.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr int kSide = TileGrid::kSide;
// Pixels by which QPainter's thinnest lines may reach beyond their width, of 0.
constexpr double kReach = 3;
// Half of what has to lie within a line, for a tile to be covered whole: the tile and a pixel
// around it, which is more than edges are rounded by.
constexpr double kHalf = kSide / 2.0 + 1;
// Narrower lines, in pixels, would rarely cover one, whichever way they run.
constexpr double kNarrow = 3 * kHalf;
// Beyond, in pixels, QPainter draws lines, and cuts them.
constexpr double kFar = 1 << 19;

// A range of numbers. Empty if the first is above the last.
struct Range {
    double first, last;
};

// The x for which the distance, at * x + offset, is at most so large either way.
Range Within(double at, double offset, double most)
{
    constexpr double kAll = std::numeric_limits<double>::infinity();
    if (most < 0)
        return {1, 0};
    if (at == 0.0)
        return std::abs(offset) <= most ? Range{-kAll, kAll} : Range{1, 0};
    const double a = (-most - offset) / at;
    const double b = (most - offset) / at;
    return {std::min(a, b), std::max(a, b)};
}

} // namespace

CoveredTiles::CoveredTiles(const QRect& changed, const QTransform& toDevice)
    : grid(changed, toDevice, kReach), pixels(changed), mapping(toDevice),
      around(
          toDevice.inverted().mapRect(QRectF(changed).adjusted(-kReach, -kReach, kReach, kReach))),
      covered(grid.Count())
{
}

bool CoveredTiles::CanCover(double width, const QTransform& toDevice)
{
    return width * std::min(std::abs(toDevice.m11()), std::abs(toDevice.m22())) >= kNarrow;
}

void CoveredTiles::SetWidth(double width)
{
    grid.SetWidth(width);
    halfWidth = width / 2;
    canCover = CanCover(width, mapping);
}

bool CoveredTiles::Take(int x1, int y1, int x2, int y2)
{
    if (isAllCovered || !grid.Locate(x1, y1, x2, y2) || IsCovered())
        return true;
    if (!canCover || (x1 == x2 && y1 == y2))
        return false;
    if (WideLine(x1, y1, x2, y2, 2 * halfWidth).Contains(around))
        isAllCovered = true;
    else if (!IsFar(x1, y1) && !IsFar(x2, y2))
        Cover(x1, y1, x2, y2);
    return false;
}

bool CoveredTiles::IsCovered() const
{
    for (int row = grid.FirstRow(); row <= grid.LastRow(); ++row) {
        const char* const inRow = covered.data() + grid.StartOf(row);
        const TileGrid::Columns here = grid.In(row);
        if (!std::all_of(inRow + here.first, inRow + here.last + 1,
                         [](char isCovered) { return isCovered != 0; }))
            return false;
    }
    return true;
}

// Whether what is drawn around a point may reach farther than the filler does.
bool CoveredTiles::IsFar(int x, int y) const
{
    const auto isFar = [this](double scale, int units, double shift) {
        return std::abs(units * scale + shift) + 2 * halfWidth * std::abs(scale) > kFar;
    };
    return isFar(mapping.m11(), x, mapping.dx()) || isFar(mapping.m22(), y, mapping.dy());
}

// A line is a rectangle in drawing units: so far to both sides of its middle, and so far onward.
void CoveredTiles::Cover(int x1, int y1, int x2, int y2)
{
    const double scaleX = mapping.m11();
    const double scaleY = mapping.m22();
    const double dx = static_cast<double>(x2) - x1;
    const double dy = static_cast<double>(y2) - y1;
    const double length = std::sqrt(dx * dx + dy * dy);
    const double onX = dx / length;
    const double onY = dy / length;
    // What is left for the middle of a tile.
    const double halfX = kHalf / std::abs(scaleX);
    const double halfY = kHalf / std::abs(scaleY);
    const double aside = halfWidth - std::abs(onY) * halfX - std::abs(onX) * halfY;
    const double onward = length / 2 + halfWidth - std::abs(onX) * halfX - std::abs(onY) * halfY;
    const double middleX = x1 + dx / 2;
    const double middleY = y1 + dy / 2;
    for (int row = grid.FirstRow(); row <= grid.LastRow(); ++row) {
        const double tileY = pixels.top() + (row + 0.5) * kSide;
        const double y = (tileY - mapping.dy()) / scaleY - middleY;
        const Range one = Within(-onY, onX * y, aside);
        const Range other = Within(onX, onY * y, onward);
        const double from = (middleX + std::max(one.first, other.first)) * scaleX + mapping.dx();
        const double to = (middleX + std::min(one.last, other.last)) * scaleX + mapping.dx();
        if (std::max(one.first, other.first) <= std::min(one.last, other.last))
            CoverRow(row, std::min(from, to), std::max(from, to));
    }
}

// The tiles whose middles are there, in pixels.
void CoveredTiles::CoverRow(int row, double fromX, double toX)
{
    const TileGrid::Columns here = grid.In(row);
    const auto column = [this](double x) { return (x - pixels.left()) / kSide - 0.5; };
    const double first = std::max<double>(here.first, std::ceil(column(fromX)));
    const double last = std::min<double>(here.last, std::floor(column(toX)));
    if (first > last)
        return;
    char* const inRow = covered.data() + grid.StartOf(row);
    std::fill(inRow + static_cast<int>(first), inRow + static_cast<int>(last) + 1, char{1});
}
