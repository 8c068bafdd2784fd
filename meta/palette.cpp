// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/palette.h"

#include <algorithm>
#include <iterator>

constexpr int iIbmRgbColors[kPaletteSize][3] = {
    {0, 0, 0},     {0, 0, 127},     {0, 127, 0},   {0, 127, 127},   {127, 0, 0}, {127, 0, 127},
    {127, 127, 0}, {127, 127, 127}, {63, 63, 63},  {0, 0, 255},     {0, 255, 0}, {0, 255, 255},
    {255, 0, 0},   {255, 0, 255},   {255, 255, 0}, {255, 255, 255},
};
static_assert(std::size(iIbmRgbColors) == kPaletteSize);

namespace {

constexpr PaletteFractions MakeFractions()
{
    PaletteFractions fractions = {};
    for (size_t i = 0; i < kPaletteSize; ++i) {
        for (size_t c = 0; c < 3; ++c)
            fractions[i][c] = iIbmRgbColors[i][c] / 255.0;
    }
    return fractions;
}

} // namespace

constexpr PaletteFractions kPaletteFractions = MakeFractions();

double EpsRgbColors[kPaletteSize][3];
// The palette pens are created before gdotpen and destroyed after it.
QPen ghpenIbmClr[kPaletteSize];
QPen gdotpen;

QColor PaletteColor(long index)
{
    if (index < 0 || index >= kPaletteSize)
        index = kWhite;
    const int* rgb = iIbmRgbColors[index];
    return {rgb[0], rgb[1], rgb[2], 255};
}

void initGraphics()
{
    for (size_t i = 0; i < kPaletteSize; ++i) {
        ghpenIbmClr[i].setColor(PaletteColor(static_cast<long>(i)));
        ghpenIbmClr[i].setStyle(Qt::SolidLine);
        ghpenIbmClr[i].setWidth(1);
        std::copy(kPaletteFractions[i].begin(), kPaletteFractions[i].end(), EpsRgbColors[i]);
    }
    gdotpen.setColor(QColor(0, 0, 0, 255));
    gdotpen.setStyle(Qt::DotLine);
    gdotpen.setWidth(1);
}

QColor LineColor(int index, int background)
{
    return PaletteColor(background == kWhite && index == kWhite ? 0 : index);
}
