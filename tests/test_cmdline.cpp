// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The command line and the program-wide variables that it sets, and the palettes.
#include "app/cmdline.h"

#include "meta/palette.h"
#include "support/settings.h"
#include "tests/kit/appfixture.h"

#include <QFile>
#include <QLabel>
#include <QMap>
#include <QRegularExpression>
#include <QScreen>

#include <type_traits>
#include <vector>

using fixture::Box;

namespace {

// Every variable and the value that it starts with.
struct Default {
    const char* name;
    const char* value;
};
// clang-format off
constexpr Default kDefaults[] = {
    {"gszPlffileOrig",        ""},
    {"gszPlffileName",        ""},
    {"gszCurdir",             ""},
    {"gszCurrentWorkingDir",  ""},
    {"gszExePath",            ""},
    {"gszExename",            ""},
    {"gszHomedir",            ""},
    {"gszTmppath",            ""},
    {"gszCvtFilenameBase",    ""},
    {"gszCvtFilename",        ""},
    {"gszCvtSavePath",        ""},
    {"gszKrvServerName",      ""},
    {"gszVersion",            "1.0.1"},
    {"gszFileVersion",        "1.0"},
    {"grWinPos",              "200,200,840,687,640,487"},
    {"gfCmdlineWndpos",       "0"},
    {"gbBkClrWhite",          "true"},
    {"giCmdArg",              "0"},
    {"gbCmdQuit",             "false"},
    {"giCmdPrintOrientation", "0"},
    {"giCmdPrintPapertype",   "0"},
    {"gbIsTempFile",          "false"},
    {"giAutosave",            "0"},
    {"giExportQuality",       "10"},
    {"giPrtMinLineWidth",     "2"},
    {"giPageX",               "0"},
    {"giPageY",               "0"},
    {"gdPageSizeX",           "1"},
    {"gdPageSizeY",           "1"},
    {"gfEpsUseBkClr",         "0"},
    {"gfEpsCvt2Blk",          "0"},
    {"gdEpsCvtScale",         "0.25"},
    {"giEpsMinLineWidth",     "5"},
    {"gdwBackClrEPS",         "0"},
    {"gfPrtWht2Blk",          "0"},
    {"gdwLineClrFlag",        "0"},
    {"gwLineClrMap",          "0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15"},
    {"gdwDebug",              "1"},
    {"gdwDrawMode",           "0"},
    {"gdwHpglNumPens",        "8"},
    {"gwHpglClrMap",          "0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15"},
    {"gpPlfmembuf",           "null"},
    {"gdwFilesize",           "0"},
    {"gdwBkClrFile",          "0"},
    {"gdwVectorCnt",          "0"},
    {"gpAppMain",             "null"},
    {"gpMainwnd",             "null"},
    {"gpDraw",                "null"},
    {"gpLog",                 "null"},
};
// clang-format on

// Every variable by its name, as text.
using Globals = QMap<QString, QString>;

QString RectText(const Rect& r)
{
    QStringList fields;
    for (const int64_t field : {r.left, r.top, r.right, r.bottom, r.width, r.height})
        fields.append(QString::number(field));
    return fields.join(u',');
}

template <size_t size> QString MapText(const uint16_t (&map)[size])
{
    QStringList fields;
    for (const uint16_t field : map)
        fields.append(QString::number(field));
    return fields.join(u',');
}

template <typename T> QString ValueText(const T& value)
{
    if constexpr (std::is_pointer_v<T>)
        return value == nullptr ? QStringLiteral("null") : QStringLiteral("set");
    else if constexpr (std::is_array_v<T>)
        return QString::fromLocal8Bit(value);
    else if constexpr (std::is_same_v<T, bool>)
        return value ? QStringLiteral("true") : QStringLiteral("false");
    else
        return QString::number(value);
}

template <size_t size> QString ValueText(const uint16_t (&map)[size])
{
    return MapText(map);
}

Globals PathGlobals()
{
    return {
        {QStringLiteral("gszPlffileOrig"), ValueText(gszPlffileOrig)},
        {QStringLiteral("gszPlffileName"), ValueText(gszPlffileName)},
        {QStringLiteral("gszCurdir"), ValueText(gszCurdir)},
        {QStringLiteral("gszCurrentWorkingDir"), ValueText(gszCurrentWorkingDir)},
        {QStringLiteral("gszExePath"), ValueText(gszExePath)},
        {QStringLiteral("gszExename"), ValueText(gszExename)},
        {QStringLiteral("gszHomedir"), ValueText(gszHomedir)},
        {QStringLiteral("gszTmppath"), ValueText(gszTmppath)},
        {QStringLiteral("gszCvtFilenameBase"), ValueText(gszCvtFilenameBase)},
        {QStringLiteral("gszCvtFilename"), ValueText(gszCvtFilename)},
        {QStringLiteral("gszCvtSavePath"), ValueText(gszCvtSavePath)},
        {QStringLiteral("gszKrvServerName"), ValueText(gszKrvServerName)},
    };
}

Globals SettingGlobals()
{
    return {
        {QStringLiteral("gszVersion"), ValueText(gszVersion)},
        {QStringLiteral("gszFileVersion"), ValueText(gszFileVersion)},
        {QStringLiteral("grWinPos"), RectText(grWinPos)},
        {QStringLiteral("gfCmdlineWndpos"), ValueText(gfCmdlineWndpos)},
        {QStringLiteral("gbBkClrWhite"), ValueText(gbBkClrWhite)},
        {QStringLiteral("giCmdArg"), ValueText(giCmdArg)},
        {QStringLiteral("gbCmdQuit"), ValueText(gbCmdQuit)},
        {QStringLiteral("giCmdPrintOrientation"), ValueText(giCmdPrintOrientation)},
        {QStringLiteral("giCmdPrintPapertype"), ValueText(giCmdPrintPapertype)},
        {QStringLiteral("gbIsTempFile"), ValueText(gbIsTempFile)},
        {QStringLiteral("giAutosave"), ValueText(giAutosave)},
        {QStringLiteral("giExportQuality"), ValueText(giExportQuality)},
        {QStringLiteral("giPrtMinLineWidth"), ValueText(giPrtMinLineWidth)},
        {QStringLiteral("giPageX"), ValueText(giPageX)},
        {QStringLiteral("giPageY"), ValueText(giPageY)},
        {QStringLiteral("gdPageSizeX"), ValueText(gdPageSizeX)},
        {QStringLiteral("gdPageSizeY"), ValueText(gdPageSizeY)},
        {QStringLiteral("gfEpsUseBkClr"), ValueText(gfEpsUseBkClr)},
        {QStringLiteral("gfEpsCvt2Blk"), ValueText(gfEpsCvt2Blk)},
        {QStringLiteral("gdEpsCvtScale"), ValueText(gdEpsCvtScale)},
        {QStringLiteral("giEpsMinLineWidth"), ValueText(giEpsMinLineWidth)},
        {QStringLiteral("gdwBackClrEPS"), ValueText(gdwBackClrEPS)},
        {QStringLiteral("gfPrtWht2Blk"), ValueText(gfPrtWht2Blk)},
        {QStringLiteral("gdwLineClrFlag"), ValueText(gdwLineClrFlag)},
        {QStringLiteral("gwLineClrMap"), ValueText(gwLineClrMap)},
        {QStringLiteral("gdwDebug"), ValueText(gdwDebug)},
        {QStringLiteral("gdwDrawMode"), ValueText(gdwDrawMode)},
        {QStringLiteral("gdwHpglNumPens"), ValueText(gdwHpglNumPens)},
        {QStringLiteral("gwHpglClrMap"), ValueText(gwHpglClrMap)},
    };
}

Globals ObjectGlobals()
{
    return {
        {QStringLiteral("gpPlfmembuf"), ValueText(gpPlfmembuf)},
        {QStringLiteral("gdwFilesize"), ValueText(gdwFilesize)},
        {QStringLiteral("gdwBkClrFile"), ValueText(gdwBkClrFile)},
        {QStringLiteral("gdwVectorCnt"), ValueText(gdwVectorCnt)},
        {QStringLiteral("gpAppMain"), ValueText(gpAppMain)},
        {QStringLiteral("gpMainwnd"), ValueText(gpMainwnd)},
        {QStringLiteral("gpDraw"), ValueText(gpDraw)},
        {QStringLiteral("gpLog"), ValueText(gpLog)},
    };
}

Globals AllGlobals()
{
    Globals all = PathGlobals();
    all.insert(SettingGlobals());
    all.insert(ObjectGlobals());
    return all;
}

// The names that globals.h declares, sorted.
QStringList DeclaredGlobals()
{
    static const QRegularExpression kDeclaration(QStringLiteral("^extern [^;]*;"),
                                                 QRegularExpression::MultilineOption);
    static const QRegularExpression kName(QStringLiteral("(\\w+)(\\[\\w+\\])?[,;]"));
    QFile header(QFINDTESTDATA("../app/state/globals.h"));
    if (!header.open(QIODevice::ReadOnly))
        return {};
    QStringList names;
    for (const auto& declaration : kDeclaration.globalMatch(QString::fromUtf8(header.readAll()))) {
        for (const auto& name : kName.globalMatch(declaration.captured()))
            names.append(name.captured(1));
    }
    names.sort();
    return names;
}

// "name=value" for every variable that is not what it was, sorted by name.
QStringList Changes(const Globals& before)
{
    QStringList changes;
    const Globals after = AllGlobals();
    for (auto it = after.begin(); it != after.end(); ++it) {
        if (before.value(it.key()) != it.value())
            changes.append(it.key() + u'=' + it.value());
    }
    return changes;
}

// Calls a function with a program name and arguments, as main has them.
template <typename Function>
auto Call(Function function, const std::vector<std::string>& arguments, int first)
{
    std::vector<std::string> texts = {"plotvw"};
    texts.insert(texts.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    argv.reserve(texts.size() + 1);
    for (std::string& text : texts)
        argv.push_back(text.data());
    argv.push_back(nullptr);
    return function(static_cast<int>(texts.size()), argv.data(), first);
}

int Parse(const std::vector<std::string>& arguments, int first = 1)
{
    return Call(ProcessCmdline, arguments, first);
}

bool Check(const std::vector<std::string>& arguments)
{
    return Call(CmdlineFits, arguments, 1);
}

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

QColor Rgb(int red, int green, int blue)
{
    return {red, green, blue, 255};
}

// What the box's label shows, and a plain label of its size with the same text.
struct ShownText {
    QImage shown;
    QImage plain;
    bool isWhole = false; // in the label, and the label in the box
    bool isOnScreen = false;
};

ShownText Look(const QMessageBox& box)
{
    auto* label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
    QLabel plain(box.text(), label->parentWidget());
    plain.setTextFormat(Qt::PlainText);
    plain.setAlignment(label->alignment());
    plain.setIndent(label->indent());
    plain.setTextInteractionFlags(label->textInteractionFlags());
    plain.setWordWrap(label->wordWrap());
    plain.setGeometry(label->geometry());
    const QSize needed =
        plain.wordWrap() ? QSize(0, plain.heightForWidth(label->width())) : plain.sizeHint();
    plain.setWordWrap(false);
    return {label->grab().toImage(), plain.grab().toImage(),
            box.rect().contains(label->geometry()) && needed.width() <= label->width() &&
                needed.height() <= label->height(),
            box.width() <= box.screen()->availableGeometry().width()};
}

} // namespace

class TestCmdline : public QObject, protected fixture::WindowTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void globals_atStart_haveDefaults_data();
    void globals_atStart_haveDefaults();
    void globals_atStart_areAllInTheTable();
    void globals_buffers_haveTheirSizes();
    void versionTexts_behindTheText_areZero();
    void pens_beforeInitGraphics_areDefaultPens();
    void initGraphics_palettePens_data();
    void initGraphics_palettePens();
    void initGraphics_rubberPen_isBlackDottedAndOneWide();
    void initGraphics_calledTwice_givesTheSame();

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

    void usageBox_hasItsTextAndOneButton();
    void usageBox_breaksLinesWhereItsTextDoes_data();
    void usageBox_breaksLinesWhereItsTextDoes();
    void usageBox_endsTheParsing();
    void usageBox_anyAnswer_isTheSame_data();
    void usageBox_anyAnswer_isTheSame();

    void longestValue_fits_data();
    void longestValue_fits();
    void tooLongValue_isRefused_data();
    void tooLongValue_isRefused();
    void tooLongFileName_leavesNoFile();
    void tooLongValue_doesNotEndTheParsing();
    void check_longestValue_fits_data();
    void check_longestValue_fits();
    void check_tooLongValue_isTold_data();
    void check_tooLongValue_isTold();
    void check_fileNameThatIsTooLongAsAPath_isTold();
    void check_behindTheUsageOption_looksAtNothing();

private:
    void CheckChanges();
    void LimitRows();

    Globals atStart;
    QPen penAtStart;
    QPen rubberPenAtStart;
    Globals before;
};

void TestCmdline::initTestCase()
{
    atStart = AllGlobals();
    penAtStart = ghpenIbmClr[9];
    rubberPenAtStart = gdotpen;
}

void TestCmdline::init()
{
    Begin();
    before = AllGlobals();
}

void TestCmdline::cleanup()
{
    End();
}

void TestCmdline::globals_atStart_haveDefaults_data()
{
    QTest::addColumn<QString>("value");
    for (const Default& row : kDefaults)
        QTest::newRow(row.name) << QString::fromLatin1(row.value);
}

void TestCmdline::globals_atStart_haveDefaults()
{
    QFETCH(QString, value);
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    QVERIFY(atStart.contains(name));
    QCOMPARE(atStart.value(name), value);
}

void TestCmdline::globals_atStart_areAllInTheTable()
{
    QStringList table;
    for (const Default& row : kDefaults)
        table.append(QString::fromLatin1(row.name));
    table.sort();
    QCOMPARE(DeclaredGlobals(), table);
    QCOMPARE(atStart.keys(), table);
}

void TestCmdline::globals_buffers_haveTheirSizes()
{
    for (const size_t size :
         {sizeof gszPlffileOrig, sizeof gszPlffileName, sizeof gszCurdir, sizeof gszExePath,
          sizeof gszExename, sizeof gszHomedir, sizeof gszTmppath, sizeof gszCvtFilenameBase,
          sizeof gszCvtFilename, sizeof gszCvtSavePath, sizeof gszKrvServerName})
        QCOMPARE(size, size_t{1024});
    QCOMPARE(sizeof gszCurrentWorkingDir, size_t{2048});
    QCOMPARE(sizeof gszVersion, size_t{10});
    QCOMPARE(sizeof gszFileVersion, size_t{10});
    QCOMPARE(sizeof gwLineClrMap, size_t{32});
    QCOMPARE(sizeof gwHpglClrMap, size_t{32});
    QCOMPARE(sizeof grWinPos, size_t{48});
}

// The settings file holds all ten bytes.
void TestCmdline::versionTexts_behindTheText_areZero()
{
    QCOMPARE(QByteArray(gszFileVersion, sizeof gszFileVersion),
             QByteArray("1.0\0\0\0\0\0\0\0", 10));
    QCOMPARE(QByteArray(gszVersion, sizeof gszVersion), QByteArray("1.0.1\0\0\0\0\0", 10));
}

void TestCmdline::pens_beforeInitGraphics_areDefaultPens()
{
    QCOMPARE(penAtStart, QPen());
    QCOMPARE(rubberPenAtStart, QPen());
}

void TestCmdline::initGraphics_palettePens_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QColor>("color");
    const QColor colors[] = {
        Rgb(0, 0, 0),    Rgb(0, 0, 127),   Rgb(0, 127, 0),   Rgb(0, 127, 127),
        Rgb(127, 0, 0),  Rgb(127, 0, 127), Rgb(127, 127, 0), Rgb(127, 127, 127),
        Rgb(63, 63, 63), Rgb(0, 0, 255),   Rgb(0, 255, 0),   Rgb(0, 255, 255),
        Rgb(255, 0, 0),  Rgb(255, 0, 255), Rgb(255, 255, 0), Rgb(255, 255, 255),
    };
    for (int i = 0; i < static_cast<int>(std::size(colors)); ++i)
        QTest::addRow("%d", i) << i << colors[i];
}

void TestCmdline::initGraphics_palettePens()
{
    QFETCH(int, index);
    QFETCH(QColor, color);
    initGraphics();
    QCOMPARE(ghpenIbmClr[index].color(), color);
    QCOMPARE(ghpenIbmClr[index].style(), Qt::SolidLine);
    QCOMPARE(ghpenIbmClr[index].width(), 1);
    const int rgb[] = {color.red(), color.green(), color.blue()};
    for (int c = 0; c < 3; ++c) {
        QCOMPARE(iIbmRgbColors[index][c], rgb[c]);
        QCOMPARE(EpsRgbColors[index][c], rgb[c] / 255.0);
    }
}

void TestCmdline::initGraphics_rubberPen_isBlackDottedAndOneWide()
{
    initGraphics();
    QCOMPARE(gdotpen.color(), Rgb(0, 0, 0));
    QCOMPARE(gdotpen.style(), Qt::DotLine);
    QCOMPARE(gdotpen.width(), 1);
}

void TestCmdline::initGraphics_calledTwice_givesTheSame()
{
    initGraphics();
    const QPen green = ghpenIbmClr[10];
    initGraphics();
    QCOMPARE(ghpenIbmClr[10], green);
    QCOMPARE(ghpenIbmClr[10].color(), Rgb(0, 255, 0));
}

// Parses the row's arguments; exactly the variables of the row change.
void TestCmdline::CheckChanges()
{
    QFETCH(QByteArray, arguments);
    QFETCH(QStringList, changes);
    QCOMPARE(Parse(Split(arguments.constData())), 0);
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
    QCOMPARE(Parse({}), 0);
    QCOMPARE(Changes(before), QStringList());
}

void TestCmdline::unknownHelpOption_behindAFile_becomesTheFile()
{
    QCOMPARE(Parse({"a.plf", "-h"}), 0);
    QCOMPARE(Changes(before), Change("gszPlffileOrig=-h"));
}

void TestCmdline::unknownHelpOption_beforeAFile_isReplacedByIt()
{
    QCOMPARE(Parse({"-h", "a.plf"}), 0);
    QCOMPARE(Changes(before), Change("gszPlffileOrig=a.plf"));
}

void TestCmdline::printBehindJpeg_asksForBoth()
{
    QCOMPARE(Parse({"-c=1", "-p"}), 0);
    QCOMPARE(giCmdArg, 3);
}

void TestCmdline::printBeforeJpeg_isDiscarded()
{
    QCOMPARE(Parse({"-p", "-c=1"}), 0);
    QCOMPARE(giCmdArg, 2);
}

void TestCmdline::landscapeOption_leavesLandscape()
{
    QCOMPARE(Parse({"-po=landscape"}), 0);
    QCOMPARE(Changes(before), QStringList());
}

void TestCmdline::landscapeOption_behindPortrait_leavesPortrait()
{
    QCOMPARE(Parse({"-po=p", "-po=l"}), 0);
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
    QCOMPARE(Parse({argument.toStdString()}), 0);
    QCOMPARE(Changes(before), Change("giCmdPrintOrientation=1"));
}

void TestCmdline::serverNameWithP_setsThePrintFlagOnly()
{
    QCOMPARE(Parse({"-svrname=krv-pipe"}), 0);
    QCOMPARE(Changes(before), Change("giCmdArg=1"));
}

void TestCmdline::shortWindowPosition_movesAndKeepsTheSize()
{
    QCOMPARE(Parse({"-wp=10,20"}), 0);
    const fixture::Window window;
    QCOMPARE(window->pos(), QPoint(10, 20));
    QCOMPARE(window->size(), QSize(640, 487));
}

void TestCmdline::quitAlone_leavesNoJob()
{
    QCOMPARE(Parse({"-q"}), 0);
    QCOMPARE(giCmdArg, 0);
    QVERIFY(gbCmdQuit);
}

void TestCmdline::givenWindowPosition_isKeptOverTheSettingsFile()
{
    grWinPos = {30, 40, 430, 340, 400, 300};
    gbBkClrWhite = false;
    QCOMPARE(WriteSettingsFile(), 0);
    ResetGlobals();
    QCOMPARE(Parse({"-wp=10,20,500,350"}), 0);
    const fixture::Window window;
    QCOMPARE(window->pos(), QPoint(10, 20));
    QCOMPARE(window->size(), QSize(500, 350));
    QVERIFY2(!gbBkClrWhite, "the background is read all the same");
}

void TestCmdline::storedWindowPosition_replacesTheDefault()
{
    grWinPos = {30, 40, 430, 340, 400, 300};
    QCOMPARE(WriteSettingsFile(), 0);
    ResetGlobals();
    QCOMPARE(Parse({"-q"}), 0);
    const fixture::Window window;
    QCOMPARE(window->pos(), QPoint(30, 40));
    QCOMPARE(window->size(), QSize(400, 300));
}

void TestCmdline::secondWindowPosition_keepsWhatItDoesNotName()
{
    QCOMPARE(Parse({"-wp=1,2,300,400", "-wp=9"}), 0);
    QCOMPARE(RectText(grWinPos), QStringLiteral("9,2,309,402,300,400"));
}

void TestCmdline::pathWithP_asksForAPrintAndIsNoFile()
{
    QCOMPARE(Parse({"/data/run-plot.plf"}), 0);
    QCOMPARE(Changes(before), Change("giCmdArg=1"));
}

void TestCmdline::directoryWithP_isNotStored()
{
    QCOMPARE(Parse({"-cwd=/home/u/my-project"}), 0);
    QCOMPARE(Changes(before), Change("giCmdArg=1"));
}

void TestCmdline::parsing_clearsFileDirectoryAndTemporaryFlag()
{
    QCOMPARE(Parse({"a.plf", "-cwd=/out", "-tmp"}), 0);
    QCOMPARE(Changes(before).size(), 3);
    QCOMPARE(Parse({"-cf=base"}), 0);
    QCOMPARE(Changes(before), Change("gszCvtFilenameBase=base"));
}

void TestCmdline::parsing_keepsEverythingElse()
{
    QCOMPARE(Parse({"-wp=1,2,3,4", "-po=p", "-c=1", "-p", "-cf=base", "-svrname=srv", "-q"}), 0);
    const Globals first = AllGlobals();
    QCOMPARE(Parse({}), 0);
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
    QCOMPARE(Parse({"a.plf", "-cwd=/out", "-tmp"}), 0);
    QCOMPARE(Parse({}, first), 0);
    QCOMPARE(Changes(before), QStringList());
}

void TestCmdline::parsing_fromALaterArgument_skipsTheOthers()
{
    QCOMPARE(Parse({"-q", "-p", "a.plf"}, 3), 0);
    QCOMPARE(Changes(before), Change("gszPlffileOrig=a.plf"));
    QCOMPARE(Parse({"a.plf"}, 0), 0);
    QCOMPARE(Changes(before), Change("gszPlffileOrig=a.plf"));
}

void TestCmdline::fileName_inLocalBytes_isKeptAsItIs()
{
    const std::string name = "/d/\xc3\xa4\xff.plf";
    QCOMPARE(Parse({name}), 0);
    QCOMPARE(QByteArray(gszPlffileOrig), QByteArray::fromStdString(name));
}

void TestCmdline::usageBox_hasItsTextAndOneButton()
{
    Box box;
    fixture::ExpectBox(*dialogs, box);
    QCOMPARE(Parse({"-?"}), -1);
    QCOMPARE(box.shown, 1);
    QCOMPARE(box.title, QStringLiteral("PLOTVW Usage"));
    QCOMPARE(box.text,
             QStringLiteral(
                 "plotvw plffile [-wp=x,y,wid,ht] [-p] [-po=orientation] [-?] [-h]\n\n-wp=x,y,wid,"
                 "ht:\twindow position\n-p:\t\tprint graph\n-q:\t\tquit after cmd processing is "
                 "complete-po=[l,p]:\tprint orientaton, l=landscape (default), p=portrait\n"
                 "[-?,-h]:\t\tprint this help\n"));
    QCOMPARE(box.icon, QMessageBox::NoIcon);
    QCOMPARE(box.buttons, QMessageBox::Ok);
    QVERIFY(box.isModal);
    QCOMPARE(box.parent, nullptr);
    QCOMPARE(box.flags & Qt::WindowType_Mask, Qt::WindowFlags(Qt::Dialog));
    QVERIFY(box.flags.testFlag(Qt::MSWindowsFixedSizeDialogHint));
}

void TestCmdline::usageBox_breaksLinesWhereItsTextDoes_data()
{
    QTest::addColumn<int>("points");
    QTest::addColumn<bool>("fits"); // the longest line, on the screen
    QTest::newRow("small letters") << 6 << true;
    QTest::newRow("letters too large for the screen") << 12 << false;
}

void TestCmdline::usageBox_breaksLinesWhereItsTextDoes()
{
    QFETCH(int, points);
    QFETCH(bool, fits);
    const QFont usual = QApplication::font();
    QFont font = usual;
    font.setPointSize(points);
    QApplication::setFont(font);
    ShownText text;
    dialogs->Expect<QMessageBox>([&](QMessageBox& box) {
        text = Look(box);
        box.reject();
    });
    const int result = Parse({"-?"});
    QApplication::setFont(usual);
    QCOMPARE(result, -1);
    QVERIFY(text.isWhole);
    QVERIFY(text.isOnScreen);
    QCOMPARE(text.shown == text.plain, fits);
}

void TestCmdline::usageBox_endsTheParsing()
{
    Box box;
    fixture::ExpectBox(*dialogs, box);
    QCOMPARE(Parse({"a.plf", "-q", "x-?y", "b.plf", "-p", "-?"}), -1);
    QCOMPARE(box.shown, 1);
    QCOMPARE(Changes(before), QStringList({QStringLiteral("gbCmdQuit=true"),
                                           QStringLiteral("gszPlffileOrig=a.plf")}));
}

void TestCmdline::usageBox_anyAnswer_isTheSame_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("Enter") << static_cast<int>(Qt::Key_Enter);
    QTest::newRow("Escape") << static_cast<int>(Qt::Key_Escape);
}

void TestCmdline::usageBox_anyAnswer_isTheSame()
{
    QFETCH(int, key);
    dialogs->Expect<QMessageBox>(
        [key](QMessageBox& box) { QTest::keyClick(&box, static_cast<Qt::Key>(key)); });
    QCOMPARE(Parse({"-?", "-q"}), -1);
    QCOMPARE(Changes(before), QStringList());
}

// Option, what the box calls its value, and the most bytes that fit.
void TestCmdline::LimitRows()
{
    QTest::addColumn<QByteArray>("option");
    QTest::addColumn<QString>("variable");
    QTest::addColumn<QString>("what");
    QTest::addColumn<int>("limit");
    const auto row = [](const char* option, const char* variable, const char* what, int limit) {
        QTest::newRow(variable) << QByteArray(option) << QString::fromLatin1(variable)
                                << QString::fromLatin1(what) << limit;
    };
    row("", "gszPlffileOrig", "The file name", 1023);
    row("-cf=", "gszCvtFilenameBase", "The name for exported files (-cf=)", 1023);
    row("-svrname=", "gszKrvServerName", "The server name (-svrname=)", 1023);
    row("-cwd=", "gszCurrentWorkingDir", "The working directory (-cwd=)", 2047);
}

void TestCmdline::longestValue_fits_data()
{
    LimitRows();
}

void TestCmdline::longestValue_fits()
{
    QFETCH(QByteArray, option);
    QFETCH(QString, variable);
    QFETCH(int, limit);
    const QByteArray value(limit, 'x');
    QCOMPARE(Parse({(option + value).toStdString()}), 0);
    QCOMPARE(Changes(before), QStringList(variable + u'=' + QString::fromLatin1(value)));
}

void TestCmdline::tooLongValue_isRefused_data()
{
    LimitRows();
}

void TestCmdline::tooLongValue_isRefused()
{
    QFETCH(QByteArray, option);
    QFETCH(QString, what);
    QFETCH(int, limit);
    Box box;
    fixture::ExpectBox(*dialogs, box);
    QCOMPARE(Parse({(option + QByteArray(limit + 1, 'x')).toStdString()}), 0);
    QCOMPARE(Changes(before), QStringList());
    QCOMPARE(box.shown, 1);
    QCOMPARE(box.title, QStringLiteral("Error"));
    QCOMPARE(box.icon, QMessageBox::Critical);
    QCOMPARE(box.buttons, QMessageBox::Ok);
    QCOMPARE(box.text, QStringLiteral("%1 is too long (%2 bytes, limit %3) and was ignored.")
                           .arg(what)
                           .arg(limit + 1)
                           .arg(limit));
}

void TestCmdline::tooLongFileName_leavesNoFile()
{
    Box box;
    fixture::ExpectBox(*dialogs, box);
    QCOMPARE(Parse({"a.plf", std::string(100000, 'x')}), 0);
    QCOMPARE(box.shown, 1);
    QCOMPARE(Changes(before), QStringList());
}

void TestCmdline::tooLongValue_doesNotEndTheParsing()
{
    Box box;
    fixture::ExpectBox(*dialogs, box);
    QCOMPARE(Parse({"-cf=" + std::string(3000, 'x'), "-q", "a.plf"}), 0);
    QCOMPARE(box.shown, 1);
    QCOMPARE(Changes(before), QStringList({QStringLiteral("gbCmdQuit=true"),
                                           QStringLiteral("gszPlffileOrig=a.plf")}));
}

void TestCmdline::check_longestValue_fits_data()
{
    LimitRows();
}

void TestCmdline::check_longestValue_fits()
{
    QFETCH(QByteArray, option);
    QFETCH(int, limit);
    const QByteArray name = option.isEmpty() ? QByteArray("./") : QByteArray(); // is a path
    QVERIFY(Check({(option + name + QByteArray(limit - name.size(), 'x')).toStdString(), "-q"}));
    QCOMPARE(Changes(before), QStringList());
}

void TestCmdline::check_tooLongValue_isTold_data()
{
    LimitRows();
}

void TestCmdline::check_tooLongValue_isTold()
{
    QFETCH(QByteArray, option);
    QFETCH(QString, what);
    QFETCH(int, limit);
    Box box;
    fixture::ExpectBox(*dialogs, box);
    const QByteArray name = option.isEmpty() ? QByteArray("./") : QByteArray();
    QVERIFY(!Check(
        {"-q", "a.plf", (option + name + QByteArray(limit + 1 - name.size(), 'x')).toStdString()}));
    QCOMPARE(Changes(before), QStringList());
    QCOMPARE(box.shown, 1);
    QVERIFY2(box.text.startsWith(what + QStringLiteral(" is ")), qPrintable(box.text));
}

void TestCmdline::check_fileNameThatIsTooLongAsAPath_isTold()
{
    const std::string longest(kPathSize - 1 - strlen(gszCurdir) - 1, 'x');
    QVERIFY(Check({longest}));
    Box box;
    fixture::ExpectBox(*dialogs, box);
    QVERIFY(!Check({longest + 'x'}));
    QCOMPARE(box.text,
             QStringLiteral("The file name is too long (1024 bytes, limit 1023) and was ignored."));
    QVERIFY(Check({""}));
}

void TestCmdline::check_behindTheUsageOption_looksAtNothing()
{
    QVERIFY(Check({"a.plf", "-?", std::string(3000, 'x')}));
}

QTEST_MAIN(TestCmdline)
#include "test_cmdline.moc"
