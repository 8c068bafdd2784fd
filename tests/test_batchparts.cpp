// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The parts of a batch that can be looked at without a process: the order of names, the bar.
#include "tools/common/naturalorder.h"
#include "tools/convert/bar.h"

#include <QtTest>

#include <algorithm>

using namespace convert;

class TestBatchParts : public QObject
{
    Q_OBJECT

private slots:
    void names_areSortedAsPeopleCount_data()
    {
        QTest::addColumn<QByteArrayList>("names"); // in their order
        QTest::newRow("numbers") << QByteArrayList{"g1", "g2", "g10", "g100"};
        QTest::newRow("zeros") << QByteArrayList{"g01", "g1", "g001a", "g02", "g2"};
        QTest::newRow("long numbers")
            << QByteArrayList{"9", "99999999999999999998", "99999999999999999999", "1e", "2"}.mid(
                   0, 3);
        QTest::newRow("several numbers") << QByteArrayList{"1-2", "1-10", "2-1", "10-1"};
        QTest::newRow("folders") << QByteArrayList{"a/2", "a/10", "a-b/1", "a2/1", "a10/1"};
        QTest::newRow("beginnings") << QByteArrayList{"", "a", "a1", "ab"};
        QTest::newRow("bytes") << QByteArrayList{"B", "a", "\x7f", "\xe4"};
    }
    void names_areSortedAsPeopleCount()
    {
        QFETCH(QByteArrayList, names);
        QByteArrayList sorted = names;
        std::sort(sorted.begin(), sorted.end());
        std::sort(sorted.begin(), sorted.end(), tools::IsNaturallyBefore);
        QCOMPARE(sorted, names);
        for (const QByteArray& name : names)
            QVERIFY(!tools::IsNaturallyBefore(name, name));
    }

    void bar_fitsTheTerminal_data()
    {
        QTest::addColumn<int>("columns");
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("usual") << 40 << QByteArray("[###.........]  30/100   30%  1:10 left");
        QTest::newRow("narrow") << 30 << QByteArray(" 30/100   30%  1:10 left");
        QTest::newRow("tiny") << 8 << QByteArray(" 30/100");
    }
    void bar_fitsTheTerminal()
    {
        QFETCH(int, columns);
        QFETCH(QByteArray, line);
        const QByteArray drawn = BarLine(30, 100, 30, columns);
        QVERIFY(drawn.size() < columns);
        QCOMPARE(drawn, line);
    }

    void bar_tellsTheRemainingTime_data()
    {
        QTest::addColumn<int>("done");
        QTest::addColumn<double>("seconds");
        QTest::addColumn<QByteArray>("end");
        QTest::newRow("too early") << 10 << 0.5 << QByteArray("%");
        QTest::newRow("nothing done") << 0 << 100.0 << QByteArray("%");
        QTest::newRow("seconds") << 500 << 7.0 << QByteArray("  0:07 left");
        QTest::newRow("minutes") << 100 << 81.0 << QByteArray("  12:09 left");
        QTest::newRow("hours") << 1 << 10.0 << QByteArray("  2:46:30 left");
        QTest::newRow("done") << 1000 << 10.0 << QByteArray("  0:00 left");
    }
    void bar_tellsTheRemainingTime()
    {
        QFETCH(int, done);
        QFETCH(double, seconds);
        QFETCH(QByteArray, end);
        const QByteArray line = BarLine(done, 1000, seconds, 80);
        QVERIFY2(line.endsWith(end), line.constData());
    }
};

QTEST_GUILESS_MAIN(TestBatchParts)
#include "test_batchparts.moc"
