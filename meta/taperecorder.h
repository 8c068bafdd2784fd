// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Records a pass on a tape.
#pragma once

#include "meta/tape.h"
#include "meta/unitbounds.h"

#include <QRect>
#include <QTransform>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

struct PlfPass;

/// Takes the place of PainterSink and keeps what would be drawn, but for vectors that no pixel of
/// the picture shows. Throws std::bad_alloc also when the tape would become too long.
class TapeRecorder
{
public:
    /// @param target    must outlive the recording, as must the pass
    /// @param pixels    the part of the picture that is drawn
    /// @param toDevice  from drawing units to its pixels: scales and shifts, no more
    /// @param penWidth  of the pen before the pass, drawing units
    TapeRecorder(Tape& target, const PlfPass& pass, const QRect& pixels, const QTransform& toDevice,
                 double penWidth);

    void Begin() {}
    void SetWidth(int width, int color) { SetPen(width, color); }
    void SetColor(int color, int width) { SetPen(width, color); }
    void Vector(bool /*continues*/, int x1, int y1, int x2, int y2)
    {
        if (!visible.Misses(x1, y1, x2, y2))
            Add(x1, y1, x2, y2);
    }
    void Text(std::string_view text, int x, int y);
    void Finish() { HandOver(); }

private:
    // A block takes others a millisecond or so: they do not wait for long, and hardly ever.
    static constexpr size_t kLines = 4096;
    static constexpr size_t kEvents = 4096;
    static_assert(kLines % Tape::kGroup == 0);

    void SetPen(int width, int color);
    void Add(int x1, int y1, int x2, int y2);
    void AddFar(const Tape::Place& place);
    void EndGroup();
    void Note(Tape::Event::Kind kind, int first, int second);
    void Widen(int width);
    void NewBlock();
    void HandOver();
    void Use(size_t bytes);

    Tape& tape;
    const PlfPass& pass;
    QRectF shown;            // drawing units
    double beyondX, beyondY; // how far from a line's middle its pixels may be, but for the pen
    double widest;           // pen so far
    UnitBounds visible;
    std::unique_ptr<Tape::Block> block;
    size_t used = 0; // bytes
};
