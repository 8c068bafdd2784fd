// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Whether vectors and texts that are in both drawings cover one another in the same way.
#pragma once

#include "tools/diff/rules.h"
#include "tools/diff/side.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace diff {

/// A text that is in both drawings.
struct TextPair {
    size_t first = 0, second = 0; // numbers
};

/// Unit squares on which another color is on top, each by its lower left corner.
using Squares = std::vector<std::pair<int16_t, int16_t>>;

/// Paints what both drawings have in the order of each, on squares of a unit, or larger ones where
/// there is much to paint, and finds the squares whose colors differ.
Squares FindReordered(const Rules& rules, const Side& first, const Side& second,
                      const Partners& partners, const std::vector<TextPair>& texts);

} // namespace diff
