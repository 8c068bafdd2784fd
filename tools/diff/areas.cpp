// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/diff/areas.h"

#include "tools/diff/piecegrid.h"
#include "tools/diff/place.h"

#include <algorithm>

namespace diff {

namespace {

// Cells are 64 units wide at first, and larger where there are too many areas.
constexpr int kFirstShift = 6;

// As in a picture of 1024 pixels, such as the program's own.
constexpr int kUnitsInPixel = 4;

VectorRecord PointAt(int16_t x, int16_t y)
{
    VectorRecord point;
    point.x1 = point.x2 = x;
    point.y1 = point.y2 = y;
    return point;
}

// Everything that changed, as vectors.
class Changes
{
public:
    Changes(const Side& ours, const Side& theirs, const std::vector<TextChange>& textChanges,
            const Squares& squares)
        : first(ours), second(theirs), texts(textChanges), reordered(squares)
    {
    }

    /// Calls a function with each place and with what to count there, null for the second place of
    /// a pair.
    template <typename Function> void Visit(Function function) const
    {
        for (size_t i = 0; i < first.Size(); ++i) {
            if (first.fates[i] != Fate::kFound)
                function(first[i], CountFor(first.fates[i], &Counts::gone));
        }
        for (size_t i = 0; i < second.Size(); ++i) {
            if (second.fates[i] != Fate::kFound)
                function(second[i], second.fates[i] == Fate::kAlone ? &Counts::come : nullptr);
        }
        for (const TextChange& change : texts)
            VisitText(change, function);
        for (const auto& [x, y] : reordered)
            function(PointAt(x, y), &Counts::reordered);
    }

private:
    using Count = size_t Counts::*;

    static Count CountFor(Fate fate, Count alone)
    {
        switch (fate) {
        case Fate::kMoved:
            return &Counts::moved;
        case Fate::kRecolored:
            return &Counts::recolored;
        case Fate::kRewidened:
            return &Counts::rewidened;
        default:
            return alone;
        }
    }

    template <typename Function> void VisitText(const TextChange& change, Function function) const
    {
        const bool isNew = change.kind == TextChange::kNew;
        if (!isNew) {
            const TextRecord& text = first.drawing.texts[change.first];
            function(TextBox(text, kUnitsInPixel), &Counts::texts);
        }
        if (change.kind != TextChange::kGone) {
            const TextRecord& text = second.drawing.texts[change.second];
            function(TextBox(text, kUnitsInPixel), isNew ? &Counts::texts : nullptr);
        }
    }

    const Side& first;
    const Side& second;
    const std::vector<TextChange>& texts;
    const Squares& reordered;
};

// Cells with changes, and which of them hang together.
class CellMap
{
public:
    explicit CellMap(int cellShift)
        : shift(cellShift), columns(kUnits >> shift),
          groups(static_cast<size_t>(columns) * static_cast<size_t>(columns), kEmpty)
    {
    }

    void Mark(const VectorRecord& v)
    {
        VisitCells(v, 0, shift, [this](int column, int row) { GroupAt(column, row) = kMarked; });
    }
    /// Numbers the groups.
    /// @return how many there are
    size_t Number()
    {
        int count = 0;
        for (int row = 0; row < columns; ++row) {
            for (int column = 0; column < columns; ++column) {
                if (GroupAt(column, row) == kMarked)
                    Fill(column, row, count++);
            }
        }
        return static_cast<size_t>(count);
    }
    [[nodiscard]] size_t GroupOf(const VectorRecord& v)
    {
        return static_cast<size_t>(GroupAt(v.x1 >> shift, v.y1 >> shift));
    }

private:
    static constexpr int kEmpty = -1;
    static constexpr int kMarked = -2;

    int& GroupAt(int column, int row)
    {
        return groups[static_cast<size_t>(row) * static_cast<size_t>(columns) +
                      static_cast<size_t>(column)];
    }

    void Fill(int column, int row, int number)
    {
        std::vector<std::pair<int, int>> waiting = {{column, row}};
        GroupAt(column, row) = number;
        while (!waiting.empty()) {
            const auto [x, y] = waiting.back();
            waiting.pop_back();
            for (int r = std::max(y - 1, 0); r <= std::min(y + 1, columns - 1); ++r) {
                for (int c = std::max(x - 1, 0); c <= std::min(x + 1, columns - 1); ++c) {
                    if (GroupAt(c, r) != kMarked)
                        continue;
                    GroupAt(c, r) = number;
                    waiting.emplace_back(c, r);
                }
            }
        }
    }

    int shift;
    int columns;
    std::vector<int> groups; // of each cell
};

void Enclose(const VectorRecord& v, Area* area)
{
    area->left = std::min<int>({area->left, v.x1, v.x2});
    area->right = std::max<int>({area->right, v.x1, v.x2});
    area->bottom = std::min<int>({area->bottom, v.y1, v.y2});
    area->top = std::max<int>({area->top, v.y1, v.y2});
}

size_t Weight(const ChangedArea& area)
{
    return area.counts.Vectors() + area.counts.texts + area.counts.reordered;
}

std::vector<ChangedArea> Collect(const Changes& changes, CellMap* cells, size_t count)
{
    ChangedArea empty;
    empty.area = {kUnits, kUnits, 0, 0};
    std::vector<ChangedArea> areas(count, empty);
    changes.Visit([&](const VectorRecord& v, size_t Counts::*counted) {
        ChangedArea& area = areas[cells->GroupOf(v)];
        Enclose(v, &area.area);
        if (counted != nullptr)
            ++(area.counts.*counted);
    });
    std::stable_sort(areas.begin(), areas.end(), [](const ChangedArea& a, const ChangedArea& b) {
        return Weight(a) > Weight(b);
    });
    return areas;
}

} // namespace

std::vector<ChangedArea> FindAreas(const Side& first, const Side& second,
                                   const std::vector<TextChange>& texts, const Squares& reordered)
{
    const Changes changes(first, second, texts, reordered);
    for (int shift = kFirstShift;; ++shift) {
        CellMap cells(shift);
        changes.Visit([&](const VectorRecord& v, size_t Counts::*) { cells.Mark(v); });
        const size_t count = cells.Number();
        if (count <= kMostAreas || shift == kUnitBits)
            return Collect(changes, &cells, count);
    }
}

} // namespace diff
