// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Finds vectors that are near, whatever their direction, and in pieces.
#pragma once

#include "tools/diff/side.h"

namespace diff {

/// Finds vectors of one drawing of which the other has one with both ends within the tolerance.
/// @param partners  of the vectors of searched; may be null
void FindNear(const Rules& rules, Side* searched, const Side& other, Partners* partners);

/// Finds vectors of one drawing that vectors of the other cover, each along it within the
/// tolerance, without a gap; so does a longer vector.
void FindPieces(const Rules& rules, Side* searched, const Side& other, Partners* partners);

} // namespace diff
