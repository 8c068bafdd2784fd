// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/info/dump.h"

#include "tools/info/words.h"

namespace info {

namespace {

QByteArray Number(int64_t value)
{
    return QByteArray::number(static_cast<qlonglong>(value));
}

QByteArray Point(int x, int y)
{
    return Number(x) + ',' + Number(y);
}

QByteArray ParameterWord(const Parameter& parameter)
{
    switch (parameter.kind) {
    case Parameter::kInteger:
        return Number(parameter.x);
    case Parameter::kComma:
        return ",";
    case Parameter::kText:
        return Quoted(parameter.text);
    case Parameter::kPosition:
        return Point(parameter.x, parameter.y);
    }
    return {};
}

QByteArray CommandWords(const Item& item)
{
    QByteArray words = "command " + QByteArray::fromStdString(std::string(item.letters));
    if (!item.isKnown)
        words += '*';
    for (const Parameter& parameter : item.parameters) {
        words += ' ' + ParameterWord(parameter);
        if (!parameter.isWhole)
            words += '!';
    }
    return words;
}

QByteArray Words(const Item& item)
{
    const PlfVector& v = item.vector;
    switch (item.kind) {
    case Item::kMove:
        return "move " + Point(v.x2, v.y2);
    case Item::kLine:
        return "line " + Point(v.x1, v.y1) + ' ' + Point(v.x2, v.y2);
    case Item::kCommand:
        return CommandWords(item);
    case Item::kGs:
        return "gs";
    case Item::kSkipped:
        return "skipped " + Number(static_cast<int64_t>(item.span.end - item.span.begin));
    case Item::kEnd:
        return QByteArray("end ") + EndWord(item.end);
    }
    return {};
}

} // namespace

QByteArray DumpLine(const Item& item)
{
    return Number(static_cast<int64_t>(item.span.begin)) + ' ' +
           Number(static_cast<int64_t>(item.span.end)) + ' ' + Words(item) + '\n';
}

} // namespace info
