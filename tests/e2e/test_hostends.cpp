// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Hosts that are not there, die, or never read, and thousands of commands.
#include "tests/e2e/hostlinktest.h"
#include "tests/kit/sanitized.h"

#include <QDir>

#include <sys/socket.h>
#include <unistd.h>

namespace {

qsizetype OpenFilesOf(qint64 process)
{
    return QDir(QStringLiteral("/proc/%1/fd").arg(process))
        .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
        .size();
}

// How many answers a local link holds that nobody reads.
int AnswersInALink()
{
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, ends) != 0)
        return 0;
    int count = 0;
    while (write(ends[0], kAnswer.constData(), static_cast<size_t>(kAnswer.size())) > 0)
        ++count;
    close(ends[0]);
    close(ends[1]);
    return count;
}

} // namespace

class TestHostEnds : public QObject, protected HostLinkTest
{
    Q_OBJECT

private slots:
    void initTestCase() { CheckTools(); }
    void init() { Begin(); }
    void cleanup() { End(); }

    void withoutServerName_nothingIsSent();
    void serverThatIsNotThere_leavesTheViewerAlone();
    void serverNameWithAnOptionInIt_leavesTheViewerAlone();

    void hostThatDies_isNotNoticed();
    void hostThatDiesBehindACommand_hasItDone();
    void hostThatNeverReads_isServed_andGetsEveryAnswerLater();
    void manyCommands_keepTheMemoryFlat();
};

// Also with a server that listens under the name that other viewers are given.
void TestHostEnds::withoutServerName_nothingIsSent()
{
    QVERIFY(viewer->Start({QStringLiteral("graph.plf")}));
    ExpectTitle(QStringLiteral("graph.plf"));
    ExpectStillAlive();
    QVERIFY(!host->HasViewer());
    Quit();
    QVERIFY(!host->HasViewer());
}

void TestHostEnds::serverThatIsNotThere_leavesTheViewerAlone()
{
    QVERIFY(viewer->Start({QStringLiteral("-svrname=nobody_listens_here"),
                           QStringLiteral("graph.plf"), QStringLiteral("-tmp")}));
    ExpectTitle(QStringLiteral("graph.plf"));
    ExpectStillAlive();
    Quit();
    QVERIFY(!Exists(QStringLiteral("graph.plf"))); // it was a temporary one anyway
}

// "-p" is found first: the name is not stored, and the graph is printed.
void TestHostEnds::serverNameWithAnOptionInIt_leavesTheViewerAlone()
{
    Host dashed(Path(QStringLiteral("krv-pipe")));
    QVERIFY(viewer->Start({QStringLiteral("-svrname=") + Path(QStringLiteral("krv-pipe")),
                           QStringLiteral("graph.plf")}));
    ExpectTitle(QStringLiteral("graph.plf"));
    ExpectStillAlive();
    QVERIFY(!dashed.HasViewer());
    notPrinted = 1;
    Quit();
}

void TestHostEnds::hostThatDies_isNotNoticed()
{
    Open();
    Command(QStringLiteral("-tmp other.plf"));
    host->Die();
    ExpectStillAlive();
    ExpectTitle(QStringLiteral("other.plf"));
    QVERIFY(Exists(QStringLiteral("other.plf")));
    Quit();
    QVERIFY(!Exists(QStringLiteral("other.plf")));
}

void TestHostEnds::hostThatDiesBehindACommand_hasItDone()
{
    Open();
    host->Send(QStringLiteral("other.plf -c=2 -cf=out"));
    host->Die();
    ExpectTitle(QStringLiteral("other.plf"));
    QVERIFY(Await([&] { return Exists(QStringLiteral("out.eps")); }));
    ExpectStillAlive();
    Quit();
}

// The viewer keeps the answers for which there is no room in the link.
void TestHostEnds::hostThatNeverReads_isServed_andGetsEveryAnswerLater()
{
    constexpr int kBeyond = 20;
    const int room = AnswersInALink();
    QVERIFY(room > 0);
    Open();
    host->StopReading();
    for (int i = 1; i <= room; ++i) {
        host->Send(QStringLiteral("other.plf"));
        QVERIFY(Await([&] { return host->Unread() == i * kAnswer.size(); }));
    }
    for (int i = 1; i <= kBeyond; ++i) {
        host->Send(QStringLiteral("graph.plf"));
        QVERIFY(AwaitCommands(room + i));
        ExpectStillAlive();
    }
    ExpectTitle(QStringLiteral("graph.plf"));
    QCOMPARE(host->Unread(), room * kAnswer.size());
    host->ReadOn();
    ExpectAnswers(room + kBeyond);
    Quit();
}

// After a warm-up the viewer keeps less than this, kilobytes: fragments of the heap, where the
// commands themselves would leave some 400 bytes each if nothing of them was freed.
void TestHostEnds::manyCommands_keepTheMemoryFlat()
{
    constexpr int kWarmUp = 500;
    constexpr int kCommands = 5000;
    constexpr int kLook = 200;
    constexpr qint64 kMostGrowth = 1024;
    Open();
    const qint64 process = host->Peer();
    qint64 before = 0;
    qsizetype filesBefore = 0;
    for (int i = 0; i < kWarmUp + kCommands; ++i) {
        if (i == kWarmUp) {
            before = MemoryOf(process, "VmRSS");
            filesBefore = OpenFilesOf(process);
        }
        host->Send(i % 2 == 0 ? QStringLiteral("other.plf -po=l -wp=300,150,500,400")
                              : QStringLiteral("graph.plf -wp=300,150,500,400"));
        QVERIFY(host->AwaitBytesAlone(++answers * kAnswer.size()));
        if (i % kLook == 0) // the viewer stands still when nobody takes what it writes
            QVERIFY(AwaitCommands(i));
    }
    ExpectTitle(QStringLiteral("graph.plf"));
    const qint64 growth = MemoryOf(process, "VmRSS") - before;
    QVERIFY(before > 0);
    QCOMPARE(OpenFilesOf(process), filesBefore);
    qInfo("resident memory after %d commands: %lld kB, %+lld kB", kCommands,
          static_cast<long long>(before + growth), static_cast<long long>(growth));
    // The address sanitizer keeps what was freed, for a while.
    if (!kSanitized)
        QVERIFY2(growth <= kMostGrowth, qPrintable(QString::number(growth)));
    Quit();
}

QTEST_MAIN(TestHostEnds)
#include "test_hostends.moc"
