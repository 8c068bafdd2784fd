// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A dot: what a vector of no length leaves. It is a square as wide as the pen, whose sides run
// along the axes of the drawing, also where the drawing is turned. Qt has no rule of its own for
// it: a square, a part of one or nothing, as the pen, the mapping and the format go.
#pragma once

#include <QRectF>

class QPainter;
class QTransform;

/// What a dot covers of a picture made of pixels, in drawing units: where the pen is thinner than a
/// pixel, across or down, the whole pixel that its point lies in, so that it is seen.
/// @param width     of the pen, drawing units
/// @param toDevice  from drawing units to pixels; invertible
QRectF DotOnPixels(int x, int y, double width, const QTransform& toDevice);

/// Paints a dot with a painter's pen on pixels. The pen is wider than 0: for the thinnest one Qt
/// itself paints a pixel, in its place among the lines of that pen.
void PaintDotOnPixels(QPainter& painter, int x, int y);

/// Paints a dot with a painter's pen where there are no pixels: in a file or on paper. One of the
/// thinnest pen is as long as a drawing unit, which is not longer than such a line is wide.
void PaintDotOnPaper(QPainter& painter, int x, int y);
