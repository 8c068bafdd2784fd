// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/arguments.h"

#include "meta/plfmeta.h"

#include <algorithm>
#include <cstdint>

namespace {

// The view's width in a window of the default size.
constexpr int kDefaultWidth = 640;

template <typename Value> struct Named {
    QLatin1StringView name;
    Value value;
};

// The first name of a format is its extension.
constexpr Named<Format> kFormats[] = {
    {QLatin1StringView("png"), Format::kPng},   {QLatin1StringView("jpg"), Format::kJpeg},
    {QLatin1StringView("jpeg"), Format::kJpeg}, {QLatin1StringView("svg"), Format::kSvg},
    {QLatin1StringView("pdf"), Format::kPdf},   {QLatin1StringView("eps"), Format::kEps},
};

constexpr Named<Background> kBackgrounds[] = {
    {QLatin1StringView("white"), Background::kAllWhite},
    {QLatin1StringView("file"), Background::kFile},
    {QLatin1StringView("transparent"), Background::kTransparent},
};

template <typename Value, size_t N>
std::optional<Value> Find(const Named<Value> (&table)[N], const QString& name)
{
    for (const auto& row : table) {
        if (name.compare(row.name, Qt::CaseInsensitive) == 0)
            return row.value;
    }
    return {};
}

bool IsDigits(const QString& text)
{
    return !text.isEmpty() &&
           std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

} // namespace

std::optional<int> ParseInteger(const QString& text, int least, int most)
{
    bool fits = false;
    const int value = text.toInt(&fits);
    if (!IsDigits(text) || !fits || value < least || value > most)
        return {};
    return value;
}

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
    return Find(kBackgrounds, text);
}

std::optional<Format> ParseFormat(const QString& text)
{
    return Find(kFormats, text);
}

std::optional<Format> FormatOfName(const QString& name)
{
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot < 0 ? std::nullopt : ParseFormat(name.sliced(dot + 1));
}

QString ExtensionOf(Format format)
{
    const auto* row = std::find_if(std::begin(kFormats), std::end(kFormats),
                                   [format](const auto& each) { return each.value == format; });
    return row->name;
}

QSize PictureSize(const PictureSettings& settings)
{
    if (settings.size)
        return *settings.size;
    const QSize shape = settings.area ? settings.area->size() : QSize(kPlfWidth, kPlfHeight);
    const int width = settings.width.value_or(kDefaultWidth);
    return {width, std::max(width * shape.height() / shape.width(), 1)};
}

bool IsPossible(QSize size)
{
    return size.width() <= kMaxSide && size.height() <= kMaxSide &&
           int64_t{size.width()} * size.height() <= kMaxPixels;
}
