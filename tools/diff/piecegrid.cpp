// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/diff/piecegrid.h"

namespace diff {

namespace {

constexpr int kLeastShift = 2;
constexpr int kMostShift = 8;
constexpr size_t kCellsForEach = 4; // vector

double LengthOf(const VectorRecord& v)
{
    return std::hypot(v.x2 - v.x1, v.y2 - v.y1);
}

double DistanceTo(const VectorRecord& v, double x, double y)
{
    const double dx = v.x2 - v.x1;
    const double dy = v.y2 - v.y1;
    const double along =
        std::clamp(((x - v.x1) * dx + (y - v.y1) * dy) / (dx * dx + dy * dy), 0.0, 1.0);
    return std::hypot(v.x1 + along * dx - x, v.y1 + along * dy - y);
}

// Cells about as wide as the mean vector is long, so that each is in a few of them.
int ShiftFor(const Side& side, double distance)
{
    double sum = 0;
    for (const VectorRecord& v : side.drawing.vectors)
        sum += LengthOf(v);
    const double width =
        std::max(sum / static_cast<double>(std::max<size_t>(side.Size(), 1)), distance);
    const auto cells = [](int shift) { return size_t{1} << 2 * (kUnitBits - shift); };
    int shift = kLeastShift;
    while (shift < kMostShift &&
           ((1 << shift) < width || cells(shift) > kCellsForEach * side.Size()))
        ++shift;
    return shift;
}

} // namespace

PieceGrid::PieceGrid(const Side& side, double distance) : shift(ShiftFor(side, distance))
{
    starts.assign((size_t{1} << 2 * (kUnitBits - shift)) + 2, 0);
    const auto visitAll = [&](auto function) {
        for (uint32_t i = 0; i < side.Size(); ++i) {
            if (!IsDot(side[i]))
                VisitCells(side[i], 0, shift,
                           [&](int column, int row) { function(CellAt(column, row), i); });
        }
    };
    // One farther than they belong: putting the members in moves them.
    visitAll([&](size_t cell, uint32_t) { ++starts[cell + 2]; });
    for (size_t i = 1; i < starts.size(); ++i)
        starts[i] += starts[i - 1];
    members.resize(starts.back());
    visitAll([&](size_t cell, uint32_t number) { members[starts[cell + 1]++] = number; });
}

bool PieceSearch::Covers(const VectorRecord& v, uint16_t look, uint32_t* partner)
{
    if (IsDot(v))
        return false;
    x = v.x1;
    y = v.y1;
    length = LengthOf(v);
    ux = (v.x2 - x) / length;
    uy = (v.y2 - y) / length;
    last = kNoPartner;
    stretches.clear();
    grid.Visit(v, most, [&](uint32_t number) {
        if (side.looks[number] == look)
            AddPiece(side[number], number);
    });
    for (const Area& area : rules.ignoredAreas)
        AddInside(v, area, length, 0, &stretches);
    *partner = last;
    return Cover(&stretches, 0, length);
}

// Whether both ends, and so all of the vector, are near a piece. It may be so short that its
// direction says nothing.
bool PieceSearch::IsNear(const VectorRecord& piece) const
{
    const double x2 = x + ux * length;
    const double y2 = y + uy * length;
    return length <= 2 * most && DistanceTo(piece, x, y) <= most &&
           DistanceTo(piece, x2, y2) <= most;
}

// Only what is beside the vector counts of a piece, and only if all of that is within the
// tolerance: a line across it covers nothing.
void PieceSearch::AddPiece(const VectorRecord& piece, uint32_t number)
{
    if (IsNear(piece))
        AddWithin(0, 0, length, 0, number);
    double s1 = (piece.x1 - x) * ux + (piece.y1 - y) * uy;
    double d1 = (piece.y1 - y) * ux - (piece.x1 - x) * uy;
    double s2 = (piece.x2 - x) * ux + (piece.y2 - y) * uy;
    double d2 = (piece.y2 - y) * ux - (piece.x2 - x) * uy;
    if (s1 > s2) {
        std::swap(s1, s2);
        std::swap(d1, d2);
    }
    if (s2 < -most || s1 > length + most)
        return;
    if (s2 < 0) // only its end is near
        AddWithin(s2, d2, s2, d2, number);
    else if (s1 > length)
        AddWithin(s1, d1, s1, d1, number);
    else {
        const double slope = s2 > s1 ? (d2 - d1) / (s2 - s1) : 0;
        const double from = std::max(s1, 0.0);
        const double to = std::min(s2, length);
        const bool isAcross = s2 - s1 < 1e-9;
        AddWithin(from, d1 + slope * (from - s1), to, isAcross ? d2 : d1 + slope * (to - s1),
                  number);
    }
}

void PieceSearch::AddWithin(double fromAlong, double fromBeside, double toAlong, double toBeside,
                            uint32_t number)
{
    if (std::abs(fromBeside) > most || std::abs(toBeside) > most)
        return;
    const auto reach = [this](double beside) { return std::sqrt(most * most - beside * beside); };
    stretches.push_back({fromAlong - reach(fromBeside), toAlong + reach(toBeside)});
    last = last == kNoPartner ? number : std::max(last, number);
}

} // namespace diff
