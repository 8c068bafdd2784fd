// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/info/summaryjson.h"

#include "meta/palette.h"
#include "meta/plfgraph.h"
#include "meta/plftext.h"
#include "tools/common/json.h"
#include "tools/info/words.h"

#include <QJsonArray>

namespace info {

namespace {

// JSON has 64-bit floating-point numbers, which are exact for every count of bytes that fits into
// memory.
QJsonValue Number(uint64_t value)
{
    return static_cast<qint64>(value);
}

QJsonValue Word(const char* word)
{
    return QLatin1StringView(word);
}

QJsonArray Numbers(const std::set<int>& values)
{
    QJsonArray numbers;
    for (const int value : values)
        numbers += value;
    return numbers;
}

QJsonObject Commands(const std::map<std::string, uint64_t>& commands)
{
    QJsonObject counts;
    for (const auto& [letters, count] : commands)
        counts[QString::fromStdString(letters)] = Number(count);
    return counts;
}

QJsonObject Text(const DrawnText& text)
{
    return {{QStringLiteral("text"), TextFromFile(text.text)},
            {QStringLiteral("x"), text.x},
            {QStringLiteral("y"), text.y},
            {QStringLiteral("font"), TextFromFile(text.font)},
            {QStringLiteral("size"), text.size},
            {QStringLiteral("color"), text.color},
            {QStringLiteral("bold"), text.isBold},
            {QStringLiteral("italic"), text.isItalic},
            {QStringLiteral("offset"), Number(text.offset)}};
}

QJsonArray Texts(const std::vector<DrawnText>& texts)
{
    QJsonArray array;
    for (const DrawnText& text : texts)
        array += Text(text);
    return array;
}

QJsonValue ExtentObject(const std::optional<Extent>& extent)
{
    if (!extent)
        return QJsonValue::Null;
    return QJsonObject{{QStringLiteral("left"), extent->left},
                       {QStringLiteral("bottom"), extent->bottom},
                       {QStringLiteral("right"), extent->right},
                       {QStringLiteral("top"), extent->top}};
}

QJsonObject BackgroundObject(const Background& background)
{
    return {{QStringLiteral("index"), background.index},
            {QStringLiteral("source"), Word(BackgroundWord(background))},
            {QStringLiteral("offset"),
             background.offset ? Number(*background.offset) : QJsonValue(QJsonValue::Null)}};
}

} // namespace

QJsonObject SummaryJson(const Summary& summary)
{
    const QJsonObject end = {{QStringLiteral("offset"), Number(summary.endOffset)},
                             {QStringLiteral("reason"), Word(EndWord(summary.endReason))}};
    return {{QStringLiteral("size"), Number(summary.size)},
            {QStringLiteral("header"), Number(kPlfHeaderSize)},
            {QStringLiteral("commands"), Commands(summary.commands)},
            {QStringLiteral("vectors"), Number(summary.vectors)},
            {QStringLiteral("moves"), Number(summary.moves)},
            {QStringLiteral("texts"), Texts(summary.texts)},
            {QStringLiteral("lineIndices"), Numbers(summary.lineIndices)},
            {QStringLiteral("colors"), Numbers(summary.colors)},
            {QStringLiteral("widths"), Numbers(summary.widths)},
            {QStringLiteral("extent"), ExtentObject(summary.extent)},
            {QStringLiteral("background"), BackgroundObject(summary.background)},
            {QStringLiteral("skippedBytes"), Number(summary.skippedBytes)},
            {QStringLiteral("end"), end},
            {QStringLiteral("damage"), tools::DamageArray(summary.damage)}};
}

} // namespace info
