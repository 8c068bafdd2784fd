// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/diff/place.h"

#include "meta/plfarea.h"

namespace diff {

namespace {

constexpr int kLetterWidth = 7; // pixels
constexpr int kLetterHeight = 12;

// What rounding may leave open.
constexpr double kRounding = 1e-7;

// Limits a range of the parameter to where start + parameter * step is from least to most.
void Clip(int start, int step, int least, int most, Stretch* range)
{
    if (step == 0) {
        if (start < least || start > most)
            range->to = range->from - 1;
        return;
    }
    const double one = static_cast<double>(least - start) / step;
    const double two = static_cast<double>(most - start) / step;
    range->from = std::max(range->from, std::min(one, two));
    range->to = std::min(range->to, std::max(one, two));
}

} // namespace

VectorRecord TextBox(const TextRecord& text, int unitsInPixel)
{
    const auto length = static_cast<int>(std::min<size_t>(text.text.size(), kUnits));
    VectorRecord box;
    box.x1 = Unit(text.x);
    box.y1 = Unit(text.y);
    box.x2 = Unit(box.x1 + length * kLetterWidth * unitsInPixel);
    box.y2 = Unit(std::min(box.y1 + kLetterHeight * unitsInPixel,
                           std::max<int>(box.y1, kPlfHeight))); // where it can be seen
    return box;
}

bool Cover(std::vector<Stretch>* stretches, double from, double to)
{
    std::sort(stretches->begin(), stretches->end(),
              [](const Stretch& a, const Stretch& b) { return a.from < b.from; });
    double covered = from;
    for (const Stretch& stretch : *stretches) {
        if (stretch.from > covered + kRounding)
            break;
        covered = std::max(covered, stretch.to);
    }
    return covered >= to - kRounding;
}

void AddInside(const VectorRecord& vector, const Area& area, double scale, double shift,
               std::vector<Stretch>* stretches)
{
    Stretch range = {0, 1};
    Clip(vector.x1, vector.x2 - vector.x1, area.left, area.right, &range);
    Clip(vector.y1, vector.y2 - vector.y1, area.bottom, area.top, &range);
    if (range.from <= range.to)
        stretches->push_back({shift + range.from * scale, shift + range.to * scale});
}

} // namespace diff
