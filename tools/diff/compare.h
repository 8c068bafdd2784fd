// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Compares what two graphs draw.
#pragma once

#include "meta/drawing.h"
#include "tools/diff/changes.h"
#include "tools/diff/rules.h"

namespace diff {

/// Compares two drawings. Vectors are compared as what they cover: neither their direction counts,
/// nor how they are cut, nor how often they are drawn. Their order counts only where it decides
/// which color is on top.
/// @throws std::length_error  if a drawing has too many vectors or looks
/// @throws std::bad_alloc     if there is not enough memory
Comparison Compare(const PlfDrawing& first, const PlfDrawing& second, const Rules& rules);

} // namespace diff
