// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Writes a pass as EPS: decides which vectors continue a path, and how many are on a line.
#pragma once

#include "meta/epswriter.h"
#include "meta/pass.h"

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
