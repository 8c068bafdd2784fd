// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/diff/exact.h"

#include "tools/diff/place.h"
#include "tools/diff/radixsort.h"

#include <algorithm>
#include <bit>
#include <numeric>

namespace diff {

namespace {

constexpr unsigned kPlaceBits = 4 * kUnitBits;

NumberedKeys SortedKeys(const Side& side)
{
    NumberedKeys sorted;
    sorted.keys.reserve(side.Size());
    for (size_t i = 0; i < side.Size(); ++i)
        sorted.keys.push_back(uint64_t{side.looks[i]} << kPlaceBits | PlaceKey(side[i]));
    sorted.numbers.resize(side.Size());
    std::iota(sorted.numbers.begin(), sorted.numbers.end(), 0U);
    Sort(&sorted);
    return sorted;
}

size_t EndOfRun(const NumberedKeys& sorted, size_t begin)
{
    size_t end = begin + 1;
    while (end < sorted.keys.size() && sorted.keys[end] == sorted.keys[begin])
        ++end;
    return end;
}

void MarkFound(const NumberedKeys& sorted, size_t begin, size_t end, Side* side)
{
    for (; begin < end; ++begin)
        side->fates[sorted.numbers[begin]] = Fate::kFound;
}

// A line without ends and its look, as a number that different ones do not share: slope and
// intercept are quotients of so few digits that different ones are different doubles.
uint64_t LineKey(const VectorRecord& v, uint16_t look)
{
    const int dx = v.x2 - v.x1;
    const int dy = v.y2 - v.y1;
    // The 0.0 makes a zero of either sign the same.
    const double slope = dx == 0 ? kUnits : static_cast<double>(dy) / dx + 0.0;
    const double intercept = dx == 0 ? v.x1 : static_cast<double>(dx * v.y1 - dy * v.x1) / dx + 0.0;
    constexpr uint64_t kMix = 0x9E3779B97F4A7C15U; // the golden ratio spreads the bits
    const auto mix = [](uint64_t key) { return (key ^ key >> 29) * kMix; };
    return mix(mix(mix(std::bit_cast<uint64_t>(slope)) + std::bit_cast<uint64_t>(intercept)) +
               look);
}

// The coordinate that tells places on the line of a vector apart.
bool IsSteep(const VectorRecord& v)
{
    return std::abs(v.y2 - v.y1) > std::abs(v.x2 - v.x1);
}

struct OnLine {
    uint64_t line;
    int from, to;
    uint32_t last; // vector

    bool operator<(const OnLine& other) const
    {
        return line != other.line ? line < other.line : from < other.from;
    }
};

OnLine PlaceOnLine(const VectorRecord& v, uint64_t line, uint32_t number)
{
    const auto [one, two] = IsSteep(v) ? std::pair(v.y1, v.y2) : std::pair(v.x1, v.x2);
    return {line, std::min(one, two), std::max(one, two), number};
}

// A set of lines that may say yes to a few that are not in it.
class LineSet
{
public:
    explicit LineSet(size_t lines) : bits(std::bit_ceil(std::max<size_t>(lines, 1) * kBitsForEach))
    {
    }

    void Add(uint64_t line) { bits[PlaceOf(line)] = true; }
    [[nodiscard]] bool Has(uint64_t line) const { return bits[PlaceOf(line)]; }

private:
    static constexpr size_t kBitsForEach = 16;

    [[nodiscard]] size_t PlaceOf(uint64_t line) const { return line >> 16 & (bits.size() - 1); }

    std::vector<bool> bits;
};

std::vector<OnLine> AllOnLines(const Side& side, const LineSet& lines)
{
    std::vector<OnLine> found;
    for (uint32_t i = 0; i < side.Size(); ++i) {
        const uint64_t line = LineKey(side[i], side.looks[i]);
        if (!IsDot(side[i]) && lines.Has(line))
            found.push_back(PlaceOnLine(side[i], line, i));
    }
    return found;
}

// Makes one of those that touch or overlap.
void Join(std::vector<OnLine>* places)
{
    std::sort(places->begin(), places->end());
    size_t count = 0;
    for (const OnLine& place : *places) {
        OnLine* last = count == 0 ? nullptr : &(*places)[count - 1];
        if (last != nullptr && last->line == place.line && place.from <= last->to) {
            last->to = std::max(last->to, place.to);
            last->last = std::max(last->last, place.last);
        } else {
            (*places)[count++] = place;
        }
    }
    places->resize(count);
}

// The parts of a vector's line that the other drawing covers, and those that do not count.
class LineSearch
{
public:
    LineSearch(const Rules& searchRules, std::vector<OnLine> joined)
        : rules(searchRules), places(std::move(joined)),
          shift(std::countl_zero(uint64_t{places.size()} | 1)),
          starts((size_t{1} << (64 - shift)) + 1)
    {
        for (const OnLine& place : places)
            ++starts[(place.line >> shift) + 1];
        std::partial_sum(starts.begin(), starts.end(), starts.begin());
    }

    /// @param partner  receives the last vector that covers a part
    bool Covers(const VectorRecord& v, const OnLine& wanted, uint32_t* partner)
    {
        stretches.clear();
        auto at = FirstFrom(wanted);
        if (at != places.begin() && std::prev(at)->line == wanted.line)
            --at;
        for (; at != places.end() && at->line == wanted.line && at->from <= wanted.to; ++at) {
            stretches.push_back({0.0 + at->from, 0.0 + at->to});
            if (at->to > wanted.from || *partner == kNoPartner)
                *partner = at->last;
        }
        const auto [one, two] = IsSteep(v) ? std::pair(v.y1, v.y2) : std::pair(v.x1, v.x2);
        for (const Area& area : rules.ignoredAreas)
            AddInside(v, area, two - one, one, &stretches);
        for (Stretch& stretch : stretches) {
            if (stretch.from > stretch.to)
                std::swap(stretch.from, stretch.to);
        }
        return Cover(&stretches, wanted.from, wanted.to);
    }

private:
    // Lines are such numbers that their first bits say where they are among all.
    [[nodiscard]] std::vector<OnLine>::const_iterator FirstFrom(const OnLine& wanted) const
    {
        const size_t bits = wanted.line >> shift;
        return std::lower_bound(places.begin() + starts[bits], places.begin() + starts[bits + 1],
                                wanted);
    }

    const Rules& rules;
    std::vector<OnLine> places;
    int shift;
    std::vector<uint32_t> starts; // of the places of each number of first bits
    std::vector<Stretch> stretches;
};

} // namespace

void FindSame(Side* first, Side* second, Partners* partners)
{
    const NumberedKeys one = SortedKeys(*first);
    const NumberedKeys two = SortedKeys(*second);
    partners->assign(first->Size(), kNoPartner);
    size_t b = 0;
    for (size_t a = 0; a < one.keys.size();) {
        const size_t endOfA = EndOfRun(one, a);
        while (b < two.keys.size() && two.keys[b] < one.keys[a])
            ++b;
        if (b < two.keys.size() && two.keys[b] == one.keys[a]) {
            const size_t endOfB = EndOfRun(two, b);
            MarkFound(one, a, endOfA, first);
            MarkFound(two, b, endOfB, second);
            for (size_t i = a; i < endOfA; ++i)
                (*partners)[one.numbers[i]] = two.numbers[endOfB - 1];
            b = endOfB;
        }
        a = endOfA;
    }
}

void FindOnLines(const Rules& rules, Side* searched, const Side& other, Partners* partners)
{
    const std::vector<uint32_t> alone = searched->Alone();
    if (alone.empty())
        return;
    LineSet lines(alone.size());
    for (const uint32_t number : alone)
        lines.Add(LineKey((*searched)[number], searched->looks[number]));
    std::vector<OnLine> places = AllOnLines(other, lines);
    Join(&places);
    LineSearch search(rules, std::move(places));
    for (const uint32_t number : alone) {
        const VectorRecord& v = (*searched)[number];
        uint32_t partner = kNoPartner;
        if (IsDot(v) ||
            !search.Covers(v, PlaceOnLine(v, LineKey(v, searched->looks[number]), number),
                           &partner))
            continue;
        searched->fates[number] = Fate::kFound;
        if (partners != nullptr)
            (*partners)[number] = partner;
    }
}

} // namespace diff
