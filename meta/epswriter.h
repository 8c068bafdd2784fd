// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Writes the PostScript of one drawing pass. Numbers are formatted into the writer's own buffer,
// always with a decimal point. The format of every line is fixed, because hosts compare files.
#pragma once

#include "meta/pass.h"
#include "support/rect.h"

#include <cstddef>
#include <string_view>

class ByteSink;

/// Writes one EPS. Coordinates are in drawing units, y downward; in the output they are in file
/// units, y upward.
class EpsWriter
{
public:
    /// @param output      outlives the writer
    /// @param options     outlive the writer
    /// @param background  palette index of the pass, on which white lines are black
    EpsWriter(ByteSink& output, const EpsOptions& options, int background);
    ~EpsWriter();
    EpsWriter(const EpsWriter&) = delete;
    EpsWriter& operator=(const EpsWriter&) = delete;

    /// Writes the comments, the bounding box, the scale and, if requested, the background.
    /// @param area    the part to draw
    /// @param zoomed  the area is a part of the graph, so the box does not begin at 0
    void Header(const Rect& area, bool zoomed);
    /// Ends the path and sets the line width, at least the minimum of the options.
    void LineWidth(int width);
    /// Ends the path and sets the color of a palette index, or black if all lines are.
    void LineColor(int index);
    /// Continues the path to a point.
    void LineTo(int x, int y);
    /// Starts a new path at one point and continues it to another.
    void MoveAndLineTo(int x1, int y1, int x2, int y2);
    /// Paints a square as wide as the line at a point. The path is left as it is.
    void Dot(int x, int y);
    /// Ends a line of the output.
    void EndLine();
    /// Ends the path and writes the rest.
    void Finish();

private:
    void BoundingBox(const Rect& area, bool zoomed);
    void Scale();
    void Background(const Rect& area);
    void Point(int x, int y);
    void Color(const double* rgb);
    void Text(std::string_view text);
    void Integer(int value);
    void Decimal(double value);
    void Exactly(double value);
    void Reserve(size_t bytes)
    {
        if (bytes > kBufferSize - used)
            Flush();
    }
    void Flush();

    // Large enough to make the cost of a write call negligible.
    static constexpr size_t kBufferSize = size_t{256} * 1024;

    ByteSink& sink;
    const EpsOptions& options;
    int background;
    int lineWidth = 0;
    size_t used = 0;
    char buffer[kBufferSize];
};
