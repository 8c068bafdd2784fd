// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The command line, and the program-wide variables that it sets.
#include "support/settings.h"
#include "tests/kit/commandline.h"

#include <vector>

using fixture::AllGlobals;
using fixture::Changes;
using fixture::Globals;
using fixture::ParseArguments;
using fixture::RectText;

namespace {

std::vector<std::string> Split(const char* line)
{
    std::vector<std::string> words;
    for (const QByteArray& word : QByteArray(line).split('|'))
        words.push_back(word.toStdString());
    return words;
}

// A row of the command-line tables: arguments with '|' between them, and what they change.
void Row(const char* arguments, const QStringList& changes)
{
    QTest::newRow(arguments) << QByteArray(arguments) << changes;
}

// The change that one text makes.
QStringList Change(const char* change)
{
    return {QString::fromLatin1(change)};
}

void ChangeColumns()
{
    QTest::addColumn<QByteArray>("arguments");
    QTest::addColumn<QStringList>("changes");
}

} // namespace

class TestCmdline : public QObject, protected fixture::CmdlineTest
{
    Q_OBJECT

private slots:
    void init() { Begin(); }
    void cleanup() { End(); }

    void option_data();
    void option();
    void windowPosition_data();
    void windowPosition();
    void precedence_data();
    void precedence();
    void fixedOffset_data();
    void fixedOffset();
    void order_data();
    void order();

    void noArguments_giveNoFile();
    void unknownHelpOption_behindAFile_becomesTheFile();
    void unknownHelpOption_beforeAFile_isReplacedByIt();
    void printBehindJpeg_asksForBoth();
    void printBeforeJpeg_isDiscarded();
    void landscapeOption_leavesLandscape();
    void landscapeOption_behindPortrait_leavesPortrait();
    void portraitOption_anyTextStartingWithP_setsPortrait_data();
    void portraitOption_anyTextStartingWithP_setsPortrait();
    void serverNameWithP_setsThePrintFlagOnly();
    void shortWindowPosition_movesAndKeepsTheSize();
    void quitAlone_leavesNoJob();
    void givenWindowPosition_isKeptOverTheSettingsFile();
    void storedWindowPosition_replacesTheDefault();
    void secondWindowPosition_keepsWhatItDoesNotName();
    void pathWithP_asksForAPrintAndIsNoFile();
    void directoryWithP_isNotStored();

    void parsing_clearsFileDirectoryAndTemporaryFlag();
    void parsing_keepsEverythingElse();
    void parsing_withoutArguments_clearsToo_data();
    void parsing_withoutArguments_clearsToo();
    void parsing_fromALaterArgument_skipsTheOthers();
    void fileName_inLocalBytes_isKeptAsItIs();

private:
    void CheckChanges();
};

// Parses the row's arguments; exactly the variables of the row change.
void TestCmdline::CheckChanges()
{
    QFETCH(QByteArray, arguments);
    QFETCH(QStringList, changes);
    QCOMPARE(ParseArguments(Split(arguments.constData())), 0);
    QCOMPARE(Changes(before), changes);
}

// Each option by itself, with every value that makes a difference.
void TestCmdline::option_data()
{
    ChangeColumns();
    Row("-po=p", Change("giCmdPrintOrientation=1"));
    Row("-po=l", {});
    Row("-po=P", {});
    Row("-po=", {});
    Row("-po=1", {});
    Row("-p", Change("giCmdArg=1"));
    Row("-print", Change("giCmdArg=1"));
    Row("--p", Change("giCmdArg=1"));
    Row("-c=1", Change("giCmdArg=2"));
    Row("-c=12", Change("giCmdArg=2"));
    Row("-c=2", Change("giCmdArg=4"));
    Row("-c=", {});
    Row("-c=0", {});
    Row("-c=3", {});
    Row("-c= 1", {});
    Row("-cf=base", Change("gszCvtFilenameBase=base"));
    Row("-cf=/out/base.x", Change("gszCvtFilenameBase=/out/base.x"));
    Row("-cf=", {});
    Row("-svrname=korvel_1", Change("gszKrvServerName=korvel_1"));
    Row("-svrname=", {});
    Row("-q", Change("gbCmdQuit=true"));
    Row("-quiet", Change("gbCmdQuit=true"));
    Row("-tmp", Change("gbIsTempFile=true"));
    Row("-tmpfile", Change("gbIsTempFile=true"));
    Row("-cwd=/out", Change("gszCurrentWorkingDir=/out"));
    Row("-cwd=", {});
    Row("a.plf", Change("gszPlffileOrig=a.plf"));
    Row("/dir/a b.plf", Change("gszPlffileOrig=/dir/a b.plf"));
    Row("-h", Change("gszPlffileOrig=-h"));
    Row("-x=1", Change("gszPlffileOrig=-x=1"));
    Row("-", Change("gszPlffileOrig=-"));
    Row("p", Change("gszPlffileOrig=p"));
    Row("-C=1", Change("gszPlffileOrig=-C=1"));
    Row("-wp", Change("gszPlffileOrig=-wp"));
    Row("-c", Change("gszPlffileOrig=-c"));
    Row("-cwd", Change("gszPlffileOrig=-cwd"));
    Row("?", Change("gszPlffileOrig=?"));
    Row("%s%n%d", Change("gszPlffileOrig=%s%n%d"));
    Row("", {});
}

void TestCmdline::option()
{
    CheckChanges();
}

void TestCmdline::windowPosition_data()
{
    ChangeColumns();
    const auto row = [](const char* argument, const char* rect) {
        QStringList changes = Change("gfCmdlineWndpos=1");
        if (rect != nullptr)
            changes.append(QStringLiteral("grWinPos=") + QString::fromLatin1(rect));
        Row(argument, changes);
    };
    row("-wp=10,20,300,250", "10,20,310,270,300,250");
    row("-wp=10,20,300", "10,20,310,507,300,487");
    row("-wp=10,20", "10,20,650,507,640,487");
    row("-wp=10", "10,200,650,687,640,487");
    row("-wp=10,,300,250", "10,200,650,687,640,487");
    row("-wp=10,x,300,250", "10,200,650,687,640,487");
    row("-wp=10 ,20", "10,200,650,687,640,487");
    row("-wp= 10,\t20, 300, 250", "10,20,310,270,300,250");
    row("-wp=-10,-20,+300,250", "-10,-20,290,230,300,250");
    row("-wp=10,20,300,250,7", "10,20,310,270,300,250");
    row("-wp=10,20,300,250tail", "10,20,310,270,300,250");
    row("-wp=1.5,20", "1,200,641,687,640,487");
    row("-wp=0x10,20", "0,200,640,687,640,487");
    row("-wp=10;20", "10,200,650,687,640,487");
    row("-wp=10,20,-300,0", "10,20,-290,20,-300,0");
    row("-wp=3000000000,20", "3000000000,20,3000000640,507,640,487");
    row("-wp=99999999999999999999,0", "9223372036854775807,0,-9223372036854775169,487,640,487");
    row("-wp=", nullptr);
    row("-wp=x", nullptr);
    row("-wp=,10", nullptr);
    row("-wp=-", nullptr);
}

void TestCmdline::windowPosition()
{
    CheckChanges();
}

// An argument that holds several options is the first of them in the order of the table.
void TestCmdline::precedence_data()
{
    ChangeColumns();
    const QStringList given = Change("gfCmdlineWndpos=1");
    Row("-wp=200,200-po=p", given);
    Row("-wp=200-p-c=1-q-tmp-?", given);
    Row("-po=p-p-c=1", Change("giCmdPrintOrientation=1"));
    Row("-po=l-p", {});
    Row("-p-c=1", Change("giCmdArg=1"));
    Row("-c=1-p", Change("giCmdArg=1"));
    Row("-c=1-cf=x", Change("giCmdArg=2"));
    Row("-cf=x-c=1", {});
    Row("-cf=x-svrname=y", Change("gszCvtFilenameBase=x-svrname=y"));
    Row("-cf=x-q", Change("gszCvtFilenameBase=x-q"));
    Row("-cf=x-tmp", Change("gszCvtFilenameBase=x-tmp"));
    Row("-cf=x-?", Change("gszCvtFilenameBase=x-?"));
    Row("-cf=my-plot", Change("giCmdArg=1"));
    Row("-svrname=x-q", Change("gszKrvServerName=x-q"));
    Row("-svrname=x-tmp", Change("gszKrvServerName=x-tmp"));
    Row("-svrname=x-c=1", {});
    Row("-q-tmp", Change("gbCmdQuit=true"));
    Row("-tmp-q", Change("gbCmdQuit=true"));
    Row("-q-?", Change("gbCmdQuit=true"));
    Row("-cwd=/x-q", Change("gbCmdQuit=true"));
    Row("-cwd=/x-tmp", Change("gbIsTempFile=true"));
    Row("-tmp-cwd=/x", Change("gbIsTempFile=true"));
    Row("-cwd=/x-?", Change("gszCurrentWorkingDir=/x-?"));
    Row("/data/run-quick.plf", Change("gbCmdQuit=true"));
    Row("/data/x-tmp/a.plf", Change("gbIsTempFile=true"));
    Row("/data/x-cwd=/a.plf", Change("gszCurrentWorkingDir=/x-cwd=/a.plf"));
}

void TestCmdline::precedence()
{
    CheckChanges();
}

// The value stands at a fixed place in the argument, wherever the option stands.
void TestCmdline::fixedOffset_data()
{
    ChangeColumns();
    const QStringList given = Change("gfCmdlineWndpos=1");
    Row("x-wp=5,6,7,8", given);
    Row("1234567,8-wp=", given + Change("grWinPos=567,8,1207,495,640,487"));
    Row("x-po=p", {});
    Row("abcdp-po=l", Change("giCmdPrintOrientation=1"));
    Row("x-c=1", {});
    Row("abc1-c=2", Change("giCmdArg=2"));
    Row("abc2-c=1", Change("giCmdArg=4"));
    Row("x-cf=base", Change("gszCvtFilenameBase==base"));
    Row("/d/a-cf=b.plf", Change("gszCvtFilenameBase=-cf=b.plf"));
    Row("x-svrname=abc", Change("gszKrvServerName==abc"));
    Row("x-cwd=/out", Change("gszCurrentWorkingDir==/out"));
}

void TestCmdline::fixedOffset()
{
    CheckChanges();
}

// What several arguments give together.
void TestCmdline::order_data()
{
    ChangeColumns();
    Row("-p|-p", Change("giCmdArg=1"));
    Row("-c=1|-c=2", Change("giCmdArg=4"));
    Row("-c=2|-c=1", Change("giCmdArg=2"));
    Row("-c=2|-p", Change("giCmdArg=5"));
    Row("-p|-c=2", Change("giCmdArg=4"));
    Row("-p|-c=9", Change("giCmdArg=1"));
    Row("-p|-c=2|-p", Change("giCmdArg=5"));
    Row("-cf=a|-cf=b", Change("gszCvtFilenameBase=b"));
    Row("-cf=a|-cf=", {});
    Row("-svrname=a|-svrname=b", Change("gszKrvServerName=b"));
    Row("-cwd=/a|-cwd=/b", Change("gszCurrentWorkingDir=/b"));
    Row("a.plf|b.plf", Change("gszPlffileOrig=b.plf"));
    Row("a.plf|", {});
    Row("a.plf|-q|-tmp|-po=p",
        {QStringLiteral("gbCmdQuit=true"), QStringLiteral("gbIsTempFile=true"),
         QStringLiteral("giCmdPrintOrientation=1"), QStringLiteral("gszPlffileOrig=a.plf")});
}

void TestCmdline::order()
{
    CheckChanges();
}

void TestCmdline::noArguments_giveNoFile()
{
    QCOMPARE(ParseArguments({}), 0);
    QCOMPARE(Changes(before), QStringList());
}

void TestCmdline::unknownHelpOption_behindAFile_becomesTheFile()
{
    QCOMPARE(ParseArguments({"a.plf", "-h"}), 0);
    QCOMPARE(Changes(before), Change("gszPlffileOrig=-h"));
}

void TestCmdline::unknownHelpOption_beforeAFile_isReplacedByIt()
{
    QCOMPARE(ParseArguments({"-h", "a.plf"}), 0);
    QCOMPARE(Changes(before), Change("gszPlffileOrig=a.plf"));
}

void TestCmdline::printBehindJpeg_asksForBoth()
{
    QCOMPARE(ParseArguments({"-c=1", "-p"}), 0);
    QCOMPARE(giCmdArg, 3);
}

void TestCmdline::printBeforeJpeg_isDiscarded()
{
    QCOMPARE(ParseArguments({"-p", "-c=1"}), 0);
    QCOMPARE(giCmdArg, 2);
}

void TestCmdline::landscapeOption_leavesLandscape()
{
    QCOMPARE(ParseArguments({"-po=landscape"}), 0);
    QCOMPARE(Changes(before), QStringList());
}

void TestCmdline::landscapeOption_behindPortrait_leavesPortrait()
{
    QCOMPARE(ParseArguments({"-po=p", "-po=l"}), 0);
    QCOMPARE(giCmdPrintOrientation, 1);
}

void TestCmdline::portraitOption_anyTextStartingWithP_setsPortrait_data()
{
    QTest::addColumn<QByteArray>("argument");
    for (const char* argument : {"-po=p", "-po=portrait", "-po=pl", "-po=p=l"})
        QTest::newRow(argument) << QByteArray(argument);
}

void TestCmdline::portraitOption_anyTextStartingWithP_setsPortrait()
{
    QFETCH(QByteArray, argument);
    QCOMPARE(ParseArguments({argument.toStdString()}), 0);
    QCOMPARE(Changes(before), Change("giCmdPrintOrientation=1"));
}

void TestCmdline::serverNameWithP_setsThePrintFlagOnly()
{
    QCOMPARE(ParseArguments({"-svrname=krv-pipe"}), 0);
    QCOMPARE(Changes(before), Change("giCmdArg=1"));
}

void TestCmdline::shortWindowPosition_movesAndKeepsTheSize()
{
    QCOMPARE(ParseArguments({"-wp=10,20"}), 0);
    const fixture::Window window;
    QCOMPARE(window->pos(), QPoint(10, 20));
    QCOMPARE(window->size(), QSize(640, 487));
}

void TestCmdline::quitAlone_leavesNoJob()
{
    QCOMPARE(ParseArguments({"-q"}), 0);
    QCOMPARE(giCmdArg, 0);
    QVERIFY(gbCmdQuit);
}

void TestCmdline::givenWindowPosition_isKeptOverTheSettingsFile()
{
    grWinPos = {30, 40, 430, 340, 400, 300};
    gbBkClrWhite = false;
    QCOMPARE(WriteSettingsFile(), 0);
    ResetGlobals();
    QCOMPARE(ParseArguments({"-wp=10,20,500,350"}), 0);
    const fixture::Window window;
    QCOMPARE(window->pos(), QPoint(10, 20));
    QCOMPARE(window->size(), QSize(500, 350));
    QVERIFY2(!gbBkClrWhite, "the background is read anyway");
}

void TestCmdline::storedWindowPosition_replacesTheDefault()
{
    grWinPos = {30, 40, 430, 340, 400, 300};
    QCOMPARE(WriteSettingsFile(), 0);
    ResetGlobals();
    QCOMPARE(ParseArguments({"-q"}), 0);
    const fixture::Window window;
    QCOMPARE(window->pos(), QPoint(30, 40));
    QCOMPARE(window->size(), QSize(400, 300));
}

void TestCmdline::secondWindowPosition_keepsWhatItDoesNotName()
{
    QCOMPARE(ParseArguments({"-wp=1,2,300,400", "-wp=9"}), 0);
    QCOMPARE(RectText(grWinPos), QStringLiteral("9,2,309,402,300,400"));
}

void TestCmdline::pathWithP_asksForAPrintAndIsNoFile()
{
    QCOMPARE(ParseArguments({"/data/run-plot.plf"}), 0);
    QCOMPARE(Changes(before), Change("giCmdArg=1"));
}

void TestCmdline::directoryWithP_isNotStored()
{
    QCOMPARE(ParseArguments({"-cwd=/home/u/my-project"}), 0);
    QCOMPARE(Changes(before), Change("giCmdArg=1"));
}

void TestCmdline::parsing_clearsFileDirectoryAndTemporaryFlag()
{
    QCOMPARE(ParseArguments({"a.plf", "-cwd=/out", "-tmp"}), 0);
    QCOMPARE(Changes(before).size(), 3);
    QCOMPARE(ParseArguments({"-cf=base"}), 0);
    QCOMPARE(Changes(before), Change("gszCvtFilenameBase=base"));
}

void TestCmdline::parsing_keepsEverythingElse()
{
    QCOMPARE(
        ParseArguments({"-wp=1,2,3,4", "-po=p", "-c=1", "-p", "-cf=base", "-svrname=srv", "-q"}),
        0);
    const Globals first = AllGlobals();
    QCOMPARE(ParseArguments({}), 0);
    QCOMPARE(Changes(first), QStringList());
    QCOMPARE(Changes(before).size(), 7);
}

void TestCmdline::parsing_withoutArguments_clearsToo_data()
{
    QTest::addColumn<int>("first");
    QTest::newRow("the usual place") << 1;
    QTest::newRow("beyond the end") << 5;
}

void TestCmdline::parsing_withoutArguments_clearsToo()
{
    QFETCH(int, first);
    QCOMPARE(ParseArguments({"a.plf", "-cwd=/out", "-tmp"}), 0);
    QCOMPARE(ParseArguments({}, first), 0);
    QCOMPARE(Changes(before), QStringList());
}

void TestCmdline::parsing_fromALaterArgument_skipsTheOthers()
{
    QCOMPARE(ParseArguments({"-q", "-p", "a.plf"}, 3), 0);
    QCOMPARE(Changes(before), Change("gszPlffileOrig=a.plf"));
    QCOMPARE(ParseArguments({"a.plf"}, 0), 0);
    QCOMPARE(Changes(before), Change("gszPlffileOrig=a.plf"));
}

void TestCmdline::fileName_inLocalBytes_isKeptAsItIs()
{
    const std::string name = "/d/\xc3\xa4\xff.plf";
    QCOMPARE(ParseArguments({name}), 0);
    QCOMPARE(QByteArray(gszPlffileOrig), QByteArray::fromStdString(name));
}

QTEST_MAIN(TestCmdline)
#include "test_cmdline.moc"
