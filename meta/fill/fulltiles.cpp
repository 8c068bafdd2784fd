// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/fill/fulltiles.h"

#include "meta/fill/blend.h"

#include <algorithm>

namespace {

// What rounding an outline may add, in pixels.
constexpr double kRounded = 1;

} // namespace

FullTiles::FullTiles(const uchar* firstBits, qsizetype rowBytes, const QRect& pixels,
                     const QTransform& toDevice)
    : bits(firstBits), bytesPerLine(rowBytes), grid(pixels, toDevice, kRounded), tiles(grid.Count())
{
}

void FullTiles::SetPen(QRgb rgb, double width)
{
    grid.SetWidth(width);
    isOutdated = isOutdated || rgb != color;
    color = rgb;
    number = Number(rgb);
}

// A color that does not keep itself fills nothing for good.
uint8_t FullTiles::Number(QRgb rgb)
{
    const auto isIt = [rgb](const Known& known) { return known.color == rgb; };
    auto known = std::find_if(colors.begin(), colors.end(), isIt);
    if (known == colors.end()) {
        if (colors.size() == kMostColors) {
            Forget();
            colors.clear();
        }
        known = colors.insert(colors.end(), {rgb, KeepsItself(rgb)});
    }
    return known->keepsItself ? static_cast<uint8_t>(known - colors.begin() + 1) : kNoColor;
}

void FullTiles::Forget()
{
    std::fill(tiles.begin(), tiles.end(), Tile());
}

bool FullTiles::Hides(int x1, int y1, int x2, int y2)
{
    return Looks() && HidesLocated(grid.Locate(x1, y1, x2, y2));
}

bool FullTiles::Hides(const QRect& touched)
{
    return Looks() && HidesLocated(grid.Locate(touched));
}

// Counts a line that comes, and tells whether it is looked at.
bool FullTiles::Looks()
{
    if (rest > 0) {
        if (--rest == 0)
            EndRest();
        return false;
    }
    if (++tried > kTrial)
        EndTrial();
    return rest == 0;
}

// What touches no tile is not seen either.
bool FullTiles::HidesLocated(bool isLocated)
{
    const bool isHidden = !isLocated || AreFull();
    hidden += int{isHidden};
    return isHidden;
}

bool FullTiles::AreFull() const
{
    const Tile full = {number, kFull};
    if (number == kNoColor)
        return false;
    for (int row = grid.FirstRow(); row <= grid.LastRow(); ++row) {
        const Tile* const inRow = tiles.data() + grid.StartOf(row);
        const TileGrid::Columns here = grid.In(row);
        if (!std::all_of(inRow + here.first, inRow + here.last + 1,
                         [full](const Tile& tile) { return tile == full; }))
            return false;
    }
    return true;
}

void FullTiles::Draw()
{
    if (rest > 0)
        return;
    for (int row = grid.FirstRow(); row <= grid.LastRow(); ++row) {
        Tile* const inRow = tiles.data() + grid.StartOf(row);
        const TileGrid::Columns here = grid.In(row);
        for (int column = here.first; column <= here.last; ++column)
            Touch(inRow[column], row, column);
    }
}

void FullTiles::Touch(Tile& tile, int row, int column) const
{
    if (tile.color != number)
        tile = {number, 0};
    if (tile.touches == kFull || ++tile.touches < kTouches)
        return;
    const bool isFull = number != kNoColor && IsFull(grid.PixelsOf(row, column));
    tile.touches = isFull ? kFull : 0;
}

bool FullTiles::IsFull(const QRect& tile) const
{
    for (int y = tile.top(); y <= tile.bottom(); ++y) {
        const auto* const line =
            reinterpret_cast<const QRgb*>(bits + y * bytesPerLine) + tile.left();
        if (!std::all_of(line, line + tile.width(), [this](QRgb pixel) { return pixel == color; }))
            return false;
    }
    return true;
}

void FullTiles::EndTrial()
{
    if (hidden < kTrial / kWorthWhile) {
        rest = nextRest;
        nextRest = std::min(2 * nextRest, kLongestRest);
        isOutdated = number == kNoColor;
    } else {
        nextRest = kShortestRest;
    }
    tried = 0;
    hidden = 0;
}

// The lines of the rest have left as it was only what is full of their color. They may have filled
// any other tile: it is looked at when it is touched again.
void FullTiles::EndRest()
{
    if (isOutdated)
        Forget();
    for (Tile& tile : tiles) {
        if (tile != Tile{number, kFull})
            tile = {number, kTouches - 1};
    }
}
