// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/diff/order.h"

#include "tools/diff/place.h"
#include "tools/diff/radixsort.h"
#include "tools/diff/raster.h"

#include <algorithm>
#include <optional>

namespace diff {

namespace {

// What is painted on larger squares if it would be more squares than this, and so many for each
// vector.
constexpr double kSquares = 1 << 26;
constexpr double kSquaresForEach = 64;
constexpr int kMostShift = 5;

// What both drawings have, each piece with its place in the order of both.
struct Pieces {
    std::vector<Stroke> strokes; // in the order of the first
    NumberedKeys second;         // the order of the second

    void Add(const Stroke& stroke, uint64_t place)
    {
        second.keys.push_back(place);
        second.numbers.push_back(static_cast<uint32_t>(strokes.size()));
        strokes.push_back(stroke);
    }
};

// Places in an order: a text is right before a vector.
uint64_t OrderOf(uint32_t vector)
{
    return 2 * uint64_t{vector} + 1;
}

uint64_t OrderOf(const TextRecord& text)
{
    return 2 * uint64_t{text.before};
}

// One drawing, and the numbers of those of its texts that are in the other one too, in order.
struct Sheet {
    const Rules& rules;
    const Side& side;
    std::vector<size_t> texts;

    /// Goes through what both drawings have: with the number of a vector, or the place in texts.
    template <typename OnVector, typename OnText> void Visit(OnVector onVector, OnText onText) const
    {
        size_t text = 0;
        const auto visitTexts = [&](size_t before) {
            for (; text < texts.size() && Text(text).before <= before; ++text)
                onText(text);
        };
        for (uint32_t i = 0; i < side.Size(); ++i) {
            visitTexts(i);
            if (side.fates[i] == Fate::kFound && !(rules.ignoresDots && IsDot(side[i])))
                onVector(i);
        }
        visitTexts(side.Size());
    }
    template <typename OnStroke> void VisitStrokes(OnStroke onStroke) const
    {
        Visit([&](uint32_t number) { onStroke(Stroke{side[number]}); },
              [&](size_t text) { onStroke(StrokeOf(Text(text))); });
    }
    [[nodiscard]] const TextRecord& Text(size_t text) const
    {
        return side.drawing.texts[texts[text]];
    }
};

Sheet FirstSheet(const Rules& rules, const Side& first, const std::vector<TextPair>& pairs)
{
    Sheet sheet = {rules, first, {}};
    for (const TextPair& pair : pairs)
        sheet.texts.push_back(pair.first);
    return sheet;
}

Sheet SecondSheet(const Rules& rules, const Side& second, const std::vector<TextPair>& pairs)
{
    Sheet sheet = {rules, second, {}};
    for (const TextPair& pair : pairs)
        sheet.texts.push_back(pair.second);
    std::sort(sheet.texts.begin(), sheet.texts.end());
    sheet.texts.erase(std::unique(sheet.texts.begin(), sheet.texts.end()), sheet.texts.end());
    return sheet;
}

// Both drawings, and what is the same in them.
struct Both {
    Sheet first, second;
    const Partners& partners;
    const std::vector<TextPair>& texts;
};

// Whether what the first drawing has stands in the same order in the second.
bool HasSameOrder(const Both& both)
{
    bool isSame = true;
    uint64_t last = 0;
    const auto follow = [&](uint64_t place) {
        isSame = isSame && place >= last;
        last = place;
    };
    both.first.Visit(
        [&](uint32_t number) {
            if (both.partners[number] != kNoPartner)
                follow(OrderOf(both.partners[number]));
        },
        [&](size_t text) {
            follow(OrderOf(both.second.side.drawing.texts[both.texts[text].second]));
        });
    return isSame;
}

// Whether that is all of the second one, each piece once.
bool HasSamePieces(const Both& both)
{
    if (both.first.side.Count(Fate::kFound) != both.second.side.Count(Fate::kFound) ||
        both.first.texts.size() != both.second.texts.size())
        return false;
    bool isSame = true;
    uint32_t next = 0;
    both.first.Visit(
        [&](uint32_t number) {
            const uint32_t partner = both.partners[number];
            isSame = isSame && partner != kNoPartner && partner >= next &&
                     PlaceKey(both.first.side[number]) == PlaceKey(both.second.side[partner]);
            next = partner + 1;
        },
        [&](size_t text) {
            isSame = isSame && both.texts[text].second == both.second.texts[text];
        });
    return isSame;
}

bool HasOneColor(const Both& both)
{
    std::optional<uint8_t> color;
    bool isOne = true;
    const auto look = [&](const Stroke& stroke) {
        isOne = isOne && stroke.place.color == color.value_or(stroke.place.color);
        color = stroke.place.color;
    };
    both.first.VisitStrokes(look);
    both.second.VisitStrokes(look);
    return isOne;
}

Pieces CollectPieces(const Both& both)
{
    Pieces pieces;
    both.first.Visit(
        [&](uint32_t number) {
            if (both.partners[number] != kNoPartner)
                pieces.Add({both.first.side[number]}, OrderOf(both.partners[number]));
        },
        [&](size_t text) {
            pieces.Add(StrokeOf(both.first.Text(text)),
                       OrderOf(both.second.side.drawing.texts[both.texts[text].second]));
        });
    return pieces;
}

// How wide squares must be so that the work is in proportion to the number of vectors.
int ShiftFor(double squares, size_t strokes)
{
    const double most = kSquares + kSquaresForEach * static_cast<double>(strokes);
    int shift = 0;
    for (; shift < kMostShift && squares > most; ++shift)
        squares /= 2;
    return shift;
}

int ShiftFor(const Sheet& sheet)
{
    double squares = 0;
    size_t count = 0;
    sheet.VisitStrokes([&](const Stroke& stroke) {
        squares += stroke.Squares();
        ++count;
    });
    return ShiftFor(squares, count);
}

bool IsIgnored(const Rules& rules, int x, int y)
{
    return std::any_of(rules.ignoredAreas.begin(), rules.ignoredAreas.end(),
                       [x, y](const Area& area) { return area.Contains(x, y); });
}

uint8_t ColorAt(const std::vector<uint8_t>& row, size_t column)
{
    return row.empty() ? 0 : row[column];
}

// @param others  what is painted here does not count; may be null
Squares Differences(const Rules& rules, const Raster& one, const Raster& two, const Raster* others,
                    int shift)
{
    Squares squares;
    for (int row = 0; row < one.Size(); ++row) {
        if (one.Row(row) == two.Row(row))
            continue;
        for (size_t column = 0; column < static_cast<size_t>(one.Size()); ++column) {
            const int x = static_cast<int>(column) << shift;
            const int y = row << shift;
            if (ColorAt(one.Row(row), column) != ColorAt(two.Row(row), column) &&
                (others == nullptr || ColorAt(others->Row(row), column) == 0) &&
                !IsIgnored(rules, x, y))
                squares.emplace_back(Unit(x), Unit(y));
        }
    }
    return squares;
}

// Whether what is found in one drawing covers exactly what is found in the other.
bool CoverTheSame(const Rules& rules)
{
    return rules.tolerance == 0 && !rules.ignoresWidth && rules.ignoredAreas.empty();
}

void PaintOthers(const Side& side, Raster* raster)
{
    for (size_t i = 0; i < side.Size(); ++i) {
        if (side.fates[i] != Fate::kFound)
            raster->Paint({side[i]});
    }
}

// Each drawing as it is. Where a vector went, came or changed, the order is not looked at: what it
// covers of the other drawing would seem to have come up from below.
Squares CompareTops(const Both& both)
{
    constexpr int kUnitSquares = 0;
    Raster one(kUnitSquares);
    Raster two(kUnitSquares);
    both.first.VisitStrokes([&](const Stroke& stroke) { one.Paint(stroke); });
    both.second.VisitStrokes([&](const Stroke& stroke) { two.Paint(stroke); });
    std::optional<Raster> others;
    for (const Side* side : {&both.first.side, &both.second.side}) {
        if (side->Count(Fate::kFound) == side->Size())
            continue;
        if (!others)
            others.emplace(kUnitSquares);
        PaintOthers(*side, &*others);
    }
    return Differences(both.first.rules, one, two, others ? &*others : nullptr, kUnitSquares);
}

// The first drawing in the order of both: what is in several pieces in the second one, or there
// more than once, counts where the last of them is.
Squares CompareOrders(const Both& both)
{
    Pieces pieces = CollectPieces(both);
    Sort(&pieces.second);
    const int shift = ShiftFor(both.first);
    Raster one(shift);
    Raster two(shift);
    for (const Stroke& stroke : pieces.strokes)
        one.Paint(stroke);
    for (const uint32_t number : pieces.second.numbers)
        two.Paint(pieces.strokes[number]);
    return Differences(both.first.rules, one, two, nullptr, shift);
}

} // namespace

Squares FindReordered(const Rules& rules, const Side& first, const Side& second,
                      const Partners& partners, const std::vector<TextPair>& texts)
{
    const Both both = {FirstSheet(rules, first, texts), SecondSheet(rules, second, texts), partners,
                       texts};
    const bool coverTheSame = CoverTheSame(rules);
    if ((HasSameOrder(both) && (!coverTheSame || HasSamePieces(both))) || HasOneColor(both))
        return {};
    if (coverTheSame && ShiftFor(both.first) == 0 && ShiftFor(both.second) == 0)
        return CompareTops(both);
    return CompareOrders(both);
}

} // namespace diff
