// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// One of two drawings that are compared, and what was found out about each of its vectors.
#pragma once

#include "meta/drawing.h"
#include "tools/diff/rules.h"

#include <cstdint>
#include <map>
#include <utility>
#include <vector>

namespace diff {

/// What became of a vector.
enum class Fate : uint8_t {
    kAlone,     // it is in this drawing only
    kFound,     // the other drawing has it, too
    kMoved,     // the other drawing has it in another place
    kRecolored, // the other drawing has it in another color, or color and width
    kRewidened  // the other drawing has it in another width
};

/// Numbers for pairs of a color and a width, the same for both drawings.
class LookTable
{
public:
    /// More than any graph that is meant to be seen.
    static constexpr size_t kMostLooks = 65536;

    explicit LookTable(const Rules& rules)
        : ignoresColor(rules.ignoresColor), ignoresWidth(rules.ignoresWidth)
    {
    }

    /// The number of a vector's look.
    /// @throws std::length_error if there are more than kMostLooks
    uint16_t NumberOf(const VectorRecord& vector);

private:
    using Look = std::pair<int, int32_t>;

    bool ignoresColor, ignoresWidth;
    std::map<Look, uint16_t> numbers;
    Look last;
    uint16_t lastNumber = 0;
};

/// One drawing.
struct Side {
    /// @param drawn  outlives the side
    Side(const PlfDrawing& drawn, LookTable* table);

    [[nodiscard]] const VectorRecord& operator[](size_t number) const
    {
        return drawing.vectors[number];
    }
    [[nodiscard]] size_t Size() const { return drawing.vectors.size(); }
    /// The numbers of the vectors that are in this drawing only, as far as is known.
    [[nodiscard]] std::vector<uint32_t> Alone() const;
    /// How many vectors met that fate.
    [[nodiscard]] size_t Count(Fate fate) const;

    const PlfDrawing& drawing;
    std::vector<uint16_t> looks; // of each vector
    std::vector<Fate> fates;     // of each vector
};

/// For each vector of the first drawing that was found, the number of one of the second that covers
/// it, the last one if there are several.
using Partners = std::vector<uint32_t>;
constexpr uint32_t kNoPartner = UINT32_MAX;

} // namespace diff
