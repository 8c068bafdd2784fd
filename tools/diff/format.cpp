// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/diff/format.h"

#include "tools/convert/namedvalue.h"

namespace diff {

namespace {

constexpr convert::NamedValue<Format> kFormats[] = {
    {"png", Format::kPng},
    {"svg", Format::kSvg},
    {"pdf", Format::kPdf},
};

} // namespace

std::optional<Format> FormatOfName(const QString& fileName)
{
    const qsizetype dot = fileName.lastIndexOf(u'.');
    return dot < 0 ? std::nullopt : convert::FindNamed(kFormats, fileName.sliced(dot + 1));
}

QString FormatNames()
{
    return convert::NamesOf(kFormats);
}

} // namespace diff
