// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#pragma once

#include "support/numbers.h"
#include "support/rect.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

/// A rectangle in drawing units; initially it contains every line.
struct UnitBounds {
    int left = std::numeric_limits<int>::min();
    int top = std::numeric_limits<int>::min();
    int right = std::numeric_limits<int>::max();
    int bottom = std::numeric_limits<int>::max();

    /// Whether a line lies beyond one of the sides. Tests all four without branches: the side that
    /// a line is beyond cannot be predicted.
    [[nodiscard]] bool Misses(int x1, int y1, int x2, int y2) const
    {
        const int beyond = int{std::max(x1, x2) < left} | int{std::min(x1, x2) > right} |
                           int{std::max(y1, y2) < top} | int{std::min(y1, y2) > bottom};
        return beyond != 0;
    }
    /// Whether a rectangle lies within it, and so no line within that is missed.
    [[nodiscard]] bool Holds(int x1, int y1, int x2, int y2) const
    {
        return x1 >= left && x2 <= right && y1 >= top && y2 <= bottom;
    }
};

/// The bounds of an area and of what is around it.
/// @param reach  how far around it, drawing units
inline UnitBounds BoundsAround(const Rect& area, double reach)
{
    const int64_t beyond = TruncToInt(std::ceil(reach));
    return {SaturateToInt(area.left - beyond), SaturateToInt(area.top - beyond),
            SaturateToInt(area.right + beyond), SaturateToInt(area.bottom + beyond)};
}
