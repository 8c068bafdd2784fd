// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/diff/raster.h"

#include "tools/diff/place.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace diff {

namespace {

// Texts are as in a picture with a pixel for each unit, where they are smallest.
constexpr int kUnitsInPixel = 1;
constexpr int kWidthsInUnit = 2; // a pen is half as wide as the file says

// What a dot covers: a square as wide as its pen.
VectorRecord SquareOf(const VectorRecord& dot, double thickness)
{
    const int less = static_cast<int>((thickness - 1) / 2);
    const int more = static_cast<int>(thickness / 2);
    VectorRecord square = dot;
    square.x1 = Unit(dot.x1 - less);
    square.y1 = Unit(dot.y1 - less);
    square.x2 = Unit(dot.x1 + more);
    square.y2 = Unit(dot.y1 + more);
    return square;
}

} // namespace

double Stroke::Thickness() const
{
    return std::max(1.0, std::min<double>(place.width, kUnits) / kWidthsInUnit);
}

double Stroke::Squares() const
{
    const int across = std::abs(place.x2 - place.x1) + 1;
    const int up = std::abs(place.y2 - place.y1) + 1;
    return isText ? 1.0 * across * up : std::max(across, up) * Thickness();
}

Stroke StrokeOf(const TextRecord& text)
{
    Stroke stroke = {TextBox(text, kUnitsInPixel), true};
    stroke.place.color = static_cast<uint8_t>(text.lineColor);
    return stroke;
}

Raster::Raster(int squareShift)
    : shift(squareShift), size(kUnits >> shift), rows(static_cast<size_t>(size))
{
}

void Raster::Paint(const Stroke& stroke)
{
    if (stroke.isText)
        PaintBox(stroke.place);
    else if (IsDot(stroke.place))
        PaintBox(SquareOf(stroke.place, stroke.Thickness()));
    else
        PaintLine(stroke.place, stroke.Thickness());
}

void Raster::Set(int column, int row, uint8_t color)
{
    std::vector<uint8_t>& squares = rows[static_cast<size_t>(row)];
    if (squares.empty())
        squares.resize(static_cast<size_t>(size));
    squares[static_cast<size_t>(column)] = static_cast<uint8_t>(color + 1);
}

void Raster::PaintBox(const VectorRecord& box)
{
    for (int row = box.y1 >> shift; row <= box.y2 >> shift; ++row) {
        for (int column = box.x1 >> shift; column <= box.x2 >> shift; ++column)
            Set(column, row, box.color);
    }
}

// Goes along the longer way, and paints across it. What is across is a quotient of whole numbers,
// the same one for each part of a line.
void Raster::PaintLine(const VectorRecord& v, double thickness)
{
    const bool isSteep = std::abs(v.y2 - v.y1) > std::abs(v.x2 - v.x1);
    int from = isSteep ? v.y1 : v.x1;
    int to = isSteep ? v.y2 : v.x2;
    int start = isSteep ? v.x1 : v.y1;
    int end = isSteep ? v.x2 : v.y2;
    if (from > to) {
        std::swap(from, to);
        std::swap(start, end);
    }
    const double slope = static_cast<double>(end - start) / (to - from);
    // Across an axis a slanting line is thicker.
    const double half = (thickness * std::hypot(1.0, slope) - 1) / 2;
    for (int at = from; at <= to; at = NextAlong(at, to)) {
        const double middle =
            static_cast<double>(start * (to - from) + (end - start) * (at - from)) / (to - from);
        const int most = Square(middle + half);
        for (int across = Square(middle - half); across <= most; ++across)
            Set(isSteep ? across : at >> shift, isSteep ? at >> shift : across, v.color);
    }
}

// The next place along a line, the last of them its end.
int Raster::NextAlong(int at, int to) const
{
    return at == to ? to + 1 : std::min(at + (1 << shift), to);
}

int Raster::Square(double at) const
{
    return std::clamp(static_cast<int>(std::floor(at + 0.5)), 0, kUnits - 1) >> shift;
}

} // namespace diff
