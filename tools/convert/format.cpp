// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/format.h"

#include "tools/convert/namedvalue.h"

#include <algorithm>
#include <iterator>

namespace convert {

namespace {

// The first name of a format is its extension. DrawPicture() draws each of them; what one cannot do
// is refused by CheckFormat() of the options.
constexpr NamedValue<Format> kFormats[] = {
    {"png", Format::kPng}, {"jpg", Format::kJpeg}, {"jpeg", Format::kJpeg},
    {"svg", Format::kSvg}, {"pdf", Format::kPdf},  {"eps", Format::kEps},
};

} // namespace

std::optional<Format> ParseFormat(const QString& name)
{
    return FindNamed(kFormats, name);
}

std::optional<Format> FormatOfName(const QString& fileName)
{
    const qsizetype dot = fileName.lastIndexOf(u'.');
    return dot < 0 ? std::nullopt : ParseFormat(fileName.sliced(dot + 1));
}

QString ExtensionOf(Format format)
{
    const auto* row = std::find_if(std::begin(kFormats), std::end(kFormats),
                                   [format](const auto& each) { return each.value == format; });
    return QString::fromLatin1(row->name);
}

QString FormatNames()
{
    return NamesOf(kFormats);
}

bool HasPixels(Format format)
{
    return format == Format::kPng || format == Format::kJpeg;
}

bool IsBinary(Format format)
{
    return format != Format::kSvg && format != Format::kEps;
}

} // namespace convert
