// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/palette.h"

#include <iterator>

const int iIbmRgbColors[kPaletteSize][3] = {
    {0, 0, 0},     {0, 0, 127},     {0, 127, 0},   {0, 127, 127},   {127, 0, 0}, {127, 0, 127},
    {127, 127, 0}, {127, 127, 127}, {63, 63, 63},  {0, 0, 255},     {0, 255, 0}, {0, 255, 255},
    {255, 0, 0},   {255, 0, 255},   {255, 255, 0}, {255, 255, 255},
};
static_assert(std::size(iIbmRgbColors) == kPaletteSize);

double EpsRgbColors[kPaletteSize][3];
// The palette pens are made before gdotpen and destroyed after it.
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
    for (int i = 0; i < kPaletteSize; ++i) {
        ghpenIbmClr[i].setColor(PaletteColor(i));
        ghpenIbmClr[i].setStyle(Qt::SolidLine);
        ghpenIbmClr[i].setWidth(1);
        for (int c = 0; c < 3; ++c)
            EpsRgbColors[i][c] = iIbmRgbColors[i][c] / 255.0;
    }
    gdotpen.setColor(QColor(0, 0, 0, 255));
    gdotpen.setStyle(Qt::DotLine);
    gdotpen.setWidth(1);
}
