// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Finds vectors that are the same to the unit.
#pragma once

#include "tools/diff/side.h"

namespace diff {

/// Finds the vectors of both that have the same ends and the same look.
void FindSame(Side* first, Side* second, Partners* partners);

/// Finds vectors of one drawing that vectors of the same look cover without a gap, each of them on
/// the same line to the unit.
/// @param partners  of the vectors of searched; may be null
void FindOnLines(const Rules& rules, Side* searched, const Side& other, Partners* partners);

} // namespace diff
