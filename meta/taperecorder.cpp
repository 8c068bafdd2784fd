// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/taperecorder.h"

#include "meta/paintersink.h"
#include "meta/pass.h"
#include "meta/passwatch.h"
#include "support/numbers.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <string>
#include <utility>

namespace {

// Device pixels that a line may extend beyond its pen, and one for what is rounded here.
constexpr double kReach = 4.0;

bool IsShort(int value)
{
    return static_cast<int16_t>(value) == value;
}

} // namespace

TapeRecorder::TapeRecorder(Tape& target, const PlfPass& recorded, const QRect& pixels,
                           const QTransform& toDevice, double penWidth)
    : tape(target), pass(recorded), shown(toDevice.inverted().mapRect(QRectF(pixels))),
      beyondX(kReach / std::abs(toDevice.m11())), beyondY(kReach / std::abs(toDevice.m22())),
      widest(std::max(penWidth, pass.minPenWidth))
{
    Widen(0);
    NewBlock();
}

// A width that no pen can have leaves the pen as it was, so that the widest one counts.
void TapeRecorder::Widen(int width)
{
    widest = std::max<double>(widest, PenWidthOf(width, 0));
    visible = {TruncToInt(std::floor(shown.left() - beyondX - widest)),
               TruncToInt(std::floor(shown.top() - beyondY - widest)),
               TruncToInt(std::ceil(shown.right() + beyondX + widest)),
               TruncToInt(std::ceil(shown.bottom() + beyondY + widest))};
}

void TapeRecorder::SetPen(int width, int color)
{
    Widen(width);
    Note(Tape::Event::Kind::kPen, width, color);
}

void TapeRecorder::Text(std::string_view text, int x, int y)
{
    Use(sizeof(Tape::Label) + text.size());
    const auto number = static_cast<int>(block->texts.size());
    block->texts.push_back({std::string(text), x, y});
    Note(Tape::Event::Kind::kText, number, 0);
}

void TapeRecorder::Add(int x1, int y1, int x2, int y2)
{
    if (!IsShort(x1) || !IsShort(y1) || !IsShort(x2) || !IsShort(y2)) {
        AddFar({x1, y1, x2, y2});
        return;
    }
    block->lines.push_back({static_cast<int16_t>(x1), static_cast<int16_t>(y1),
                            static_cast<int16_t>(x2), static_cast<int16_t>(y2)});
    if (block->lines.size() % Tape::kGroup == 0)
        EndGroup();
}

void TapeRecorder::AddFar(const Tape::Place& place)
{
    Use(sizeof(place));
    const auto number = static_cast<int>(block->farVectors.size());
    block->farVectors.push_back(place);
    Note(Tape::Event::Kind::kFarVector, number, 0);
}

void TapeRecorder::EndGroup()
{
    block->AddBox(Tape::kGroup);
    if (pass.watch != nullptr)
        pass.watch->Tick();
    if (block->lines.size() == kLines) {
        HandOver();
        NewBlock();
    }
}

void TapeRecorder::Note(Tape::Event::Kind kind, int first, int second)
{
    Use(sizeof(Tape::Event));
    block->events.push_back({static_cast<uint32_t>(block->lines.size()), kind, first, second});
    if (block->events.size() == kEvents) {
        HandOver();
        NewBlock();
    }
}

void TapeRecorder::NewBlock()
{
    Use(sizeof(Tape::Block) + kLines * sizeof(Tape::Line) +
        kLines / Tape::kGroup * sizeof(Tape::Box));
    block = std::make_unique<Tape::Block>();
    block->lines.reserve(kLines);
    block->boxes.reserve(kLines / Tape::kGroup);
}

void TapeRecorder::HandOver()
{
    const size_t rest = block->lines.size() % Tape::kGroup;
    if (rest > 0)
        block->AddBox(rest);
    tape.Add(std::move(block));
}

void TapeRecorder::Use(size_t bytes)
{
    used += bytes;
    if (used > Tape::kMostBytes)
        throw std::bad_alloc();
}
