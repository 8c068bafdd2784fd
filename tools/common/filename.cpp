// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/common/filename.h"

#include "support/visible.h"

#include <QStringDecoder>

namespace tools {

namespace {

// A byte b that is not part of UTF-8 is kept as this plus b.
constexpr char16_t kRawByte = 0xDC00;
constexpr char16_t kFirstRawByte = kRawByte + 0x80;
constexpr char16_t kLastRawByte = kRawByte + 0xFF;

bool IsRawByte(const QString& name, qsizetype at)
{
    const char16_t c = name[at].unicode();
    const bool alone = at == 0 || !name[at - 1].isHighSurrogate();
    return alone && c >= kFirstRawByte && c <= kLastRawByte;
}

} // namespace

QString DecodeName(const QByteArray& name)
{
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString decoded = utf8(name);
    if (!utf8.hasError())
        return decoded;
    decoded.clear();
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        decoded += QChar(static_cast<char16_t>(byte < 0x80 ? byte : kRawByte + byte));
    }
    return decoded;
}

QByteArray EncodeName(const QString& name)
{
    QByteArray encoded;
    qsizetype start = 0;
    for (qsizetype i = 0; i < name.size(); ++i) {
        if (!IsRawByte(name, i))
            continue;
        encoded += QStringView(name).sliced(start, i - start).toUtf8();
        encoded += static_cast<char>(name[i].unicode() - kRawByte);
        start = i + 1;
    }
    return encoded + QStringView(name).sliced(start).toUtf8();
}

QByteArray VisibleText(const QString& text)
{
    return VisibleName(EncodeName(text));
}

QString BaseName(const QString& name)
{
    if (name == QLatin1StringView(kStandardStream))
        return QStringLiteral("stdin");
    QString file = name.sliced(name.lastIndexOf(u'/') + 1);
    if (file.endsWith(QLatin1StringView(kPackedExtension), Qt::CaseInsensitive))
        file.chop(static_cast<qsizetype>(sizeof kPackedExtension) - 1);
    const qsizetype dot = file.lastIndexOf(u'.');
    return dot > 0 ? file.left(dot) : file;
}

QString FolderOf(const QString& name)
{
    const qsizetype slash = name.lastIndexOf(u'/');
    if (slash < 0)
        return QStringLiteral(".");
    return slash == 0 ? QStringLiteral("/") : name.left(slash);
}

} // namespace tools
