// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/info/words.h"

#include "meta/palette.h"
#include "meta/plftext.h"
#include "support/visible.h"

#include <iterator>

namespace info {

namespace {

constexpr const char* kEndWords[] = {"bel", "byte-255", "zero-byte", "end-of-file"};
static_assert(std::size(kEndWords) == static_cast<size_t>(PlfEnd::kEndOfFile) + 1);

constexpr char16_t kLastByte = 0xFF;

QString Escaped(QChar c)
{
    if (c == u'"' || c == u'\\')
        return QStringLiteral("\\") + c;
    if (!IsHidden(c.unicode()))
        return c;
    if (c.unicode() > kLastByte)
        return QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
    return QStringLiteral("\\x%1").arg(c.unicode(), 2, 16, QLatin1Char('0'));
}

} // namespace

const char* EndWord(PlfEnd reason)
{
    return kEndWords[static_cast<size_t>(reason)];
}

const char* BackgroundWord(const Background& background)
{
    if (!background.offset)
        return "default";
    return background.index < kPaletteSize ? "file" : "unknown";
}

QByteArray Quoted(std::string_view text)
{
    QString quoted;
    for (const QChar c : TextFromFile(text))
        quoted += Escaped(c);
    return '"' + quoted.toUtf8() + '"';
}

} // namespace info
