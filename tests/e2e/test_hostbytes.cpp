// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What the viewer makes of the bytes of its host, also of those that are no command.
#include "tests/e2e/hostlinktest.h"

namespace {

// What the viewer may take, also for its About box, when a count promises more than there is,
// kilobytes.
constexpr qint64 kMostForNothing = qint64{256} * 1024;

} // namespace

class TestHostBytes : public QObject, protected HostLinkTest
{
    Q_OBJECT

private slots:
    void initTestCase() { CheckTools(); }
    void init() { Begin(); }
    void cleanup() { End(); }

    void twoBlanks_clearTheFileName_nothingIsLoadedOrAnswered();
    void afterACommandWithoutAFile_theNextFrameIsLost_aBareStringIsNot();
    void byteByByte_nothingIsLoaded();
    void lengthAlone_waitsForTheString();
    void twoFramesAtOnce_theSecondWaitsForAThird();
    void frameBeforeTheAnswer_waitsForTheNextOne();
    void afterACommandWithoutAFile_theGraphIsGoneWhenTheWindowIsDrawn();
    void bytesThatAreNoFrame_areSurvived_data();
    void bytesThatAreNoFrame_areSurvived();
    void commandThatCannotBeUsed_isRefusedAndAnswered_data();
    void commandThatCannotBeUsed_isRefusedAndAnswered();
};

// The empty word between the blanks comes after the file's name and is the name then.
void TestHostBytes::twoBlanks_clearTheFileName_nothingIsLoadedOrAnswered()
{
    Open();
    host->Send(QStringLiteral("other.plf  -p"));
    QVERIFY(AwaitCommands(1));
    ExpectStillAlive();
    ExpectTitle(QStringLiteral("graph.plf"));
    Quit();
}

void TestHostBytes::afterACommandWithoutAFile_theNextFrameIsLost_aBareStringIsNot()
{
    Open();
    host->Send(QStringLiteral("other.plf "));
    QVERIFY(AwaitCommands(1));
    for (int lost = 0; lost < 3; ++lost) {
        host->Send(QStringLiteral("other.plf"));
        QVERIFY(AwaitCommands(2 + lost));
    }
    ExpectStillAlive();
    ExpectTitle(QStringLiteral("graph.plf"));
    host->SendBytes(StringBytes(QStringLiteral("other.plf")));
    ExpectAnswers(1);
    ExpectTitle(QStringLiteral("other.plf"));
    // From here on everything is as it was.
    Command(QStringLiteral("graph.plf"));
    ExpectTitle(QStringLiteral("graph.plf"));
    Quit();
}

// Each byte after the length is taken for a whole string, of which there is nothing to read.
void TestHostBytes::byteByByte_nothingIsLoaded()
{
    Open();
    const QByteArray frame = FrameBytes(QStringLiteral("other.plf"));
    for (qsizetype i = 0; i < frame.size(); ++i) {
        host->SendBytes(frame.mid(i, 1));
        QVERIFY(AwaitCommands(i - 1));
    }
    ExpectStillAlive();
    host->SendBytes(StringBytes(QStringLiteral("other.plf")));
    ExpectAnswers(1);
    ExpectTitle(QStringLiteral("other.plf"));
    Quit();
}

void TestHostBytes::lengthAlone_waitsForTheString()
{
    Open();
    const QByteArray frame = FrameBytes(QStringLiteral("other.plf"));
    host->SendBytes(frame.left(1));
    ExpectStillAlive();
    host->SendBytes(frame.mid(1, 1));
    ExpectStillAlive();
    QVERIFY(AwaitCommands(0));
    QCOMPARE(messages.count(kDoneWith), 0);
    host->SendBytes(frame.mid(2));
    ExpectAnswers(1);
    ExpectTitle(QStringLiteral("other.plf"));
    Quit();
}

// One command is taken each time that something comes.
void TestHostBytes::twoFramesAtOnce_theSecondWaitsForAThird()
{
    QVERIFY(WriteFile(Path(QStringLiteral("third.plf")), HostGraph(kRedHue)));
    Open();
    host->SendBytes(FrameBytes(QStringLiteral("other.plf")) +
                    FrameBytes(QStringLiteral("graph.plf")));
    ExpectAnswers(1);
    ExpectTitle(QStringLiteral("other.plf"));
    ExpectStillAlive();
    ExpectTitle(QStringLiteral("other.plf"));
    Command(QStringLiteral("third.plf"));
    ExpectTitle(QStringLiteral("graph.plf"));
    ExpectStillAlive();
    Command(QStringLiteral("other.plf"));
    ExpectTitle(QStringLiteral("third.plf"));
    Quit();
}

// While the box of the command before is open, say.
void TestHostBytes::frameBeforeTheAnswer_waitsForTheNextOne()
{
    Open();
    host->Send(QStringLiteral("missing.plf"));
    QVERIFY(viewer->AwaitWindow(QStringLiteral("Error")));
    host->Send(QStringLiteral("other.plf"));
    CloseBox(QStringLiteral("Error"));
    ExpectAnswers(1);
    ExpectStillAlive();
    QVERIFY(viewer->AwaitWindow(QStringLiteral("KORVEL Viewer")));
    Command(QStringLiteral("graph.plf"));
    ExpectTitle(QStringLiteral("other.plf"));
    Quit();
}

// Its words, of which none was a file, said what the current file is.
void TestHostBytes::afterACommandWithoutAFile_theGraphIsGoneWhenTheWindowIsDrawn()
{
    Open();
    QVERIFY(viewer->AwaitStillPicture());
    const QColor middle = ScreenColor(viewer->Content().center());
    QVERIFY2(middle.red() > 100 && middle.green() < 30, qPrintable(middle.name()));
    host->Send(QStringLiteral("-wp=300,150,500,400"));
    QVERIFY(AwaitCommands(1));
    QVERIFY(Await([&] { return viewer->Content().size() == QSize(500, 400); }));
    QVERIFY(Await([&] { return ScreenColor(viewer->Content().center()) == QColor(Qt::white); }));
    ExpectTitle(QStringLiteral("graph.plf"));
    Quit();
}

void TestHostBytes::bytesThatAreNoFrame_areSurvived_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("null string") << QByteArray::fromHex("0004ffffffff");
    QTest::newRow("empty string") << QByteArray::fromHex("000400000000");
    QTest::newRow("a count of four gigabytes") << QByteArray::fromHex("0028fffffffe0041");
    QTest::newRow("an odd count") << QByteArray::fromHex("0028000000030041");
    QTest::newRow("a length of zero") << QByteArray::fromHex("0000000000020020");
    QTest::newRow("a negative length") << QByteArray::fromHex("ffff000000020020");
    QTest::newRow("a text") << QByteArray("GET / HTTP/1.1\r\n\r\n");
    QTest::newRow("all ones") << QByteArray(1000, '\xff');
}

void TestHostBytes::bytesThatAreNoFrame_areSurvived()
{
    QFETCH(QByteArray, bytes);
    Open();
    const qint64 process = host->Peer();
    const qint64 peak = MemoryOf(process, "VmPeak");
    host->SendBytes(bytes);
    QVERIFY(AwaitCommands(1));
    ExpectStillAlive();
    const qint64 growth = MemoryOf(process, "VmPeak") - peak;
    QVERIFY(peak > 0);
    QVERIFY2(growth <= kMostForNothing, qPrintable(QString::number(growth)));
    ExpectTitle(QStringLiteral("graph.plf"));
    Quit();
}

void TestHostBytes::commandThatCannotBeUsed_isRefusedAndAnswered_data()
{
    QTest::addColumn<QString>("words");
    QTest::newRow("too long a name") << QString(1024, u'x');
    QTest::newRow("too long a name for exports")
        << QStringLiteral("-tmp other.plf -c=2 -q -cf=") + QString(1024, u'x');
    QTest::newRow("a zero") << QStringLiteral("-tmp other.plf -c=2 -q x") + QChar(u'\0');
    QTest::newRow("half a character") << QStringLiteral("-tmp other.plf -q ") + QChar(0xd800);
}

// Nothing changes, and the next command works.
void TestHostBytes::commandThatCannotBeUsed_isRefusedAndAnswered()
{
    QFETCH(QString, words);
    Open();
    host->Send(words);
    CloseBox(QStringLiteral("Error"));
    ExpectAnswers(1);
    ExpectStillAlive();
    ExpectTitle(QStringLiteral("graph.plf"));
    QVERIFY(viewer->AwaitStillPicture());
    const QColor middle = ScreenColor(viewer->Content().center());
    QVERIFY2(middle.red() > 100 && middle.green() < 30, qPrintable(middle.name()));
    Command(QStringLiteral("other.plf"));
    ExpectTitle(QStringLiteral("other.plf"));
    Quit();
    QVERIFY(Exists(QStringLiteral("other.plf")));
    QVERIFY(!Exists(QStringLiteral("graph.eps")));
}

QTEST_MAIN(TestHostBytes)
#include "test_hostbytes.moc"
