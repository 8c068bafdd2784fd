// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Draws nothing and finds out where in a picture the work of drawing lies.
#pragma once

#include <QRect>
#include <QTransform>

#include <string_view>
#include <vector>

/// Takes the place of PainterSink.
class SurveySink
{
public:
    /// @param pixels       the part of the picture that is drawn
    /// @param toDevice     from drawing units to its pixels: scales and shifts, no more
    /// @param minPenWidth  drawing units
    SurveySink(const QRect& pixels, const QTransform& toDevice, double minPenWidth);

    void Begin() {}
    void SetWidth(int width, int color);
    void SetColor(int /*color*/, int /*width*/) {}
    void Vector(bool /*continues*/, int x1, int y1, int x2, int y2);
    void Text(std::string_view /*text*/, int /*x*/, int /*y*/) {}
    void Finish() {}

    /// Whether a line may be wider than 0.
    [[nodiscard]] bool HasWidth() const { return hasWidth; }
    /// The widest pen, in drawing units.
    [[nodiscard]] double WidestPen() const { return widest; }
    /// The work of each row, from the top, in nanoseconds.
    [[nodiscard]] std::vector<double> Rows() const;

private:
    // Pixels along one axis.
    struct Range {
        double first, last;

        [[nodiscard]] double Length() const { return last - first; }
        [[nodiscard]] Range In(const Range& other) const;
    };

    [[nodiscard]] Range Reached(double from, double to) const;

    double scaleX, scaleY, shiftX, shiftY;
    Range across, down;
    double minWidth;
    double halfWidth = 0; // of the pen, pixels
    bool hasWidth = false;
    double widest = 0; // drawing units
    // Of each row and one more: by how much its work is more than that of the row above.
    std::vector<double> steps;
};
