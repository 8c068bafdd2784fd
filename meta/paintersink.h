// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Paints a pass: coordinate mapping, background, pens, vectors and texts.
#pragma once

#include "meta/linepainter.h"
#include "meta/pass.h"

#include <QPen>

#include <string_view>

class QPainter;
class QRect;

/// Widest pen that Qt accepts. It rejects wider and negative ones and keeps the old width.
constexpr int kMaxPenWidth = 32767;

/// The width of the pen on a screen or an image, in drawing units.
/// @param width   line width as a file says it
/// @param before  the pen's, which one keeps that Qt would reject
int PenWidthOf(int width, int before);

/// Paints one pass.
class PainterSink
{
public:
    /// @param target      active; outlives the sink
    /// @param pass        outlives the sink
    /// @param background  palette index
    /// @param workingPen  the pen of the lines; outlives the sink
    PainterSink(QPainter& target, const PlfPass& pass, int background, QPen& workingPen);

    /// Draws only on some pixels of an image that the painter paints on.
    void LimitTo(const QRect& pixels) { lines.LimitTo(pixels); }
    /// Maps the painter's window to the area and, for a page, its viewport.
    void MapWindow();
    /// Maps the painter and fills the background.
    void Begin();
    void SetWidth(int width, int color) { SetPen(color, width); }
    void SetColor(int color, int width) { SetPen(color, width); }
    void Vector(bool /*continues*/, int x1, int y1, int x2, int y2) { lines.Line(x1, y1, x2, y2); }
    /// Whether all lines within a rectangle, in drawing units, leave no trace on a pixel.
    [[nodiscard]] bool Misses(int left, int top, int right, int bottom) const
    {
        return lines.Misses(left, top, right, bottom);
    }
    /// Whether each line within it may leave one, as far as is known.
    [[nodiscard]] bool Holds(int left, int top, int right, int bottom) const
    {
        return lines.Holds(left, top, right, bottom);
    }
    /// As Vector(), within a rectangle that Holds() is true of.
    void HeldVector(int x1, int y1, int x2, int y2) { lines.HeldLine(x1, y1, x2, y2); }
    void Text(std::string_view text, int x, int y);
    void Finish() { lines.Flush(); }

    /// Sets the pen's color from a palette index and its width from a line width of the file.
    void SetPen(int index, int width);

private:
    void MapPage(const PrintedPage& page);
    void ClipToPage(const QRect& page);
    void FillBackground();
    [[nodiscard]] int PenWidth(int width) const;
    [[nodiscard]] QPen Visible(QPen thin) const;

    QPainter& painter;
    const PlfPass& pass;
    int background;
    QPen& pen;
    LinePainter lines;
};
