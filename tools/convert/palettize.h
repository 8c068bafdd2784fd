// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Most graphs have few colors, and an image that lists them is written several times as fast.
#pragma once

#include <QImage>

namespace convert {

/// The same image with a color table when it has at most 256 colors, else the image itself.
/// @param image  RGB32 or ARGB32
QImage Palettized(const QImage& image);

} // namespace convert
