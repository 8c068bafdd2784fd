// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What is written as EPS, byte by byte. PLOTVW_SEEDS=FIRST:COUNT chooses the streams that are
// compared with the reference.
#include "app/state/globals.h"
#include "meta/palette.h"
#include "meta/plfbuffer.h"
#include "meta/plfmeta.h"
#include "tests/kit/commalocale.h"
#include "tests/kit/epsfile.h"
#include "tests/kit/files.h"
#include "tests/kit/graph.h"
#include "tests/kit/recorder.h"
#include "tests/kit/script.h"
#include "tests/kit/seeds.h"
#include "tests/reference/reference.h"
#include "tests/reference/streams.h"

#include <QDir>
#include <QFile>
#include <QPainter>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <limits>

namespace {

constexpr unsigned kStreams = 4000;
constexpr double kInfinity = std::numeric_limits<double>::infinity();

QByteArray File(const QString& script)
{
    return PlfHeader() + "00" + ScriptBytes(script);
}

// The same on a black background of its own.
QByteArray FileOnBlack(const QString& script)
{
    return (PlfHeader() + "00").leftJustified(kBackgroundScanStart, '\r') + "\x1bRA10\x1bRA1 0" +
           ScriptBytes(script);
}

// The parts of a file, as they are with every option at its start-up value.
const QByteArray kTitle = "%!PS-Adobe-3.0 EPSF-3.0\n"
                          "%%Creator: PLF Viewer (plotvw)\n"
                          "%%Title:   KORVEL-generated file\n";
const QByteArray kBoundingBox = "%%BoundingBox: 0 0 1024 780\n";
const QByteArray kSetup = "/DeviceRGB setcolorspace 0 setlinecap 0 setlinejoin 30 setmiterlimit\n";
const QByteArray kWidth = "5 setlinewidth\n";
const QByteArray kScale = "0.25 0.25 scale\n";
const QByteArray kFillColor = "0.00 0.00 0.00 setcolor\n";
const QByteArray kHeader = kTitle + kBoundingBox + kSetup + kWidth + kScale + kFillColor;
const QByteArray kFirstPen = " stroke 5 setlinewidth \nstroke 0.00 0.00 0.00 setcolor\n";
const QByteArray kEnd = "\nstroke\n";

QByteArray Whole(const QByteArray& vectors)
{
    return kHeader + kFirstPen + vectors + kEnd;
}

reference::View MakeView(unsigned seed)
{
    reference::View view = streams::MakeView(seed);
    view.printing = false;
    return view;
}

// Each of them changes at another pace than the kinds of streams do.
reference::EpsOptions MakeOptions(unsigned seed)
{
    constexpr double kScales[] = {0.25, 0.5, 1.0, 0.1, 7.77, 0.0, -0.25, 1e300, kInfinity};
    constexpr int kWidths[] = {5, 5, 0, 1, 20, -3, std::numeric_limits<int>::max()};
    reference::EpsOptions options;
    options.scale = kScales[seed % std::size(kScales)];
    options.minLineWidth = kWidths[seed % std::size(kWidths)];
    options.linesToBlack = seed / 9 % 2 == 1;
    options.fillBackground = seed / 18 % 2 == 1;
    options.backgroundIndex = seed % (kPaletteSize + 1);
    return options;
}

void SetOptions(const reference::EpsOptions& options)
{
    gdEpsCvtScale = options.scale;
    giEpsMinLineWidth = options.minLineWidth;
    gfEpsCvt2Blk = options.linesToBlack ? 1 : 0;
    gfEpsUseBkClr = options.fillBackground ? 1 : 0;
    gdwBackClrEPS = options.backgroundIndex;
}

Pass AsPass(const reference::View& view)
{
    return {view.whiteBackground, view.widthScale,
            MakeRect(static_cast<int>(view.zoomLeft), static_cast<int>(view.zoomTop),
                     static_cast<int>(view.zoomRight), static_cast<int>(view.zoomBottom))};
}

void LoadStream(unsigned seed)
{
    LoadBytes(QByteArray::fromStdString(streams::Make(seed)));
}

// Says where two files begin to differ; the comparison that fails then shows only their beginnings.
void ShowDifference(unsigned seed, const QByteArray& written, const QByteArray& expected)
{
    const auto [left, right] =
        std::mismatch(written.begin(), written.end(), expected.begin(), expected.end());
    if (left == written.end() && right == expected.end())
        return;
    const qsizetype at = left - written.begin();
    const qsizetype from = std::max<qsizetype>(at - 40, 0);
    qWarning("seed %u, byte %lld: written \"...%s...\", expected \"...%s...\"", seed,
             static_cast<long long>(at), written.mid(from, 80).constData(),
             expected.mid(from, 80).constData());
}

// What a pass paints when it writes EPS as well.
QStringList RecordWithEps(const QString& path, const Pass& pass = {})
{
    Recorder recorder;
    QPainter painter(&recorder);
    WriteEps(path, pass, &painter);
    return recorder.Operations();
}

} // namespace

class TestEps : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup() { FreePlfBuffer(); }

    void everyStream_isWrittenAsTheReferenceWritesIt();
    void vectors_areWrittenAs_data();
    void vectors_areWrittenAs();
    void color_isWrittenAsItsPaletteRow_data();
    void color_isWrittenAsItsPaletteRow();
    void color_withLinesToBlack_isBlackAndStillStartsAPath();
    void color_whiteOnWhite_isBlack();
    void color_whiteOnAnotherBackground_staysWhite();
    void width_followsThePassesFactor();
    void width_belowTheMinimum_isTheMinimum_data();
    void width_belowTheMinimum_isTheMinimum();
    void scale_setsTheBoundingBoxAndTheOperator_data();
    void scale_setsTheBoundingBoxAndTheOperator();
    void boundingBox_zoomed_isTheZoom_data();
    void boundingBox_zoomed_isTheZoom();
    void vectors_zoomed_keepTheirPlaceAndAreAllWritten();
    void background_isFilledWhenAsked();
    void background_zoomed_fillsTheZoom();
    void background_hasTheColorOfItsIndex();
    void background_ofTheFile_isNotUsed();
    void otherModes_writeNoFile();
    void file_isCompleteBeforeThePassEnds();
    void file_thatIsThereAlready_isReplaced();
    void passAgain_writesTheSame();
    void passAgain_ofTheSameObject_writesTheSame();
    void output_thatCannotBeOpened_isLeftAlone_data();
    void output_thatCannotBeOpened_isLeftAlone();
    void output_thatCannotBeOpened_leavesThePaintingAlone_data();
    void output_thatCannotBeOpened_leavesThePaintingAlone();
    void output_onAFullDevice_endsAndLeavesThePaintingAlone();
    void decimalComma_changesNoByte();
    void painter_changesNoByteAndEpsNoPainting();

private:
    [[nodiscard]] QString Path(const char* name) const
    {
        return folder.filePath(QString::fromLatin1(name));
    }
    void AddUnwritableNames() const;

    QTemporaryDir folder;
};

void TestEps::initTestCase()
{
    initGraphics();
    QVERIFY(folder.isValid());
    QVERIFY(QDir::setCurrent(folder.path()));
    QVERIFY(QDir().mkdir(QStringLiteral("directory")));
}

void TestEps::init()
{
    ResetEpsOptions();
}

void TestEps::everyStream_isWrittenAsTheReferenceWritesIt()
{
    const auto [first, count] = ChosenSeeds(kStreams);
    unsigned long vectors = 0;
    for (unsigned seed = first; seed < first + count; ++seed) {
        const reference::View view = MakeView(seed);
        const reference::EpsOptions options = MakeOptions(seed);
        const QByteArray expected =
            QByteArray::fromStdString(reference::DrawEps(streams::Make(seed), view, options));
        LoadStream(seed);
        SetOptions(options);
        const QByteArray written = Eps(AsPass(view));
        ShowDifference(seed, written, expected);
        QCOMPARE(written, expected);
        vectors += gdwVectorCnt;
    }
    QVERIFY2(vectors > 10UL * count, "the streams draw too little");
}

void TestEps::vectors_areWrittenAs_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QByteArray>("vectors");
    const auto row = [](const char* name, const char* script, const QByteArray& vectors) {
        QTest::newRow(name) << QString::fromLatin1(script) << vectors;
    };

    row("no vectors", "", "");
    row("a move alone", "GS @10,20 BEL", "");
    row("one vector", "GS @10,20 @30,40 BEL", "10 20 moveto 30 40 lineto ");
    row("a vector before any move starts in the upper left corner", "@30,40 BEL",
        "0 3120 moveto 30 40 lineto ");
    row("positions above the visible area", "GS @0,3121 @4095,4095 BEL",
        "0 3121 moveto 4095 4095 lineto ");
    row("a vector without length", "GS @7,7 @7,7 BEL", "7 7 moveto 7 7 lineto ");

    row("a vector from the last one's end continues the path", "GS @0,0 @4,0 @4,4 BEL",
        "0 0 moveto 4 0 lineto 4 4 lineto ");
    row("also after a move to that end", "GS @0,0 @4,0 GS @4,0 @4,4 BEL",
        "0 0 moveto 4 0 lineto 4 4 lineto ");
    row("also after a move elsewhere and back", "GS @0,0 @4,0 GS @9,9 GS @4,0 @4,4 BEL",
        "0 0 moveto 4 0 lineto 4 4 lineto ");
    row("a vector from elsewhere starts one", "GS @0,0 @4,0 GS @4,1 @4,4 BEL",
        "0 0 moveto 4 0 lineto 4 1 moveto 4 4 lineto ");
    row("also from the path's beginning", "GS @0,0 @4,0 GS @0,0 @4,4 BEL",
        "0 0 moveto 4 0 lineto 0 0 moveto 4 4 lineto ");

    row("four continued vectors fill a line", "GS @0,0 @1,0 @2,0 @3,0 @4,0 BEL",
        "0 0 moveto 1 0 lineto 2 0 lineto 3 0 lineto 4 0 lineto \n");
    row("the fifth is on the next", "GS @0,0 @1,0 @2,0 @3,0 @4,0 @5,0 BEL",
        "0 0 moveto 1 0 lineto 2 0 lineto 3 0 lineto 4 0 lineto \n5 0 lineto ");
    row("and the ninth on the one after",
        "GS @0,0 @1,0 @2,0 @3,0 @4,0 @5,0 @6,0 @7,0 @8,0 @9,0 BEL",
        "0 0 moveto 1 0 lineto 2 0 lineto 3 0 lineto 4 0 lineto "
        "\n5 0 lineto 6 0 lineto 7 0 lineto 8 0 lineto \n9 0 lineto ");
    row("so do four separate ones",
        "GS @0,0 @1,0 GS @2,0 @3,0 GS @4,0 @5,0 GS @6,0 @7,0 GS @8,0 @9,0 BEL",
        "0 0 moveto 1 0 lineto 2 0 moveto 3 0 lineto 4 0 moveto 5 0 lineto 6 0 moveto 7 0 lineto "
        "\n8 0 moveto 9 0 lineto ");
    row("changes of pen do not begin a new count",
        "GS @0,0 @1,0 @2,0 ESC \"GT9\" @3,0 ESC \"TG142O0C2F4\" ESC \"ML2\" @4,0 @5,0 BEL",
        "0 0 moveto 1 0 lineto 2 0 lineto  stroke 9 setlinewidth 2 0 moveto 3 0 lineto "
        "\nstroke 0.00 0.50 0.00 setcolor\n3 0 moveto 4 0 lineto \n5 0 lineto ");

    row("a width starts a path", "GS @0,0 @4,0 ESC \"GT9\" @8,0 BEL",
        "0 0 moveto 4 0 lineto  stroke 9 setlinewidth 4 0 moveto 8 0 lineto ");
    row("the current width does not", "ESC \"GT9\" GS @0,0 @4,0 ESC \"GT9\" @8,0 BEL",
        " stroke 9 setlinewidth 0 0 moveto 4 0 lineto 8 0 lineto ");
    row("another width that is written alike does", "GS @0,0 @4,0 ESC \"GT3\" @8,0 BEL",
        "0 0 moveto 4 0 lineto  stroke 5 setlinewidth 4 0 moveto 8 0 lineto ");
    row("the thin line is as wide as the first", "ESC \"GT9\" ESC \"GA\" GS @0,0 @4,0 BEL",
        " stroke 9 setlinewidth  stroke 5 setlinewidth 0 0 moveto 4 0 lineto ");
    row("a negative width", "ESC \"GT\" #-9 GS @0,0 @4,0 BEL",
        " stroke 5 setlinewidth 0 0 moveto 4 0 lineto ");

    row("a color starts a path",
        "ESC \"TG142O0C2F4\" ESC \"TG143G8C2F4\" GS @0,0 @4,0 ESC \"ML2\" @8,0 ESC \"ML3\" @8,4 "
        "BEL",
        "0 0 moveto 4 0 lineto \nstroke 0.00 0.50 0.00 setcolor\n4 0 moveto 8 0 lineto "
        "\nstroke 0.50 0.00 0.00 setcolor\n8 0 moveto 8 4 lineto ");
    row("the current color does not",
        "ESC \"TG142O0C2F4\" ESC \"ML2\" GS @0,0 @4,0 ESC \"ML2\" @8,0 BEL",
        "\nstroke 0.00 0.50 0.00 setcolor\n0 0 moveto 4 0 lineto 8 0 lineto ");
    row("nor does another index of it",
        "ESC \"TG142O0C2F4\" ESC \"TG143O0C2F4\" ESC \"ML2\" GS @0,0 @4,0 ESC \"ML3\" @8,0 BEL",
        "\nstroke 0.00 0.50 0.00 setcolor\n0 0 moveto 4 0 lineto 8 0 lineto ");
    row("nor does the first black", "GS @0,0 @4,0 ESC \"ML0\" @8,0 BEL",
        "0 0 moveto 4 0 lineto 8 0 lineto ");

    row("a text is not written", "ESC \"ZP100,200;ZDtext\" ESC \"ML0\"", "");
    row("a text does not end the path",
        "GS @0,0 @4,0 ESC \"ZFfont\" ESC \"ZS9\" ESC \"ZC4\" ESC \"ZA3\" ESC \"ZP1,2;ZDtext\" "
        "ESC \"ML0\" @8,0 BEL",
        "0 0 moveto 4 0 lineto 8 0 lineto ");
}

void TestEps::vectors_areWrittenAs()
{
    QFETCH(QString, script);
    QFETCH(QByteArray, vectors);
    LoadBytes(File(script));
    QCOMPARE(Eps(), Whole(vectors));
}

void TestEps::color_isWrittenAsItsPaletteRow_data()
{
    QTest::addColumn<int>("hue");
    QTest::addColumn<int>("lightness");
    QTest::addColumn<int>("saturation");
    QTest::addColumn<QByteArray>("written");
    // Palette index 0 is the color that the pass begins with, and so is not written again.
    QTest::newRow("1") << 0 << 50 << 100 << QByteArray("0.00 0.00 0.50");
    QTest::newRow("2") << 240 << 50 << 100 << QByteArray("0.00 0.50 0.00");
    QTest::newRow("3") << 300 << 50 << 100 << QByteArray("0.00 0.50 0.50");
    QTest::newRow("4") << 120 << 50 << 100 << QByteArray("0.50 0.00 0.00");
    QTest::newRow("5") << 60 << 50 << 100 << QByteArray("0.50 0.00 0.50");
    QTest::newRow("6") << 150 << 50 << 100 << QByteArray("0.50 0.50 0.00");
    QTest::newRow("7") << 0 << 50 << 0 << QByteArray("0.50 0.50 0.50");
    QTest::newRow("8") << 0 << 20 << 0 << QByteArray("0.25 0.25 0.25");
    QTest::newRow("9") << 330 << 50 << 100 << QByteArray("0.00 0.00 1.00");
    QTest::newRow("10") << 210 << 50 << 100 << QByteArray("0.00 1.00 0.00");
    QTest::newRow("11") << 270 << 50 << 100 << QByteArray("0.00 1.00 1.00");
    QTest::newRow("12") << 90 << 50 << 100 << QByteArray("1.00 0.00 0.00");
    QTest::newRow("13") << 30 << 50 << 100 << QByteArray("1.00 0.00 1.00");
    QTest::newRow("14") << 180 << 50 << 100 << QByteArray("1.00 1.00 0.00");
    QTest::newRow("15") << 0 << 100 << 0 << QByteArray("1.00 1.00 1.00");
}

void TestEps::color_isWrittenAsItsPaletteRow()
{
    QFETCH(int, hue);
    QFETCH(int, lightness);
    QFETCH(int, saturation);
    QFETCH(QByteArray, written);
    LoadBytes(FileOnBlack(QStringLiteral("ESC \"TG142\" #%1 #%2 #%3 ESC \"ML2\" BEL")
                              .arg(hue)
                              .arg(lightness)
                              .arg(saturation)));
    QCOMPARE(Eps({.whiteBackground = false}), Whole("\nstroke " + written + " setcolor\n"));
}

void TestEps::color_withLinesToBlack_isBlackAndStillStartsAPath()
{
    gfEpsCvt2Blk = 1;
    LoadBytes(File(QStringLiteral("ESC \"TG142O0C2F4\" GS @0,0 @4,0 ESC \"ML2\" @8,0 BEL")));
    QCOMPARE(Eps(), Whole("0 0 moveto 4 0 lineto \nstroke 0.00 0.00 0.00 setcolor\n"
                          "4 0 moveto 8 0 lineto "));
}

void TestEps::color_whiteOnWhite_isBlack()
{
    const QString script = QStringLiteral("ESC \"TG1420F40\" ESC \"ML2\" GS @0,0 @4,0 BEL");
    const QByteArray black = Whole("\nstroke 0.00 0.00 0.00 setcolor\n0 0 moveto 4 0 lineto ");
    LoadBytes(FileOnBlack(script));
    QCOMPARE(Eps({.whiteBackground = true}), black);
    LoadBytes(File(script));
    QCOMPARE(Eps({.whiteBackground = false}), black);
}

void TestEps::color_whiteOnAnotherBackground_staysWhite()
{
    LoadBytes(FileOnBlack(QStringLiteral("ESC \"TG1420F40\" ESC \"ML2\" GS @0,0 @4,0 BEL")));
    QCOMPARE(Eps({.whiteBackground = false}),
             Whole("\nstroke 1.00 1.00 1.00 setcolor\n0 0 moveto 4 0 lineto "));
}

void TestEps::width_followsThePassesFactor()
{
    LoadBytes(File(QStringLiteral("ESC \"GT5\" GS @0,0 @4,0 BEL")));
    QCOMPARE(Eps({.widthScale = 1.9}), Whole(" stroke 9 setlinewidth 0 0 moveto 4 0 lineto "));
    QCOMPARE(Eps({.widthScale = kInfinity}),
             Whole(" stroke 2147483647 setlinewidth 0 0 moveto 4 0 lineto "));
}

void TestEps::width_belowTheMinimum_isTheMinimum_data()
{
    QTest::addColumn<int>("minimum");
    QTest::addColumn<QByteArray>("first");
    QTest::addColumn<QByteArray>("zero");
    QTest::addColumn<QByteArray>("nine");
    QTest::newRow("20") << 20 << QByteArray("20") << QByteArray("20") << QByteArray("20");
    QTest::newRow("9") << 9 << QByteArray("9") << QByteArray("9") << QByteArray("9");
    QTest::newRow("0") << 0 << QByteArray("0") << QByteArray("0") << QByteArray("9");
    QTest::newRow("-3") << -3 << QByteArray("-3") << QByteArray("0") << QByteArray("9");
}

void TestEps::width_belowTheMinimum_isTheMinimum()
{
    QFETCH(int, minimum);
    QFETCH(QByteArray, first);
    QFETCH(QByteArray, zero);
    QFETCH(QByteArray, nine);
    giEpsMinLineWidth = minimum;
    LoadBytes(File(QStringLiteral("ESC \"GT9\" BEL")));
    QCOMPARE(Eps(), kTitle + kBoundingBox + kSetup + first + " setlinewidth\n" + kScale +
                        kFillColor + " stroke " + zero +
                        " setlinewidth \nstroke 0.00 0.00 0.00 setcolor\n stroke " + nine +
                        " setlinewidth " + kEnd);
}

void TestEps::scale_setsTheBoundingBoxAndTheOperator_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<QByteArray>("box");
    QTest::addColumn<QByteArray>("written");
    QTest::newRow("1/4") << 0.25 << QByteArray("0 0 1024 780") << QByteArray("0.25");
    QTest::newRow("1/2") << 0.5 << QByteArray("0 0 2048 1560") << QByteArray("0.50");
    QTest::newRow("1") << 1.0 << QByteArray("0 0 4096 3120") << QByteArray("1.00");
    QTest::newRow("fractions are cut off")
        << 0.1 << QByteArray("0 0 409 312") << QByteArray("0.10");
    QTest::newRow("large") << 7.77 << QByteArray("0 0 31825 24242") << QByteArray("7.77");
    QTest::newRow("more decimals than are written")
        << 0.123456 << QByteArray("0 0 505 385") << QByteArray("0.12");
    QTest::newRow("a half is rounded to the even decimal, down")
        << 0.125 << QByteArray("0 0 512 390") << QByteArray("0.12");
    QTest::newRow("a half is rounded to the even decimal, up")
        << 0.375 << QByteArray("0 0 1536 1170") << QByteArray("0.38");
    QTest::newRow("small") << 0.004 << QByteArray("0 0 16 12") << QByteArray("0.00");
    QTest::newRow("0") << 0.0 << QByteArray("0 0 0 0") << QByteArray("0.00");
    QTest::newRow("negative") << -0.25 << QByteArray("0 0 -1024 -780") << QByteArray("-0.25");
    QTest::newRow("beyond the integers")
        << 1e9 << QByteArray("0 0 2147483647 2147483647") << QByteArray("1000000000.00");
    QTest::newRow("infinite") << kInfinity << QByteArray("0 0 2147483647 2147483647")
                              << QByteArray("inf");
    QTest::newRow("below the integers")
        << -kInfinity << QByteArray("0 0 -2147483648 -2147483648") << QByteArray("-inf");
    QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN() << QByteArray("0 0 0 0")
                               << QByteArray("nan");
}

void TestEps::scale_setsTheBoundingBoxAndTheOperator()
{
    QFETCH(double, scale);
    QFETCH(QByteArray, box);
    QFETCH(QByteArray, written);
    gdEpsCvtScale = scale;
    LoadBytes(File({}));
    QCOMPARE(Eps(), kTitle + "%%BoundingBox: " + box + '\n' + kSetup + kWidth + written + ' ' +
                        written + " scale\n" + kFillColor + kFirstPen + kEnd);
}

void TestEps::boundingBox_zoomed_isTheZoom_data()
{
    QTest::addColumn<Rect>("zoom");
    QTest::addColumn<QByteArray>("box");
    QTest::newRow("inside") << MakeRect(1024, 780, 2048, 1560) << QByteArray("256 390 512 585");
    QTest::newRow("fractions are cut off")
        << MakeRect(1001, 501, 2002, 1103) << QByteArray("250 504 500 654");
    QTest::newRow("toward zero") << MakeRect(-3, 3121, -1, 3127) << QByteArray("0 -1 0 0");
    QTest::newRow("beyond the graph")
        << MakeRect(-400, -800, 8000, 4000) << QByteArray("-100 -220 2000 980");
    QTest::newRow("upside down") << MakeRect(0, 3120, 4096, 0) << QByteArray("0 780 1024 0");
    QTest::newRow("without width") << MakeRect(1024, 780, 1024, 1560) << QByteArray("0 0 1024 780");
    QTest::newRow("inside out") << MakeRect(2048, 780, 1024, 1560) << QByteArray("0 0 1024 780");
}

void TestEps::boundingBox_zoomed_isTheZoom()
{
    QFETCH(Rect, zoom);
    QFETCH(QByteArray, box);
    LoadBytes(File({}));
    QCOMPARE(Eps({.zoom = zoom}), kTitle + "%%BoundingBox: " + box + '\n' + kSetup + kWidth +
                                      kScale + kFillColor + kFirstPen + kEnd);
}

void TestEps::vectors_zoomed_keepTheirPlaceAndAreAllWritten()
{
    LoadBytes(File(QStringLiteral("GS @0,0 @4,0 GS @1100,2000 @1200,2100 BEL")));
    const QByteArray whole = Eps();
    const QByteArray zoomed = Eps({.zoom = MakeRect(1024, 780, 2048, 1560)});
    const QByteArray vectors = "0 0 moveto 4 0 lineto 1100 2000 moveto 1200 2100 lineto ";
    QVERIFY(whole.endsWith(kFirstPen + vectors + kEnd));
    QVERIFY(zoomed.endsWith(kFirstPen + vectors + kEnd));
}

void TestEps::background_isFilledWhenAsked()
{
    gfEpsUseBkClr = 1;
    LoadBytes(File({}));
    QCOMPARE(Eps(), kHeader +
                        "0 3120 moveto 4096 3120 lineto 4096 0 lineto 0 0 lineto 0 3120 lineto "
                        "fill\n" +
                        kFirstPen + kEnd);
}

void TestEps::background_zoomed_fillsTheZoom()
{
    gfEpsUseBkClr = 1;
    LoadBytes(File({}));
    QCOMPARE(Eps({.zoom = MakeRect(1024, 780, 2048, 1560)}),
             kTitle + "%%BoundingBox: 256 390 512 585\n" + kSetup + kWidth + kScale + kFillColor +
                 "1024 2340 moveto 2048 2340 lineto 2048 1560 lineto 1024 1560 lineto "
                 "1024 2340 lineto fill\n" +
                 kFirstPen + kEnd);
}

// The color is set whether it is used or not.
void TestEps::background_hasTheColorOfItsIndex()
{
    LoadBytes(File({}));
    const QByteArray before = kTitle + kBoundingBox + kSetup + kWidth + kScale;
    gdwBackClrEPS = 9;
    QCOMPARE(Eps(), before + "0.00 0.00 1.00 setcolor\n" + kFirstPen + kEnd);
    gdwBackClrEPS = 8;
    gfEpsUseBkClr = 1;
    QVERIFY(Eps().startsWith(before + "0.25 0.25 0.25 setcolor\n0 3120 moveto "));
    gdwBackClrEPS = 16;
    QVERIFY(Eps().startsWith(before + "1.00 1.00 1.00 setcolor\n0 3120 moveto "));
}

void TestEps::background_ofTheFile_isNotUsed()
{
    gfEpsUseBkClr = 1;
    LoadBytes(FileOnBlack({}));
    const QByteArray onBlack = Eps({.whiteBackground = false});
    LoadBytes(File({}));
    QCOMPARE(onBlack, Eps());
}

void TestEps::otherModes_writeNoFile()
{
    LoadBytes(File(QStringLiteral("GS @0,0 @4,0 BEL")));
    const QString path = Path("mode.eps");
    WriteEps(path);
    QVERIFY(QFile::remove(path));
    Rect none = {};
    Rect full = kWholeArea;
    char name[] = "test.plf";
    for (const int mode : {0, 1, 2, 4, -3}) {
        CPlfMeta meta(name, nullptr, nullptr, 1.0, mode);
        meta.DrawPlf(&none, &full);
        QCOMPARE(gdwVectorCnt, 1UL);
        QVERIFY(!QFile::exists(path));
    }
}

void TestEps::file_isCompleteBeforeThePassEnds()
{
    LoadBytes(File(QStringLiteral("GS @0,0 @4,0 BEL")));
    const QString path = Path("complete.eps");
    WriteEps(path); // names the output
    QVERIFY(QFile::remove(path));
    Rect none = {};
    Rect full = kWholeArea;
    char name[] = "test.plf";
    CPlfMeta meta(name, nullptr, nullptr, 1.0, kConvertEps);
    QVERIFY(!QFile::exists(path));
    meta.DrawPlf(&none, &full);
    QCOMPARE(ReadFile(path), Whole("0 0 moveto 4 0 lineto "));
}

void TestEps::file_thatIsThereAlready_isReplaced()
{
    const QString path = Path("again.eps");
    LoadBytes(File(QStringLiteral("GS @0,0 *1000 x602060204160206040 BEL")));
    WriteEps(path);
    LoadBytes(File({}));
    WriteEps(path);
    QCOMPARE(ReadFile(path), Whole({}));
}

void TestEps::passAgain_writesTheSame()
{
    LoadBytes(File(QStringLiteral("ESC \"GT9\" GS @0,0 @1,0 @2,0 @3,0 BEL")));
    const QByteArray once = Eps();
    QCOMPARE(Eps(), once);
    QCOMPARE(gdwVectorCnt, 3UL);
}

void TestEps::passAgain_ofTheSameObject_writesTheSame()
{
    LoadBytes(File(QStringLiteral("GS @0,0 @1,0 BEL")));
    const QString path = Path("twice.eps");
    WriteEps(path); // names the output
    Rect none = {};
    Rect full = kWholeArea;
    char name[] = "test.plf";
    CPlfMeta meta(name, nullptr, nullptr, 1.0, kConvertEps);
    for (int i = 0; i < 2; ++i) {
        QVERIFY(QFile::remove(path));
        meta.DrawPlf(&none, &full);
        QCOMPARE(ReadFile(path), Whole("0 0 moveto 1 0 lineto "));
    }
}

void TestEps::AddUnwritableNames() const
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing folder") << Path("missing/graph.eps");
    QTest::newRow("directory") << Path("directory");
    QTest::newRow("directory with a slash") << Path("directory/");
    QTest::newRow("no name") << QString();
    QTest::newRow("name longer than the system takes")
        << Path(QByteArray(300, 'n').append(".eps").constData());
}

void TestEps::output_thatCannotBeOpened_isLeftAlone_data()
{
    AddUnwritableNames();
}

void TestEps::output_thatCannotBeOpened_isLeftAlone()
{
    QFETCH(QString, name);
    const QDir::Filters all = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
    const QStringList before = QDir(folder.path()).entryList(all);
    gfEpsUseBkClr = 1;
    LoadBytes(File(QStringLiteral("ESC \"TG142O0C2F4\" ESC \"ML2\" ESC \"GT9\" "
                                  "GS @0,0 @1,0 @2,0 @3,0 @4,0 BEL")));
    WriteEps(name);
    QCOMPARE(gdwVectorCnt, 4UL);
    QCOMPARE(QDir(folder.path()).entryList(all), before);
    QVERIFY(QDir(Path("directory")).isEmpty());
}

void TestEps::output_thatCannotBeOpened_leavesThePaintingAlone_data()
{
    AddUnwritableNames();
}

void TestEps::output_thatCannotBeOpened_leavesThePaintingAlone()
{
    QFETCH(QString, name);
    for (unsigned seed = 0; seed < 40; ++seed) {
        LoadStream(seed);
        const Pass pass = AsPass(MakeView(seed));
        QCOMPARE(RecordWithEps(name, pass), Record(pass));
    }
}

void TestEps::output_onAFullDevice_endsAndLeavesThePaintingAlone()
{
    LoadBytes(File(QStringLiteral("GS @0,0 *200000 @4000,3000 BEL")));
    const QString fullDevice = QStringLiteral("/dev/full");
    WriteEps(fullDevice);
    QCOMPARE(gdwVectorCnt, 200000UL);
    QCOMPARE(RecordWithEps(fullDevice), Record());
}

void TestEps::decimalComma_changesNoByte()
{
    const auto writeAll = [] {
        QByteArrayList written;
        for (unsigned seed = 0; seed < 200; ++seed) {
            LoadStream(seed);
            SetOptions(MakeOptions(seed));
            written += Eps(AsPass(MakeView(seed)));
        }
        return written;
    };
    const QByteArrayList written = writeAll();
    const CommaLocale comma;
    QVERIFY2(CommaLocale::IsInForce(), "is the package \"locales\" installed?");
    QCOMPARE(writeAll(), written);
    QVERIFY2(CommaLocale::IsInForce(), "the pass changes the locale");
}

void TestEps::painter_changesNoByteAndEpsNoPainting()
{
    const QString path = Path("both.eps");
    for (unsigned seed = 0; seed < 400; ++seed) {
        LoadStream(seed);
        SetOptions(MakeOptions(seed));
        const Pass pass = AsPass(MakeView(seed));
        const QByteArray writtenAlone = Eps(pass);
        const QStringList paintedAlone = Record(pass);
        const QStringList painted = RecordWithEps(path, pass);
        QCOMPARE(painted, paintedAlone);
        QCOMPARE(ReadFile(path), writtenAlone);
    }
}

QTEST_MAIN(TestEps)
#include "test_eps.moc"
