// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/plftext.h"

#include <QStringDecoder>

QString TextFromFile(std::string_view text)
{
    const QByteArrayView bytes(text.data(), static_cast<qsizetype>(text.size()));
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString decoded = utf8(bytes);
    return utf8.hasError() ? QString::fromLatin1(bytes) : decoded;
}
