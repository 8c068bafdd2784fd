// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Writes a pass as EPS: decides which vectors continue a path, and how many are on a line.
#pragma once

#include "meta/epswriter.h"
#include "meta/pass.h"
#include "meta/unitbounds.h"

#include <algorithm>
#include <memory>
#include <string_view>

/// Writes one pass. Texts are never written.
class EpsSink
{
public:
    /// @param output      outlives the sink
    /// @param pass        outlives the sink
    /// @param background  palette index
    /// @param nEpsItems   number of the next path item on its line, from 1; outlives the sink
    EpsSink(ByteSink& output, const PlfPass& pass, int background, int& nEpsItems)
        : area(pass), writer(std::make_unique<EpsWriter>(output, pass.eps, background)),
          items(nEpsItems)
    {
    }

    void Begin() { writer->Header(area.Area(), area.IsZoomed()); }
    void SetWidth(int width, int /*color*/) { writer->LineWidth(width); }
    void SetColor(int color, int /*width*/) { writer->LineColor(color); }
    void Vector(bool continues, int x1, int y1, int x2, int y2)
    {
        if (continues)
            writer->LineTo(x2, y2);
        else
            writer->MoveAndLineTo(x1, y1, x2, y2);
        if (area.eps.dots && x1 == x2 && y1 == y2)
            writer->Dot(x2, y2);
        CountItem();
    }
    void Text(std::string_view /*text*/, int /*x*/, int /*y*/) {}
    void Finish() { writer->Finish(); }

private:
    // Path items per line of the output.
    static constexpr int kItemsPerLine = 4;

    // A moveto with its lineto is one item, like a lineto alone.
    void CountItem()
    {
        if (++items > kItemsPerLine) {
            writer->EndLine();
            items = 1;
        }
    }

    const PlfPass& area;
    std::unique_ptr<EpsWriter> writer; // its buffer is too large for the stack
    int& items;
};

/// Writes only the vectors that can leave a trace in the area of a pass.
class EpsAreaSink
{
public:
    /// Both outlive the object.
    EpsAreaSink(EpsSink& output, const PlfPass& drawnPass) : sink(output), pass(drawnPass) {}

    void Begin() { sink.Begin(); }
    void SetWidth(int width, int color)
    {
        visible = BoundsAround(pass.Area(), kReach * std::max(width, pass.eps.minLineWidth));
        sink.SetWidth(width, color);
    }
    void SetColor(int color, int width) { sink.SetColor(color, width); }
    void Vector(bool continues, int x1, int y1, int x2, int y2)
    {
        if (visible.Misses(x1, y1, x2, y2)) {
            leftOut = true;
            return;
        }
        sink.Vector(continues && !leftOut, x1, y1, x2, y2);
        leftOut = false;
    }
    void Text(std::string_view /*text*/, int /*x*/, int /*y*/) {}
    void Finish() { sink.Finish(); }

private:
    // In widths of a line, from its end to the tip of the sharpest corner that the header allows.
    static constexpr double kReach = 15;

    EpsSink& sink;
    const PlfPass& pass;
    UnitBounds visible;
    bool leftOut = false; // the last vector, so that none can continue it
};
