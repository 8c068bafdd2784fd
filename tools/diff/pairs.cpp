// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/diff/pairs.h"

#include "tools/diff/middlegrid.h"

#include <algorithm>
#include <array>
#include <climits>

namespace diff {

namespace {

// Rings of cells that are searched, and how many vectors at most: those of a dense graph have a
// near one that fits.
constexpr int kRings = 2;
constexpr int kMostLooks = 64;
// Distances are compared as their squares, which are whole numbers.
constexpr int Squared(int distance)
{
    return distance * distance;
}
constexpr int kTooFar = Squared(2 * kUnits);
// What a vector with another look in the same place is ahead of any that moved.
constexpr int kSamePlace = -1;
// How much farther the next vector in the order may be than the nearest one, and a distance that is
// near in any case: units.
constexpr int kFartherInOrder = 4;
constexpr int kLeastMove = 8;
constexpr int kFarthest = Squared(kFarthestMove);
static_assert(Squared(kFartherInOrder) * int64_t{kFarthest} <= INT_MAX);

class Pairing
{
public:
    Pairing(const Rules& rules, Side* ours, Side* theirs, const Partners& found)
        : tolerance(rules.tolerance), first(*ours), second(*theirs), partners(found),
          alone(theirs->Alone()), grids{MiddleGrid(*theirs, alone, 1),
                                        MiddleGrid(*theirs, alone, kFarthestMove)}
    {
    }

    void Pair(uint32_t number)
    {
        wanted = MemberOf(first, number);
        best = kNoPartner;
        least = kTooFar;
        // Most have moved so little that their own cell has them.
        for (MiddleGrid& grid : grids) {
            for (const int rings : {0, kRings}) {
                if (best == kNoPartner || least > Squared(grid.Side()))
                    Search(number, rings, &grid);
            }
        }
        LookAtNext(number);
        if (best != kNoPartner)
            Take(number);
        lastNumber = number;
        lastOther = best;
    }

    [[nodiscard]] std::vector<double>& Moves() { return moves; }

private:
    void Search(uint32_t number, int rings, MiddleGrid* grid)
    {
        int looks = kMostLooks;
        const auto isTaken = [this](uint32_t other) { return second.fates[other] != Fate::kAlone; };
        grid->Visit(first[number], rings, isTaken, [&](const GridMember& other) {
            Look(other);
            return --looks > 0;
        });
    }

    // Looks at the vector after the one that the vector before has become. It counts even if
    // another is somewhat nearer, as where a curve moved along itself.
    void LookAtNext(uint32_t number)
    {
        const uint32_t before = number == 0 ? kNoPartner : PartnerOf(number - 1);
        const uint32_t next = before + 1; // 0 after kNoPartner
        if ((number > 0 && before == kNoPartner) || next >= second.Size() ||
            second.fates[next] != Fate::kAlone)
            return;
        const int distance = DistanceOf(MemberOf(second, next));
        if (distance <= kFarthest && distance <= FartherInOrder(least)) {
            least = distance;
            best = next;
        }
    }

    [[nodiscard]] uint32_t PartnerOf(uint32_t number) const
    {
        return number == lastNumber ? lastOther : partners[number];
    }

    static int FartherInOrder(int distance)
    {
        // What is farther than the farthest move is no nearer than that.
        return Squared(kFartherInOrder) * std::clamp(distance, Squared(kLeastMove), kFarthest);
    }

    [[nodiscard]] int DistanceOf(const GridMember& other) const
    {
        if (IsDot(wanted) != IsDot(other))
            return kTooFar; // no tolerance makes them equal
        const int distance = SquaredEndDistance(wanted, other);
        if (wanted.look == other.look)
            return distance;
        return std::sqrt(distance) <= tolerance ? kSamePlace : kTooFar;
    }

    void Look(const GridMember& other)
    {
        const int distance = DistanceOf(other);
        if (distance < least && distance <= kFarthest) {
            least = distance;
            best = other.number;
        }
    }

    void Take(uint32_t number)
    {
        Fate fate = Fate::kMoved;
        if (least == kSamePlace)
            fate = first[number].color != second[best].color ? Fate::kRecolored : Fate::kRewidened;
        else
            moves.push_back(std::sqrt(least));
        first.fates[number] = second.fates[best] = fate;
    }

    double tolerance;
    Side& first;
    Side& second;
    const Partners& partners; // of the vectors that were found
    std::vector<uint32_t> alone;
    std::array<MiddleGrid, 2> grids; // fine and coarse
    std::vector<double> moves;
    GridMember wanted = {}; // whose partner is searched
    uint32_t best = kNoPartner;
    int least = kTooFar; // squared
    uint32_t lastNumber = kNoPartner;
    uint32_t lastOther = kNoPartner; // what it was paired with
};

// The middle one, or the mean of the two in the middle.
double Median(std::vector<double>* values)
{
    const auto middle = values->begin() + static_cast<ptrdiff_t>(values->size() / 2);
    std::nth_element(values->begin(), middle, values->end());
    if (values->size() % 2 != 0)
        return *middle;
    return (*middle + *std::max_element(values->begin(), middle)) / 2;
}

} // namespace

void PairChanges(const Rules& rules, Side* first, Side* second, const Partners& partners,
                 Comparison* result)
{
    Pairing pairing(rules, first, second, partners);
    for (const uint32_t number : first->Alone())
        pairing.Pair(number);
    result->counts.gone = first->Count(Fate::kAlone);
    result->counts.come = second->Count(Fate::kAlone);
    result->counts.moved = first->Count(Fate::kMoved);
    result->counts.recolored = first->Count(Fate::kRecolored);
    result->counts.rewidened = first->Count(Fate::kRewidened);
    if (!pairing.Moves().empty()) {
        result->farthest = *std::max_element(pairing.Moves().begin(), pairing.Moves().end());
        result->medianMove = Median(&pairing.Moves());
    }
}

} // namespace diff
