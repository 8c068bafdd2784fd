// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Writes the PostScript of one drawing pass. Numbers are formatted into the writer's own buffer,
// always with a decimal point; the format of every line is fixed, as hosts compare files.
#pragma once

#include "support/files.h"
#include "support/rect.h"

#include <cstddef>
#include <memory>
#include <string_view>

/// An open EPS file. Coordinates are drawing units, y downward; the file has them in units of the
/// metafile, y upward. Write errors are not checked.
class EpsWriter
{
public:
    /// Creates the file (or empties it).
    /// @return null when it cannot be opened
    static std::unique_ptr<EpsWriter> Open(const char* path);
    ~EpsWriter();
    EpsWriter(const EpsWriter&) = delete;
    EpsWriter& operator=(const EpsWriter&) = delete;

    /// Writes the comments, the bounding box, the scale and, when asked for, the background.
    /// @param area    what is drawn
    /// @param zoomed  the area is a part of the file, so that the box does not begin at 0
    void Header(const Rect& area, bool zoomed);
    /// Ends the path and sets the line width; thinner ones than giEpsMinLineWidth become that.
    void LineWidth(int width);
    /// Ends the path and sets the colour of a palette index, or black when gfEpsCvt2Blk is set.
    void LineColor(int index);
    /// Continues the path to a point.
    void LineTo(int x, int y);
    /// Starts a new path at one point and continues it to another.
    void MoveAndLineTo(int x1, int y1, int x2, int y2);
    /// Ends a line of the file.
    void EndLine();
    /// Ends the path and the file.
    void Finish();

private:
    explicit EpsWriter(FilePtr output);
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

    FilePtr file;
    size_t used = 0;
    char buffer[kBufferSize];
};
