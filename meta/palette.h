// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The 16 fixed colors, in the forms for screen, paper and PostScript.
#pragma once

#include <QColor>
#include <QPen>

#include <array>

/// Number of palette rows.
constexpr int kPaletteSize = 16;
/// Palette index of white.
constexpr int kWhite = 15;

/// Red, green and blue of each palette index, 0..255.
extern const int iIbmRgbColors[kPaletteSize][3];
/// The same as fractions, 0..1.
using PaletteFractions = std::array<std::array<double, 3>, kPaletteSize>;
extern const PaletteFractions kPaletteFractions;
/// The same fractions again; filled by initGraphics. Drawing does not use them.
extern double EpsRgbColors[kPaletteSize][3];
/// One solid pen of width 1 per palette index; filled by initGraphics. Drawing does not use them.
extern QPen ghpenIbmClr[kPaletteSize];
/// Black dotted pen of width 1; filled by initGraphics.
extern QPen gdotpen;

/// Gives EpsRgbColors, the palette pens and gdotpen their values. Called once, by the main window.
void initGraphics();

/// The opaque color of a palette index. Any index without a row, such as 16 (a background
/// character that names no color), is white.
QColor PaletteColor(long index);
/// The color of lines with a palette index. White ones would be invisible on white, so that they
/// are black there. Black on black is not changed, deliberately.
/// @param background  palette index
QColor LineColor(int index, int background);
