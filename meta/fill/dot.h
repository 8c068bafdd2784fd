// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A dot: what a vector of no length leaves. It is a square as wide as the pen, whose sides run
// along the axes of the drawing, also where the drawing is turned. Qt has no rule of its own for
// it: a square, a part of one or nothing, as the pen, the mapping and the format go.
#pragma once

#include <QRectF>
#include <QSize>

class QPainter;
class QTransform;

/// What a dot covers of a picture made of pixels, in drawing units: where the pen is thinner than a
/// pixel, across or down, the whole pixel that its point lies in, so that it is seen. A point on
/// the right or lower edge of the picture lies in the last pixel before it.
/// @param width     of the pen, drawing units
/// @param toDevice  from drawing units to pixels; invertible
/// @param picture   all of it, pixels
QRectF DotOnPixels(int x, int y, double width, const QTransform& toDevice, const QSize& picture);

/// Paints a dot with a painter's pen on pixels. Of the thinnest pen only one that Qt puts beside
/// the picture: others Qt itself paints, as a pixel, in their place among the lines of that pen.
void PaintDotOnPixels(QPainter& painter, int x, int y);

/// Whether Qt paints a dot of the thinnest pen beside the picture, although its point is in it or
/// on its edge: it takes the nearest pixel, not the one in which the point lies.
bool IsPutBeside(const QPainter& painter, int x, int y);

/// Paints a dot with a painter's pen where there are no pixels: in a file or on paper. One of the
/// thinnest pen is as long as a drawing unit, which is not longer than such a line is wide.
void PaintDotOnPaper(QPainter& painter, int x, int y);
