// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/damage.h"

#include "meta/colormap.h"
#include "meta/passrun.h"
#include "meta/reader.h"
#include "meta/state.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr const char* kWords[] = {
    "unknown command",    "unfinished parameter", "unfinished command",    "cut in a command",
    "unfinished address", "broken address",       "index out of range",    "text too long",
    "no end mark",        "data after the end",   "cut in the packed data"};
static_assert(std::size(kWords) == static_cast<size_t>(PlfDamage::kCutInPackedData) + 1);

// Which parameter of a command is a line index.
constexpr size_t kIndexOfLineIndex = 0;     // ML
constexpr size_t kIndexOfColorMapEntry = 2; // TG: surface, count, index, ...

constexpr bool IsData(char byte)
{
    return byte != 0;
}

// The size without the zero bytes at the end, with which a file is filled up.
size_t SizeOfData(const PlfBytes& graph)
{
    const auto last = std::find_if(std::make_reverse_iterator(graph.End()),
                                   std::make_reverse_iterator(graph.data), IsData);
    return static_cast<size_t>(last.base() - graph.data);
}

} // namespace

const char* DamageWord(PlfDamage kind)
{
    return kWords[static_cast<size_t>(kind)];
}

bool IsLoss(PlfDamage kind)
{
    return kind != PlfDamage::kUnknownCommand;
}

PlfDamageMap LossesOf(PlfDamageMap damage)
{
    std::erase_if(damage, [](const auto& noted) { return !IsLoss(noted.first); });
    return damage;
}

bool HasLoss(const PlfDamageMap& damage)
{
    return std::any_of(damage.begin(), damage.end(),
                       [](const auto& noted) { return IsLoss(noted.first); });
}

void DamageObserver::Begin(const PlfBytes& observed)
{
    graph = observed;
    dataEnd = SizeOfData(graph);
    endsInControl =
        dataEnd > 0 && static_cast<signed char>(graph.data[dataEnd - 1]) <= kLastControl;
    damage.clear();
    parameters = {};
    dropped.reset();
    if (graph.isCut)
        Note(PlfDamage::kCutInPackedData, graph.size);
}

void DamageObserver::AddParameter(int value, bool isWhole)
{
    if (parameters.count < parameters.values.size())
        parameters.values[parameters.count] = value;
    ++parameters.count;
    parameters.unfinished += isWhole ? 0U : 1U;
}

void DamageObserver::Integer(int value, PlfInteger kind)
{
    AddParameter(value, kind != PlfInteger::kUnfinished);
}

void DamageObserver::String(std::string_view text, bool isWhole)
{
    AddParameter(0, isWhole);
    parameters.longTexts += text.size() >= kTextSize ? 1U : 0U;
    parameters.isOpen = !isWhole;
}

void DamageObserver::Position(int /*x*/, int /*y*/, bool isClosed)
{
    AddParameter(0, isClosed);
    parameters.isOpen = !isClosed;
}

void DamageObserver::Command(PlfSpan span, std::string_view letters, bool isKnown)
{
    const bool isText = letters.front() == 'Z';
    if (!isKnown)
        Note(PlfDamage::kUnknownCommand, span.begin);
    if (parameters.unfinished > 0)
        NoteUnfinished(span, isText);
    else
        NoteIndex(span.begin, letters);
    if (isText && parameters.longTexts > 0)
        Note(PlfDamage::kTextTooLong, span.begin, parameters.longTexts);
    parameters = {};
}

// A string or a position of a text ends with an escape only, so that one without is cut. Any other
// parameter may also end with a control character: the last byte of the data, or one before.
void DamageObserver::NoteUnfinished(PlfSpan span, bool isText)
{
    const bool isAtTheEnd = span.end >= dataEnd && !endsInControl;
    if ((isText && parameters.isOpen) || isAtTheEnd)
        Note(PlfDamage::kCutInCommand, span.begin);
    else
        Note(PlfDamage::kUnfinishedParameter, span.begin, parameters.unfinished);
}

void DamageObserver::NoteIndex(size_t offset, std::string_view letters)
{
    const bool isChoice = letters == "ML";
    const size_t at = isChoice ? kIndexOfLineIndex : kIndexOfColorMapEntry;
    if ((!isChoice && letters != "TG") || at >= parameters.count)
        return;
    const int index = parameters.values[at];
    if (index < 0 || index >= kLineIndexCount)
        Note(PlfDamage::kIndexOutOfRange, offset);
}

void DamageObserver::BrokenAddress(size_t begin)
{
    Note(PlfDamage::kBrokenAddress, begin);
}

void DamageObserver::DroppedAddress(size_t begin)
{
    Note(PlfDamage::kUnfinishedAddress, begin);
}

void DamageObserver::DroppedCommand(size_t begin)
{
    dropped = begin;
}

// Writers end a graph with a BEL or a byte 255. A zero byte ends the drawing too, but it is what
// lies behind the data in memory, and in files that were filled up after their end was lost.
void DamageObserver::End(size_t offset, PlfEnd reason)
{
    const bool isMarked = reason == PlfEnd::kBel || reason == PlfEnd::kByte255;
    if (dropped)
        Note(isMarked ? PlfDamage::kUnfinishedCommand : PlfDamage::kCutInCommand, *dropped);
    if (!isMarked)
        Note(PlfDamage::kNoEndMark, offset);
    NoteRest(std::min(offset + 1, graph.size));
}

void DamageObserver::NoteRest(size_t begin)
{
    const char* rest = graph.data + begin;
    const char* first = std::find_if(rest, graph.End(), IsData);
    const auto count = static_cast<uint64_t>(std::count_if(first, graph.End(), IsData));
    if (count > 0)
        Note(PlfDamage::kDataAfterTheEnd, static_cast<size_t>(first - graph.data), count);
}

void DamageObserver::Note(PlfDamage kind, size_t offset, uint64_t count)
{
    damage.try_emplace(kind, PlfDamageCount{offset, 0}).first->second.count += count;
}

PlfDamageMap FindDamage(const PlfBytes& graph)
{
    DamageObserver observer;
    observer.Begin(graph);
    PlfPass pass;
    pass.graph = graph;
    NoSink sink;
    PassRun(pass).Skim(sink, observer); // it needs only addresses with something wrong
    return observer.Damage();
}
