// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The program-wide variables as they are at the start, and the palettes.
#include "app/state/globals.h"
#include "meta/palette.h"
#include "tests/kit/globals.h"
#include "tests/kit/globalvalues.h"

#include <QFile>
#include <QPen>
#include <QRegularExpression>
#include <QTest>

using fixture::AllGlobals;
using fixture::Globals;

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

QColor Rgb(int red, int green, int blue)
{
    return {red, green, blue, 255};
}

} // namespace

class TestGlobals : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { ResetGlobals(); }

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

private:
    Globals atStart;
    QPen penAtStart;
    QPen rubberPenAtStart;
};

void TestGlobals::initTestCase()
{
    atStart = AllGlobals();
    penAtStart = ghpenIbmClr[9];
    rubberPenAtStart = gdotpen;
}

void TestGlobals::globals_atStart_haveDefaults_data()
{
    QTest::addColumn<QString>("value");
    for (const Default& row : kDefaults)
        QTest::newRow(row.name) << QString::fromLatin1(row.value);
}

void TestGlobals::globals_atStart_haveDefaults()
{
    QFETCH(QString, value);
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    QVERIFY(atStart.contains(name));
    QCOMPARE(atStart.value(name), value);
}

void TestGlobals::globals_atStart_areAllInTheTable()
{
    QStringList table;
    for (const Default& row : kDefaults)
        table.append(QString::fromLatin1(row.name));
    table.sort();
    QCOMPARE(DeclaredGlobals(), table);
    QCOMPARE(atStart.keys(), table);
}

void TestGlobals::globals_buffers_haveTheirSizes()
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
void TestGlobals::versionTexts_behindTheText_areZero()
{
    QCOMPARE(QByteArray(gszFileVersion, sizeof gszFileVersion),
             QByteArray("1.0\0\0\0\0\0\0\0", 10));
    QCOMPARE(QByteArray(gszVersion, sizeof gszVersion), QByteArray("1.0.1\0\0\0\0\0", 10));
}

void TestGlobals::pens_beforeInitGraphics_areDefaultPens()
{
    QCOMPARE(penAtStart, QPen());
    QCOMPARE(rubberPenAtStart, QPen());
}

void TestGlobals::initGraphics_palettePens_data()
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

void TestGlobals::initGraphics_palettePens()
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

void TestGlobals::initGraphics_rubberPen_isBlackDottedAndOneWide()
{
    initGraphics();
    QCOMPARE(gdotpen.color(), Rgb(0, 0, 0));
    QCOMPARE(gdotpen.style(), Qt::DotLine);
    QCOMPARE(gdotpen.width(), 1);
}

void TestGlobals::initGraphics_calledTwice_givesTheSame()
{
    initGraphics();
    const QPen green = ghpenIbmClr[10];
    initGraphics();
    QCOMPARE(ghpenIbmClr[10], green);
    QCOMPARE(ghpenIbmClr[10].color(), Rgb(0, 255, 0));
}

QTEST_MAIN(TestGlobals)
#include "test_globals.moc"
