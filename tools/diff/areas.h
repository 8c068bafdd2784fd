// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Where the changes are.
#pragma once

#include "tools/diff/changes.h"
#include "tools/diff/order.h"
#include "tools/diff/side.h"

#include <vector>

namespace diff {

/// More would be no help to anybody.
constexpr size_t kMostAreas = 12;

/// A few rectangles around all changes; those with the most changes first.
std::vector<ChangedArea> FindAreas(const Side& first, const Side& second,
                                   const std::vector<TextChange>& texts, const Squares& reordered);

} // namespace diff
