// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/values.h"

#include "meta/plfarea.h"
#include "tools/common/integer.h"
#include "tools/convert/namedvalue.h"
#include "tools/convert/picturesize.h"

#include <QStringList>

#include <algorithm>

namespace convert {

namespace {

using tools::ParseInteger;

constexpr NamedValue<Background> kBackgrounds[] = {
    {"white", Background::kAllWhite},
    {"file", Background::kFile},
    {"transparent", Background::kTransparent},
};

// In points.
constexpr double kInch = kPointsPerInch;
constexpr double kMillimeter = kInch / 25.4;
constexpr NamedValue<double> kUnits[] = {
    {"mm", kMillimeter}, {"cm", 10 * kMillimeter}, {"in", kInch}, {"pt", 1.0}};
constexpr qsizetype kUnitLetters = 2;
constexpr double kShortest = 1; // shorter, a picture could have no pixel

const NamedValue<Page> kPages[] = {
    {"a3", {{297 * kMillimeter, 420 * kMillimeter}, true}},
    {"a4", {{210 * kMillimeter, 297 * kMillimeter}, true}},
    {"a5", {{148 * kMillimeter, 210 * kMillimeter}, true}},
    {"letter", {{8.5 * kInch, 11 * kInch}, true}},
    {"legal", {{8.5 * kInch, 14 * kInch}, true}},
};

// "WIDTHxHEIGHT", each from 1 on.
std::optional<QSize> ParsePair(const QString& text, int most)
{
    const QStringList sides = text.split(u'x', Qt::KeepEmptyParts, Qt::CaseInsensitive);
    if (sides.size() != 2)
        return {};
    const auto width = ParseInteger(sides[0], 1, most);
    const auto height = ParseInteger(sides[1], 1, most);
    return width && height ? std::optional(QSize(*width, *height)) : std::nullopt;
}

} // namespace

std::optional<QSize> ParseSize(const QString& text)
{
    return ParsePair(text, kMaxLength);
}

std::optional<QSize> ParseGrid(const QString& text)
{
    return ParsePair(text, kMaxGrid);
}

std::optional<Length> ParseLength(const QString& text)
{
    if (const auto pixels = ParseInteger(text, 1, kMaxLength))
        return Length{static_cast<double>(*pixels), true};
    const auto points = ParseMargin(text);
    if (!points || *points < kShortest)
        return {};
    return Length{*points, false};
}

std::optional<double> ParseMargin(const QString& text)
{
    const auto unit = FindNamed(kUnits, text.right(kUnitLetters));
    bool isNumber = false;
    const double points =
        text.chopped(std::min(text.size(), kUnitLetters)).toDouble(&isNumber) * unit.value_or(0);
    if (!unit || !isNumber || !(points >= 0) || points > kMaxLength)
        return {};
    return points;
}

std::optional<Page> ParsePage(const QString& text)
{
    if (const auto named = FindNamed(kPages, text))
        return named;
    const QStringList sides = text.split(u'x', Qt::KeepEmptyParts, Qt::CaseInsensitive);
    if (sides.size() != 2)
        return {};
    const auto height = ParseMargin(sides[1]);
    auto width = ParseMargin(sides[0]);
    if (!width) // it has the other's unit
        width = ParseMargin(sides[0] + sides[1].right(kUnitLetters));
    if (!width || !height || std::min(*width, *height) < kShortest)
        return {};
    return Page{QSizeF(*width, *height), false};
}

std::optional<QRect> ParseArea(const QString& text)
{
    const QStringList edges = text.split(u',');
    if (edges.size() != 4)
        return {};
    const auto left = ParseInteger(edges[0], 0, kPlfWidth);
    const auto top = ParseInteger(edges[1], 0, kPlfHeight);
    const auto right = ParseInteger(edges[2], 0, kPlfWidth);
    const auto bottom = ParseInteger(edges[3], 0, kPlfHeight);
    if (!left || !top || !right || !bottom || *left >= *right || *top >= *bottom)
        return {};
    return QRect(*left, *top, *right - *left, *bottom - *top);
}

std::optional<double> ParseLineScale(const QString& text)
{
    bool isNumber = false;
    const double value = text.toDouble(&isNumber);
    if (!isNumber || !(value > 0.0) || value > kMaxLineScale)
        return {};
    return value;
}

std::optional<Background> ParseBackground(const QString& text)
{
    return FindNamed(kBackgrounds, text);
}

QString BackgroundNames()
{
    return NamesOf(kBackgrounds);
}

} // namespace convert
