// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/fill/coverage.h"

#include "meta/fill/steps.h"

#include <cstdint>
#include <cstdlib>

Coverage::Coverage(const QRect& clip)
    : numbers(static_cast<size_t>(std::max(kNumbers, clip.width() + kGroup + kBeyond))),
      left(clip.left()), top(clip.top()), right(clip.right()), bottom(clip.bottom()), strip{}
{
}

void Coverage::Place(const Outline& outline)
{
    const int first = std::max(outline.left, left);
    const int last = std::min(outline.right, right);
    // Whole groups, where there is space for them.
    const int inGroups = (last - first + kGroup) & -kGroup;
    strip.columns = first > last ? 0 : std::min(inGroups, right - left + 1);
    strip.left = std::min(first, right + 1 - strip.columns);
    strip.top = std::max(outline.top, top);
    strip.stride = strip.columns + kBeyond;
    strip.numbers = numbers.data();
    strip.sides = sides.data();
    strip.cutsSides = outline.left < left || outline.right > right;
    strip.keepsSides = strip.columns > kNarrow;
    strip.isSmall = outline.right - outline.left < kSmall && outline.bottom - outline.top < kSmall;
}

void Coverage::AddEdges(const Outline& outline)
{
    // The rest of a row may come before an edge.
    static_assert(int64_t{kSmall} * kPixel * (kSmall + 1) * kPixel <=
                  std::numeric_limits<int>::max());
    const Strip now = strip;
    Point from = outline.points.back();
    for (const Point& to : outline.points) {
        if (from.y < to.y && now.isSmall)
            AddEdge<true, int>(now, from, to);
        else if (from.y < to.y)
            AddEdge<true, int64_t>(now, from, to);
        else if (from.y > to.y && now.isSmall)
            AddEdge<false, int>(now, from, to);
        else if (from.y > to.y)
            AddEdge<false, int64_t>(now, from, to);
        from = to;
    }
}

// Cuts an edge into pieces, each of which lies in one row.
template <bool kDown, typename Int> void Coverage::AddEdge(const Strip& strip, Point from, Point to)
{
    constexpr int kDirection = kDown ? 1 : -1;
    constexpr int kEntry = kDown ? 0 : kPixel; // y, in a row that the edge comes into
    constexpr int kExit = kPixel - kEntry;
    // An edge that begins or ends between two rows has nothing in the row that it does not pass.
    const int firstRow = (kDown ? from.y : from.y - 1) >> kPixelBits;
    const int lastRow = (kDown ? to.y - 1 : to.y) >> kPixelBits;
    const int last = lastRow - strip.top;
    int row = firstRow - strip.top;
    if (std::max(row, last) < 0 || std::min(row, last) >= strip.rows)
        return;
    const int startX = from.x - strip.left * kPixel;
    int x = startX;
    int y = from.y - firstRow * kPixel;
    if (row != last) {
        const Int dx = to.x - from.x;
        const Int height = std::abs(to.y - from.y);
        Int passed = std::abs(kExit - y);
        const int before = kDown ? -row : row - strip.rows + 1;
        if (before > 0) {
            x += static_cast<int>(
                DivideDown<Int>((passed + (before - 1) * Int{kPixel}) * dx, height));
            y = kEntry;
            row += kDirection * before;
            passed += before * Int{kPixel};
        }
        const int end = kDown ? std::min(last, strip.rows) : std::max(last, -1);
        Steps<Int> crossings(passed * dx, kPixel * dx, height);
        for (; row != end; row += kDirection, crossings.Next()) {
            const int next = startX + crossings.Value();
            AddPiece<kDown>(strip, row, x, y, next, kExit);
            x = next;
            y = kEntry;
        }
        if (last < 0 || last >= strip.rows)
            return;
    }
    AddPiece<kDown>(strip, row, x, y, to.x - strip.left * kPixel, to.y - lastRow * kPixel);
}

// x is counted from the strip's left, y from the row's top.
template <bool kDown>
inline void Coverage::AddPiece(const Strip& strip, int row, int x1, int y1, int x2, int y2)
{
    const int dy = y2 - y1;
    const bool isRight = x1 < x2;
    const int low = isRight ? x1 : x2;
    const int high = isRight ? x2 : x1;
    const int column = low >> kPixelBits;
    const int borders = (high >> kPixelBits) - column;
    int* const numbers = strip.numbers + ptrdiff_t{row} * strip.stride;
    Range& side = kDown ? strip.sides[row].down : strip.sides[row].up;
    if (strip.cutsSides && (column < 0 || column + borders >= strip.columns)) {
        AddCutPiece(strip, numbers, side, x1, x2, dy);
        return;
    }
    if (strip.keepsSides)
        side.Add(column, column + borders + 1);
    if (borders > 1) {
        AddLongPiece(numbers, x1, x2, dy);
        return;
    }
    // Whether there is one border or none cannot be predicted, so both go the same way.
    const int lowIn = low & kInPixel;
    const int highIn = high & kInPixel;
    const int toBorder = isRight ? kPixel - lowIn : highIn;
    const int firstDy = DivideDown(toBorder * dy, high - low + 1 - borders);
    const int highDy = (isRight ? dy - firstDy : firstDy) * borders;
    AddStep(numbers + column, lowIn + (borders != 0 ? kPixel : highIn), dy - highDy);
    AddStep(numbers + column + 1, highIn, highDy);
}

// A step through one pixel: width is the sum of the places where it comes in and goes out.
inline void Coverage::AddStep(int* numbers, int width, int dy)
{
    numbers[0] += (kFullRow - width) * dy;
    numbers[1] += width * dy;
}

// A piece that crosses two borders between pixels or more.
void Coverage::AddLongPiece(int* numbers, int x1, int x2, int dy)
{
    const int direction = x1 < x2 ? 1 : -1;
    const int exit = x1 < x2 ? kPixel : 0;
    const int entry = kPixel - exit;
    const int in = x1 & kInPixel;
    const int* const last = numbers + (x2 >> kPixelBits);
    int* at = numbers + (x1 >> kPixelBits);
    Steps<int> crossings(std::abs(exit - in) * dy, kPixel * dy, std::abs(x2 - x1));
    int y = crossings.Value();
    AddStep(at, in + exit, y);
    for (at += direction; at != last; at += direction) {
        crossings.Next();
        AddStep(at, kPixel, crossings.Value() - y);
        y = crossings.Value();
    }
    AddStep(at, entry + (x2 & kInPixel), dy - y);
}

// A piece that lies at least in part beyond the strip's sides. What is left of them counts for all
// of the strip, and what is right of them does not.
void Coverage::AddCutPiece(const Strip& strip, int* numbers, Range& side, int x1, int x2, int dy)
{
    const int first = x1 >> kPixelBits;
    const int last = x2 >> kPixelBits;
    const int rightmost = strip.columns - 1;
    if (std::min(first, last) > rightmost)
        return;
    const int firstSeen = std::clamp(first, 0, rightmost);
    const int lastSeen = std::clamp(last, 0, rightmost);
    if (strip.keepsSides)
        side.Add(std::min(firstSeen, lastSeen), std::max(firstSeen, lastSeen) + 1);
    if (std::max(first, last) < 0) {
        numbers[0] += kFullRow * dy;
        return;
    }
    const bool isRight = x1 < x2;
    const int exit = isRight ? kPixel : 0;
    const int64_t dx = std::max(std::abs(x2 - x1), 1);
    const auto passed = int64_t{std::abs(firstSeen * kPixel + exit - x1)};
    Steps<int64_t> crossings(passed * dy, int64_t{kPixel} * dy, dx);
    int in = x1 & kInPixel;
    int y = 0;
    if (firstSeen != first) {
        in = kPixel - exit;
        y = static_cast<int>(DivideDown<int64_t>((passed - kPixel) * dy, dx));
        numbers[0] += isRight ? kFullRow * y : 0;
    }
    for (int column = firstSeen; column != last; column += isRight ? 1 : -1, crossings.Next()) {
        AddStep(numbers + column, in + exit, crossings.Value() - y);
        in = kPixel - exit;
        y = crossings.Value();
        if (column == lastSeen) {
            numbers[0] += isRight ? 0 : kFullRow * (dy - y);
            return;
        }
    }
    AddStep(numbers + last, in + (x2 & kInPixel), dy - y);
}
