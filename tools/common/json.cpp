// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/common/json.h"

#include "support/visible.h"
#include "tools/common/filename.h"

namespace tools {

void PutName(const char* key, const QString& name, QJsonObject* object)
{
    const QString word = QString::fromLatin1(key);
    const QByteArray bytes = EncodeName(name);
    (*object)[word] = QString::fromUtf8(bytes);
    if (!bytes.isValidUtf8())
        (*object)[word + QStringLiteral("Base64")] = QString::fromLatin1(bytes.toBase64());
}

// JSON has 64-bit floating-point numbers, which are exact for every count of bytes that fits into
// memory.
QJsonArray DamageArray(const PlfDamageMap& damage)
{
    QJsonArray array;
    for (const auto& [kind, noted] : damage) {
        array += QJsonObject{{QStringLiteral("kind"), QLatin1StringView(DamageWord(kind))},
                             {QStringLiteral("offset"), static_cast<qint64>(noted.offset)},
                             {QStringLiteral("count"), static_cast<qint64>(noted.count)}};
    }
    return array;
}

// Such characters are in texts only, except for line ends.
QByteArray VisibleJson(const QByteArray& json)
{
    QString visible;
    for (const QChar c : QString::fromUtf8(json)) {
        if (c != u'\n' && IsHidden(c.unicode()))
            visible += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
        else
            visible += c;
    }
    return visible.toUtf8();
}

} // namespace tools
