// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What a graph holds, as plain values. Positions are file units, y upward; offsets are bytes from
// the start of the file.
#pragma once

#include "meta/damage.h"
#include "meta/observer.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace info {

/// A text as it was drawn.
struct DrawnText {
    std::string text;
    int x = 0, y = 0;
    std::string font;
    int size = 0;
    int color = 0;
    bool isBold = false;
    bool isItalic = false;
    size_t offset = 0; // of its command
};

/// The smallest rectangle around all vectors.
struct Extent {
    int left = 0, bottom = 0;
    int right = 0, top = 0;
};

/// The background that the file asks for.
struct Background {
    int index = 0;
    /// Offset of the character that names it; nothing = the file names none.
    std::optional<size_t> offset;
};

struct Summary {
    size_t size = 0;
    std::map<std::string, uint64_t> commands; // by letters
    uint64_t vectors = 0;
    uint64_t moves = 0;
    std::vector<DrawnText> texts;
    std::set<int> lineIndices;
    std::set<int> colors;
    std::set<int> widths;
    std::optional<Extent> extent;
    Background background;
    uint64_t skippedBytes = 0;
    size_t endOffset = 0;
    PlfEnd endReason = PlfEnd::kEndOfFile;
    PlfDamageMap damage;
};

} // namespace info
