// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Vectors by where they pass, and whether they cover others.
#pragma once

#include "tools/diff/place.h"
#include "tools/diff/side.h"

#include <cstdint>
#include <vector>

namespace diff {

/// Calls a function with the column and the row of each square cell that a vector comes within a
/// distance of, and with some beside them.
/// @param shift  cells are 1 << shift units wide
template <typename Function>
void VisitCells(const VectorRecord& v, double distance, int shift, Function function)
{
    const int lastCell = (kUnits - 1) >> shift;
    const auto cellOf = [shift, lastCell](double at) {
        return std::clamp(static_cast<int>(std::floor(at)) >> shift, 0, lastCell);
    };
    const VectorRecord ordered = Ordered(v);
    const bool rises = ordered.y2 >= ordered.y1;
    const double low = rises ? ordered.y1 : ordered.y2;
    const double high = rises ? ordered.y2 : ordered.y1;
    const double slope =
        high == low ? 0 : (ordered.x2 - ordered.x1) / (high - low) * (rises ? 1 : -1);
    const double start = rises ? ordered.x1 : ordered.x2;
    const double end = rises ? ordered.x2 : ordered.x1;
    // Both ends exactly: with rounding, one on the edge of a cell might be left out.
    const auto xAt = [&](double y) {
        return y >= high ? end : start + slope * (std::max(y, low) - low);
    };
    for (int row = cellOf(low - distance); row <= cellOf(high + distance); ++row) {
        const double bottom = (row << shift) - distance;
        const double top = ((row + 1) << shift) + distance;
        const double one = high == low ? ordered.x1 : xAt(bottom);
        const double two = high == low ? ordered.x2 : xAt(top);
        const int last = cellOf(std::max(one, two) + distance);
        for (int column = cellOf(std::min(one, two) - distance); column <= last; ++column)
            function(column, row);
    }
}

/// The vectors of a drawing, but for dots, in the square cells of a grid, each in all that it
/// passes.
class PieceGrid
{
public:
    /// @param side      outlives the grid
    /// @param distance  that searches reach, units
    PieceGrid(const Side& side, double distance);

    /// Calls a function with the number of each vector that comes within a distance of v, maybe
    /// several times, and of others.
    template <typename Function>
    void Visit(const VectorRecord& v, double distance, Function function) const
    {
        VisitCells(v, distance, shift, [&](int column, int row) {
            const size_t cell = CellAt(column, row);
            for (uint64_t i = starts[cell]; i < starts[cell + 1]; ++i)
                function(members[i]);
        });
    }

private:
    [[nodiscard]] size_t CellAt(int column, int row) const
    {
        return static_cast<size_t>(row) << (kUnitBits - shift) | static_cast<size_t>(column);
    }

    int shift;
    std::vector<uint64_t> starts; // of each cell among the members, and the end of the last
    std::vector<uint32_t> members;
};

/// Whether vectors of a drawing cover another vector.
class PieceSearch
{
public:
    /// All of them outlive the search.
    PieceSearch(const Rules& searchRules, double tolerance, const Side& searched,
                const PieceGrid& pieces)
        : rules(searchRules), most(tolerance), side(searched), grid(pieces)
    {
    }

    /// @param partner  receives the last vector that covers a part
    bool Covers(const VectorRecord& v, uint16_t look, uint32_t* partner);

private:
    [[nodiscard]] bool IsNear(const VectorRecord& piece) const;
    void AddPiece(const VectorRecord& piece, uint32_t number);
    void AddWithin(double fromAlong, double fromBeside, double toAlong, double toBeside,
                   uint32_t number);

    const Rules& rules;
    double most;
    const Side& side;
    const PieceGrid& grid;
    // The vector that is looked for.
    double x = 0, y = 0;   // its start
    double ux = 0, uy = 0; // its direction, of length 1
    double length = 0;
    uint32_t last = kNoPartner; // of the vectors that cover it
    std::vector<Stretch> stretches;
};

} // namespace diff
