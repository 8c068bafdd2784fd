// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Vectors by where their middles are.
#pragma once

#include "tools/diff/place.h"
#include "tools/diff/side.h"

#include <cmath>
#include <cstdint>
#include <vector>

namespace diff {

/// A vector, with all that a search looks at: those of a cell lie side by side in the memory.
struct GridMember {
    int16_t x1, y1, x2, y2;
    uint32_t number;
    uint16_t look;
};

inline GridMember MemberOf(const Side& drawing, uint32_t number)
{
    const VectorRecord& v = drawing[number];
    return {v.x1, v.y1, v.x2, v.y2, number, drawing.looks[number]};
}

/// Vectors in the square cells of a grid. Those that are taken leave it.
class MiddleGrid
{
public:
    /// @param drawing  has the vectors
    /// @param numbers  of those of them that are in the grid
    /// @param side     the least side of a cell, units; with many vectors it is not much more
    MiddleGrid(const struct Side& drawing, const std::vector<uint32_t>& numbers, double side);

    /// The side of a cell, units.
    [[nodiscard]] int Side() const { return 1 << (shift - 1); }
    /// Calls a function with each vector whose middle is at most so many cells away
    /// from that of a vector, until it returns false.
    /// @param isTaken  whether a vector is no longer wanted; it leaves the grid then
    template <typename IsTaken, typename Function>
    void Visit(const VectorRecord& v, int cells, IsTaken isTaken, Function function)
    {
        const int column = Column(v);
        const int row = Row(v);
        for (int r = std::max(row - cells, 0); r <= std::min(row + cells, columns - 1); ++r) {
            for (int c = std::max(column - cells, 0); c <= std::min(column + cells, columns - 1);
                 ++c) {
                if (!VisitCell(CellAt(c, r), isTaken, function))
                    return;
            }
        }
    }

private:
    // Middles are in half units.
    [[nodiscard]] int Column(const VectorRecord& v) const { return (v.x1 + v.x2) >> shift; }
    [[nodiscard]] int Row(const VectorRecord& v) const { return (v.y1 + v.y2) >> shift; }
    [[nodiscard]] size_t CellAt(int column, int row) const
    {
        return static_cast<size_t>(row) * static_cast<size_t>(columns) +
               static_cast<size_t>(column);
    }
    [[nodiscard]] size_t CellOf(const VectorRecord& v) const { return CellAt(Column(v), Row(v)); }

    template <typename IsTaken, typename Function>
    bool VisitCell(size_t cell, IsTaken isTaken, Function function)
    {
        for (uint32_t i = starts[cell]; i < ends[cell];) {
            if (isTaken(members[i].number))
                members[i] = members[--ends[cell]];
            else if (!function(members[i++]))
                return false;
        }
        return true;
    }

    int shift = 1;
    int columns = 1;
    std::vector<uint32_t> starts, ends; // of each cell among the members
    std::vector<GridMember> members;
};

} // namespace diff
