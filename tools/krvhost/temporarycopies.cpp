// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/krvhost/temporarycopies.h"

#include "tools/krvhost/command.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

namespace krvhost {

QString TemporaryCopies::HandOver(const QString& command)
{
    QStringList words = command.split(u' ');
    for (QString& word : words) {
        if (word.startsWith(u'-') || !QFileInfo(word).isFile())
            continue;
        word = Copy(word);
        if (word.isEmpty())
            return {};
    }
    words.prepend(WordFor(ViewerOption::kTemporary));
    return words.join(u' ');
}

void TemporaryCopies::RemoveRest() const
{
    for (const QString& name : names)
        QFile::remove(name);
}

QString TemporaryCopies::Copy(const QString& file)
{
    QFile original(file);
    QTemporaryFile copy(QDir::tempPath() + QStringLiteral("/krvhost_XXXXXX.plf"));
    if (!IsFileName(copy.fileTemplate()) || !original.open(QIODevice::ReadOnly) || !copy.open())
        return {};
    const QByteArray bytes = original.readAll();
    if (copy.write(bytes) != bytes.size() || !copy.flush())
        return {};
    copy.setAutoRemove(false);
    names.append(copy.fileName());
    return copy.fileName();
}

} // namespace krvhost
