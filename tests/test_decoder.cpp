// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Runs the decoder scripts of tests/data/decoder: bytes in, painted operations out.
#include "app/globals.h"
#include "meta/plfbuffer.h"
#include "tests/graph.h"
#include "tests/script.h"

#include <QDir>
#include <QRegularExpression>
#include <QTest>

namespace {

struct Case {
    QString name;
    Pass pass;
    QByteArray file;
    QStringList operations;
    int vectors = -1;
};

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

void ReadLine(const QString& line, Case* current)
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

QList<Case> ReadScript(const QString& path)
{
    QFile script(path);
    if (!script.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qPrintable(path));
    QList<Case> cases;
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

} // namespace

class TestDecoder : public QObject
{
    Q_OBJECT

private slots:
    void cleanupTestCase() { FreePlfBuffer(); }

    void script_data()
    {
        QTest::addColumn<Pass>("pass");
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QStringList>("operations");
        QTest::addColumn<int>("vectors");
        const QDir folder(QFINDTESTDATA("data/decoder"));
        const QStringList scripts = folder.entryList({QStringLiteral("*.txt")});
        QVERIFY(scripts.size() >= 7);
        for (const QString& script : scripts) {
            for (const Case& row : ReadScript(folder.filePath(script)))
                QTest::newRow(qPrintable(script + u' ' + row.name))
                    << row.pass << row.file << row.operations << row.vectors;
        }
    }

    void script()
    {
        QFETCH(Pass, pass);
        QFETCH(QByteArray, file);
        QFETCH(QStringList, operations);
        QFETCH(int, vectors);
        QVERIFY2(vectors >= 0, "the case says no vector count");
        LoadBytes(file);
        QCOMPARE(Drawn(Record(pass)), operations);
        QCOMPARE(gdwVectorCnt, static_cast<unsigned long>(vectors));
    }
};

QTEST_MAIN(TestDecoder)
#include "test_decoder.moc"
