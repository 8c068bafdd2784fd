// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/krvhost/wire.h"

#include "hostlink/frame.h"

#include <QBuffer>
#include <QStringList>

#include <algorithm>

namespace krvhost {

namespace {

// The viewer's options, in the order in which it looks for them anywhere in a word.
constexpr const char* kViewerOptions[] = {
    "-wp=", "-po=", "-p", "-c=", "-cf=", "-svrname=", "-q", "-tmp", "-cwd=", "-?"};

// The option that the viewer takes a word for; empty if it is a file name.
QLatin1StringView OptionIn(const QString& word)
{
    for (const char* option : kViewerOptions) {
        if (word.contains(QLatin1StringView(option)))
            return QLatin1StringView(option);
    }
    return {};
}

// The words of a command line that the viewer looks at.
QStringList UsedWords(const QString& command)
{
    QStringList words = command.split(u' ');
    const auto isUsage = [](const QString& word) { return OptionIn(word) == QLatin1String("-?"); };
    words.erase(std::find_if(words.begin(), words.end(), isUsage), words.end());
    return words;
}

} // namespace

bool TakeFrame(QByteArray* received, QString* message)
{
    if (received->size() < kFrameLengthSize)
        return false;
    const auto high = static_cast<uchar>(received->at(0));
    const auto low = static_cast<uchar>(received->at(1));
    const qsizetype size = kFrameLengthSize + (high << 8) + low;
    if (received->size() < size)
        return false;
    QByteArray frame = received->left(size);
    received->remove(0, size);
    QBuffer device(&frame);
    device.open(QIODevice::ReadOnly);
    qint16 blockSize = 0;
    return ReadFrame(&device, &blockSize, message);
}

bool HasOption(const QString& command, const char* option)
{
    const QStringList words = UsedWords(command);
    return std::any_of(words.begin(), words.end(), [option](const QString& word) {
        return OptionIn(word) == QLatin1StringView(option);
    });
}

QString FileIn(const QString& command)
{
    QString file;
    for (const QString& word : UsedWords(command)) {
        if (OptionIn(word).isEmpty())
            file = word;
    }
    return file;
}

bool IsFileName(const QString& name)
{
    return !name.contains(u' ') && OptionIn(name).isEmpty();
}

} // namespace krvhost
