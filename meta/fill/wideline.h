// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A wide line with square ends as what it is before it is mapped: a rectangle.
#pragma once

#include <QRectF>

#include <cmath>

class WideLine
{
public:
    /// A line that is longer than 0; all in drawing units.
    WideLine(int x1, int y1, int x2, int y2, double width)
        : middleX((0.0 + x1 + x2) / 2), middleY((0.0 + y1 + y2) / 2), onX(0.0 + x2 - x1),
          onY(0.0 + y2 - y1), aside(width / 2)
    {
        const double length = std::hypot(onX, onY);
        onX /= length;
        onY /= length;
        onward = (length + width) / 2;
    }

    /// Whether all of a rectangle lies within the line.
    [[nodiscard]] bool Contains(const QRectF& rect) const
    {
        return Aside(rect) + HalfAside(rect) <= aside && Onward(rect) + HalfOnward(rect) <= onward;
    }
    /// Whether all of a rectangle lies beside the line, or beyond one end of it.
    [[nodiscard]] bool Misses(const QRectF& rect) const
    {
        return Aside(rect) - HalfAside(rect) > aside || Onward(rect) - HalfOnward(rect) > onward;
    }

private:
    // How far the middle of a rectangle is from the line's, and how far it reaches from there.
    [[nodiscard]] double Aside(const QRectF& rect) const
    {
        return std::abs(onX * (rect.center().y() - middleY) - onY * (rect.center().x() - middleX));
    }
    [[nodiscard]] double Onward(const QRectF& rect) const
    {
        return std::abs(onX * (rect.center().x() - middleX) + onY * (rect.center().y() - middleY));
    }
    [[nodiscard]] double HalfAside(const QRectF& rect) const
    {
        return (std::abs(onY) * rect.width() + std::abs(onX) * rect.height()) / 2;
    }
    [[nodiscard]] double HalfOnward(const QRectF& rect) const
    {
        return (std::abs(onX) * rect.width() + std::abs(onY) * rect.height()) / 2;
    }

    double middleX, middleY;
    double onX, onY; // the line's direction, of length 1
    double aside;    // how far the line reaches from its middle
    double onward;
};
