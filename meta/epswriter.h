// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Writes the PostScript of one drawing pass. Numbers are formatted into the writer's own buffer,
// always with a decimal point; the format of every line is fixed, as hosts compare files.
#pragma once

#include "meta/pass.h"
#include "support/rect.h"

#include <cstddef>
#include <string_view>

class ByteSink;

/// An EPS under way. Coordinates are drawing units, y downward; the output has them in units of the
/// metafile, y upward.
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

    /// Writes the comments, the bounding box, the scale and, when asked for, the background.
    /// @param area    what is drawn
    /// @param zoomed  the area is a part of the file, so that the box does not begin at 0
    void Header(const Rect& area, bool zoomed);
    /// Ends the path and sets the line width; thinner ones than the options' become that.
    void LineWidth(int width);
    /// Ends the path and sets the color of a palette index, or black when all lines are.
    void LineColor(int index);
    /// Continues the path to a point.
    void LineTo(int x, int y);
    /// Starts a new path at one point and continues it to another.
    void MoveAndLineTo(int x1, int y1, int x2, int y2);
    /// Ends a line of the output.
    void EndLine();
    /// Ends the path and hands on what is left.
    void Finish();

private:
    void BoundingBox(const Rect& area, bool zoomed);
    void Background(const Rect& area);
    void Point(int x, int y);
    void Color(const double* rgb);
    void Text(std::string_view text);
    void Integer(int value);
    void Decimal(double value);
    void Reserve(size_t bytes)
    {
        if (bytes > kBufferSize - used)
            Flush();
    }
    void Flush();

    // Large enough that a write call costs nothing beside the formatting of what it holds.
    static constexpr size_t kBufferSize = size_t{256} * 1024;

    ByteSink& sink;
    const EpsOptions& options;
    int background;
    size_t used = 0;
    char buffer[kBufferSize];
};
