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
/// Longest side of a picture in pixels: Qt paints no farther.
constexpr int kMaxSide = 32767;
/// Most pixels of a picture; as an image they take 1 GB.
constexpr int kMaxPixels = 1 << 28;
/// The screen's resolution in pixels per inch, for which the application's font has its size.
constexpr int kScreenDpi = 96;

/// The size of the picture in pixels: what is asked for, or the shape of the area.
QSize PictureSize(const PictureSettings& settings);
/// Whether a picture of that size can be made.
bool IsPossible(QSize size);

} // namespace convert
