// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// How much of each pixel an outline covers: exact areas, in whole numbers.
//
// An edge that passes through a pixel covers part of it, and changes by how much all the pixels to
// its right are covered: by the height that it passes in that row, which counts below 0 where it
// goes up. So a step of an edge through a pixel adds to two numbers, the pixel's and its right
// neighbor's, in such a way that the sum of the numbers of a row, from the left up to a pixel, is
// the area that is covered of that pixel. Right of the shape the edges that go down and those that
// go up cancel each other.
//
// Where an edge crosses from one row to the next, and in a row from one pixel to the next, is
// rounded down to a part of a pixel, counted from the point where the edge begins: an edge that is
// followed from its other end gives other areas. That is what QPainter does, and so are the rest of
// the rules.
#pragma once

#include "meta/fill/outline.h"

#include <QRect>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <limits>
#include <vector>

class Coverage
{
public:
    /// The area of a pixel as a power of 2: its height times twice its width, which spares halving
    /// what is covered beside a slanted edge. The sign of an area is the outline's direction.
    static constexpr int kAreaBits = 2 * kPixelBits + 1;
    /// Pixels that are handed over at a time, as many as the processor calculates with.
    static constexpr int kGroup = 4;
    using Areas = int __attribute__((vector_size(kGroup * sizeof(int))));

    /// @param clip  the pixels that may be handed over
    explicit Coverage(const QRect& clip);

    /// Finds what the outline covers, from the top to the bottom.
    /// @param sink  gets it: StartRow(x, y), then, with columns counted from that x,
    ///              Group(column, areas) for kGroup pixels and Run(column, count, area) for pixels
    ///              with the same area
    template <typename Sink> void Find(const Outline& outline, Sink sink);

private:
    using Point = Outline::Point;
    // Columns of a row whose numbers may be other than 0. Empty while end is 0.
    struct Range {
        int begin = std::numeric_limits<int>::max();
        int end = 0;

        void Add(int first, int last)
        {
            begin = first < begin ? first : begin;
            end = last < end ? end : last + 1;
        }
    };
    // The outline goes up along the one side of a row, and down along the other.
    struct Sides {
        Range up;
        Range down;
    };
    // The pixels that are worked on at a time: all those that an outline and the clip share, or as
    // many rows of them as there are numbers for. A copy of it is known not to change.
    struct Strip {
        int left, columns;
        int top, rows;
        int stride; // numbers in a row
        int* numbers;
        Sides* sides;
        bool cutsSides;  // the outline reaches over the clip's sides
        bool keepsSides; // where each row was touched: not worth while in a narrow strip
        bool isSmall;    // products of two of the outline's lengths fit into an int
    };

    static constexpr int kNumbers = 4096; // a third of the processor's nearest memory
    static constexpr int kMostRows = 128;
    static constexpr int kNarrow = 16;          // columns, found by measuring
    static constexpr int kBeyond = 3;           // an edge in the last column adds up to here
    static constexpr int kFullRow = 2 * kPixel; // area of a pixel for each part of its height
    static constexpr int kInPixel = kPixel - 1; // mask of the place within a pixel
    static constexpr int kSmall = 128;          // pixels
    static_assert(kNumbers / (kNarrow + kBeyond) >= kMostRows);

    void Place(const Outline& outline);
    void AddEdges(const Outline& outline);
    template <bool kDown, typename Int>
    static void AddEdge(const Strip& strip, Point from, Point to);
    template <bool kDown>
    static void AddPiece(const Strip& strip, int row, int x1, int y1, int x2, int y2);
    static void AddLongPiece(int* numbers, int x1, int x2, int dy);
    static void AddCutPiece(const Strip& strip, int* numbers, Range& side, int x1, int x2, int dy);
    static void AddStep(int* numbers, int width, int dy);

    static Areas SumUp(Areas numbers);
    [[nodiscard]] Range InGroups(Range range) const;
    template <typename Sink> void HandOver(int row, Sink& sink);
    template <typename Sink> void HandOverSides(int row, Sink& sink);
    template <typename Sink> int HandOverRange(int row, Range range, int area, Sink& sink);

    std::vector<int> numbers;           // all 0 but while an outline is worked on
    std::array<Sides, kMostRows> sides; // all empty but then
    int left, top, right, bottom;       // the clip
    Strip strip;
};

template <typename Sink> void Coverage::Find(const Outline& outline, Sink sink)
{
    Place(outline);
    const int end = std::min(outline.bottom, bottom) + 1;
    if (strip.columns <= 0)
        return;
    const int most = std::clamp(kNumbers / strip.stride, 1, kMostRows);
    for (; strip.top < end; strip.top += strip.rows) {
        strip.rows = std::min(end - strip.top, most);
        AddEdges(outline);
        for (int row = 0; row < strip.rows; ++row)
            HandOver(row, sink);
    }
}

template <typename Sink> void Coverage::HandOver(int row, Sink& sink)
{
    sink.StartRow(strip.left, strip.top + row);
    if (strip.keepsSides)
        HandOverSides(row, sink);
    else
        HandOverRange(row, {0, strip.columns}, 0, sink);
    memset(strip.numbers + ptrdiff_t{row} * strip.stride + strip.columns, 0, kBeyond * sizeof(int));
}

// Only beside the edges do the areas change from pixel to pixel.
template <typename Sink> void Coverage::HandOverSides(int row, Sink& sink)
{
    Sides& touched = strip.sides[row];
    const bool isUpFirst = touched.up.begin < touched.down.begin;
    Range first = InGroups(isUpFirst ? touched.up : touched.down);
    Range second = InGroups(isUpFirst ? touched.down : touched.up);
    touched = {};
    if (second.end > 0 && second.begin <= first.end) {
        first = InGroups({std::min(first.begin, second.begin), std::max(first.end, second.end)});
        second = {};
    }
    int area = HandOverRange(row, first, 0, sink);
    int column = first.end;
    if (second.end > 0) {
        sink.Run(column, second.begin - column, area);
        area = HandOverRange(row, second, area, sink);
        column = second.end;
    }
    // What lies right of the clip may be missing.
    if (area != 0)
        sink.Run(column, strip.columns - column, area);
}

// The pixels of a range, which begin to the right of that area. Returns the area of the last one.
template <typename Sink> int Coverage::HandOverRange(int row, Range range, int area, Sink& sink)
{
    int* const start = strip.numbers + ptrdiff_t{row} * strip.stride;
    int column = range.begin;
    for (; column < range.end - (kGroup - 1); column += kGroup) {
        Areas areas;
        memcpy(&areas, start + column, sizeof(areas));
        memset(start + column, 0, sizeof(areas));
        areas = SumUp(areas) + area;
        area = areas[kGroup - 1];
        sink.Group(column, areas);
    }
    for (; column < range.end; ++column) {
        area += start[column];
        start[column] = 0;
        sink.Run(column, 1, area);
    }
    return area;
}

// For each number of a group the sum of those up to it.
inline Coverage::Areas Coverage::SumUp(Areas numbers)
{
    const Areas none = {};
    numbers += __builtin_shufflevector(numbers, none, 4, 0, 1, 2);
    return numbers + __builtin_shufflevector(numbers, none, 4, 4, 0, 1);
}

// A range that is made of whole groups, where the strip has space for them. An empty one stays so.
inline Coverage::Range Coverage::InGroups(Range range) const
{
    if (range.end == 0)
        return {0, 0};
    const int count = (range.end - range.begin + kGroup - 1) & -kGroup;
    const int begin = std::max(0, std::min(range.begin, strip.columns - count));
    return {begin, std::min(begin + count, strip.columns)};
}
