// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Finds the vectors of a recorded pass that later ones hide.
#pragma once

#include <QRect>
#include <QTransform>

#include <vector>

class Tape;

/// Which vectors of a tape change no pixel of a part of the picture in the end, by number. Empty
/// where the pens are too narrow to hide much.
/// @param pixels       the part
/// @param toDevice     from drawing units to pixels: scales and shifts, no more
/// @param penWidth     of the pen before the pass, drawing units
/// @param minPenWidth  drawing units
std::vector<bool> FindHidden(const Tape& tape, const QRect& pixels, const QTransform& toDevice,
                             int penWidth, double minPenWidth);
