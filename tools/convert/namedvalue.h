// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Tables of the words that options take as their values.
#pragma once

#include <QString>
#include <QStringList>

#include <cstddef>
#include <optional>

namespace convert {

template <typename Value> struct NamedValue {
    const char* name;
    Value value;
};

/// What a name stands for, in any case.
template <typename Value, size_t N>
std::optional<Value> FindNamed(const NamedValue<Value> (&table)[N], const QString& name)
{
    for (const auto& row : table) {
        if (name.compare(QLatin1StringView(row.name), Qt::CaseInsensitive) == 0)
            return row.value;
    }
    return {};
}

/// "a, b or c".
template <typename Value, size_t N> QString NamesOf(const NamedValue<Value> (&table)[N])
{
    QStringList names;
    for (const auto& row : table)
        names += QString::fromLatin1(row.name);
    const QString last = names.takeLast();
    return names.join(QStringLiteral(", ")) + QStringLiteral(" or ") + last;
}

} // namespace convert
