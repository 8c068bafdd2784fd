// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/krvhost/command.h"

#include <QStringList>

#include <algorithm>

namespace krvhost {

namespace {

ViewerOption OptionOf(const QString& word)
{
    return OptionIn(word.toStdString());
}

// The words of a command line that the viewer looks at.
QStringList UsedWords(const QString& command)
{
    QStringList words = command.split(u' ');
    const auto isUsage = [](const QString& word) { return OptionOf(word) == ViewerOption::kUsage; };
    words.erase(std::find_if(words.begin(), words.end(), isUsage), words.end());
    return words;
}

} // namespace

bool HasOption(const QString& command, ViewerOption option)
{
    const QStringList words = UsedWords(command);
    return std::any_of(words.begin(), words.end(),
                       [option](const QString& word) { return OptionOf(word) == option; });
}

QString FileIn(const QString& command)
{
    QString file;
    for (const QString& word : UsedWords(command)) {
        if (OptionOf(word) == ViewerOption::kNone)
            file = word;
    }
    return file;
}

bool IsFileName(const QString& name)
{
    return !name.contains(u' ') && OptionOf(name) == ViewerOption::kNone;
}

QString WordFor(ViewerOption option)
{
    const std::string_view text = TextOf(option);
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace krvhost
