// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What became of the texts.
#pragma once

#include "meta/drawing.h"
#include "tools/diff/changes.h"
#include "tools/diff/order.h"
#include "tools/diff/rules.h"

#include <vector>

namespace diff {

/// The texts of two drawings. Only what is drawn of a text counts: its characters, its place and
/// the color of the lines.
struct TextComparison {
    std::vector<TextPair> same; // by the number in the first drawing
    std::vector<TextChange> changes;
};

TextComparison CompareTexts(const Rules& rules, const std::vector<TextRecord>& first,
                            const std::vector<TextRecord>& second);

} // namespace diff
