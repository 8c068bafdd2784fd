// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "app/state/globals.h"
#include "meta/palette.h"
#include "meta/plfbuffer.h"
#include "meta/plfmeta.h"
#include "support/log.h"
#include "tests/kit/graph.h"
#include "tests/kit/plainpainter.h"
#include "tests/kit/recorder.h"
#include "tests/kit/script.h"

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <QRegularExpression>
#include <QSvgGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>
#include <limits>

namespace {

QByteArray File(const QString& script)
{
    return PlfHeader() + "00" + ScriptBytes(script);
}

// A file that names two backgrounds behind offset 100, the second one with the given character.
QByteArray FileOnBackground(char character, const QString& script)
{
    return (PlfHeader() + "00").leftJustified(100, '\r') + "\x1bRA10\x1bRA1" + character + '0' +
           ScriptBytes(script);
}

// Draws the loaded file on any device.
void DrawOn(QPaintDevice* device, QPrinter* printer = nullptr, double scale = 1.0, Rect zoom = {})
{
    QPainter painter(device);
    painter.setRenderHint(QPainter::Antialiasing);
    Rect full = kWholeArea;
    char name[] = "test.plf";
    CPlfMeta meta(name, &painter, printer, scale, 0);
    meta.DrawPlf(&zoom, &full);
}

QStringList RecordPrinted(int dpi)
{
    QPrinter printer;
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setResolution(dpi);
    Recorder recorder({640, 487}, true);
    DrawOn(&recorder, &printer);
    return recorder.Operations();
}

const QString kCross = QStringLiteral("ESC \"GT9\" GS @0,0 @4095,3119 GS @0,3119 @4095,0 BEL");

} // namespace

class TestRender : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initGraphics(); }

    void init()
    {
        gbBkClrWhite = true;
        giPrtMinLineWidth = 2;
        gfPrtWht2Blk = 0;
        gdwLineClrFlag = 0;
        giPageX = giPageY = 0;
        gdPageSizeX = gdPageSizeY = 1.0;
        gdwDebug = 1;
        QVERIFY(folder.isValid());
    }

    void cleanup() { FreePlfBuffer(); }

    void wholeGraph_mapsTheFileAreaAndFillsIt()
    {
        LoadBytes(PlfHeader());
        QCOMPARE(Record(), (QStringList{QStringLiteral("window 0 0 4096 3120"),
                                        QStringLiteral("fill 0 0 4096 3120 #ffffff")}));
    }

    void zoomedGraph_mapsTheZoomAndFillsTheWholeArea()
    {
        LoadBytes(PlfHeader());
        QCOMPARE(Record({.zoom = MakeRect(1000, 500, 2000, 1300)}),
                 (QStringList{QStringLiteral("window 1000 500 1000 800"),
                              QStringLiteral("fill 0 0 4096 3120 #ffffff")}));
    }

    void zoomWithoutWidth_isTheWholeGraph()
    {
        LoadBytes(PlfHeader());
        QCOMPARE(Record({.zoom = MakeRect(1000, 500, 900, 700)}), Record());
        QCOMPARE(Record({.zoom = MakeRect(1000, 500, 1000, 700)}), Record());
    }

    void background_ofTheFile_isFilled()
    {
        LoadBytes(FileOnBackground('9', {}));
        QVERIFY(Record({.whiteBackground = false}).contains(u"fill 0 0 4096 3120 #00ff00"));
        QCOMPARE(gdwBkClrFile, 10UL);
    }

    void background_withoutAPaletteRow_isWhite()
    {
        LoadBytes(FileOnBackground('0', {}));
        QVERIFY(Record({.whiteBackground = false}).contains(u"fill 0 0 4096 3120 #ffffff"));
        QCOMPARE(gdwBkClrFile, 16UL);
    }

    void whiteLines_onWhite_areBlack()
    {
        const QString white =
            QStringLiteral("ESC \"TG142\" #0 #100 #0 ESC \"ML2\" GS @0,0 @4,0 BEL");
        LoadBytes(FileOnBackground('4', white));
        QCOMPARE(Drawn(Record()), QStringList(QStringLiteral("line 0 3120 4 3120 #000000 0")));
        QCOMPARE(Drawn(Record({.whiteBackground = false})),
                 QStringList(QStringLiteral("line 0 3120 4 3120 #ffffff 0")));
        gbBkClrWhite = true;
        QCOMPARE(RecordPrinted(300).last(), QStringLiteral("line 0 3120 4 3120 #000000 4"));
    }

    // A graph on white of its own, or without any background, which counts as white.
    void whiteLines_onTheGraphsOwnWhite_areBlack_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        const QString white =
            QStringLiteral("ESC \"TG142\" #0 #100 #0 ESC \"ML2\" GS @0,0 @4,0 BEL");
        QTest::newRow("named") << FileOnBackground('1', white);
        QTest::newRow("none") << (PlfHeader() + "00").leftJustified(100, '\r') + ScriptBytes(white);
    }

    void whiteLines_onTheGraphsOwnWhite_areBlack()
    {
        QFETCH(QByteArray, bytes);
        LoadBytes(bytes);
        QCOMPARE(Drawn(Record({.whiteBackground = false})),
                 QStringList(QStringLiteral("line 0 3120 4 3120 #000000 0")));
        QCOMPARE(gdwBkClrFile, 15UL);
        gbBkClrWhite = false;
        QCOMPARE(RecordPrinted(300).last(), QStringLiteral("line 0 3120 4 3120 #000000 4"));
    }

    void blackLines_onBlack_stayBlack()
    {
        LoadBytes(FileOnBackground(' ', QStringLiteral("GS @0,0 @4,0 BEL")));
        QCOMPARE(Drawn(Record({.whiteBackground = false})),
                 QStringList(QStringLiteral("line 0 3120 4 3120 #000000 0")));
    }

    void penOnPaper_isTwiceTheWidthAndNeverThinnerThanTwiceTheMinimum_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("minimum");
        QTest::addColumn<int>("pen");
        QTest::newRow("thinner") << 1 << 2 << 4;
        QTest::newRow("as thin") << 2 << 2 << 4;
        QTest::newRow("wider") << 3 << 2 << 6;
        QTest::newRow("no minimum") << 0 << 0 << 0;
        QTest::newRow("negative width") << -5 << 2 << 4;
        QTest::newRow("widest") << 16383 << 2 << 32766;
        QTest::newRow("too wide keeps the pen") << 16384 << 2 << 4;
    }

    void penOnPaper_isTwiceTheWidthAndNeverThinnerThanTwiceTheMinimum()
    {
        QFETCH(int, width);
        QFETCH(int, minimum);
        QFETCH(int, pen);
        giPrtMinLineWidth = minimum;
        LoadBytes(File(QStringLiteral("ESC \"GT\" #%1 GS @0,0 @4,0 BEL").arg(width)));
        QCOMPARE(RecordPrinted(300).last(),
                 QStringLiteral("line 0 3120 4 3120 #000000 %1").arg(pen));
    }

    void page_liesWhereTheResolutionPutsIt_data()
    {
        QTest::addColumn<int>("dpi");
        QTest::addColumn<QPoint>("shift");
        QTest::addColumn<QPointF>("size");
        QTest::addColumn<QString>("viewport");
        const QPoint none;
        const QPointF whole(1, 1);
        QTest::newRow("600 dpi") << 600 << none << whole << QStringLiteral("480 360 5400 4113");
        QTest::newRow("300 dpi") << 300 << none << whole << QStringLiteral("240 180 2700 2056");
        QTest::newRow("72 dpi") << 72 << none << whole << QStringLiteral("57 43 648 493");
        QTest::newRow("half size")
            << 600 << none << QPointF(0.5, 0.5) << QStringLiteral("480 360 2700 2056");
        QTest::newRow("shifted") << 72 << QPoint(10, -5) << whole
                                 << QStringLiteral("67 38 648 493");
        QTest::newRow("shifted off the paper")
            << 72 << QPoint(-100, -100) << whole << QStringLiteral("-42 -56 648 493");
        QTest::newRow("inverted") << 72 << none << QPointF(-1, 0) << QStringLiteral("57 43 -648 0");
        // The farthest is 2^29 = 536870912 pixels; 57.6 and 43.2 are added to a shift, and the
        // whole is 648 by 493.56.
        const QString same = QStringLiteral(" 648 493");
        QTest::newRow("shift below the limit") << 72 << QPoint(536870854, 536870868) << whole
                                               << QStringLiteral("536870911 536870911") + same;
        QTest::newRow("shift at the limit") << 72 << QPoint(536870855, 536870869) << whole
                                            << QStringLiteral("536870912 536870912") + same;
        QTest::newRow("shift above the limit") << 72 << QPoint(536870856, 536870870) << whole
                                               << QStringLiteral("536870912 536870912") + same;
        QTest::newRow("shift below the lower limit")
            << 72 << QPoint(-536870971, -536870957) << whole
            << QStringLiteral("-536870912 -536870912") + same;
        QTest::newRow("size below the limit") << 72 << none << QPointF(828504, 1087751)
                                              << QStringLiteral("57 43 536870592 536870383");
        QTest::newRow("size above the limit") << 72 << none << QPointF(828505, 1087753)
                                              << QStringLiteral("57 43 536870912 536870912");
        QTest::newRow("negative size beyond the limit")
            << 72 << none << QPointF(-828505, -1087753)
            << QStringLiteral("57 43 -536870912 -536870912");
    }

    void page_liesWhereTheResolutionPutsIt()
    {
        QFETCH(int, dpi);
        QFETCH(QPoint, shift);
        QFETCH(QPointF, size);
        QFETCH(QString, viewport);
        giPageX = shift.x();
        giPageY = shift.y();
        gdPageSizeX = size.x();
        gdPageSizeY = size.y();
        LoadBytes(PlfHeader());
        QCOMPARE(RecordPrinted(dpi).at(1), QStringLiteral("viewport ") + viewport);
    }

    void page_sizeFactorBeyondEveryNumber_isDrawnSomehow()
    {
        LoadBytes(File(kCross));
        for (const double factor : {1e300, std::numeric_limits<double>::infinity(), std::nan("")}) {
            gdPageSizeX = gdPageSizeY = factor;
            QCOMPARE(Drawn(RecordPrinted(300)).size(), 2);
        }
    }

    void mapColor_passesOneToSixteenAlone_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<int>("mapped");
        QTest::newRow("lowest") << std::numeric_limits<int>::min() << 0;
        QTest::newRow("-1") << -1 << 0;
        QTest::newRow("0") << 0 << 0;
        QTest::newRow("1") << 1 << 1;
        QTest::newRow("15") << 15 << 15;
        QTest::newRow("16") << 16 << 16;
        QTest::newRow("17") << 17 << 0;
        QTest::newRow("highest") << std::numeric_limits<int>::max() << 0;
    }

    void mapColor_passesOneToSixteenAlone()
    {
        QFETCH(int, index);
        QFETCH(int, mapped);
        char name[] = "";
        const CPlfMeta meta(name, nullptr, nullptr, 1.0, 0);
        QCOMPARE(meta.MapColor(index), mapped);
        gdwLineClrFlag = 2; // through the map, which is the identity
        QCOMPARE(meta.MapColor(index), mapped);
        gdwLineClrFlag = 1; // all black
        QCOMPARE(meta.MapColor(index), 0);
    }

    void mapColor_throughTheMap_usesItsEntry()
    {
        gdwLineClrFlag = 2;
        gwLineClrMap[3] = 12;
        char name[] = "";
        const CPlfMeta meta(name, nullptr, nullptr, 1.0, 0);
        QCOMPARE(meta.MapColor(3), 12);
        gwLineClrMap[3] = 3;
    }

    void mapColor_whiteToBlackOnPaper_winsOverTheMap()
    {
        QPrinter printer;
        printer.setOutputFormat(QPrinter::PdfFormat);
        gfPrtWht2Blk = 1;
        gdwLineClrFlag = 1;
        char name[] = "";
        const CPlfMeta onPaper(name, nullptr, &printer, 1.0, 0);
        QCOMPARE(onPaper.MapColor(15), 0);
        QCOMPARE(onPaper.MapColor(7), 7);
        const CPlfMeta onScreen(name, nullptr, nullptr, 1.0, 0);
        QCOMPARE(onScreen.MapColor(15), 0);
        QCOMPARE(onScreen.MapColor(7), 0);
    }

    void setPenWidth_mapsTheStoredColorASecondTime()
    {
        gdwLineClrFlag = 2;
        gwLineClrMap[2] = 3;
        gwLineClrMap[3] = 4;
        LoadBytes(File(QStringLiteral(
            "ESC \"TG142\" #120 #50 #100 ESC \"TG143\" #240 #50 #100 ESC \"TG142\" #240 #50 #100 "
            "ESC \"ML2\" GS @0,0 @4,0 ESC \"GT4\" @8,0 BEL")));
        const QStringList drawn = Drawn(Record());
        gwLineClrMap[2] = 2;
        gwLineClrMap[3] = 3;
        // Hue 240 is palette index 2; mapped once it is 3, mapped twice 4.
        QCOMPARE(drawn, (QStringList{QStringLiteral("line 0 3120 4 3120 #007f7f 0"),
                                     QStringLiteral("line 4 3120 8 3120 #7f0000 2")}));
    }

    // The map leads from 2 to 3, which is then current, and from 3 to 4.
    void setColor_comparesTheMappedColorWithTheIndexAsItIs()
    {
        gdwLineClrFlag = 2;
        gwLineClrMap[2] = 3;
        gwLineClrMap[3] = 4;
        LoadBytes(File(QStringLiteral(
            "ESC \"TG142\" #240 #50 #100 ESC \"TG143\" #300 #50 #100 "
            "ESC \"ML2\" GS @0,0 @4,0 ESC \"ML3\" @8,0 ESC \"ML1\" @12,0 ESC \"ML3\" @16,0 BEL")));
        const QStringList drawn = Drawn(Record());
        gwLineClrMap[2] = 2;
        gwLineClrMap[3] = 3;
        QCOMPARE(drawn, (QStringList{QStringLiteral("line 0 3120 4 3120 #007f7f 0"),
                                     QStringLiteral("line 4 3120 8 3120 #007f7f 0"),
                                     QStringLiteral("line 8 3120 12 3120 #000000 0"),
                                     QStringLiteral("line 12 3120 16 3120 #7f0000 0")}));
    }

    void text_withLineFeed_isDrawnWithoutTheLastOne_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("left");
        QTest::addColumn<int>("operations");
        QTest::newRow("nothing") << QByteArray("") << QByteArray("") << 0;
        QTest::newRow("two line feeds") << QByteArray("two\n\n") << QByteArray("two\n") << 1;
        QTest::newRow("only a line feed") << QByteArray("\n") << QByteArray("") << 0;
    }

    void text_withLineFeed_isDrawnWithoutTheLastOne()
    {
        QFETCH(QByteArray, text);
        Recorder recorder;
        QPainter painter(&recorder);
        char name[] = "";
        CPlfMeta meta(name, &painter, nullptr, 1.0, 0);
        meta.DrawTextKorvel(text.data());
        QTEST(QByteArray(text.constData()), "left");
        QTEST(static_cast<int>(recorder.Operations().size()), "operations");
    }

    void textFont_isWhatTheFileAsksFor_data()
    {
        QTest::addColumn<int>("attributes");
        QTest::addColumn<bool>("isBold");
        QTest::addColumn<bool>("isItalic");
        QTest::newRow("plain") << 0 << false << false;
        QTest::newRow("bold") << 1 << true << false;
        QTest::newRow("italic") << 2 << false << true;
        QTest::newRow("both") << 3 << true << true;
        QTest::newRow("another bit") << 4 << false << false;
    }

    void textFont_isWhatTheFileAsksFor()
    {
        QFETCH(int, attributes);
        QFETCH(bool, isBold);
        QFETCH(bool, isItalic);
        LoadBytes(
            File(QStringLiteral("ESC \"ZFCourier\" ESC \"ZS\" #41 ESC \"ZA\" #%1 ESC \"R!\" BEL")
                     .arg(attributes)));
        Rect zoom = {};
        Rect full = kWholeArea;
        char name[] = "";
        CPlfMeta meta(name, nullptr, nullptr, 1.0, 0);
        meta.DrawPlf(&zoom, &full);
        const QFont font = meta.TextFont();
        QCOMPARE(font.families(), QStringList(QStringLiteral("Courier")));
        QCOMPARE(font.pointSize(), 41);
        QCOMPARE(font.weight(), isBold ? QFont::Bold : QFont::Normal);
        QCOMPARE(font.italic(), isItalic);
    }

    void text_standsInThePaintersFont_whateverTheFileAsksFor()
    {
        LoadBytes(File(QStringLiteral("ESC \"ZFCourier\" ESC \"ZS\" #40 ESC \"ZA3\" ESC "
                                      "\"ZP100,1000;ZDiii\" ESC \"R!\" BEL")));
        QImage asked(640, 487, QImage::Format_RGB32);
        DrawOn(&asked);
        LoadBytes(File(QStringLiteral("ESC \"ZP100,1000;ZDiii\" ESC \"R!\" BEL")));
        QImage plain(640, 487, QImage::Format_RGB32);
        DrawOn(&plain);
        QCOMPARE(asked, plain);
    }

    void fontName_ofMoreThan1023Bytes_isNotUsed_andToldOnce_data()
    {
        QTest::addColumn<int>("length");
        QTest::addColumn<bool>("fits");
        QTest::newRow("below") << 1022 << true;
        QTest::newRow("at the limit") << 1023 << true;
        QTest::newRow("above") << 1024 << false;
        QTest::newRow("far above") << 100'000 << false;
    }

    void fontName_ofMoreThan1023Bytes_isNotUsed_andToldOnce()
    {
        QFETCH(int, length);
        QFETCH(bool, fits);
        // The first character of the name is the one that ended the letters.
        const QString name = u'F' + QString(length - 1, u'f');
        LoadBytes(File(QStringLiteral("ESC \"ZF") + name + QStringLiteral("\" ESC \"R!\" BEL")));
        Rect zoom = {};
        Rect full = kWholeArea;
        char file[] = "";
        CPlfMeta meta(file, nullptr, nullptr, 1.0, 0);
        if (!fits)
            QTest::ignoreMessage(QtWarningMsg,
                                 "plotvw: ignored 1 text or font name longer than 1023 bytes");
        meta.DrawPlf(&zoom, &full);
        QCOMPARE(meta.TextFont().families().value(0), fits ? name : QString());
    }

    void textsThatDoNotFit_areCountedForOneMessage()
    {
        const QString text = QStringLiteral("ESC \"ZD\" *1024 \"x\" ");
        LoadBytes(File(text + text + text + QStringLiteral("ESC \"R!\" BEL")));
        QTest::ignoreMessage(QtWarningMsg,
                             "plotvw: ignored 3 texts or font names longer than 1023 bytes");
        QCOMPARE(Drawn(Record()), QStringList());
    }

    void hugeTextSizes_areHarmless()
    {
        for (const int size : {-1, 0, 1, 100000000}) {
            LoadBytes(File(QStringLiteral("ESC \"ZS\" #%1 ESC \"ZDx\" ESC \"R!\" BEL").arg(size)));
            QCOMPARE(Drawn(Record()), QStringList(QStringLiteral("text 0 0 #000000 x")));
        }
    }

    void text_farLongerThanThick_isDrawn_data()
    {
        QTest::addColumn<QPointF>("scale"); // pixels for a unit
        QTest::addColumn<bool>("shows");
        QTest::newRow("plain") << QPointF(1, 1) << true;
        QTest::newRow("wide, two pixels high") << QPointF(200, 0.15) << true;
        QTest::newRow("two pixels wide, high") << QPointF(0.15, 200) << true;
        QTest::newRow("wide, a fraction of a pixel high") << QPointF(1000, 0.01) << true;
        QTest::newRow("no height") << QPointF(1000, 0) << false;
        QTest::newRow("no width") << QPointF(0, 1000) << false;
        QTest::newRow("farthest") << QPointF(1e6, 1e-9) << false;
    }

    // Qt's pictures of glyphs cannot hold such ones: it crashes.
    void text_farLongerThanThick_isDrawn()
    {
        QFETCH(QPointF, scale);
        QFETCH(bool, shows);
        QImage drawn(400, 400, QImage::Format_RGB32);
        drawn.fill(Qt::white);
        QPainter painter(&drawn);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::black);
        painter.scale(scale.x(), scale.y());
        painter.translate(-2, 5); // the first letter's middle
        char name[] = "";
        CPlfMeta meta(name, &painter, nullptr, 1.0, 0);
        char text[] = "EEEE";
        meta.DrawTextKorvel(text);
        painter.end();
        QImage blank(drawn.size(), drawn.format());
        blank.fill(Qt::white);
        QCOMPARE(drawn != blank, shows);
    }

    void vectorCount_countsEveryVectorOfTheLastPass()
    {
        LoadBytes(File(kCross));
        Record();
        Record({.zoom = MakeRect(4000, 10, 4010, 20)});
        QCOMPARE(gdwVectorCnt, 2UL);
    }

    void withoutAFile_aPassFillsTheBackgroundAlone()
    {
        FreePlfBuffer();
        QCOMPARE(Record().last(), QStringLiteral("fill 0 0 4096 3120 #ffffff"));
        QCOMPARE(gdwVectorCnt, 0UL);
    }

    void withoutAPainter_aPassStillCounts_data()
    {
        QTest::addColumn<bool>("hasPainter");
        QTest::newRow("none") << false;
        QTest::newRow("one that did not begin") << true;
    }

    void withoutAPainter_aPassStillCounts()
    {
        QFETCH(bool, hasPainter);
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
        LoadBytes(File(QStringLiteral("ESC \"ZDtext\" ESC \"R!\" ") + kCross));
        Rect none = {};
        Rect full = kWholeArea;
        char name[] = "";
        QPainter idle;
        CPlfMeta meta(name, hasPainter ? &idle : nullptr, nullptr, 1.0, 0);
        QCOMPARE(meta.DrawPlf(&none, &full), 1);
        QCOMPARE(gdwVectorCnt, 2UL);
        meta.SetPen(3);
        meta.SetColor(4);
        meta.Draw(0, 0, 100, 100);
        meta.DrawTextKorvel(name);
        QCOMPARE(gdwVectorCnt, 3UL);
    }

    void image_equalsAPlainPaintingOfTheOperations_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<Rect>("zoom");
        QTest::newRow("whole") << QSize(640, 487) << Rect{};
        QTest::newRow("odd size") << QSize(333, 471) << Rect{};
        QTest::newRow("zoomed") << QSize(640, 487) << MakeRect(1500, 1000, 2500, 1900);
    }

    void image_equalsAPlainPaintingOfTheOperations()
    {
        QFETCH(QSize, size);
        QFETCH(Rect, zoom);
        LoadBytes(FileOnBackground('5', kCross));
        gbBkClrWhite = false;
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::red);
        DrawOn(&image, nullptr, 1.0, zoom);
        QCOMPARE(image, PaintPlainly(Record({.whiteBackground = false, .zoom = zoom}), size));
    }

    void pdfWriter_takesTheGraph()
    {
        const QString path = folder.filePath(QStringLiteral("graph.pdf"));
        LoadBytes(File(kCross));
        QPdfWriter writer(path);
        DrawOn(&writer);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(file.read(5) == "%PDF-" && file.size() > 500);
    }

    void svgGenerator_keepsEveryVector()
    {
        const QString path = folder.filePath(QStringLiteral("graph.svg"));
        LoadBytes(File(kCross));
        {
            QSvgGenerator generator;
            generator.setFileName(path);
            generator.setSize({640, 487});
            DrawOn(&generator);
        }
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll().count("<polyline"), 2);
    }

    void printer_takesTheGraph()
    {
        const QString path = folder.filePath(QStringLiteral("printed.pdf"));
        LoadBytes(File(kCross));
        {
            QPrinter printer(QPrinter::HighResolution);
            printer.setOutputFormat(QPrinter::PdfFormat);
            printer.setOutputFileName(path);
            DrawOn(&printer, &printer);
        }
        QVERIFY(QFile(path).size() > 500);
        QCOMPARE(gdwVectorCnt, 2UL);
    }

    void trace_atLevelTwoAlone_logsConstructionAndDestruction_data()
    {
        QTest::addColumn<int>("level");
        QTest::addColumn<QString>("lines");
        const QString none;
        const QString both =
            QStringLiteral("CPlfMeta constructor, this=0x[0-9a-f]+, cvtflag=3, cvtfp=\\(nil\\)\n\n"
                           "CPlfMeta destructor, this=0x[0-9a-f]+, cvtflag=3, cvtfp=\\(nil\\)\n\n");
        QTest::newRow("below") << 1 << none;
        QTest::newRow("at") << 2 << both;
        QTest::newRow("above") << 3 << none;
    }

    void trace_atLevelTwoAlone_logsConstructionAndDestruction()
    {
        QFETCH(int, level);
        QFETCH(QString, lines);
        QByteArray path = folder.filePath(QStringLiteral("trace.log")).toLocal8Bit();
        gpLog = new CLog(path.data(), 0);
        gdwDebug = static_cast<unsigned long>(level);
        {
            char name[] = "";
            const CPlfMeta meta(name, nullptr, nullptr, 1.0, 3);
        }
        delete gpLog;
        gpLog = nullptr;
        QFile file(QString::fromLocal8Bit(path));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QRegularExpression expected(QStringLiteral("^plotvw 1\\.0\\.1\n%1~\n$").arg(lines));
        const QString text = QString::fromLatin1(file.readAll());
        QVERIFY2(expected.match(text).hasMatch(), qPrintable(text));
    }

    void palette_hasItsSixteenColorsInEveryForm()
    {
        const QList<QRgb> colors = {0x000000, 0x00007f, 0x007f00, 0x007f7f, 0x7f0000, 0x7f007f,
                                    0x7f7f00, 0x7f7f7f, 0x3f3f3f, 0x0000ff, 0x00ff00, 0x00ffff,
                                    0xff0000, 0xff00ff, 0xffff00, 0xffffff};
        for (int i = 0; i < kPaletteSize; ++i) {
            const QColor color(0xff000000 | colors[i]);
            QCOMPARE(PaletteColor(i), color);
            QCOMPARE(ghpenIbmClr[i].color(), color);
            QCOMPARE(ghpenIbmClr[i].style(), Qt::SolidLine);
            QCOMPARE(ghpenIbmClr[i].width(), 1);
            QCOMPARE(EpsRgbColors[i][0], color.red() / 255.0);
            QCOMPARE(EpsRgbColors[i][1], color.green() / 255.0);
            QCOMPARE(EpsRgbColors[i][2], color.blue() / 255.0);
        }
        QCOMPARE(gdotpen.color(), QColor(0, 0, 0, 255));
        QCOMPARE(gdotpen.style(), Qt::DotLine);
        QCOMPARE(gdotpen.width(), 1);
        for (const int outside : {-1, 16, 1000})
            QCOMPARE(PaletteColor(outside), QColor(255, 255, 255));
    }

private:
    QTemporaryDir folder;
};

QTEST_MAIN(TestRender)
#include "test_render.moc"
