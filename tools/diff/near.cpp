// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/diff/near.h"

#include "tools/diff/middlegrid.h"
#include "tools/diff/piecegrid.h"

#include <numeric>

namespace diff {

namespace {

// After one is found, so many more are looked at for a nearer one.
constexpr int kMoreLooks = 32;

void MarkFound(uint32_t number, uint32_t partner, Side* side, Partners* partners)
{
    side->fates[number] = Fate::kFound;
    if (partners != nullptr)
        (*partners)[number] = partner;
}

// Where the tolerance is exactly a distance, that counts as within.
double WithRounding(double tolerance)
{
    return tolerance * (1 + 1e-9);
}

class NearSearch
{
public:
    NearSearch(double tolerance, const Side& searched, const Side& other)
        : most(WithRounding(tolerance)), ours(searched), theirs(other),
          grid(other, AllOf(other), most), cells(static_cast<int>(most / grid.Side()) + 1)
    {
    }

    /// The nearest vector within the tolerance, or kNoPartner. Of a graph that was made again the
    /// one after the last is tried first.
    uint32_t Find(uint32_t number)
    {
        uint32_t best = kNoPartner;
        const uint32_t next = last + 1;
        if (next < theirs.Size() && Distance(number, MemberOf(theirs, next)) <= most)
            best = next;
        else
            best = Nearest(number);
        if (best != kNoPartner)
            last = best;
        return best;
    }

private:
    static std::vector<uint32_t> AllOf(const Side& side)
    {
        std::vector<uint32_t> all(side.Size());
        std::iota(all.begin(), all.end(), 0U);
        return all;
    }

    [[nodiscard]] double Distance(uint32_t number, const GridMember& other) const
    {
        if (ours.looks[number] != other.look || IsDot(ours[number]) != IsDot(other))
            return 2 * kUnits;
        return std::sqrt(SquaredEndDistance(ours[number], other));
    }

    uint32_t Nearest(uint32_t number)
    {
        uint32_t best = kNoPartner;
        double least = most;
        int looks = kMoreLooks;
        const auto isTaken = [](uint32_t) { return false; };
        grid.Visit(ours[number], cells, isTaken, [&](const GridMember& other) {
            const double distance = Distance(number, other);
            if (distance <= least) {
                least = distance;
                best = other.number;
            }
            return best == kNoPartner || --looks > 0;
        });
        return best;
    }

    double most;
    const Side& ours;
    const Side& theirs;
    MiddleGrid grid;
    int cells;
    uint32_t last = kNoPartner; // + 1 is the first
};

} // namespace

void FindNear(const Rules& rules, Side* searched, const Side& other, Partners* partners)
{
    const std::vector<uint32_t> alone = searched->Alone();
    if (alone.empty())
        return;
    NearSearch search(rules.tolerance, *searched, other);
    for (const uint32_t number : alone) {
        const uint32_t partner = search.Find(number);
        if (partner != kNoPartner)
            MarkFound(number, partner, searched, partners);
    }
}

void FindPieces(const Rules& rules, Side* searched, const Side& other, Partners* partners)
{
    const std::vector<uint32_t> alone = searched->Alone();
    if (alone.empty())
        return;
    const PieceGrid grid(other, WithRounding(rules.tolerance));
    PieceSearch search(rules, WithRounding(rules.tolerance), other, grid);
    for (const uint32_t number : alone) {
        uint32_t partner = kNoPartner;
        if (search.Covers((*searched)[number], searched->looks[number], &partner))
            MarkFound(number, partner, searched, partners);
    }
}

} // namespace diff
