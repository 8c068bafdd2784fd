// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Finds the vectors of a recorded pass that later ones hide.
#pragma once

#include "meta/tape.h"

#include <QRect>
#include <QTransform>

#include <cstddef>
#include <vector>

/// The pen width after a block, in drawing units.
/// @param penWidth  before it
int WidthAfter(const Tape::Block& block, int penWidth);

/// Whether a pen of a block is wide enough to hide much.
/// @param penWidth     of the pen before it, drawing units
/// @param toDevice     from drawing units to pixels: scales and shifts, no more
/// @param minPenWidth  drawing units
bool MayHide(const Tape::Block& block, int penWidth, const QTransform& toDevice,
             double minPenWidth);

/// Which vectors of a tape, from a block on, change no pixel of a part of the picture in the end:
/// for each block that there is. Waits for the end of the tape.
/// @param penWidth  of the pen before the first of these blocks, drawing units
/// @param pixels    the part
std::vector<Tape::Hidden> FindHidden(const Tape& tape, size_t first, int penWidth,
                                     const QRect& pixels, const QTransform& toDevice,
                                     double minPenWidth);
