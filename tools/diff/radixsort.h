// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Sorting in a time that is linear in the number of keys.
#pragma once

#include <cstdint>
#include <vector>

namespace diff {

/// Keys, and beside each the number of what it belongs to.
struct NumberedKeys {
    std::vector<uint64_t> keys;
    std::vector<uint32_t> numbers;
};

/// Sorts by key; numbers of the same key keep their order.
void Sort(NumberedKeys* sorted);

} // namespace diff
