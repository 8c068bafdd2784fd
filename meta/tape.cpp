// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/tape.h"

#include "meta/paintersink.h"
#include "meta/passwatch.h"
#include "support/numbers.h"

#include <algorithm>
#include <cmath>

namespace {

// Device pixels that a line may extend beyond its pen, and one for what is rounded here.
constexpr double kReach = 4.0;

bool IsShort(int value)
{
    return static_cast<int16_t>(value) == value;
}

} // namespace

void Tape::Box::Add(const Line& line)
{
    left = std::min({left, line.x1, line.x2});
    top = std::min({top, line.y1, line.y2});
    right = std::max({right, line.x1, line.x2});
    bottom = std::max({bottom, line.y1, line.y2});
}

Tape::Tape(const PlfPass& recorded, const QRect& pixels, const QTransform& toDevice,
           double penWidth)
    : pass(recorded), shown(toDevice.inverted().mapRect(QRectF(pixels))),
      beyondX(kReach / std::abs(toDevice.m11())), beyondY(kReach / std::abs(toDevice.m22())),
      widest(std::max(penWidth, pass.minPenWidth))
{
    Widen(0);
}

// A width that no pen can have leaves the pen as it was, so that the widest one counts.
void Tape::Widen(int width)
{
    widest = std::max<double>(widest, PenWidthOf(width, 0));
    visible = {TruncToInt(std::floor(shown.left() - beyondX - widest)),
               TruncToInt(std::floor(shown.top() - beyondY - widest)),
               TruncToInt(std::ceil(shown.right() + beyondX + widest)),
               TruncToInt(std::ceil(shown.bottom() + beyondY + widest))};
}

void Tape::SetPen(int width, int color)
{
    Widen(width);
    Note(Event::Kind::kPen, width, color);
}

void Tape::Text(std::string_view text, int x, int y)
{
    if (!HasSpace(sizeof(Label) + text.size()))
        return;
    Note(Event::Kind::kText, static_cast<int>(texts.size()), 0);
    texts.push_back({std::string(text), x, y});
}

void Tape::Add(int x1, int y1, int x2, int y2)
{
    if (!IsShort(x1) || !IsShort(y1) || !IsShort(x2) || !IsShort(y2)) {
        if (!HasSpace(sizeof(Place)))
            return;
        Note(Event::Kind::kFarVector, static_cast<int>(farVectors.size()), 0);
        farVectors.push_back({x1, y1, x2, y2});
        return;
    }
    if (lines.size() % kGroup == 0) {
        if (!HasSpace(kGroup * sizeof(Line) + sizeof(Box)))
            return;
        boxes.emplace_back();
        if (pass.watch != nullptr)
            pass.watch->Tick();
    }
    lines.push_back({static_cast<int16_t>(x1), static_cast<int16_t>(y1), static_cast<int16_t>(x2),
                     static_cast<int16_t>(y2)});
    boxes.back().Add(lines.back());
}

void Tape::Note(Event::Kind kind, int first, int second)
{
    if (HasSpace(sizeof(Event)))
        events.push_back({static_cast<uint32_t>(lines.size()), kind, first, second});
}

// Once full, it stays so: what is incomplete is of no use.
bool Tape::HasSpace(size_t bytes)
{
    isFull = isFull || used + bytes > kMostBytes;
    if (!isFull)
        used += bytes;
    return !isFull;
}

void Tape::Play(PainterSink& sink, const std::vector<bool>& hidden) const
{
    sink.Begin();
    size_t at = 0;
    for (const Event& event : events) {
        PlayLines(sink, at, event.at, hidden);
        PlayEvent(sink, event);
        at = event.at;
    }
    PlayLines(sink, at, lines.size(), hidden);
    sink.Finish();
}

void Tape::PlayLines(PainterSink& sink, size_t begin, size_t end,
                     const std::vector<bool>& hidden) const
{
    while (begin < end) {
        const Box& box = boxes[begin / kGroup];
        const size_t stop = std::min(end, (begin / kGroup + 1) * kGroup);
        if (sink.Misses(box.left, box.top, box.right, box.bottom))
            begin = stop;
        for (; begin < stop; ++begin) {
            const Line line = lines[begin];
            if (hidden.empty() || !hidden[begin])
                sink.Vector(false, line.x1, line.y1, line.x2, line.y2);
        }
    }
}

void Tape::PlayEvent(PainterSink& sink, const Event& event) const
{
    const auto number = static_cast<size_t>(event.first);
    switch (event.kind) {
    case Event::Kind::kPen:
        sink.SetPen(event.second, event.first);
        break;
    case Event::Kind::kText:
        sink.Text(texts[number].text, texts[number].x, texts[number].y);
        break;
    case Event::Kind::kFarVector: {
        const Place& far = farVectors[number];
        sink.Vector(false, far.x1, far.y1, far.x2, far.y2);
        break;
    }
    }
}
