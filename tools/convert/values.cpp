// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/values.h"

#include "meta/plfarea.h"
#include "tools/common/integer.h"
#include "tools/convert/namedvalue.h"
#include "tools/convert/picturesize.h"

#include <QStringList>

namespace convert {

namespace {

using tools::ParseInteger;

constexpr NamedValue<Background> kBackgrounds[] = {
    {"white", Background::kAllWhite},
    {"file", Background::kFile},
    {"transparent", Background::kTransparent},
};

} // namespace

std::optional<QSize> ParseSize(const QString& text)
{
    const QStringList sides = text.split(u'x', Qt::KeepEmptyParts, Qt::CaseInsensitive);
    if (sides.size() != 2)
        return {};
    const auto width = ParseInteger(sides[0], 1, kMaxSide);
    const auto height = ParseInteger(sides[1], 1, kMaxSide);
    if (!width || !height || !IsPossible({*width, *height}))
        return {};
    return QSize(*width, *height);
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
