// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/namepattern.h"

#include "tools/common/filename.h"

#include <optional>

namespace convert {

namespace {

std::optional<QString> PartOf(const NameParts& parts, const QString& placeholder)
{
    if (placeholder == u"name")
        return tools::BaseName(parts.input);
    if (placeholder == u"dir")
        return tools::FolderOf(parts.input);
    if (placeholder == u"sub")
        return parts.subfolder;
    if (placeholder == u"ext")
        return ExtensionOf(parts.format);
    if (placeholder == u"number") {
        const auto digits = static_cast<int>(QString::number(parts.count).size());
        return QStringLiteral("%1").arg(parts.number, digits, 10, QLatin1Char('0'));
    }
    return {};
}

struct Expansion {
    QString text;
    QString problem;
};

// One brace of the pattern with what belongs to it. Moves *at to the last character of that.
void ExpandBrace(const QString& pattern, qsizetype* at, const NameParts& parts, Expansion* result)
{
    const QChar brace = pattern[*at];
    if (*at + 1 < pattern.size() && pattern[*at + 1] == brace) {
        ++*at;
        result->text += brace;
        return;
    }
    const qsizetype end = brace == u'{' ? pattern.indexOf(u'}', *at) : -1;
    if (end < 0) {
        result->problem = QStringLiteral("unmatched '%1'").arg(brace);
        return;
    }
    const QString placeholder = pattern.sliced(*at + 1, end - *at - 1);
    const auto part = PartOf(parts, placeholder);
    if (!part) {
        result->problem =
            QStringLiteral("unknown placeholder {%1}; use {name}, {dir}, {sub}, {ext} or {number}")
                .arg(placeholder);
    }
    result->text += part.value_or(QString());
    *at = end;
}

Expansion Expand(const QString& pattern, const NameParts& parts)
{
    Expansion result;
    for (qsizetype at = 0; at < pattern.size() && result.problem.isEmpty(); ++at) {
        if (pattern[at] == u'{' || pattern[at] == u'}')
            ExpandBrace(pattern, &at, parts, &result);
        else
            result.text += pattern[at];
    }
    return result;
}

} // namespace

QString PatternProblem(const QString& pattern)
{
    if (pattern.isEmpty() || pattern.endsWith(u'/'))
        return QStringLiteral("names no file");
    return Expand(pattern, {}).problem;
}

QString ExpandPattern(const QString& pattern, const NameParts& parts)
{
    return Expand(pattern, parts).text;
}

} // namespace convert
