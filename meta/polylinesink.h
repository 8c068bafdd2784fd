// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Joins the vectors of a pass into polylines, for formats that keep lines as lines.
#pragma once

#include "meta/address.h"
#include "meta/pass.h"
#include "meta/unitbounds.h"

#include <QColor>
#include <QString>

#include <string_view>
#include <vector>

/// Takes what a pass draws: in drawing units, in the order of the file as far as it is visible.
class PolylineTarget
{
public:
    PolylineTarget() = default;
    virtual ~PolylineTarget() = default;
    PolylineTarget(const PolylineTarget&) = delete;
    PolylineTarget& operator=(const PolylineTarget&) = delete;

    /// The color of everything that follows, and the width of its lines and dots.
    virtual void SetPen(const QColor& color, double width) = 0;
    /// A line through at least two points, none of which is the one before. Its caps are square; at
    /// its corners, which are at least right angles, the outer edges are extended until they meet.
    virtual void Polyline(const std::vector<PlfPoint>& points) = 0;
    /// A dot: a square with its sides along the axes, as wide as the pen.
    virtual void Dot(PlfPoint at) = 0;
    /// A text, with its baseline at a point.
    virtual void Text(const QString& text, PlfPoint at) = 0;
    /// Nothing follows.
    virtual void Finish() = 0;
};

/// Passes on what touches the area of a pass.
class PolylineSink
{
public:
    /// @param output      outlives the sink
    /// @param pass        outlives the sink
    /// @param background  palette index, on which white lines are black
    /// @param tolerance   how far what two lines cover with square caps of their own may extend
    ///                    beyond the polyline that replaces them, drawing units
    PolylineSink(PolylineTarget& output, const PlfPass& pass, int background, double tolerance);

    void Begin() { points.reserve(kMostPoints); }
    void SetWidth(int width, int color) { SetPen(color, width); }
    void SetColor(int color, int width) { SetPen(color, width); }
    void Vector(bool /*continues*/, int x1, int y1, int x2, int y2)
    {
        if (!visible.Misses(x1, y1, x2, y2))
            Add({x1, y1}, {x2, y2});
    }
    void Text(std::string_view text, int x, int y);
    void Finish();

private:
    // Enough to make the beginning of a polyline negligible, and few enough for programs whose
    // effort grows faster than the length of a polyline does.
    static constexpr size_t kMostPoints = 1024;

    void SetPen(int color, int width);
    void Add(PlfPoint from, PlfPoint to);
    [[nodiscard]] bool Continues(PlfPoint from, PlfPoint to) const;
    void Flush();

    PolylineTarget& target;
    const PlfPass& pass;
    int background;
    double tolerance;
    int penWidth = 0;             // as the file has it
    double standOut = 0;          // how far a cap may, in halves of the pen's width
    UnitBounds visible;           // where lines with this pen can touch the area
    std::vector<PlfPoint> points; // of the waiting polyline
};
