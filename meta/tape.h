// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What a pass draws, decoded once, so that it can be drawn by several painters and looked at from
// its end.
#pragma once

#include "meta/pass.h"
#include "meta/unitbounds.h"

#include <QRect>
#include <QTransform>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

class PainterSink;

/// Takes the place of PainterSink and keeps what would be drawn, but for vectors that no pixel of
/// the picture shows.
class Tape
{
public:
    /// More would not be worth the memory: bytes.
    static constexpr size_t kMostBytes = size_t{32} * 1024 * 1024;

    /// A vector from one point to another, in drawing units. Hardly any needs more digits.
    struct Line {
        int16_t x1, y1, x2, y2;
    };
    /// What comes between the vectors.
    struct Event {
        enum class Kind : uint32_t { kPen, kText, kFarVector };

        uint32_t at; // before this vector
        Kind kind;
        int first, second; // width and color, or the number of the text or far vector
    };

    /// @param pass      must outlive the recording
    /// @param pixels    the part of the picture that is drawn
    /// @param toDevice  from drawing units to its pixels: scales and shifts, no more
    /// @param penWidth  of the pen before the pass, drawing units
    Tape(const PlfPass& pass, const QRect& pixels, const QTransform& toDevice, double penWidth);

    void Begin() {}
    void SetWidth(int width, int color) { SetPen(width, color); }
    void SetColor(int color, int width) { SetPen(width, color); }
    void Vector(bool /*continues*/, int x1, int y1, int x2, int y2)
    {
        if (!visible.Misses(x1, y1, x2, y2))
            Add(x1, y1, x2, y2);
    }
    void Text(std::string_view text, int x, int y);
    void Finish() {}

    /// Whether there was space for all.
    [[nodiscard]] bool IsComplete() const { return !isFull; }
    [[nodiscard]] const std::vector<Line>& Lines() const { return lines; }
    [[nodiscard]] const std::vector<Event>& Events() const { return events; }

    /// Draws what was recorded.
    /// @param hidden  vectors that need not be drawn, by number; empty = none
    void Play(PainterSink& sink, const std::vector<bool>& hidden) const;

private:
    struct Place {
        int x1, y1, x2, y2;
    };
    struct Label {
        std::string text;
        int x, y;
    };
    // What a group of vectors reaches.
    struct Box {
        int16_t left = std::numeric_limits<int16_t>::max();
        int16_t top = std::numeric_limits<int16_t>::max();
        int16_t right = std::numeric_limits<int16_t>::min();
        int16_t bottom = std::numeric_limits<int16_t>::min();

        void Add(const Line& line);
    };

    // Few enough to lie close together, and enough to make the look at their box negligible.
    static constexpr size_t kGroup = 64;

    void SetPen(int width, int color);
    void Add(int x1, int y1, int x2, int y2);
    void Note(Event::Kind kind, int first, int second);
    void Widen(int width);
    [[nodiscard]] bool HasSpace(size_t bytes);
    void PlayLines(PainterSink& sink, size_t begin, size_t end,
                   const std::vector<bool>& hidden) const;
    void PlayEvent(PainterSink& sink, const Event& event) const;

    const PlfPass& pass;
    QRectF shown;            // drawing units
    double beyondX, beyondY; // how far from a line's middle its pixels may be, but for the pen
    double widest;           // pen so far
    UnitBounds visible;
    std::vector<Line> lines;
    std::vector<Box> boxes;
    std::vector<Event> events;
    std::vector<Place> farVectors;
    std::vector<Label> texts;
    size_t used = 0; // bytes
    bool isFull = false;
};
