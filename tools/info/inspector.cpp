// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/info/inspector.h"

#include "meta/colormap.h"
#include "meta/pass.h"
#include "meta/state.h"

#include <algorithm>

namespace info {

namespace {

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
    return parameter.kind == Parameter::kText && parameter.text.size() >= kTextSize;
}

} // namespace

Summary Inspector::Inspect(const PlfBytes& inspected)
{
    damage.Begin(inspected);
    summary = Summary();
    position = 0;
    parameters.clear();
    drawn.clear();
    summary.size = inspected.size;
    summary.background = FileBackground(inspected);
    PlfPass pass;
    pass.graph = inspected;
    pass.whiteBackground = false; // as the graph wants it
    FollowGraph(pass, *this);
    summary.damage = damage.Damage();
    return std::move(summary);
}

void Inspector::Integer(int value, PlfInteger kind)
{
    damage.Integer(value, kind);
    parameters.push_back({kind == PlfInteger::kComma ? Parameter::kComma : Parameter::kInteger,
                          value,
                          0,
                          {},
                          kind != PlfInteger::kUnfinished});
}

void Inspector::String(std::string_view text, bool isWhole)
{
    damage.String(text, isWhole);
    parameters.push_back({Parameter::kText, 0, 0, std::string(text), isWhole});
}

void Inspector::Position(int x, int y, bool isClosed)
{
    damage.Position(x, y, isClosed);
    parameters.push_back({Parameter::kPosition, x, y, {}, isClosed});
}

void Inspector::Command(PlfSpan span, std::string_view letters, bool isKnown)
{
    damage.Command(span, letters, isKnown);
    Item item;
    item.kind = Item::kCommand;
    item.span = span;
    item.letters = letters;
    item.isKnown = isKnown;
    item.parameters = std::exchange(parameters, {});
    ++summary.commands[std::string(letters)];
    summary.skippedBytes += isKnown ? 0 : span.end - span.begin;
    KeepLineIndex(item);
    KeepTexts(item);
    Add(item);
}

void Inspector::KeepLineIndex(const Item& command)
{
    if (command.letters != "ML")
        return;
    const int index = command.parameters.front().x;
    if (index >= 0 && index < kLineIndexCount)
        summary.lineIndices.insert(index);
}

// Instead of a text that is too long, an empty one was drawn.
void Inspector::KeepTexts(const Item& command)
{
    const auto& words = command.parameters;
    if (std::any_of(words.begin(), words.end(), IsTooLong))
        drawn.clear();
    for (DrawnText& text : drawn) {
        text.offset = command.span.begin;
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
    damage.BrokenAddress(begin);
}

void Inspector::DroppedAddress(size_t begin)
{
    damage.DroppedAddress(begin);
}

void Inspector::DroppedCommand(size_t begin)
{
    damage.DroppedCommand(begin);
}

void Inspector::End(size_t offset, PlfEnd reason)
{
    damage.End(offset, reason);
    summary.endOffset = offset;
    summary.endReason = reason;
    Item item;
    item.kind = Item::kEnd;
    item.end = reason;
    item.span = {offset, std::min(offset + 1, summary.size)};
    Add(item);
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
