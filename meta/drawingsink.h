// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Keeps what is drawn instead of drawing it.
#pragma once

#include "meta/drawing.h"
#include "meta/plfarea.h"
#include "meta/state.h"

#include <string_view>

/// Takes the place of PainterSink.
class DrawingSink
{
public:
    /// @param target    receives vectors and texts
    /// @param settings  of texts; both outlive the sink
    DrawingSink(PlfDrawing& target, const TextState& settings) : drawing(target), text(settings) {}

    void Begin() {}
    void SetWidth(int width, int /*color*/) { next.width = width; }
    void SetColor(int color, int /*width*/) { next.color = static_cast<uint8_t>(color); }
    void Vector(bool continues, int x1, int y1, int x2, int y2)
    {
        if (!continues)
            ++next.path;
        next.x1 = static_cast<int16_t>(x1);
        next.y1 = static_cast<int16_t>(kPlfHeight - y1);
        next.x2 = static_cast<int16_t>(x2);
        next.y2 = static_cast<int16_t>(kPlfHeight - y2);
        drawing.vectors.push_back(next);
    }
    void Text(std::string_view shown, int x, int y);
    void Finish() {}

private:
    PlfDrawing& drawing;
    const TextState& text;
    VectorRecord next = {.path = UINT32_MAX}; // the first vector begins path 0
};
