// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/info/inspector.h"

#include "meta/colormap.h"
#include "meta/pass.h"
#include "meta/state.h"

#include <algorithm>

namespace info {

namespace {

// Which parameter of a command is a line index.
constexpr size_t kIndexOfLineIndex = 0;     // ML
constexpr size_t kIndexOfColorMapEntry = 2; // TG: surface, count, index, ...

Background FileBackground(const PlfBytes& graph)
{
    Background background;
    background.index = NamedBackground(graph);
    if (const char* named = FindPlfBackGround(graph))
        background.offset = static_cast<size_t>(named - graph.data);
    return background;
}

void Enclose(std::optional<Extent>* extent, int x, int y)
{
    if (!*extent)
        *extent = Extent{x, y, x, y};
    Extent& around = **extent;
    around.left = std::min(around.left, x);
    around.bottom = std::min(around.bottom, y);
    around.right = std::max(around.right, x);
    around.top = std::max(around.top, y);
}

bool IsTooLong(const Parameter& parameter)
{
    return parameter.text.size() >= kTextSize;
}

} // namespace

Summary Inspector::Inspect(const PlfBytes& inspected)
{
    graph = inspected;
    summary = Summary();
    position = 0;
    parameters.clear();
    drawn.clear();
    summary.size = graph.size;
    summary.background = FileBackground(graph);
    PlfPass pass;
    pass.graph = graph;
    pass.whiteBackground = false; // as the graph wants it
    FollowGraph(pass, *this);
    return std::move(summary);
}

void Inspector::Integer(int value, PlfInteger kind)
{
    parameters.push_back({kind == PlfInteger::kComma ? Parameter::kComma : Parameter::kInteger,
                          value,
                          0,
                          {},
                          kind != PlfInteger::kUnfinished});
}

void Inspector::String(std::string_view text, bool isWhole)
{
    parameters.push_back({Parameter::kText, 0, 0, std::string(text), isWhole});
}

void Inspector::Position(int x, int y, bool isClosed)
{
    parameters.push_back({Parameter::kPosition, x, y, {}, isClosed});
}

void Inspector::Command(PlfSpan span, std::string_view letters, bool isKnown)
{
    Item item;
    item.kind = Item::kCommand;
    item.span = span;
    item.letters = letters;
    item.isKnown = isKnown;
    item.parameters = std::exchange(parameters, {});
    ++summary.commands[std::string(letters)];
    if (!isKnown) {
        Note(Damage::kUnknownCommand, span.begin);
        summary.skippedBytes += span.end - span.begin;
    }
    NoteParameters(item);
    CountColors(item);
    KeepTexts(span.begin);
    Add(item);
}

void Inspector::NoteParameters(const Item& command)
{
    for (const Parameter& parameter : command.parameters) {
        const bool isString = parameter.kind == Parameter::kText && command.letters.front() == 'Z';
        if (!parameter.isWhole) {
            const bool isOpen = isString || parameter.kind == Parameter::kPosition;
            Note(isOpen ? Damage::kUnclosedString : Damage::kUnfinishedParameter,
                 command.span.begin);
        }
        if (isString && IsTooLong(parameter)) {
            Note(Damage::kTextTooLong, command.span.begin);
            drawn.clear(); // an empty text was drawn instead
        }
    }
}

void Inspector::CountColors(const Item& command)
{
    const bool isChoice = command.letters == "ML";
    const size_t at = isChoice ? kIndexOfLineIndex : kIndexOfColorMapEntry;
    if ((!isChoice && command.letters != "TG") || at >= command.parameters.size())
        return;
    const int index = command.parameters[at].x;
    if (index < 0 || index >= kLineIndexCount)
        Note(Damage::kIndexOutOfRange, command.span.begin);
    else if (isChoice)
        summary.lineIndices.insert(index);
}

void Inspector::KeepTexts(size_t offset)
{
    for (DrawnText& text : drawn) {
        text.offset = offset;
        summary.texts.push_back(std::move(text));
    }
    drawn.clear();
}

void Inspector::Move(PlfSpan span, int x, int y)
{
    ++summary.moves;
    Item item;
    item.kind = Item::kMove;
    item.span = span;
    item.vector.x2 = x;
    item.vector.y2 = y;
    Add(item);
}

void Inspector::Vector(PlfSpan span, const PlfVector& vector)
{
    ++summary.vectors;
    summary.colors.insert(vector.color);
    summary.widths.insert(vector.width);
    Enclose(&summary.extent, vector.x1, vector.y1);
    Enclose(&summary.extent, vector.x2, vector.y2);
    Item item;
    item.kind = Item::kLine;
    item.span = span;
    item.vector = vector;
    Add(item);
}

void Inspector::NextMoves(PlfSpan span)
{
    Item item;
    item.kind = Item::kGs;
    item.span = span;
    Add(item);
}

void Inspector::Text(const PlfText& text)
{
    drawn.push_back({std::string(text.text), text.x, text.y, std::string(text.font), text.size,
                     text.color, text.isBold, text.isItalic, 0});
}

void Inspector::BrokenAddress(size_t begin)
{
    Note(Damage::kBrokenAddress, begin);
}

void Inspector::DroppedAddress(size_t begin)
{
    Note(Damage::kUnfinishedAddress, begin);
}

void Inspector::DroppedCommand(size_t begin)
{
    Note(Damage::kUnfinishedCommand, begin);
}

void Inspector::End(size_t offset, PlfEnd reason)
{
    summary.endOffset = offset;
    summary.endReason = reason;
    Item item;
    item.kind = Item::kEnd;
    item.end = reason;
    item.span = {offset, std::min(offset + 1, summary.size)};
    Add(item);
    NoteRest(item.span.end);
}

void Inspector::NoteRest(size_t begin)
{
    const char* rest = graph.data + begin;
    const char* end = graph.End();
    const auto isData = [](char byte) { return byte != 0; };
    const char* first = std::find_if(rest, end, isData);
    const auto count = static_cast<uint64_t>(std::count_if(first, end, isData));
    if (count > 0)
        Note(Damage::kDataAfterTheEnd, static_cast<size_t>(first - graph.data), count);
}

void Inspector::Note(Damage kind, size_t offset, uint64_t count)
{
    DamageCount& noted = summary.damage.try_emplace(kind, DamageCount{offset, 0}).first->second;
    noted.count += count;
}

void Inspector::Add(const Item& item)
{
    Skip(item.span.begin);
    position = item.span.end;
    if (sink)
        sink(item);
}

void Inspector::Skip(size_t end)
{
    if (end <= position)
        return;
    summary.skippedBytes += end - position;
    Item item;
    item.span = {position, end};
    position = end;
    if (sink)
        sink(item);
}

} // namespace info
