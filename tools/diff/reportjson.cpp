// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/diff/reportjson.h"

#include "meta/plfarea.h"
#include "meta/plftext.h"
#include "tools/common/json.h"

#include <QJsonArray>

namespace diff {

namespace {

QJsonValue Number(size_t value)
{
    return static_cast<qint64>(value);
}

QJsonValue InputJson(const Input& input)
{
    if (input.name.isEmpty())
        return QJsonValue::Null;
    QJsonObject object = {{QStringLiteral("vectors"), Number(input.drawing.vectors.size())},
                          {QStringLiteral("texts"), Number(input.drawing.texts.size())},
                          {QStringLiteral("background"), input.drawing.background},
                          {QStringLiteral("damage"), tools::DamageArray(input.damage)}};
    tools::PutName("file", input.name, &object);
    return object;
}

QJsonObject CountsJson(const Counts& counts)
{
    return {{QStringLiteral("gone"), Number(counts.gone)},
            {QStringLiteral("new"), Number(counts.come)},
            {QStringLiteral("moved"), Number(counts.moved)},
            {QStringLiteral("recolored"), Number(counts.recolored)},
            {QStringLiteral("rewidened"), Number(counts.rewidened)},
            {QStringLiteral("texts"), Number(counts.texts)},
            {QStringLiteral("reordered"), Number(counts.reordered)}};
}

QJsonObject TextJson(const TextRecord& text)
{
    return {{QStringLiteral("text"), TextFromFile(text.text)},
            {QStringLiteral("x"), text.x},
            {QStringLiteral("y"), text.y},
            {QStringLiteral("color"), text.lineColor}};
}

QJsonArray TextsJson(const Pair& pair)
{
    constexpr const char* kKinds[] = {"gone", "new", "moved", "changed"};
    QJsonArray array;
    for (const TextChange& change : pair.comparison.texts) {
        QJsonObject object = {{QStringLiteral("kind"), QLatin1StringView(kKinds[change.kind])}};
        if (change.kind != TextChange::kNew)
            object[QStringLiteral("first")] = TextJson(pair.inputs[0].drawing.texts[change.first]);
        if (change.kind != TextChange::kGone)
            object[QStringLiteral("second")] =
                TextJson(pair.inputs[1].drawing.texts[change.second]);
        array += object;
    }
    return array;
}

QJsonArray AreasJson(const Comparison& result)
{
    QJsonArray array;
    for (const ChangedArea& each : result.areas) {
        QJsonObject object = CountsJson(each.counts);
        object[QStringLiteral("left")] = each.area.left;
        object[QStringLiteral("top")] = kPlfHeight - each.area.top;
        object[QStringLiteral("right")] = each.area.right;
        object[QStringLiteral("bottom")] = kPlfHeight - each.area.bottom;
        array += object;
    }
    return array;
}

QString OutcomeWord(Outcome outcome)
{
    switch (outcome) {
    case Outcome::kEqual:
        return QStringLiteral("equal");
    case Outcome::kDifferent:
        return QStringLiteral("different");
    case Outcome::kTrouble:
        break;
    }
    return QStringLiteral("trouble");
}

} // namespace

QJsonObject PairJson(const Pair& pair)
{
    QJsonObject object = {{QStringLiteral("result"), OutcomeWord(pair.outcome)},
                          {QStringLiteral("first"), InputJson(pair.inputs[0])},
                          {QStringLiteral("second"), InputJson(pair.inputs[1])}};
    if (pair.outcome == Outcome::kTrouble) {
        object[QStringLiteral("error")] = pair.problem;
        return object;
    }
    const Comparison& result = pair.comparison;
    object[QStringLiteral("changes")] = Number(result.Changes());
    object[QStringLiteral("counts")] = CountsJson(result.counts);
    object[QStringLiteral("move")] = QJsonObject{{QStringLiteral("most"), result.farthest},
                                                 {QStringLiteral("median"), result.medianMove}};
    object[QStringLiteral("otherBackground")] = result.hasOtherBackground;
    object[QStringLiteral("texts")] = TextsJson(pair);
    object[QStringLiteral("areas")] = AreasJson(result);
    return object;
}

} // namespace diff
