// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/diff/compare.h"

#include "tools/diff/areas.h"
#include "tools/diff/exact.h"
#include "tools/diff/near.h"
#include "tools/diff/order.h"
#include "tools/diff/pairs.h"
#include "tools/diff/place.h"
#include "tools/diff/texts.h"

#include <algorithm>

namespace diff {

namespace {

bool IsSame(const VectorRecord& a, const VectorRecord& b)
{
    return a.x1 == b.x1 && a.y1 == b.y1 && a.x2 == b.x2 && a.y2 == b.y2 && a.color == b.color &&
           a.width == b.width;
}

// The same vectors in the same order: nothing has to be searched.
bool IsSameDrawing(const PlfDrawing& first, const PlfDrawing& second)
{
    return std::equal(first.vectors.begin(), first.vectors.end(), second.vectors.begin(),
                      second.vectors.end(), IsSame);
}

void SetFound(Side* side, Partners* partners)
{
    std::fill(side->fates.begin(), side->fates.end(), Fate::kFound);
    for (uint32_t i = 0; partners != nullptr && i < partners->size(); ++i)
        (*partners)[i] = i;
}

// Finds a dot when dots do not count, or when it is where nothing counts.
void LeaveOutDots(const Rules& rules, Side* side)
{
    for (const uint32_t number : side->Alone()) {
        const VectorRecord& v = (*side)[number];
        const bool isIgnored =
            rules.ignoresDots ||
            std::any_of(rules.ignoredAreas.begin(), rules.ignoredAreas.end(),
                        [&v](const Area& area) { return area.Contains(v.x1, v.y1); });
        if (IsDot(v) && isIgnored)
            side->fates[number] = Fate::kFound;
    }
}

void FindVectors(const Rules& rules, Side* first, Side* second, Partners* partners)
{
    FindSame(first, second, partners);
    LeaveOutDots(rules, first);
    LeaveOutDots(rules, second);
    if (rules.tolerance > 0) {
        FindNear(rules, first, *second, partners);
        FindNear(rules, second, *first, nullptr);
        FindPieces(rules, first, *second, partners);
        FindPieces(rules, second, *first, nullptr);
    } else {
        FindOnLines(rules, first, *second, partners);
        FindOnLines(rules, second, *first, nullptr);
    }
}

} // namespace

Comparison Compare(const PlfDrawing& first, const PlfDrawing& second, const Rules& rules)
{
    Comparison result;
    LookTable looks(rules);
    Side one(first, &looks);
    Side two(second, &looks);
    Partners partners(one.Size(), kNoPartner);
    if (IsSameDrawing(first, second)) {
        SetFound(&one, &partners);
        SetFound(&two, nullptr);
    } else {
        FindVectors(rules, &one, &two, &partners);
        PairChanges(rules, &one, &two, partners, &result);
    }
    TextComparison texts;
    if (!rules.ignoresText)
        texts = CompareTexts(rules, first.texts, second.texts);
    Squares reordered;
    if (!rules.ignoresOrder && !rules.ignoresColor)
        reordered = FindReordered(rules, one, two, partners, texts.same);
    result.areas = FindAreas(one, two, texts.changes, reordered);
    result.counts.texts = texts.changes.size();
    result.counts.reordered = reordered.size();
    result.texts = std::move(texts.changes);
    result.vectors[0] = one.Size();
    result.vectors[1] = two.Size();
    result.fates[0] = std::move(one.fates);
    result.fates[1] = std::move(two.fates);
    result.backgrounds[0] = first.background;
    result.backgrounds[1] = second.background;
    result.hasOtherBackground = !rules.ignoresBackground && first.background != second.background;
    return result;
}

} // namespace diff
