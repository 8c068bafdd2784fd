// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What two drawings differ in.
#pragma once

#include "tools/diff/side.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace diff {

/// What became of a text.
struct TextChange {
    enum Kind { kGone, kNew, kMoved, kChanged } kind = kGone;
    size_t first = 0;  // number of the text in the first drawing; not of kNew
    size_t second = 0; // in the second; not of kGone
};

/// How many changes there are of each kind.
struct Counts {
    size_t gone = 0;      // vectors of the first drawing only
    size_t come = 0;      // vectors of the second drawing only
    size_t moved = 0;     // pairs
    size_t recolored = 0; // pairs whose color differs
    size_t rewidened = 0; // pairs whose width differs
    size_t texts = 0;     // gone, new, moved or changed
    size_t reordered = 0; // square units on which another color is on top

    [[nodiscard]] size_t Looks() const { return recolored + rewidened; }
    [[nodiscard]] size_t Vectors() const { return gone + come + moved + Looks(); }
};

/// A rectangle with changes.
struct ChangedArea {
    Area area;
    Counts counts;
};

/// The result of a comparison.
struct Comparison {
    size_t vectors[2] = {};     // of each drawing
    std::vector<Fate> fates[2]; // of the vectors
    Counts counts;
    double farthest = 0;   // move of a vector, units
    double medianMove = 0; // units
    std::vector<TextChange> texts;
    int backgrounds[2] = {}; // palette indices, or kNoBackground
    bool hasOtherBackground = false;
    std::vector<ChangedArea> areas;

    /// The number of changes. Another background counts as one, and so does another order.
    [[nodiscard]] size_t Changes() const
    {
        return counts.Vectors() + counts.texts + (hasOtherBackground ? 1 : 0) +
               (counts.reordered > 0 ? 1 : 0);
    }
};

} // namespace diff
