// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Bounded copies: a text fits whole, or the buffer stays as it was.
#include "support/text.h"

#include "app/state/globals.h"

#include <QtTest>

namespace {

constexpr size_t kSize = 8;

} // namespace

class TestText : public QObject
{
    Q_OBJECT

private slots:
    void text_data();
    void copyText_data() { text_data(); }
    void copyText();
    void copyText_intoArray_takesItsSize();
    void copyText_intoNoBytes_isRefused();
    void copyText_fromItsOwnBuffer_movesTheText();
    void formatText_data() { text_data(); }
    void formatText();
    void formatText_joinsTextsAndNumbers();
    void formatText_intoNoBytes_isRefused();
    void formatPath_longestPath_fits();
    void formatPath_oneByteTooLong_isReportedAndChangesNothing();
    void reportTooLong_saysWhatAndHowLong();
};

void TestText::text_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("fits");

    QTest::newRow("empty") << QByteArray("") << true;
    QTest::newRow("short") << QByteArray("abc") << true;
    QTest::newRow("just fits with its NUL") << QByteArray("abcdefg") << true;
    QTest::newRow("no room for the NUL") << QByteArray("abcdefgh") << false;
    QTest::newRow("much too long") << QByteArray(5000, 'x') << false;
    QTest::newRow("bytes above 127") << QByteArray("\xc3\xa4\xff") << true;
    QTest::newRow("percent signs") << QByteArray("%s%n%d") << true;
}

void TestText::copyText()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, fits);
    char buffer[kSize] = "before";
    QCOMPARE(CopyText(buffer, kSize, text.constData()), fits);
    QCOMPARE(QByteArray(buffer), fits ? text : QByteArray("before"));
}

void TestText::copyText_intoArray_takesItsSize()
{
    char buffer[4] = "old";
    QVERIFY(!CopyText(buffer, "four"));
    QCOMPARE(QByteArray(buffer), QByteArray("old"));
    QVERIFY(CopyText(buffer, "new"));
    QCOMPARE(QByteArray(buffer), QByteArray("new"));
}

void TestText::copyText_intoNoBytes_isRefused()
{
    char buffer[] = "x";
    QVERIFY(!CopyText(buffer, 0, ""));
    QCOMPARE(buffer[0], 'x');
}

void TestText::copyText_fromItsOwnBuffer_movesTheText()
{
    char buffer[] = "dir/name.plf";
    QVERIFY(CopyText(buffer, buffer + 4));
    QCOMPARE(QByteArray(buffer), QByteArray("name.plf"));
}

void TestText::formatText()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, fits);
    char buffer[kSize] = "before";
    QCOMPARE(FormatText(buffer, kSize, "%s", text.constData()), fits);
    QCOMPARE(QByteArray(buffer), fits ? text : QByteArray("before"));
}

void TestText::formatText_joinsTextsAndNumbers()
{
    char buffer[32] = "";
    QVERIFY(FormatText(buffer, sizeof buffer, "%s/%s-%d.%x", "dir", "name", -7, 255U));
    QCOMPARE(QByteArray(buffer), QByteArray("dir/name--7.ff"));
}

void TestText::formatText_intoNoBytes_isRefused()
{
    char buffer[] = "x";
    QVERIFY(!FormatText(buffer, 0, "%s", ""));
    QCOMPARE(buffer[0], 'x');
}

void TestText::formatPath_longestPath_fits()
{
    const QByteArray name(kPathSize - 1 - 4, 'n');
    char path[kPathSize] = "before";
    QVERIFY(FormatPath(path, "the path", "dir/%s", name.constData()));
    QCOMPARE(QByteArray(path), "dir/" + name);
}

void TestText::formatPath_oneByteTooLong_isReportedAndChangesNothing()
{
    const QByteArray name(kPathSize - 4, 'n');
    char path[kPathSize] = "before";
    QTest::ignoreMessage(QtWarningMsg,
                         "plotvw: the path is too long (1024 bytes, limit 1023) and was ignored");
    QVERIFY(!FormatPath(path, "the path", "dir/%s", name.constData()));
    QCOMPARE(QByteArray(path), QByteArray("before"));
}

void TestText::reportTooLong_saysWhatAndHowLong()
{
    QTest::ignoreMessage(
        QtWarningMsg,
        "plotvw: the home directory is too long (1500 bytes, limit 1023) and was ignored");
    ReportTooLong("the home directory", 1500, 1023);
}

QTEST_GUILESS_MAIN(TestText)
#include "test_text.moc"
