// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Which color is on top where.
#pragma once

#include "meta/drawing.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace diff {

/// Something to paint.
struct Stroke {
    VectorRecord place; // of a text, the diagonal of its box
    bool isText = false;

    [[nodiscard]] double Thickness() const;
    /// About how many unit squares it covers.
    [[nodiscard]] double Squares() const;
};

/// The box that a text covers at least.
Stroke StrokeOf(const TextRecord& text);

/// A raster of the colors on top. Vectors that lie on one line paint the same squares of it,
/// wherever they begin and end, if squares are of a unit.
class Raster
{
public:
    /// @param squareShift  squares are 2 to the power of this wide: units
    explicit Raster(int squareShift);

    void Paint(const Stroke& stroke);
    /// Palette index + 1 of each square of a row; 0 = none. Empty where nothing is painted. The
    /// lowest row is 0.
    [[nodiscard]] const std::vector<uint8_t>& Row(int row) const
    {
        return rows[static_cast<size_t>(row)];
    }
    /// How many rows there are, and squares in each.
    [[nodiscard]] int Size() const { return size; }

private:
    void Set(int column, int row, uint8_t color);
    void PaintBox(const VectorRecord& box);
    void PaintLine(const VectorRecord& v, double thickness);
    [[nodiscard]] int NextAlong(int at, int to) const;
    [[nodiscard]] int Square(double at) const;

    int shift;
    int size;
    std::vector<std::vector<uint8_t>> rows;
};

} // namespace diff
