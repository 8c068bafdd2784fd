// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/diff/side.h"

#include <algorithm>
#include <stdexcept>

namespace diff {

uint16_t LookTable::NumberOf(const VectorRecord& vector)
{
    const Look look = {ignoresColor ? 0 : vector.color, ignoresWidth ? 0 : vector.width};
    if (!numbers.empty() && look == last)
        return lastNumber; // as for most vectors
    if (numbers.size() == kMostLooks && !numbers.contains(look))
        throw std::length_error("too many combinations of color and width");
    last = look;
    lastNumber = numbers.try_emplace(look, static_cast<uint16_t>(numbers.size())).first->second;
    return lastNumber;
}

Side::Side(const PlfDrawing& drawn, LookTable* table) : drawing(drawn), fates(drawn.vectors.size())
{
    if (drawing.vectors.size() >= kNoPartner)
        throw std::length_error("too many vectors");
    looks.reserve(drawing.vectors.size());
    for (const VectorRecord& vector : drawing.vectors)
        looks.push_back(table->NumberOf(vector));
}

std::vector<uint32_t> Side::Alone() const
{
    std::vector<uint32_t> alone;
    for (uint32_t i = 0; i < fates.size(); ++i) {
        if (fates[i] == Fate::kAlone)
            alone.push_back(i);
    }
    return alone;
}

size_t Side::Count(Fate fate) const
{
    return static_cast<size_t>(std::count(fates.begin(), fates.end(), fate));
}

} // namespace diff
