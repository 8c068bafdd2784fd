// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/script.h"

#include <QHash>
#include <QStringList>
#include <QTest>

#include <cstdlib>

namespace {

QByteArray WordBytes(const QString& word)
{
    static const QHash<QString, char> kControls = {
        {QStringLiteral("ESC"), '\x1b'}, {QStringLiteral("GS"), '\x1d'},
        {QStringLiteral("BEL"), '\a'},   {QStringLiteral("CR"), '\r'},
        {QStringLiteral("LF"), '\n'},    {QStringLiteral("FF"), '\f'},
        {QStringLiteral("US"), '\x1f'},  {QStringLiteral("NUL"), '\0'},
        {QStringLiteral("_"), ' '}};
    if (kControls.contains(word))
        return QByteArray(1, kControls.value(word));
    if (word.startsWith(u'"') && word.endsWith(u'"'))
        return word.mid(1, word.size() - 2).toUtf8();
    if (word.startsWith(u'x'))
        return QByteArray::fromHex(word.mid(1).toLatin1());
    if (word.startsWith(u'#'))
        return IntegerBytes(word.mid(1).toInt());
    if (word.startsWith(u'@')) {
        const QStringList xy = word.mid(1).split(u',');
        return AddressBytes(xy[0].toInt(), xy[1].toInt());
    }
    qFatal("unknown word in a decoder script: %s", qPrintable(word));
    return {};
}

} // namespace

QByteArray ScriptBytes(const QString& text)
{
    QByteArray bytes;
    qsizetype times = 1;
    for (const QString& word : text.split(u' ', Qt::SkipEmptyParts)) {
        if (word.startsWith(u'*')) {
            times = word.mid(1).toLongLong();
            continue;
        }
        bytes += WordBytes(word).repeated(times);
        times = 1;
    }
    return bytes;
}

QByteArray AddressBytes(int x, int y)
{
    QByteArray bytes;
    for (const int part : {32 + (y >> 7), 96 + ((y & 3) << 2 | (x & 3)), 96 + ((y >> 2) & 31),
                           32 + (x >> 7), 64 + ((x >> 2) & 31)})
        bytes.append(static_cast<char>(part));
    return bytes;
}

QByteArray IntegerBytes(int value)
{
    const int magnitude = std::abs(value);
    QByteArray bytes;
    for (int high = magnitude >> 4; high > 0; high >>= 6)
        bytes.prepend(static_cast<char>(64 + (high & 63)));
    bytes.append(static_cast<char>((value < 0 ? 32 : 48) + (magnitude & 15)));
    return bytes;
}
