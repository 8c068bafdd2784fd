// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The outline of a wide line with square ends, in device pixels: the one that QPainter fills.
#pragma once

#include <QPointF>
#include <QTransform>

#include <array>

/// Coordinates on the device are whole numbers of these parts of a pixel.
constexpr int kPixelBits = 8;
constexpr int kPixel = 1 << kPixelBits;

struct Outline {
    struct Point {
        int x;
        int y;
    };
    /// The corners and, on the two long sides, the places beside the line's own ends: each is
    /// rounded by itself, so that the long sides are bent a little there. At the end the first one
    /// once more, which in rare cases is rounded the other way; then back to the first. A shape of
    /// fewer corners has its last one several times.
    std::array<Point, 9> points;
    /// The pixels that they lie in, or one more on a side.
    int left, top, right, bottom;
};

/// The outline of a rectangle from one corner to the opposite one, in device pixels, close to the
/// device's origin.
Outline OutlineOf(const QPointF& from, const QPointF& to);

/// Makes the outlines of lines that have a width and a mapping in common.
class OutlineMaker
{
public:
    /// Whether outlines can be made for a mapping: one that scales and shifts, and not too far.
    static bool CanMap(const QTransform& toDevice);

    /// @param toDevice  from drawing units to pixels; CanMap() holds for it
    /// @param width     of the lines, drawing units; above 0
    OutlineMaker(const QTransform& toDevice, double width);

    /// The outline of a line that is longer than 0, from and to in drawing units.
    /// @return false when it reaches 2^20 pixels or more from the device's origin: no outline then
    bool Make(int x1, int y1, int x2, int y2, Outline& outline) const;

private:
    // In 64ths of a pixel.
    struct Axis {
        double scale;
        double shift;
    };

    void MakeWithStroker(int x1, int y1, int x2, int y2, Outline& outline) const;

    QTransform mapping;
    Axis across;
    Axis down;
    double halfWidth;
};
