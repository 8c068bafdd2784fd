// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/kit/script.h"

#include "tests/kit/plf.h"

#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <QTest>

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
        return QByteArray::fromStdString(plf::Int(word.mid(1).toInt()));
    if (word.startsWith(u'@')) {
        const QStringList xy = word.mid(1).split(u',');
        return QByteArray::fromStdString(plf::Address(xy[0].toInt(), xy[1].toInt()));
    }
    qFatal("unknown word in a decoder script: %s", qPrintable(word));
    return {};
}

// "{5 x}" becomes "xxxxx".
QString Expand(const QString& text)
{
    static const QRegularExpression kRepeat(QStringLiteral("\\{(\\d+) (.)\\}"));
    const QRegularExpressionMatch match = kRepeat.match(text);
    if (!match.hasMatch())
        return text;
    QString expanded = text;
    return expanded.replace(match.capturedStart(), match.capturedLength(),
                            match.captured(2).repeated(match.captured(1).toInt()));
}

void ReadView(const QString& words, Pass* pass)
{
    for (const QString& word : words.split(u' ')) {
        if (word == u"background=file")
            pass->whiteBackground = false;
        else if (word.startsWith(u"scale="))
            pass->widthScale = word.mid(6).toDouble();
        else
            qFatal("unknown view in a decoder script: %s", qPrintable(word));
    }
}

void ReadLine(const QString& line, ScriptCase* current)
{
    const QString keyword = line.section(u' ', 0, 0);
    const QString rest = line.section(u' ', 1);
    if (keyword == u"header")
        current->file = PlfHeader();
    else if (keyword == u"bytes")
        current->file += ScriptBytes(rest);
    else if (keyword == u"view")
        ReadView(rest, &current->pass);
    else if (keyword == u"vectors")
        current->vectors = rest.toInt();
    else
        current->operations += Expand(line);
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

QList<ScriptCase> ReadScript(const QString& path)
{
    QFile script(path);
    if (!script.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qPrintable(path));
    QList<ScriptCase> cases;
    for (const QString& line : QString::fromUtf8(script.readAll()).split(u'\n')) {
        if (line.isEmpty() || line.startsWith(u'#'))
            continue;
        if (line.startsWith(u"case ")) {
            cases.append({line.mid(5), {}, PlfHeader() + "00", {}, -1});
            continue;
        }
        ReadLine(line, &cases.last());
    }
    return cases;
}
