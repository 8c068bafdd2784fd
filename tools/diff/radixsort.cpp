// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/diff/radixsort.h"

#include <array>
#include <cstddef>
#include <utility>

namespace diff {

namespace {

// Digits of a byte: larger ones would scatter over more pages than the processor keeps at hand.
constexpr unsigned kDigitBits = 8;
constexpr size_t kDigits = size_t{1} << kDigitBits;
constexpr size_t kPasses = 64 / kDigitBits;

using Counts = std::array<uint32_t, kDigits>;

size_t DigitOf(uint64_t key, size_t pass)
{
    return key >> (pass * kDigitBits) & (kDigits - 1);
}

std::array<Counts, kPasses> CountDigits(const std::vector<uint64_t>& keys)
{
    std::array<Counts, kPasses> counts = {};
    for (const uint64_t key : keys) {
        for (size_t pass = 0; pass < kPasses; ++pass)
            ++counts[pass][DigitOf(key, pass)];
    }
    return counts;
}

// Turns how often each digit occurs into where its keys begin.
void MakePlaces(Counts* counts)
{
    uint32_t place = 0;
    for (uint32_t& count : *counts)
        place += std::exchange(count, place);
}

void Distribute(const NumberedKeys& from, size_t pass, Counts* places, NumberedKeys* to)
{
    for (size_t i = 0; i < from.keys.size(); ++i) {
        const uint32_t place = (*places)[DigitOf(from.keys[i], pass)]++;
        to->keys[place] = from.keys[i];
        to->numbers[place] = from.numbers[i];
    }
}

} // namespace

void Sort(NumberedKeys* sorted)
{
    const size_t size = sorted->keys.size();
    std::array<Counts, kPasses> counts = CountDigits(sorted->keys);
    NumberedKeys other;
    for (size_t pass = 0; pass < kPasses && size > 0; ++pass) {
        if (counts[pass][DigitOf(sorted->keys[0], pass)] == size)
            continue; // all have the same digit
        other.keys.resize(size);
        other.numbers.resize(size);
        MakePlaces(&counts[pass]);
        Distribute(*sorted, pass, &counts[pass], &other);
        std::swap(*sorted, other);
    }
}

} // namespace diff
