// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// How large a picture is, and how large one may be.
#pragma once

#include "meta/plfarea.h"
#include "tools/convert/picturesettings.h"

namespace convert {

/// The width of a picture unless another one is asked for, pixels.
constexpr int kDefaultWidth = kUnscaledWidth;
/// Longest side of a picture in pixels.
constexpr int kMaxSide = kMaxPictureSide;
/// Most pixels of a picture; as an image they take 1 GB.
constexpr int kMaxPixels = 1 << 28;
/// The screen's resolution in pixels per inch, for which the application's font has its size.
constexpr int kScreenDpi = 96;

/// Longest side of a picture that is not made of pixels, points or pixels: one that is as long as a
/// street.
constexpr int kMaxLength = 1'000'000;
constexpr double kPointsPerInch = 72.0;

/// The resolution in pixels per inch.
int Dpi(const PictureSettings& settings);
/// The size of the picture in pixels: what is asked for, or the shape of the area.
QSize PictureSize(const PictureSettings& settings);
/// The size of the picture in points, not rounded to pixels.
QSizeF PaperSize(const PictureSettings& settings);
/// Where the graph is in the picture, in pixels: all of it unless it is fitted on a page.
QRect GraphPlace(const PictureSettings& settings);
/// The width of the graph in points, not rounded to pixels.
double GraphWidth(const PictureSettings& settings);
/// The factor on line widths that the viewer has for this picture: in a window of as many pixels,
/// or, if the size is one on paper, of as many as it takes on a screen, zoomed to the area.
double ViewerLineScale(const PictureSettings& settings);
/// Whether there is space on the page for the graph.
bool HasSpace(const PictureSettings& settings);
/// Whether a picture of that size can be made of pixels.
bool IsPossible(QSize size);

} // namespace convert
