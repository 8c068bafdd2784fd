// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/fill/fulltiles.h"

#include "meta/fill/blend.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>
#include <utility>

namespace {

// What rounding an outline may add, in pixels, and what a rounded place may lack.
constexpr int kMargin = 1;
// A box of so many tiles, or fewer, is not worth being looked at row by row.
constexpr int kFewTiles = 2;

} // namespace

int FullTiles::Axis::From(double place) const
{
    return static_cast<int>(std::clamp(std::floor(place), 0.0, double{1} * count));
}

int FullTiles::Axis::To(double place) const
{
    return static_cast<int>(std::clamp(std::floor(place), -1.0, double{1} * count - 1));
}

FullTiles::FullTiles(const uchar* firstBits, qsizetype rowBytes, const QRect& changed,
                     const QTransform& toDevice)
    : bits(firstBits), bytesPerLine(rowBytes),
      pixels(changed), across{toDevice.m11() / kSide, (toDevice.dx() - pixels.left()) / kSide,
                              (pixels.width() + kSide - 1) / kSide},
      down{toDevice.m22() / kSide, (toDevice.dy() - pixels.top()) / kSide,
           (pixels.height() + kSide - 1) / kSide},
      tiles(static_cast<size_t>(across.count) * static_cast<size_t>(down.count)),
      columns(static_cast<size_t>(down.count))
{
}

void FullTiles::SetPen(QRgb rgb, double width)
{
    // The corner of a square end.
    const double reach = width / 2 * std::numbers::sqrt2;
    across.reach = reach * std::abs(across.scale) + double{kMargin} / kSide;
    down.reach = reach * std::abs(down.scale) + double{kMargin} / kSide;
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
    if (rest > 0) {
        if (--rest == 0)
            EndRest();
        return false;
    }
    if (++tried > kTrial)
        EndTrial();
    const bool isHidden = rest == 0 && Locate(x1, y1, x2, y2) && AreFull();
    hidden += int{isHidden};
    return isHidden;
}

// The tiles of each row that the line comes near enough to touch. Returns false if there are none.
bool FullTiles::Locate(int x1, int y1, int x2, int y2)
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
    const bool isSlanted = std::min(lastRow - firstRow, box.last - box.first) > kFewTiles;
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

FullTiles::Columns FullTiles::Near(double fromX, double toX) const
{
    return {across.From(std::min(fromX, toX) - across.reach),
            across.To(std::max(fromX, toX) + across.reach)};
}

bool FullTiles::AreFull() const
{
    const Tile full = {number, kFull};
    if (number == kNoColor)
        return false;
    for (int row = firstRow; row <= lastRow; ++row) {
        const Tile* const inRow = tiles.data() + ptrdiff_t{row} * across.count;
        const Columns here = columns.data()[row];
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
    for (int row = firstRow; row <= lastRow; ++row) {
        Tile* const inRow = tiles.data() + ptrdiff_t{row} * across.count;
        const Columns here = columns.data()[row];
        for (int column = here.first; column <= here.last; ++column)
            Touch(inRow[column], row, column);
    }
}

void FullTiles::Touch(Tile& tile, int row, int column) const
{
    if (tile.color != number)
        tile = {number, 0};
    if (tile.touches >= kLastLook)
        return; // it is full, or was not after so many
    ++tile.touches;
    if (tile.touches >= kFirstLook && std::has_single_bit(tile.touches) && number != kNoColor &&
        IsFull(row, column))
        tile.touches = kFull;
}

bool FullTiles::IsFull(int row, int column) const
{
    const int left = pixels.left() + column * kSide;
    const int top = pixels.top() + row * kSide;
    const int width = std::min(kSide, pixels.right() + 1 - left);
    const int bottom = std::min(top + kSide, pixels.bottom() + 1);
    for (int y = top; y < bottom; ++y) {
        const auto* const line = reinterpret_cast<const QRgb*>(bits + y * bytesPerLine) + left;
        if (!std::all_of(line, line + width, [this](QRgb pixel) { return pixel == color; }))
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

// The lines of the rest have left as it was only what is full of their color.
void FullTiles::EndRest()
{
    if (isOutdated)
        Forget();
    for (Tile& tile : tiles) {
        if (tile.color != number)
            tile = {};
    }
}
