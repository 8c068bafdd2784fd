// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/diff/values.h"

#include "meta/plfarea.h"
#include "tools/diff/place.h"

#include <cmath>

namespace diff {

namespace {

struct IgnoredName {
    const char* name;
    bool Rules::*flag;
};

constexpr IgnoredName kIgnoredNames[] = {
    {"color", &Rules::ignoresColor},
    {"width", &Rules::ignoresWidth},
    {"text", &Rules::ignoresText},
    {"order", &Rules::ignoresOrder},
    {"background", &Rules::ignoresBackground},
    {"dots", &Rules::ignoresDots},
};

// The highest place that an address reaches, in drawing units.
constexpr int kHighest = kPlfHeight - kUnits + 1;

std::optional<double> ParseNumber(const QString& text, double most)
{
    bool isNumber = false;
    const double value = text.toDouble(&isNumber);
    if (!isNumber || !(value >= 0.0) || value > most)
        return {};
    return value;
}

bool IgnoreOne(const QString& name, Rules* rules)
{
    for (const IgnoredName& each : kIgnoredNames) {
        if (name.compare(QLatin1StringView(each.name), Qt::CaseInsensitive) == 0) {
            rules->*each.flag = true;
            return true;
        }
    }
    return false;
}

} // namespace

std::optional<double> ParseTolerance(const QString& text, double pageWidth)
{
    double factor = 1;
    qsizetype unit = 0;
    if (text.endsWith(u'%')) {
        unit = 1;
        factor = kPlfWidth / 100.0;
    } else if (text.endsWith(QLatin1StringView("mm"))) {
        unit = 2;
        factor = kPlfWidth / pageWidth;
    }
    const auto value = ParseNumber(text.chopped(unit), kUnits / factor);
    return value ? std::optional(*value * factor) : std::nullopt;
}

std::optional<double> ParsePageWidth(const QString& text)
{
    const bool hasUnit = text.endsWith(QLatin1StringView("mm"));
    const auto value = ParseNumber(hasUnit ? text.chopped(2) : text, kMostPageWidth);
    return value && *value >= 1.0 ? value : std::nullopt;
}

std::optional<Area> ParseArea(const QString& text)
{
    const QStringList edges = text.split(u',');
    if (edges.size() != 4)
        return {};
    int values[4] = {};
    for (qsizetype i = 0; i < 4; ++i) {
        bool isNumber = false;
        values[i] = edges[i].toInt(&isNumber);
        const bool isAcross = i % 2 == 0;
        if (!isNumber || values[i] < (isAcross ? 0 : kHighest) ||
            values[i] > (isAcross ? kPlfWidth : kPlfHeight))
            return {};
    }
    if (values[0] > values[2] || values[1] > values[3])
        return {};
    return Area{values[0], kPlfHeight - values[3], values[2], kPlfHeight - values[1]};
}

bool ParseIgnored(const QString& text, Rules* rules)
{
    const QStringList names = text.split(u',');
    return std::all_of(names.begin(), names.end(),
                       [rules](const QString& name) { return IgnoreOne(name, rules); });
}

QString IgnoredNames()
{
    QStringList names;
    for (const IgnoredName& each : kIgnoredNames)
        names += QString::fromLatin1(each.name);
    return names.join(QStringLiteral(", "));
}

} // namespace diff
