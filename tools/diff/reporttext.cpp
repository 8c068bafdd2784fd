// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/diff/reporttext.h"

#include "meta/palette.h"
#include "meta/plfarea.h"
#include "tools/common/filename.h"
#include "tools/info/words.h"

#include <cmath>

namespace diff {

namespace {

using tools::VisibleText;

constexpr int kLabelWidth = 13;
constexpr int kNumberWidth = 9;
constexpr int kMostTexts = 20; // that are listed

QByteArray Number(size_t value)
{
    return QByteArray::number(static_cast<qulonglong>(value));
}

QByteArray Row(const char* label, const QByteArray& value)
{
    return "  " + QByteArray(label).leftJustified(kLabelWidth) + value + '\n';
}

QByteArray Background(int index)
{
    if (index >= kPaletteSize)
        return "unknown, drawn white";
    return QByteArray::number(index) + ' ' + PaletteColor(index).name().toLatin1();
}

QByteArray Label(const TextRecord& text)
{
    return QByteArray::number(text.x) + ',' + QByteArray::number(text.y) + ' ' +
           info::Quoted(text.text);
}

QByteArray TextRow(const Pair& pair, const TextChange& change)
{
    const auto first = [&] { return Label(pair.inputs[0].drawing.texts[change.first]); };
    const auto second = [&] { return Label(pair.inputs[1].drawing.texts[change.second]); };
    switch (change.kind) {
    case TextChange::kGone:
        return "    gone " + first() + '\n';
    case TextChange::kNew:
        return "    new " + second() + '\n';
    case TextChange::kMoved:
        return "    moved " + first() + " -> " + second() + '\n';
    case TextChange::kChanged:
        return "    changed " + first() + " -> " + second() + '\n';
    }
    return {};
}

QByteArray TextRows(const Pair& pair)
{
    QByteArray rows = Row("Texts", Number(pair.comparison.texts.size()) + " changed");
    size_t count = 0;
    for (const TextChange& change : pair.comparison.texts) {
        if (++count > kMostTexts)
            return rows + "    ...\n";
        rows += TextRow(pair, change);
    }
    return rows;
}

QByteArray VectorRows(const Comparison& result)
{
    const Counts& counts = result.counts;
    QByteArray rows =
        Row("Vectors", Number(result.vectors[0]) + " and " + Number(result.vectors[1]));
    rows += Row("Gone", Number(counts.gone)) + Row("New", Number(counts.come));
    QByteArray moved = Number(counts.moved);
    if (counts.moved > 0)
        moved += ", at most " + NotBelow(result.farthest) + " units, median " +
                 Decimal(result.medianMove);
    rows += Row("Moved", moved);
    QByteArray looks = Number(counts.Looks());
    if (counts.Looks() > 0)
        looks += ": " + Number(counts.recolored) + " color, " + Number(counts.rewidened) + " width";
    return rows + Row("Other look", looks);
}

QByteArray AreaRows(const Comparison& result)
{
    QByteArray rows;
    for (const ChangedArea& area : result.areas)
        rows += "    " + AreaText(area.area) + ": " + CountsText(area.counts) + '\n';
    return rows.isEmpty() ? rows : Row("Areas", Number(result.areas.size())) + rows;
}

// The name of the graph that is there.
QByteArray NameOf(const Pair& pair)
{
    return VisibleText(pair.inputs[pair.inputs[0].name.isEmpty() ? 1 : 0].name);
}

QByteArray ResultWord(const Pair& pair)
{
    if (pair.outcome == Outcome::kTrouble)
        return "trouble";
    if (pair.IsMissing())
        return pair.inputs[0].name.isEmpty() ? "new" : "gone";
    return pair.outcome == Outcome::kEqual ? "equal" : "different";
}

} // namespace

QByteArray Decimal(double value)
{
    QByteArray text = QByteArray::number(value, 'f', 2);
    while (text.endsWith('0'))
        text.chop(1);
    return text.endsWith('.') ? text.chopped(1) : text;
}

QByteArray NotBelow(double value)
{
    constexpr int kSteps = 100;
    constexpr double kRounding = 1e-9; // of a decimal number that is no binary one
    return Decimal(std::ceil(value * kSteps - kRounding) / kSteps);
}

QByteArray CountsText(const Counts& counts)
{
    QByteArrayList words;
    const auto add = [&words](size_t count, const char* word) {
        if (count > 0)
            words += Number(count) + word;
    };
    add(counts.gone, " gone");
    add(counts.come, " new");
    add(counts.moved, " moved");
    add(counts.Looks(), " other look");
    add(counts.texts, " text changes");
    add(counts.reordered, " units covered differently");
    return words.join(", ");
}

QByteArray AreaText(const Area& area)
{
    const auto number = [](int value) { return QByteArray::number(value); };
    return number(area.left) + ',' + number(kPlfHeight - area.top) + ',' + number(area.right) +
           ',' + number(kPlfHeight - area.bottom);
}

QByteArray ReportText(const Pair& pair)
{
    const Comparison& result = pair.comparison;
    QByteArray text = VisibleText(pair.inputs[0].name) + " and " +
                      VisibleText(pair.inputs[1].name) + " differ\n" + VectorRows(result);
    if (result.counts.reordered > 0)
        text += Row("Order",
                    "another color on top on " + Number(result.counts.reordered) + " square units");
    if (!result.texts.empty())
        text += TextRows(pair);
    if (result.hasOtherBackground)
        text += Row("Background", Background(result.backgrounds[0]) + " and " +
                                      Background(result.backgrounds[1]));
    return text + AreaRows(result);
}

QByteArray QuietText(const Pair& pair)
{
    if (pair.IsMissing())
        return "Only one directory has graph " + NameOf(pair) + '\n';
    return "Graphs " + VisibleText(pair.inputs[0].name) + " and " +
           VisibleText(pair.inputs[1].name) + " differ\n";
}

QByteArray TableHead(qsizetype width)
{
    QByteArray head = QByteArray("Graph").leftJustified(width) + "  Result   ";
    for (const char* column : {"Gone", "New", "Moved", "Look", "Texts"})
        head += QByteArray(column).rightJustified(kNumberWidth);
    return head + '\n';
}

QByteArray TableRow(const Pair& pair, qsizetype width)
{
    const QByteArray title = VisibleText(pair.title);
    const qsizetype columns = QString::fromUtf8(title).size();
    QByteArray row = title + QByteArray(std::max<qsizetype>(width - columns, 0), ' ') + "  " +
                     ResultWord(pair).leftJustified(kNumberWidth);
    const Counts& counts = pair.comparison.counts;
    if (pair.outcome == Outcome::kDifferent) {
        for (const size_t count :
             {counts.gone, counts.come, counts.moved, counts.Looks(), counts.texts})
            row += Number(count).rightJustified(kNumberWidth);
    }
    while (row.endsWith(' '))
        row.chop(1);
    return row + '\n';
}

QByteArray SumText(const size_t (&counts)[3])
{
    return Number(counts[0]) + " equal, " + Number(counts[1]) + " different, " + Number(counts[2]) +
           " not compared\n";
}

} // namespace diff
