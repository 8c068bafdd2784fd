// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Temporary files that a host hands to the viewer, which deletes them.
#include "tests/e2e/hostlinktest.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

class TestHostTemporary : public QObject, protected HostLinkTest
{
    Q_OBJECT

private slots:
    void initTestCase() { CheckTools(); }
    void init() { Begin(); }
    void cleanup() { End(); }

    void temporaryFile_isDeletedByTheNextMessage_whateverItHolds_data();
    void temporaryFile_isDeletedByTheNextMessage_whateverItHolds();
    void temporaryFile_ofTheOwnCommandLine_isDeletedByTheFirstMessage();
    void temporaryFile_namedTwice_isGoneAndFailsToLoad();
    void temporaryFile_isDeletedWhenTheWindowIsClosed_data();
    void temporaryFile_isDeletedWhenTheWindowIsClosed();
    void temporaryFile_isDeletedWhenACommandQuits();
    void temporaryFile_staysWhileItIsShown();
    void temporaryFile_thatIsALink_losesItsTarget();
    void temporaryFile_thatIsGone_isNotMissed();
    void temporaryFile_thatWasReplaced_isDeletedAllTheSame();
    void temporaryFile_thatBecameADirectory_isReportedAndStays();
    void temporaryFile_thatDidNotLoad_stays();
    void temporaryFile_staysWhenTheUserOpensAnother();
    void fileWithoutTmp_isNeverDeleted();
    void tmpOption_countsForItsOwnCommandOnly();
};

void TestHostTemporary::temporaryFile_isDeletedByTheNextMessage_whateverItHolds_data()
{
    QTest::addColumn<QByteArray>("next");
    QTest::addColumn<bool>("answered");
    QTest::newRow("another graph") << FrameBytes(QStringLiteral("other.plf")) << true;
    QTest::newRow("another temporary one") << FrameBytes(QStringLiteral("-tmp other.plf")) << true;
    QTest::newRow("an option alone") << FrameBytes(QStringLiteral("-po=l")) << false;
    QTest::newRow("two blanks") << FrameBytes(QStringLiteral("other.plf  -po=l")) << false;
    QTest::newRow("nothing") << FrameBytes(QString()) << false;
    QTest::newRow("no string") << QByteArray::fromHex("0028fffffffe0041") << false;
}

void TestHostTemporary::temporaryFile_isDeletedByTheNextMessage_whateverItHolds()
{
    QFETCH(QByteArray, next);
    QFETCH(bool, answered);
    Open();
    QVERIFY(WriteFile(Path(QStringLiteral("temp.plf")), HostGraph(kGreenHue)));
    Command(QStringLiteral("temp.plf -tmp"));
    ExpectTitle(QStringLiteral("temp.plf"));
    ExpectStillAlive();
    QVERIFY(Exists(QStringLiteral("temp.plf")));
    host->SendBytes(next);
    if (answered)
        ExpectAnswers(1);
    else
        QVERIFY(Await([&] { return !Exists(QStringLiteral("temp.plf")); }));
    QVERIFY(!Exists(QStringLiteral("temp.plf")));
    QVERIFY(Exists(QStringLiteral("graph.plf")));
    QVERIFY(Exists(QStringLiteral("other.plf")));
    QVERIFY(AwaitCommands(2));
    QVERIFY(
        messages.contains(kDoneWith + '"' + Path(QStringLiteral("temp.plf")).toUtf8() + "\"\n"));
    ExpectStillAlive();
    Quit();
}

void TestHostTemporary::temporaryFile_ofTheOwnCommandLine_isDeletedByTheFirstMessage()
{
    Open({QStringLiteral("-tmp")});
    QVERIFY(Exists(QStringLiteral("graph.plf")));
    Command(QStringLiteral("other.plf"));
    QVERIFY(!Exists(QStringLiteral("graph.plf")));
    ExpectTitle(QStringLiteral("other.plf"));
    Quit();
    QVERIFY(Exists(QStringLiteral("other.plf")));
}

void TestHostTemporary::temporaryFile_namedTwice_isGoneAndFailsToLoad()
{
    Open();
    Command(QStringLiteral("other.plf -tmp"));
    host->Send(QStringLiteral("other.plf -tmp"));
    QVERIFY(viewer->AwaitWindow(QStringLiteral("Error")));
    QVERIFY(viewer->AwaitText(QStringLiteral("Error opening file.")));
    QVERIFY(!Exists(QStringLiteral("other.plf")));
    CloseBox(QStringLiteral("Error"));
    ExpectAnswers(1);
    QVERIFY(viewer->AwaitWindow(QStringLiteral("KORVEL Viewer")));
    Quit();
}

void TestHostTemporary::temporaryFile_isDeletedWhenTheWindowIsClosed_data()
{
    QTest::addColumn<QString>("keys");
    QTest::newRow("by the program's key") << QStringLiteral("ctrl+q");
    QTest::newRow("by the window manager") << QStringLiteral("alt+F4");
}

void TestHostTemporary::temporaryFile_isDeletedWhenTheWindowIsClosed()
{
    QFETCH(QString, keys);
    Open();
    Command(QStringLiteral("-tmp other.plf"));
    ExpectTitle(QStringLiteral("other.plf"));
    PressInWindow(keys);
    QCOMPARE(viewer->AwaitEnd(), 0);
    QVERIFY(!Exists(QStringLiteral("other.plf")));
    QVERIFY(Exists(QStringLiteral("graph.plf")));
}

void TestHostTemporary::temporaryFile_isDeletedWhenACommandQuits()
{
    Open();
    QVERIFY(viewer->AwaitStillPicture());
    Command(QStringLiteral("-tmp other.plf -q"));
    QCOMPARE(viewer->AwaitEnd(), 0);
    QVERIFY(!Exists(QStringLiteral("other.plf")));
}

void TestHostTemporary::temporaryFile_staysWhileItIsShown()
{
    Open();
    Command(QStringLiteral("-tmp other.plf"));
    ExpectTitle(QStringLiteral("other.plf"));
    for (const char* key : {"Escape", "ctrl+0", "ctrl+b"})
        PressInWindow(QString::fromLatin1(key));
    ExpectStillAlive();
    QVERIFY(Exists(QStringLiteral("other.plf")));
    ExpectTitle(QStringLiteral("other.plf"));
    Quit();
}

void TestHostTemporary::temporaryFile_thatIsALink_losesItsTarget()
{
    Open();
    QVERIFY(QFile::link(Path(QStringLiteral("other.plf")), Path(QStringLiteral("link.plf"))));
    Command(QStringLiteral("-tmp link.plf"));
    ExpectTitle(QStringLiteral("link.plf"));
    Command(QStringLiteral("graph.plf"));
    QVERIFY(!Exists(QStringLiteral("other.plf")));
    QVERIFY(QFileInfo(Path(QStringLiteral("link.plf"))).isSymLink());
    // The link that leads nowhere is no file: it stays, and nothing is said about it.
    host->Send(QStringLiteral("-tmp link.plf"));
    CloseBox(QStringLiteral("Error"));
    ExpectAnswers(1);
    Command(QStringLiteral("graph.plf"));
    QVERIFY(QFileInfo(Path(QStringLiteral("link.plf"))).isSymLink());
    Quit();
}

void TestHostTemporary::temporaryFile_thatIsGone_isNotMissed()
{
    Open();
    Command(QStringLiteral("-tmp other.plf"));
    QVERIFY(QFile::remove(Path(QStringLiteral("other.plf"))));
    Command(QStringLiteral("graph.plf"));
    ExpectTitle(QStringLiteral("graph.plf"));
    Quit();
}

// It is the name that was handed over.
void TestHostTemporary::temporaryFile_thatWasReplaced_isDeletedAllTheSame()
{
    Open();
    Command(QStringLiteral("-tmp other.plf"));
    QVERIFY(QFile::remove(Path(QStringLiteral("other.plf"))));
    QVERIFY(WriteFile(Path(QStringLiteral("other.plf")), "something else"));
    Command(QStringLiteral("graph.plf"));
    QVERIFY(!Exists(QStringLiteral("other.plf")));
    Quit();
}

void TestHostTemporary::temporaryFile_thatBecameADirectory_isReportedAndStays()
{
    Open();
    Command(QStringLiteral("-tmp other.plf"));
    QVERIFY(QFile::remove(Path(QStringLiteral("other.plf"))));
    QVERIFY(QDir(home->path()).mkdir(QStringLiteral("other.plf")));
    Command(QStringLiteral("graph.plf"));
    notDeleted = 1;
    QVERIFY(Exists(QStringLiteral("other.plf")));
    ExpectTitle(QStringLiteral("graph.plf"));
    Quit();
}

// There is no current file then.
void TestHostTemporary::temporaryFile_thatDidNotLoad_stays()
{
    Open();
    host->Send(QStringLiteral("-tmp text.plf"));
    CloseBox(QStringLiteral("Error"));
    ExpectAnswers(1);
    Command(QStringLiteral("other.plf"));
    QVERIFY(Exists(QStringLiteral("text.plf")));
    Quit();
    QVERIFY(Exists(QStringLiteral("text.plf")));
}

void TestHostTemporary::temporaryFile_staysWhenTheUserOpensAnother()
{
    Open();
    Command(QStringLiteral("-tmp other.plf"));
    ExpectTitle(QStringLiteral("other.plf"));
    PressInWindow(QStringLiteral("ctrl+f"));
    QVERIFY(viewer->AwaitWindow(QStringLiteral("Open File")));
    TypeText(Path(QStringLiteral("graph.plf")));
    PressKeys(QStringLiteral("Return"));
    ExpectTitle(QStringLiteral("graph.plf"));
    Command(QStringLiteral("graph.plf"));
    QVERIFY(Exists(QStringLiteral("other.plf")));
    QVERIFY(Exists(QStringLiteral("graph.plf")));
    Quit();
    QVERIFY(Exists(QStringLiteral("other.plf")));
    QVERIFY(Exists(QStringLiteral("graph.plf")));
}

void TestHostTemporary::fileWithoutTmp_isNeverDeleted()
{
    Open();
    Command(QStringLiteral("other.plf"));
    Command(QStringLiteral("graph.plf"));
    Command(QStringLiteral("other.plf"));
    ExpectTitle(QStringLiteral("other.plf"));
    Quit();
    for (const char* name : {"graph.plf", "other.plf", "text.plf"})
        QVERIFY2(Exists(QString::fromLatin1(name)), name);
}

void TestHostTemporary::tmpOption_countsForItsOwnCommandOnly()
{
    QVERIFY(WriteFile(Path(QStringLiteral("temp.plf")), HostGraph(kGreenHue)));
    Open({QStringLiteral("-po=l")});
    Command(QStringLiteral("-tmp temp.plf"));
    Command(QStringLiteral("other.plf"));
    QVERIFY(!Exists(QStringLiteral("temp.plf")));
    ExpectTitle(QStringLiteral("other.plf"));
    Quit();
    QVERIFY(Exists(QStringLiteral("other.plf")));
}

QTEST_MAIN(TestHostTemporary)
#include "test_hosttemporary.moc"
