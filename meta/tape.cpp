// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/tape.h"

#include "meta/paintersink.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace {

// Two vectors, the coordinates of which are compared at a time.
using Lanes = int16_t __attribute__((vector_size(2 * sizeof(Tape::Line))));

Lanes Two(const Tape::Line& one, const Tape::Line& other)
{
    Lanes lanes;
    memcpy(&lanes, &one, sizeof(one));
    memcpy(reinterpret_cast<char*>(&lanes) + sizeof(one), &other, sizeof(other));
    return lanes;
}

} // namespace

void Tape::Block::AddBox(size_t count)
{
    const Line* const after = lines.data() + lines.size();
    const Line* line = after - count;
    Lanes low = Two(*line, *(after - 1));
    Lanes high = low;
    for (; line + 1 < after; line += 2) {
        const Lanes two = Two(line[0], line[1]);
        low = two < low ? two : low;
        high = two > high ? two : high;
    }
    boxes.push_back({std::min({low[0], low[2], low[4], low[6]}),
                     std::min({low[1], low[3], low[5], low[7]}),
                     std::max({high[0], high[2], high[4], high[6]}),
                     std::max({high[1], high[3], high[5], high[7]})});
}

void Tape::Block::Play(PainterSink& sink, const Hidden& hidden) const
{
    size_t at = 0;
    for (const Event& event : events) {
        PlayLines(sink, at, event.at, hidden);
        PlayEvent(sink, event);
        at = event.at;
    }
    PlayLines(sink, at, lines.size(), hidden);
}

// Calls a function for each vector that is not hidden.
template <typename Function>
void Tape::Block::ForLines(size_t begin, size_t stop, const Hidden& hidden, Function function) const
{
    const bool hides = !hidden.empty();
    for (; begin < stop; ++begin) {
        if (!hides || !hidden[begin])
            function(lines[begin]);
    }
}

// Of most groups, a band needs all vectors or none.
void Tape::Block::PlayLines(PainterSink& sink, size_t begin, size_t stop,
                            const Hidden& hidden) const
{
    while (begin < stop) {
        const Box& box = boxes[begin / kGroup];
        const size_t groupStop = std::min(stop, (begin / kGroup + 1) * kGroup);
        if (sink.Holds(box.left, box.top, box.right, box.bottom)) {
            ForLines(begin, groupStop, hidden, [&sink](const Line& line) {
                sink.HeldVector(line.x1, line.y1, line.x2, line.y2);
            });
        } else if (!sink.Misses(box.left, box.top, box.right, box.bottom)) {
            ForLines(begin, groupStop, hidden, [&sink](const Line& line) {
                sink.Vector(false, line.x1, line.y1, line.x2, line.y2);
            });
        }
        begin = groupStop;
    }
}

void Tape::Block::PlayEvent(PainterSink& sink, const Event& event) const
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

void Tape::Add(std::unique_ptr<const Block> block)
{
    const std::lock_guard lock(mutex);
    blocks.push_back(std::move(block));
    changed.notify_all();
}

void Tape::Finish(End how)
{
    const std::lock_guard lock(mutex);
    end = how;
    changed.notify_all();
}

Tape::End Tape::HowItEnded() const
{
    const std::lock_guard lock(mutex);
    return end;
}

const Tape::Block* Tape::Await(size_t number) const
{
    std::unique_lock lock(mutex);
    changed.wait(lock, [&] { return number < blocks.size() || end != End::kNone; });
    const bool isThere = number < blocks.size() && (end == End::kNone || end == End::kWhole);
    return isThere ? blocks[number].get() : nullptr;
}

size_t Tape::AwaitEnd() const
{
    std::unique_lock lock(mutex);
    changed.wait(lock, [this] { return end != End::kNone; });
    return blocks.size();
}
