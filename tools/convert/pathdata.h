// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Lines in the shortest form that SVG has for them: how far it is from each point to the next.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace convert {

/// Coordinates are whole numbers of kParts to a drawing unit, so that nothing is lost from point to
/// point.
constexpr int64_t kParts = 1000;

/// Builds the data of a path.
class PathData
{
public:
    /// Begins a line.
    void MoveTo(int64_t x, int64_t y);
    /// Continues it.
    void LineTo(int64_t x, int64_t y);
    /// The number of points so far.
    [[nodiscard]] size_t Points() const { return points; }
    /// Returns the path so far, and begins another one.
    std::string Take();

private:
    void GoTo(int64_t x, int64_t y);
    void Number(int64_t parts);
    void Fraction(int64_t parts);

    std::string text;
    size_t points = 0;
    int64_t lastX = 0, lastY = 0;
};

} // namespace convert
