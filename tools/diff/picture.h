// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The differences of two graphs as a picture.
#pragma once

#include "tools/diff/pair.h"

#include <QSize>

class QPainter;

namespace diff {

/// The size of a picture, pixels of 1/96 inch.
/// @param sideBySide  both graphs beside each other instead of one above the other
QSize PictureSize(bool sideBySide);

/// Paints the differences, with a legend, on a white ground of PictureSize().
void PaintPicture(const Pair& pair, bool sideBySide, QPainter& painter);

} // namespace diff
