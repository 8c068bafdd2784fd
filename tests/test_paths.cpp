// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Directories from the environment, the parts of file names, and numbers for display.
#include "support/paths.h"

#include "app/state/globals.h"
#include "support/config.h"
#include "support/settings.h"
#include "support/text.h"

#include <QtTest>

#include <ctime>
#include <limits>
#include <map>

namespace {

constexpr const char* kVariables[] = {"HOME", "TMP", "TEMP"};
constexpr qsizetype kLongest = kPathSize - 1;

// A null value unsets the variable; an empty one sets it to nothing.
void setVariable(const char* name, const QByteArray& value)
{
    if (value.isNull()) {
        qunsetenv(name);
    } else {
        qputenv(name, value);
    }
}

void expectTooLong(const char* what, qsizetype length)
{
    QTest::ignoreMessage(QtWarningMsg, "plotvw: " + QByteArray(what) + " is too long (" +
                                           QByteArray::number(length) +
                                           " bytes, limit 1023) and was ignored");
}

} // namespace

class TestPaths : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void getHomeDir_homeSet_copiesIt();
    void getHomeDir_homeEmpty_isEmpty();
    void getHomeDir_homeUnset_isEmpty();
    void getHomeDir_homeUnset_putsFilesIntoRoot();
    void getHomeDir_longestHome_fits();
    void getHomeDir_homeTooLong_isReportedAndEmpty();
    void getTmpPath_tmpExists_ignoresEnvironment();
    void getTmpPathOr_directoryExists_isTaken();
    void getTmpPathOr_directoryIsAFile_isNotTaken();
    void getTmpPathOr_noDirectory_looksAtEnvironment_data();
    void getTmpPathOr_noDirectory_looksAtEnvironment();
    void getTmpPathOr_variableTooLong_isReportedAndCountsAsUnset_data();
    void getTmpPathOr_variableTooLong_isReportedAndCountsAsUnset();
    void formatTempName_printsTheLowByteOfTheTimeSigned_data();
    void formatTempName_printsTheLowByteOfTheTimeSigned();
    void formatTempName_processId_isUnpaddedHexadecimal();
    void formatTempName_doesNotFit_isReportedAndChangesNothing();
    void tempName_usesThisProcessAndThisTime();
    void tempName_createsNothing();
    void tempName_doesNotFit_isReportedAndEmpty();
    void separators_data();
    void separators();
    void stripFileExt_data();
    void stripFileExt();
    void formatInteger_data();
    void formatInteger();

private:
    std::map<const char*, QByteArray> environment;
    char path[kPathSize] = "";
};

void TestPaths::initTestCase()
{
    for (const char* name : kVariables)
        environment[name] = qgetenv(name);
}

void TestPaths::init()
{
    QVERIFY(CopyText(path, "before"));
}

void TestPaths::cleanup()
{
    for (const auto& [name, value] : environment)
        setVariable(name, value);
    gszTmppath[0] = '\0';
    gszHomedir[0] = '\0';
}

void TestPaths::getHomeDir_homeSet_copiesIt()
{
    setVariable("HOME", "/home/someone");
    QCOMPARE(GetHomeDir(path), path);
    QCOMPARE(QByteArray(path), QByteArray("/home/someone"));
}

void TestPaths::getHomeDir_homeEmpty_isEmpty()
{
    setVariable("HOME", "");
    QCOMPARE(QByteArray(GetHomeDir(path)), QByteArray(""));
}

void TestPaths::getHomeDir_homeUnset_isEmpty()
{
    qunsetenv("HOME");
    QCOMPARE(GetHomeDir(path), path);
    QCOMPARE(QByteArray(path), QByteArray(""));
}

void TestPaths::getHomeDir_homeUnset_putsFilesIntoRoot()
{
    qunsetenv("HOME");
    GetHomeDir(gszHomedir);
    QVERIFY(GetSettingsPath(path));
    QCOMPARE(QByteArray(path), QByteArray("/.plotvwsettings"));
    QVERIFY(GetCfgPath(path, gszHomedir));
    QCOMPARE(QByteArray(path), QByteArray("/plotvw.cfg"));
}

void TestPaths::getHomeDir_longestHome_fits()
{
    const QByteArray home = "/" + QByteArray(kLongest - 1, 'h');
    setVariable("HOME", home);
    QCOMPARE(QByteArray(GetHomeDir(path)), home);
}

void TestPaths::getHomeDir_homeTooLong_isReportedAndEmpty()
{
    setVariable("HOME", "/" + QByteArray(kLongest, 'h'));
    expectTooLong("the home directory", kLongest + 1);
    QCOMPARE(GetHomeDir(path), path);
    QCOMPARE(QByteArray(path), QByteArray(""));
}

void TestPaths::getTmpPath_tmpExists_ignoresEnvironment()
{
    QVERIFY(QFileInfo(QStringLiteral("/tmp")).isDir());
    setVariable("TMP", "/elsewhere");
    setVariable("TEMP", "/nowhere");
    QCOMPARE(GetTmpPath(path), path);
    QCOMPARE(QByteArray(path), QByteArray("/tmp"));
}

void TestPaths::getTmpPathOr_directoryExists_isTaken()
{
    const QTemporaryDir dir;
    setVariable("TMP", "/elsewhere");
    const QByteArray name = dir.path().toLocal8Bit();
    QCOMPARE(GetTmpPathOr(name.constData(), path), path);
    QCOMPARE(QByteArray(path), name);
}

void TestPaths::getTmpPathOr_directoryIsAFile_isNotTaken()
{
    const QTemporaryDir dir;
    QFile file(dir.filePath(QStringLiteral("tmp")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    setVariable("TMP", "/elsewhere");
    const QByteArray name = file.fileName().toLocal8Bit();
    QCOMPARE(QByteArray(GetTmpPathOr(name.constData(), path)), QByteArray("/elsewhere"));
}

void TestPaths::getTmpPathOr_noDirectory_looksAtEnvironment_data()
{
    QTest::addColumn<QByteArray>("tmp");
    QTest::addColumn<QByteArray>("temp");
    QTest::addColumn<QByteArray>("expected");
    const QByteArray unset;

    QTest::newRow("both") << QByteArray("/a") << QByteArray("/b") << QByteArray("/a");
    QTest::newRow("only TMP") << QByteArray("/a") << unset << QByteArray("/a");
    QTest::newRow("only TEMP") << unset << QByteArray("/b") << QByteArray("/b");
    QTest::newRow("neither") << unset << unset << QByteArray(".");
    QTest::newRow("empty counts as set") << QByteArray("") << QByteArray("/b") << QByteArray("");
    QTest::newRow("taken as it stands") << QByteArray("/a/") << unset << QByteArray("/a/");
}

void TestPaths::getTmpPathOr_noDirectory_looksAtEnvironment()
{
    QFETCH(QByteArray, tmp);
    QFETCH(QByteArray, temp);
    QFETCH(QByteArray, expected);
    setVariable("TMP", tmp);
    setVariable("TEMP", temp);
    QCOMPARE(GetTmpPathOr("/no/such/directory", path), path);
    QCOMPARE(QByteArray(path), expected);
}

void TestPaths::getTmpPathOr_variableTooLong_isReportedAndCountsAsUnset_data()
{
    QTest::addColumn<QByteArray>("temp");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("the next is taken") << QByteArray("/b") << QByteArray("/b");
    QTest::newRow("no next") << QByteArray() << QByteArray(".");
}

void TestPaths::getTmpPathOr_variableTooLong_isReportedAndCountsAsUnset()
{
    QFETCH(QByteArray, temp);
    QFETCH(QByteArray, expected);
    setVariable("TMP", QByteArray(kLongest + 1, 't'));
    setVariable("TEMP", temp);
    expectTooLong("the temporary directory", kLongest + 1);
    QCOMPARE(QByteArray(GetTmpPathOr("/no/such/directory", path)), expected);
}

void TestPaths::formatTempName_printsTheLowByteOfTheTimeSigned_data()
{
    QTest::addColumn<qint64>("seconds");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("0") << qint64{0} << QByteArray(" 0");
    QTest::newRow("5") << qint64{5} << QByteArray(" 5");
    QTest::newRow("15") << qint64{15} << QByteArray(" f");
    QTest::newRow("16") << qint64{16} << QByteArray("10");
    QTest::newRow("127") << qint64{127} << QByteArray("7f");
    QTest::newRow("128") << qint64{128} << QByteArray("ffffff80");
    QTest::newRow("255") << qint64{255} << QByteArray("ffffffff");
    QTest::newRow("256") << qint64{256} << QByteArray(" 0");
    QTest::newRow("a time of today") << qint64{0x68000a2b} << QByteArray("2b");
    QTest::newRow("beyond 32 bits") << qint64{0x1000000a1} << QByteArray("ffffffa1");
}

void TestPaths::formatTempName_printsTheLowByteOfTheTimeSigned()
{
    QFETCH(qint64, seconds);
    QFETCH(QByteArray, expected);
    QVERIFY(CopyText(gszTmppath, "/tmp"));
    QVERIFY(FormatTempName(path, "plot", 0x1234, seconds));
    QCOMPARE(QByteArray(path), "/tmp/plot1234" + expected + ".tmp");
}

void TestPaths::formatTempName_processId_isUnpaddedHexadecimal()
{
    QVERIFY(CopyText(gszTmppath, "/tmp"));
    QVERIFY(FormatTempName(path, "", 10, 16));
    QCOMPARE(QByteArray(path), QByteArray("/tmp/a10.tmp"));
    QVERIFY(FormatTempName(path, "p", 0xffffffff, 16));
    QCOMPARE(QByteArray(path), QByteArray("/tmp/pffffffff10.tmp"));
}

void TestPaths::formatTempName_doesNotFit_isReportedAndChangesNothing()
{
    const QByteArray prefix(kLongest, 'p');
    expectTooLong("the name of a temporary file", 1 + kLongest + 1 + 2 + 4);
    QVERIFY(!FormatTempName(path, prefix.constData(), 1, 16));
    QCOMPARE(QByteArray(path), QByteArray("before"));
}

void TestPaths::tempName_usesThisProcessAndThisTime()
{
    QVERIFY(CopyText(gszTmppath, "/tmp"));
    const auto processId = static_cast<unsigned>(QCoreApplication::applicationPid());
    QByteArrayList possible;
    const std::time_t before = std::time(nullptr);
    QCOMPARE(TempName("plot", path), path);
    for (std::time_t seconds = before; seconds <= std::time(nullptr); ++seconds) {
        char name[kPathSize];
        QVERIFY(FormatTempName(name, "plot", processId, seconds));
        possible << name;
    }
    QVERIFY2(possible.contains(path), path);
}

void TestPaths::tempName_createsNothing()
{
    const QTemporaryDir dir;
    QVERIFY(CopyText(gszTmppath, dir.path().toLocal8Bit().constData()));
    TempName("plot", path);
    QVERIFY(QDir(dir.path()).isEmpty());
}

void TestPaths::tempName_doesNotFit_isReportedAndEmpty()
{
    QVERIFY(CopyText(gszTmppath, QByteArray(kLongest, 't').constData()));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral(
                                           "^plotvw: the name of a temporary file "
                                           "is too long \\(10\\d\\d bytes, .* ignored")));
    QCOMPARE(TempName("plot", path), path);
    QCOMPARE(QByteArray(path), QByteArray(""));
}

void TestPaths::separators_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<int>("hasPath");
    QTest::addColumn<QByteArray>("withoutPath");

    QTest::newRow("slashes") << QByteArray("a/b/c.plf") << 1 << QByteArray("c.plf");
    QTest::newRow("backslash") << QByteArray("dir\\name.plf") << 1 << QByteArray("name.plf");
    QTest::newRow("colon") << QByteArray("c:name.plf") << 1 << QByteArray("name.plf");
    QTest::newRow("the last of a mixture") << QByteArray("c:\\a/b\\x") << 1 << QByteArray("x");
    QTest::newRow("no separator") << QByteArray("name.plf") << 0 << QByteArray("name.plf");
    QTest::newRow("only the first character") << QByteArray("/x") << 0 << QByteArray("/x");
    QTest::newRow("file in the root") << QByteArray("/file.plf") << 0 << QByteArray("/file.plf");
    QTest::newRow("separator as the second character") << QByteArray("//x") << 1 << QByteArray("x");
    QTest::newRow("absolute path") << QByteArray("/data/x.plf") << 1 << QByteArray("x.plf");
    QTest::newRow("separator at the end") << QByteArray("dir/") << 1 << QByteArray("");
    QTest::newRow("lone separator") << QByteArray("/") << 0 << QByteArray("/");
    QTest::newRow("one character") << QByteArray("x") << 0 << QByteArray("x");
    QTest::newRow("empty") << QByteArray("") << 0 << QByteArray("");
}

void TestPaths::separators()
{
    QFETCH(QByteArray, name);
    QFETCH(int, hasPath);
    QFETCH(QByteArray, withoutPath);
    char* text = name.data();
    QCOMPARE(FilenameHasPath(text), hasPath);
    // The end of the very text, never a copy.
    QCOMPARE(GetFilenameNoPath(text), text + (name.size() - withoutPath.size()));
    QCOMPARE(QByteArray(GetFilenameNoPath(text)), withoutPath);
}

void TestPaths::stripFileExt_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("ext");
    QTest::addColumn<QByteArray>("expected");
    QTest::addColumn<int>("result"); // only the sign of a difference is promised
    constexpr int kBelow = -1;
    constexpr int kAbove = 1;

    QTest::newRow("stripped") << QByteArray("graph.plf") << QByteArray(".plf")
                              << QByteArray("graph") << 0;
    QTest::newRow("only the last one")
        << QByteArray("a.plf.plf") << QByteArray(".plf") << QByteArray("a.plf") << 0;
    QTest::newRow("nothing but the extension")
        << QByteArray(".plf") << QByteArray(".plf") << QByteArray(".plf") << 4;
    QTest::newRow("shorter than the extension")
        << QByteArray("plf") << QByteArray(".plf") << QByteArray("plf") << 4;
    QTest::newRow("one character more")
        << QByteArray("x.plf") << QByteArray(".plf") << QByteArray("x") << 0;
    QTest::newRow("other case") << QByteArray("graph.PLF") << QByteArray(".plf")
                                << QByteArray("graph.PLF") << kBelow;
    QTest::newRow("other extension")
        << QByteArray("graph.txt") << QByteArray(".plf") << QByteArray("graph.txt") << kAbove;
    QTest::newRow("extension inside")
        << QByteArray("a.plf.bak") << QByteArray(".plf") << QByteArray("a.plf.bak") << kBelow;
    QTest::newRow("empty extension")
        << QByteArray("graph") << QByteArray("") << QByteArray("graph") << 0;
    QTest::newRow("empty name") << QByteArray("") << QByteArray(".plf") << QByteArray("") << 4;
    QTest::newRow("both empty") << QByteArray("") << QByteArray("") << QByteArray("") << 0;
}

void TestPaths::stripFileExt()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, ext);
    QFETCH(QByteArray, expected);
    QFETCH(int, result);
    const bool compared = name.size() > ext.size();
    const int returned = StripFileExt(name.data(), ext.constData());
    QCOMPARE(compared ? (returned > 0) - (returned < 0) : returned, result);
    QCOMPARE(QByteArray(name.constData()), expected);
}

void TestPaths::formatInteger_data()
{
    QTest::addColumn<qint64>("value");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("0") << qint64{0} << QByteArray("0");
    QTest::newRow("123") << qint64{123} << QByteArray("123");
    QTest::newRow("999") << qint64{999} << QByteArray("999");
    QTest::newRow("1000") << qint64{1000} << QByteArray("1,000");
    QTest::newRow("1234") << qint64{1234} << QByteArray("1,234");
    QTest::newRow("999999") << qint64{999999} << QByteArray("999,999");
    QTest::newRow("1234567") << qint64{1234567} << QByteArray("1,234,567");
    QTest::newRow("largest signed")
        << std::numeric_limits<qint64>::max() << QByteArray("9,223,372,036,854,775,807");
    QTest::newRow("largest unsigned reads as -1") << qint64{-1} << QByteArray("-1");
    QTest::newRow("-12") << qint64{-12} << QByteArray("-12");
    QTest::newRow("the minus sign counts like a digit") << qint64{-123} << QByteArray("-,123");
    QTest::newRow("-1234") << qint64{-1234} << QByteArray("-1,234");
    QTest::newRow("-123456") << qint64{-123456} << QByteArray("-,123,456");
    QTest::newRow("smallest signed")
        << std::numeric_limits<qint64>::min() << QByteArray("-9,223,372,036,854,775,808");
}

void TestPaths::formatInteger()
{
    QFETCH(qint64, value);
    QFETCH(QByteArray, expected);
    char text[kFormattedIntegerSize];
    QCOMPARE(FormatInteger(static_cast<unsigned long>(value), text), text);
    QCOMPARE(QByteArray(text), expected);
}

QTEST_GUILESS_MAIN(TestPaths)
#include "test_paths.moc"
