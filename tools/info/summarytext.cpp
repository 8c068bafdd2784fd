// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/info/summarytext.h"

#include "meta/palette.h"
#include "meta/plfgraph.h"
#include "tools/info/words.h"

namespace info {

namespace {

constexpr int kLabelWidth = 14;

template <typename Integer> QByteArray Number(Integer value)
{
    return QByteArray::number(value);
}

QByteArray Row(const char* label, const QByteArray& value)
{
    return "  " + QByteArray(label).leftJustified(kLabelWidth) + value + '\n';
}

// "none" for an empty list.
template <typename List, typename Word> QByteArray Joined(const List& list, Word word)
{
    QByteArrayList words;
    for (const auto& element : list)
        words += word(element);
    return words.isEmpty() ? QByteArray("none") : words.join(", ");
}

QByteArray CommandCount(const std::pair<const std::string, uint64_t>& command)
{
    return QByteArray::fromStdString(command.first) + ' ' + Number(command.second);
}

QByteArray Color(int index)
{
    return Number(index) + ' ' + PaletteColor(index).name().toLatin1();
}

QByteArray ExtentWords(const std::optional<Extent>& extent)
{
    if (!extent)
        return "none";
    return Number(extent->left) + ',' + Number(extent->bottom) + " to " + Number(extent->right) +
           ',' + Number(extent->top);
}

QByteArray BackgroundWords(const Background& background)
{
    if (!background.offset)
        return Color(background.index) + ", as the file names none";
    const QByteArray place = "named at byte " + Number(*background.offset);
    if (background.index >= kPaletteSize)
        return "unknown, drawn white; " + place;
    return Color(background.index) + ", " + place;
}

QByteArray TextRow(const DrawnText& text)
{
    QByteArray row = "    " + Number(text.x) + ',' + Number(text.y) + ' ' + Quoted(text.text);
    if (!text.font.empty())
        row += ", font " + Quoted(text.font);
    if (text.size != 0)
        row += ", " + Number(text.size) + " points";
    row += ", color " + Number(text.color);
    if (text.isBold)
        row += ", bold";
    if (text.isItalic)
        row += ", italic";
    return row + ", byte " + Number(text.offset) + '\n';
}

QByteArray DamageRow(const std::pair<const PlfDamage, PlfDamageCount>& damage)
{
    const char* unit = damage.first == PlfDamage::kDataAfterTheEnd ? " bytes" : "";
    return QByteArray("    ") + DamageWord(damage.first) + ": " + Number(damage.second.count) +
           unit + ", the first at byte " + Number(damage.second.offset) + '\n';
}

// A row with the count, and one for each element.
template <typename List, typename ElementRow>
QByteArray Table(const char* label, const List& list, ElementRow elementRow)
{
    QByteArray table = Row(label, list.empty() ? QByteArray("none") : Number(list.size()));
    for (const auto& element : list)
        table += elementRow(element);
    return table;
}

} // namespace

QByteArray SummaryText(const QByteArray& name, const Summary& summary)
{
    const auto number = [](int value) { return Number(value); };
    return name + '\n' +
           Row("Size",
               Number(summary.size) + " bytes, " + Number(kPlfHeaderSize) + " of them the header") +
           Row("Commands", Joined(summary.commands, CommandCount)) +
           Row("Vectors", Number(summary.vectors)) + Row("Moves", Number(summary.moves)) +
           Row("Line indices", Joined(summary.lineIndices, number)) +
           Row("Colors", Joined(summary.colors, Color)) +
           Row("Widths", Joined(summary.widths, number)) +
           Row("Extent", ExtentWords(summary.extent)) +
           Row("Background", BackgroundWords(summary.background)) +
           Row("Skipped", Number(summary.skippedBytes) + " bytes") +
           Row("End", EndWord(summary.endReason) + (" at byte " + Number(summary.endOffset))) +
           Table("Texts", summary.texts, TextRow) + Table("Damage", summary.damage, DamageRow);
}

} // namespace info
