// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Where vectors are.
#pragma once

#include "meta/drawing.h"
#include "tools/diff/rules.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

namespace diff {

/// Coordinates are 0..kUnits - 1.
constexpr int kUnitBits = 12;
constexpr int kUnits = 1 << kUnitBits;

/// A stretch of a line.
struct Stretch {
    double from = 0, to = 0;
};

/// A coordinate, or the nearest one that there is.
inline int16_t Unit(int value)
{
    return static_cast<int16_t>(std::clamp(value, 0, kUnits - 1));
}

/// The diagonal of a box about as large as a text, from where it begins to the right and up:
/// letters of 7 by 12 pixels, as of a font on a screen.
/// @param unitsInPixel  of the picture that shows the text
VectorRecord TextBox(const TextRecord& text, int unitsInPixel);

/// @tparam Vector  has x1, y1, x2 and y2
template <typename Vector> bool IsDot(const Vector& vector)
{
    return vector.x1 == vector.x2 && vector.y1 == vector.y2;
}

/// The vector from its lesser end to its greater one, by x and then by y.
inline VectorRecord Ordered(const VectorRecord& vector)
{
    VectorRecord ordered = vector;
    if (vector.x1 > vector.x2 || (vector.x1 == vector.x2 && vector.y1 > vector.y2)) {
        std::swap(ordered.x1, ordered.x2);
        std::swap(ordered.y1, ordered.y2);
    }
    return ordered;
}

/// Equal for vectors that have the same ends, in whatever direction.
inline uint64_t PlaceKey(const VectorRecord& vector)
{
    const uint64_t one =
        static_cast<uint64_t>(vector.x1) << kUnitBits | static_cast<uint64_t>(vector.y1);
    const uint64_t two =
        static_cast<uint64_t>(vector.x2) << kUnitBits | static_cast<uint64_t>(vector.y2);
    return std::min(one, two) << (2 * kUnitBits) | std::max(one, two);
}

/// The square of how far the ends of one vector are from those of another at most, in the better
/// direction.
/// @tparam First, Second  have x1, y1, x2 and y2
template <typename First, typename Second> int SquaredEndDistance(const First& a, const Second& b)
{
    const auto square = [](int x, int y) { return x * x + y * y; };
    const int along = std::max(square(a.x1 - b.x1, a.y1 - b.y1), square(a.x2 - b.x2, a.y2 - b.y2));
    const int against =
        std::max(square(a.x1 - b.x2, a.y1 - b.y2), square(a.x2 - b.x1, a.y2 - b.y1));
    return std::min(along, against);
}

inline double EndDistance(const VectorRecord& a, const VectorRecord& b)
{
    return std::sqrt(SquaredEndDistance(a, b));
}

/// Whether stretches, together with one another, leave nothing of a range open. Sorts them.
bool Cover(std::vector<Stretch>* stretches, double from, double to);

/// Appends the part of a vector that is in an area, if any.
/// @param scale  the vector's parameter 1 in the units of the stretches
/// @param shift  its parameter 0
void AddInside(const VectorRecord& vector, const Area& area, double scale, double shift,
               std::vector<Stretch>* stretches);

} // namespace diff
