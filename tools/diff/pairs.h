// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Which of the vectors that are in one drawing only are the same vector before and after a change.
#pragma once

#include "tools/diff/changes.h"
#include "tools/diff/side.h"

namespace diff {

/// A vector that moved farther counts as another one: units.
constexpr int kFarthestMove = 256;

/// Pairs vectors, sets their fates, and counts what became of each into the result.
/// @param partners  of the vectors of the first that were found
void PairChanges(const Rules& rules, Side* first, Side* second, const Partners& partners,
                 Comparison* result);

} // namespace diff
