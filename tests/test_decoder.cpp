// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Runs the decoder scripts of tests/data/decoder: bytes in, painted operations out.
#include "app/state/globals.h"
#include "meta/plfbuffer.h"
#include "tests/kit/graph.h"
#include "tests/kit/script.h"

#include <QDir>
#include <QTest>

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
            for (const ScriptCase& row : ReadScript(folder.filePath(script)))
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
