// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The trace log: which lines reach the file, and in which form.
#include "support/log.h"

#include "app/state/globals.h"
#include "support/text.h"

#include <QtTest>

#include <memory>

namespace {

constexpr int kTruncate = 0;
constexpr int kAppend = 1;

} // namespace

class TestLog : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void construct_truncating_replacesTheFile();
    void construct_appending_keepsTheFile_data();
    void construct_appending_keepsTheFile();
    void init_emptiesThePrefixAndTakesTheNewFile();
    void init_pathTooLong_isReportedAndLogsNothing();
    void log_data();
    void log();
    void log_leavesNoFileOpen();
    void log_percentSigns_areText();
    void log_byLevel_mustEqualTheTraceLevel_data();
    void log_byLevel_mustEqualTheTraceLevel();
    void logPrefix_standsInFrontOfThisAndLaterLines();
    void logPrefix_lineFeedInMessage_staysBehindThePrefix();
    void logPrefix_tooLong_isReportedAndThePresentOneKept();
    void destroy_writesATildeBehindThePrefix();
    void fileDoesNotOpen_losesTheLineSilently();
    void initLogFile_freshLog_beginsWithTheVersion();
    void initLogFile_secondRun_appends();
    void initLogFile_putsNoSeparatorBeforeTmp();
    void initLogFile_noDirectory_stillHasALog();
    void initLogFile_traceLevelZero_createsNothing();
    void initLogFile_existingLog_isForgotten();
    void initLogFile_pathTooLong_isReportedAndFails();
    void unInitLogFile_writesTheLastLineOnce();
    void unInitLogFile_withoutLog_doesNothing();

private:
    static QByteArray bytesOf(const QString& name);
    QByteArray logged() const { return bytesOf(file()); }
    QString file() const { return dir->filePath(QStringLiteral("trace.log")); }
    QByteArray path() const { return file().toLocal8Bit(); }
    // What InitLogFile writes to: the directory of the executable is "exe" below dir.
    QString programFile() const { return dir->filePath(QStringLiteral("exetmp/vwrtrace.log")); }

    std::unique_ptr<QTemporaryDir> dir;
};

void TestLog::init()
{
    dir = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir(dir->path()).mkdir(QStringLiteral("exetmp")));
    QVERIFY(CopyText(gszExePath, dir->filePath(QStringLiteral("exe")).toLocal8Bit().constData()));
}

void TestLog::cleanup()
{
    UnInitLogFile();
    gdwDebug = 1;
    gszExePath[0] = '\0';
    dir.reset();
}

QByteArray TestLog::bytesOf(const QString& name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

void TestLog::construct_truncating_replacesTheFile()
{
    {
        const CLog first(path().constData(), kTruncate);
    }
    const CLog log(path().constData(), kTruncate);
    QCOMPARE(logged(), QByteArray("plotvw 1.0.1\n"));
}

void TestLog::construct_appending_keepsTheFile_data()
{
    QTest::addColumn<int>("append");
    QTest::newRow("1") << 1;
    QTest::newRow("any non-zero value") << -7;
}

void TestLog::construct_appending_keepsTheFile()
{
    QFETCH(int, append);
    {
        const CLog first(path().constData(), kTruncate);
    }
    const CLog log(path().constData(), append);
    QCOMPARE(logged(), QByteArray("plotvw 1.0.1\n~\nplotvw 1.0.1\n"));
}

void TestLog::init_emptiesThePrefixAndTakesTheNewFile()
{
    const QString other = dir->filePath(QStringLiteral("other.log"));
    CLog log(path().constData(), kTruncate);
    log.LogPrefix("A: ", "start");
    log.Init(other.toLocal8Bit().constData(), "a header", kTruncate);
    log.Log("next");
    QCOMPARE(logged(), QByteArray("plotvw 1.0.1\nA: start\n"));
    QCOMPARE(bytesOf(other), QByteArray("a header\nnext\n"));
}

void TestLog::init_pathTooLong_isReportedAndLogsNothing()
{
    CLog log(path().constData(), kTruncate);
    QTest::ignoreMessage(
        QtWarningMsg,
        "plotvw: the path of the log file is too long (1024 bytes, limit 1023) and was ignored");
    log.Init(QByteArray(kPathSize, 'p').constData(), "a header", kAppend);
    log.Log("lost");
    QCOMPARE(logged(), QByteArray("plotvw 1.0.1\n"));
}

void TestLog::log_data()
{
    QTest::addColumn<QByteArray>("prefix");
    QTest::addColumn<QByteArray>("message");
    QTest::addColumn<QByteArray>("expected");
    const QByteArray none("");
    const QByteArray prefix("A: ");

    QTest::newRow("plain") << none << QByteArray("text") << QByteArray("text\n");
    QTest::newRow("with a prefix") << prefix << QByteArray("next") << QByteArray("A: next\n");
    QTest::newRow("line feed in front")
        << none << QByteArray("\nsection") << QByteArray("\nsection\n");
    QTest::newRow("line feed in front, with a prefix")
        << prefix << QByteArray("\nsection") << QByteArray("\nA: section\n");
    QTest::newRow("only the first line feed moves")
        << prefix << QByteArray("\n\nsection") << QByteArray("\nA: \nsection\n");
    QTest::newRow("lone line feed") << prefix << QByteArray("\n") << QByteArray("\nA: \n");
    QTest::newRow("line feed at the end") << none << QByteArray("text\n") << QByteArray("text\n\n");
    QTest::newRow("empty") << prefix << none << QByteArray("A: \n");
    QTest::newRow("longer than a path buffer")
        << prefix << QByteArray(5000, 'x') << "A: " + QByteArray(5000, 'x') + "\n";
}

void TestLog::log()
{
    QFETCH(QByteArray, prefix);
    QFETCH(QByteArray, message);
    QFETCH(QByteArray, expected);
    CLog log(path().constData(), kTruncate);
    log.LogPrefix(prefix.constData(), "start");
    const qsizetype before = logged().size();
    log.Log(message.constData());
    QCOMPARE(logged().mid(before), expected);
}

void TestLog::log_leavesNoFileOpen()
{
    CLog log(path().constData(), kTruncate);
    log.Log("one");
    QVERIFY(QFile::remove(file()));
    log.Log("two");
    QCOMPARE(logged(), QByteArray("two\n"));
}

void TestLog::log_percentSigns_areText()
{
    CLog log(path().constData(), kTruncate);
    log.LogPrefix("%s", "%n%d");
    QCOMPARE(logged(), QByteArray("plotvw 1.0.1\n%s%n%d\n"));
}

void TestLog::log_byLevel_mustEqualTheTraceLevel_data()
{
    QTest::addColumn<qulonglong>("traceLevel");
    QTest::addColumn<qulonglong>("level");
    QTest::addColumn<bool>("written");

    QTest::newRow("the default level") << 1ULL << 1ULL << true;
    QTest::newRow("above the default") << 1ULL << 2ULL << false;
    QTest::newRow("below the default") << 1ULL << 0ULL << false;
    QTest::newRow("equal, higher") << 2ULL << 2ULL << true;
    QTest::newRow("below a higher level: no threshold") << 2ULL << 1ULL << false;
    QTest::newRow("zero equals zero") << 0ULL << 0ULL << true;
    QTest::newRow("equal only in the low half") << 0x100000001ULL << 1ULL << false;
}

void TestLog::log_byLevel_mustEqualTheTraceLevel()
{
    QFETCH(qulonglong, traceLevel);
    QFETCH(qulonglong, level);
    QFETCH(bool, written);
    CLog log(path().constData(), kTruncate);
    gdwDebug = traceLevel;
    log.Log(level, "x");
    QCOMPARE(logged(), QByteArray(written ? "plotvw 1.0.1\nx\n" : "plotvw 1.0.1\n"));
}

void TestLog::logPrefix_standsInFrontOfThisAndLaterLines()
{
    CLog log(path().constData(), kTruncate);
    log.LogPrefix("A: ", "start");
    log.Log("next");
    log.Log(1, "by level");
    log.LogPrefix("B: ", "again");
    log.LogPrefix("", "none");
    QCOMPARE(logged(),
             QByteArray("plotvw 1.0.1\nA: start\nA: next\nA: by level\nB: again\nnone\n"));
}

void TestLog::logPrefix_lineFeedInMessage_staysBehindThePrefix()
{
    CLog log(path().constData(), kTruncate);
    log.LogPrefix("A: ", "\nstart");
    QCOMPARE(logged(), QByteArray("plotvw 1.0.1\nA: \nstart\n"));
}

void TestLog::logPrefix_tooLong_isReportedAndThePresentOneKept()
{
    CLog log(path().constData(), kTruncate);
    log.LogPrefix("A: ", "start");
    QTest::ignoreMessage(
        QtWarningMsg,
        "plotvw: a prefix of the log is too long (1024 bytes, limit 1023) and was ignored");
    log.LogPrefix(QByteArray(kPathSize, 'p').constData(), "next");
    QCOMPARE(logged(), QByteArray("plotvw 1.0.1\nA: start\nA: next\n"));
}

void TestLog::destroy_writesATildeBehindThePrefix()
{
    {
        CLog log(path().constData(), kTruncate);
        log.LogPrefix("A: ", "start");
    }
    QCOMPARE(logged(), QByteArray("plotvw 1.0.1\nA: start\nA: ~\n"));
}

void TestLog::fileDoesNotOpen_losesTheLineSilently()
{
    const QByteArray directory = dir->path().toLocal8Bit();
    CLog log(directory.constData(), kTruncate);
    log.Log("lost");
    log.LogPrefix("A: ", "lost");
    QVERIFY(QFile::exists(dir->path()));
}

void TestLog::initLogFile_freshLog_beginsWithTheVersion()
{
    QVERIFY(InitLogFile());
    QVERIFY(gpLog != nullptr);
    QCOMPARE(bytesOf(programFile()), QByteArray("plotvw 1.0.1\n"));
}

void TestLog::initLogFile_secondRun_appends()
{
    QVERIFY(InitLogFile());
    UnInitLogFile();
    QVERIFY(InitLogFile());
    QCOMPARE(bytesOf(programFile()), QByteArray("plotvw 1.0.1\n~\nplotvw 1.0.1\n"));
}

void TestLog::initLogFile_putsNoSeparatorBeforeTmp()
{
    QVERIFY(QDir(dir->path()).mkpath(QStringLiteral("exe/tmp")));
    QVERIFY(InitLogFile());
    QVERIFY(QFile::exists(programFile()));
    QVERIFY(QDir(dir->filePath(QStringLiteral("exe/tmp"))).isEmpty());
}

void TestLog::initLogFile_noDirectory_stillHasALog()
{
    QVERIFY(CopyText(gszExePath, "/no/such/directory/"));
    QVERIFY(InitLogFile());
    QVERIFY(gpLog != nullptr);
}

void TestLog::initLogFile_traceLevelZero_createsNothing()
{
    gdwDebug = 0;
    QVERIFY(!InitLogFile());
    QVERIFY(gpLog == nullptr);
    QVERIFY(!QFile::exists(programFile()));
}

void TestLog::initLogFile_existingLog_isForgotten()
{
    QVERIFY(InitLogFile());
    std::unique_ptr<CLog> first(gpLog);
    QVERIFY(InitLogFile());
    QVERIFY(gpLog != first.get());
    QCOMPARE(bytesOf(programFile()), QByteArray("plotvw 1.0.1\nplotvw 1.0.1\n"));

    std::unique_ptr<CLog> second(gpLog);
    gdwDebug = 0;
    QVERIFY(!InitLogFile());
    QVERIFY(gpLog == nullptr);
}

void TestLog::initLogFile_pathTooLong_isReportedAndFails()
{
    QVERIFY(CopyText(gszExePath, QByteArray(1020, 'e').constData()));
    QTest::ignoreMessage(
        QtWarningMsg,
        "plotvw: the path of the log file is too long (1036 bytes, limit 1023) and was ignored");
    QVERIFY(!InitLogFile());
    QVERIFY(gpLog == nullptr);
}

void TestLog::unInitLogFile_writesTheLastLineOnce()
{
    QVERIFY(InitLogFile());
    gpLog->LogPrefix("A: ", "start");
    UnInitLogFile();
    QVERIFY(gpLog == nullptr);
    UnInitLogFile();
    QCOMPARE(bytesOf(programFile()), QByteArray("plotvw 1.0.1\nA: start\nA: ~\n"));
}

void TestLog::unInitLogFile_withoutLog_doesNothing()
{
    UnInitLogFile();
    QVERIFY(gpLog == nullptr);
    QVERIFY(!QFile::exists(programFile()));
}

QTEST_GUILESS_MAIN(TestLog)
#include "test_log.moc"
