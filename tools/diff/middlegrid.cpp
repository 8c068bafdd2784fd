// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/diff/middlegrid.h"

#include <algorithm>

namespace diff {

namespace {

constexpr int kMiddleBits = kUnitBits + 1;
constexpr size_t kVectorsInCell = 2;

} // namespace

MiddleGrid::MiddleGrid(const struct Side& drawing, const std::vector<uint32_t>& numbers,
                       double side)
{
    const auto cells = [this] { return size_t{1} << 2 * (kMiddleBits - shift); };
    while (shift < kMiddleBits &&
           (Side() < side || cells() * kVectorsInCell > std::max<size_t>(numbers.size(), 1)))
        ++shift;
    columns = 1 << (kMiddleBits - shift);
    ends.assign(cells() + 1, 0);
    for (const uint32_t number : numbers)
        ++ends[CellOf(drawing[number]) + 1];
    for (size_t i = 1; i < ends.size(); ++i)
        ends[i] += ends[i - 1];
    ends.pop_back();
    starts = ends;
    members.resize(numbers.size());
    for (const uint32_t number : numbers)
        members[ends[CellOf(drawing[number])]++] = MemberOf(drawing, number);
}

} // namespace diff
