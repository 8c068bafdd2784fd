// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/diff/order.h"

#include "tools/diff/place.h"
#include "tools/diff/radixsort.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numeric>

namespace diff {

namespace {

// Texts are as in a picture with a pixel for each unit, where they are smallest.
constexpr int kUnitsInPixel = 1;
constexpr int kWidthsInUnit = 2; // a pen is half as wide as the file says

// What is painted on larger squares if it would be more squares than this, and so many for each
// vector.
constexpr double kSquares = 1 << 26;
constexpr double kSquaresForEach = 64;
constexpr int kMostShift = 5;

// Something to paint, in the order of the first drawing.
struct Stroke {
    VectorRecord place; // of a text, the diagonal of its box
    bool isText = false;

    [[nodiscard]] double Thickness() const
    {
        return std::max(1.0, std::min<double>(place.width, kUnits) / kWidthsInUnit);
    }
};

Stroke StrokeOf(const TextRecord& text)
{
    Stroke stroke = {TextBox(text, kUnitsInPixel), true};
    stroke.place.color = static_cast<uint8_t>(text.lineColor);
    return stroke;
}

// A raster of the colors on top.
class Raster
{
public:
    explicit Raster(int squareShift)
        : shift(squareShift), columns(kUnits >> shift),
          colors(static_cast<size_t>(columns) * static_cast<size_t>(columns))
    {
    }

    void Paint(const Stroke& stroke)
    {
        if (stroke.isText)
            PaintBox(stroke.place);
        else
            PaintLine(stroke.place, stroke.Thickness());
    }
    [[nodiscard]] const std::vector<uint8_t>& Colors() const { return colors; }
    [[nodiscard]] int Columns() const { return columns; }

private:
    void Set(int column, int row, uint8_t color)
    {
        colors[static_cast<size_t>(row) * static_cast<size_t>(columns) +
               static_cast<size_t>(column)] = static_cast<uint8_t>(color + 1);
    }

    void PaintBox(const VectorRecord& box)
    {
        for (int row = box.y1 >> shift; row <= box.y2 >> shift; ++row) {
            for (int column = box.x1 >> shift; column <= box.x2 >> shift; ++column)
                Set(column, row, box.color);
        }
    }

    // Goes along the longer way, and paints across it.
    void PaintLine(const VectorRecord& v, double thickness)
    {
        const bool isSteep = std::abs(v.y2 - v.y1) > std::abs(v.x2 - v.x1);
        int from = isSteep ? v.y1 : v.x1;
        int to = isSteep ? v.y2 : v.x2;
        int start = isSteep ? v.x1 : v.y1;
        int end = isSteep ? v.x2 : v.y2;
        if (from > to) {
            std::swap(from, to);
            std::swap(start, end);
        }
        const double slope = to > from ? static_cast<double>(end - start) / (to - from) : 0;
        // Across an axis a slanting line is thicker.
        const double half = (thickness * std::hypot(1.0, slope) - 1) / 2;
        for (int at = from; at <= to; at = NextAlong(at, to)) {
            const double middle = start + slope * (at - from);
            const int most = Square(middle + half);
            for (int across = Square(middle - half); across <= most; ++across)
                Set(isSteep ? across : at >> shift, isSteep ? at >> shift : across, v.color);
        }
    }

    // The next place along a line, the last of them its end.
    [[nodiscard]] int NextAlong(int at, int to) const
    {
        return at == to ? to + 1 : std::min(at + (1 << shift), to);
    }

    [[nodiscard]] int Square(double at) const
    {
        return std::clamp(static_cast<int>(std::floor(at + 0.5)), 0, kUnits - 1) >> shift;
    }

    int shift;
    int columns;
    std::vector<uint8_t> colors; // palette index + 1; 0 = none
};

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

Pieces CollectPieces(const Side& first, const Side& second, const Partners& partners,
                     const std::vector<TextPair>& texts)
{
    Pieces pieces;
    size_t text = 0;
    const auto addTexts = [&](size_t before) {
        for (; text < texts.size() && first.drawing.texts[texts[text].first].before <= before;
             ++text) {
            const TextPair& pair = texts[text];
            pieces.Add(StrokeOf(first.drawing.texts[pair.first]),
                       OrderOf(second.drawing.texts[pair.second]));
        }
    };
    for (size_t i = 0; i < first.Size(); ++i) {
        addTexts(i);
        if (partners[i] != kNoPartner)
            pieces.Add({first[i]}, OrderOf(partners[i]));
    }
    addTexts(first.Size());
    return pieces;
}

bool HasOneColor(const Pieces& pieces)
{
    return std::all_of(pieces.strokes.begin(), pieces.strokes.end(), [&](const Stroke& stroke) {
        return stroke.place.color == pieces.strokes.front().place.color;
    });
}

bool MayDiffer(const Pieces& pieces)
{
    return !std::is_sorted(pieces.second.keys.begin(), pieces.second.keys.end()) &&
           !HasOneColor(pieces);
}

// The same without collecting anything.
bool MayDiffer(const Partners& partners)
{
    uint32_t last = 0;
    for (const uint32_t partner : partners) {
        if (partner == kNoPartner)
            continue;
        if (partner < last)
            return true;
        last = partner;
    }
    return false;
}

// How wide squares must be so that the work is in proportion to the number of vectors.
int ShiftFor(const Pieces& pieces)
{
    double squares = 0;
    for (const Stroke& stroke : pieces.strokes) {
        const int along = std::max(std::abs(stroke.place.x2 - stroke.place.x1),
                                   std::abs(stroke.place.y2 - stroke.place.y1));
        const double across =
            stroke.isText ? stroke.place.y2 - stroke.place.y1 + 1 : stroke.Thickness();
        squares += (along + 1) * across;
    }
    const double most = kSquares + kSquaresForEach * static_cast<double>(pieces.strokes.size());
    int shift = 0;
    for (; shift < kMostShift && squares > most; ++shift)
        squares /= 2;
    return shift;
}

bool IsIgnored(const Rules& rules, int x, int y)
{
    return std::any_of(rules.ignoredAreas.begin(), rules.ignoredAreas.end(),
                       [x, y](const Area& area) { return area.Contains(x, y); });
}

Squares Differences(const Rules& rules, const Raster& one, const Raster& two, int shift)
{
    Squares squares;
    for (size_t i = 0; i < one.Colors().size(); ++i) {
        if (one.Colors()[i] == two.Colors()[i])
            continue;
        const int x = static_cast<int>(i % static_cast<size_t>(one.Columns())) << shift;
        const int y = static_cast<int>(i / static_cast<size_t>(one.Columns())) << shift;
        if (!IsIgnored(rules, x, y))
            squares.emplace_back(Unit(x), Unit(y));
    }
    return squares;
}

} // namespace

Squares FindReordered(const Rules& rules, const Side& first, const Side& second,
                      const Partners& partners, const std::vector<TextPair>& texts)
{
    if (texts.empty() && !MayDiffer(partners))
        return {};
    Pieces pieces = CollectPieces(first, second, partners, texts);
    if (pieces.strokes.empty() || !MayDiffer(pieces))
        return {};
    Sort(&pieces.second);
    const int shift = ShiftFor(pieces);
    Raster one(shift);
    Raster two(shift);
    for (const Stroke& stroke : pieces.strokes)
        one.Paint(stroke);
    for (const uint32_t number : pieces.second.numbers)
        two.Paint(pieces.strokes[number]);
    return Differences(rules, one, two, shift);
}

} // namespace diff
