// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/colormap.h"

#include "meta/palette.h"

namespace {

// Palette index of a hue in degrees, 0..360 in steps of 30; each row applies below its limit.
struct HueRow {
    int below;
    int color;
};
constexpr HueRow kHues[] = {{15, 1},   {45, 13},  {75, 5},  {105, 12}, {135, 4}, {165, 6},
                            {195, 14}, {225, 10}, {255, 2}, {285, 11}, {315, 3}, {345, 9}};

uint32_t ColorOfHue(int hue)
{
    for (const HueRow& row : kHues) {
        if (hue < row.below)
            return static_cast<uint32_t>(row.color);
    }
    return 1;
}

} // namespace

void getclrq(int k, uint32_t* map, const int* hls)
{
    if (k < 0 || k >= kLineIndexCount)
        return;
    const int lightness = hls[1];
    if (hls[2] > 9)
        map[k] = ColorOfHue(hls[0]);
    else if (lightness > 80)
        map[k] = kWhite;
    else if (lightness == 80)
        return; // the entry is unchanged: a deliberate gap
    else if (lightness >= 35)
        map[k] = 7;
    else if (lightness >= 10)
        map[k] = 8;
    else
        map[k] = 0;
}
