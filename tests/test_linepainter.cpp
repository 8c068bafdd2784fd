// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Compares pictures, pixel for pixel, with those that one call of Qt for each line gives.
#include "app/state/globals.h"
#include "meta/linepainter.h"
#include "meta/passwatch.h"
#include "meta/plfbuffer.h"
#include "meta/plfmeta.h"
#include "tests/kit/graph.h"
#include "tests/kit/plainpainter.h"
#include "tests/reference/streams.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QTest>
#include <QThread>

#include <functional>
#include <random>

namespace {

constexpr unsigned kStreams = 400;
constexpr int kEdgeLines = 60;

// A view of a graph, and the picture that it is drawn into.
struct Target {
    QSize size;
    Pass pass;
    bool antialiased = true;
};

// Changes a painter's state.
using SetUp = std::function<void(QPainter&)>;

constexpr auto kFormat = QImage::Format_ARGB32_Premultiplied;

QImage NewImage(QSize size)
{
    QImage image(size, kFormat);
    image.fill(Qt::transparent);
    return image;
}

QImage DrawWithInterpreter(const Target& target)
{
    gbBkClrWhite = target.pass.whiteBackground;
    QImage image = NewImage(target.size);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing, target.antialiased);
    Rect zoom = target.pass.zoom;
    Rect full = kWholeArea;
    char name[] = "test.plf";
    CPlfMeta meta(name, &painter, nullptr, target.pass.widthScale, 0);
    meta.DrawPlf(&zoom, &full);
    return image;
}

// The loaded graph, each line by a call of its own.
QImage DrawPlainly(const Target& target)
{
    return PaintPlainly(Record(target.pass), target.size, kFormat, target.antialiased);
}

// Texts have nothing to do with lines but the order, which the recordings of other tests hold.
QByteArray WithoutTexts(QByteArray file)
{
    return file.replace("ZD", "ZB");
}

QRect Difference(const QImage& a, const QImage& b)
{
    QRect difference;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            if (a.pixel(x, y) != b.pixel(x, y))
                difference |= QRect(x, y, 1, 1);
        }
    }
    return difference;
}

void CheckPicture(const Target& target, const QByteArray& what)
{
    const QImage drawn = DrawWithInterpreter(target);
    const QImage plain = DrawPlainly(target);
    if (drawn != plain)
        qWarning() << what << target.size << target.pass.widthScale << "differs in"
                   << Difference(drawn, plain);
    QVERIFY2(drawn == plain, what);
}

Rect Zoom(int left, int top, int right, int bottom)
{
    Rect rect = {};
    SetRect(&rect, left, top, right, bottom);
    return rect;
}

// The whole graph and parts of it, in pictures of its shape and of others, with pens thinner and
// wider than a pixel.
QList<Target> Targets()
{
    QList<Target> targets;
    for (const QSize size : {QSize(1024, 780), QSize(640, 487), QSize(300, 500)}) {
        for (const double scale : {0.0, 1.0, 6.0}) {
            for (const Rect& zoom :
                 {Rect{}, Zoom(1000, 900, 1410, 1212), Zoom(-300, 2900, 700, 3700)})
                targets.append({size, {true, scale, zoom}, true});
        }
    }
    targets.append({QSize(640, 487), {false, 2.0, {}}, false});
    return targets;
}

// Lines that begin or end close to the edges of a picture of that size, in its pixels.
QList<QLine> EdgeLines(QSize size, int reach, std::mt19937& random)
{
    const auto between = [&random](int low, int high) {
        return low + static_cast<int>(random() % static_cast<unsigned>(high - low + 1));
    };
    const auto nearEdge = [&](int length) {
        return (random() % 2 == 0 ? 0 : length) + between(-reach, reach);
    };
    QList<QLine> lines;
    for (int i = 0; i < kEdgeLines; ++i) {
        const QPoint start = random() % 2 == 0
                                 ? QPoint(nearEdge(size.width()), between(0, size.height()))
                                 : QPoint(between(0, size.width()), nearEdge(size.height()));
        const bool isDot = random() % 8 == 0;
        lines.append(QLine(
            start, isDot ? start : start + QPoint(between(-reach, reach), between(-reach, reach))));
    }
    return lines;
}

} // namespace

Q_DECLARE_METATYPE(SetUp)

class TestLinePainter : public QObject
{
    Q_OBJECT

private slots:
    void cleanupTestCase() { FreePlfBuffer(); }
    void samples_equalOneCallPerLine_data();
    void samples_equalOneCallPerLine();
    void streams_equalOneCallPerLine();
    void linesAtTheEdges_equalOneCallPerLine_data();
    void linesAtTheEdges_equalOneCallPerLine();
    void otherStates_equalOneCallPerLine_data();
    void otherStates_equalOneCallPerLine();
    void rectanglesBetweenLines_keepTheirPlace();
    void painter_hasNoClipAfterwards();
    void filledLines_letTheWatchLook();
    void hiddenLines_areCounted();
    void otherEngines_getEveryLine();
};

void TestLinePainter::samples_equalOneCallPerLine_data()
{
    QTest::addColumn<QString>("file");
    const QDir folder(QFINDTESTDATA("../samples"));
    for (const QString& name : folder.entryList({QStringLiteral("*.plf")}))
        QTest::newRow(qPrintable(name)) << folder.filePath(name);
}

void TestLinePainter::samples_equalOneCallPerLine()
{
    QFETCH(QString, file);
    QFile graph(file);
    QVERIFY(graph.open(QIODevice::ReadOnly));
    LoadBytes(WithoutTexts(graph.readAll()));
    for (const Target& target : Targets())
        CheckPicture(target, file.toLocal8Bit());
}

void TestLinePainter::streams_equalOneCallPerLine()
{
    for (unsigned seed = 0; seed < kStreams; ++seed) {
        LoadBytes(WithoutTexts(QByteArray::fromStdString(streams::Make(seed))));
        const reference::View view = streams::MakeView(seed);
        const Rect zoom =
            view.zoomed()
                ? Zoom(static_cast<int>(view.zoomLeft), static_cast<int>(view.zoomTop),
                       static_cast<int>(view.zoomRight), static_cast<int>(view.zoomBottom))
                : Rect{};
        const QSize size = seed % 2 == 0 ? QSize(256, 195) : QSize(200, 120);
        CheckPicture({size, {view.whiteBackground, view.widthScale, zoom}, seed % 5 != 0},
                     "seed " + QByteArray::number(seed));
    }
}

void TestLinePainter::linesAtTheEdges_equalOneCallPerLine_data()
{
    QTest::addColumn<double>("across"); // pixels for a unit
    QTest::addColumn<double>("down");
    QTest::addColumn<int>("width"); // units
    for (const double down : {1.0, 0.25, 0.31, 7.0}) {
        for (const int width : {0, 1, 2, 3, 8, 40}) {
            QTest::addRow("%g, pen %d", down, width) << down << down << width;
            QTest::addRow("%g, stretched, pen %d", down, width) << down * 2.5 << down << width;
        }
    }
}

void TestLinePainter::linesAtTheEdges_equalOneCallPerLine()
{
    QFETCH(double, across);
    QFETCH(double, down);
    QFETCH(int, width);
    const QSize size(90, 70);
    std::mt19937 random(1);
    for (int round = 0; round < 40; ++round) {
        const QSize units(static_cast<int>(size.width() / across),
                          static_cast<int>(size.height() / down));
        const int reach = width + static_cast<int>(6 / std::min(across, down)) + 1;
        QImage drawn = NewImage(size);
        QImage plain = NewImage(size);
        QPainter drawnPainter(&drawn);
        QPainter plainPainter(&plain);
        for (QPainter* painter : {&drawnPainter, &plainPainter}) {
            painter->setRenderHint(QPainter::Antialiasing, round % 4 != 0);
            painter->scale(across, down);
        }
        const QPen pen(Qt::black, width);
        LinePainter lines(drawnPainter);
        lines.SetPen(pen);
        plainPainter.setPen(pen);
        for (const QLine& line : EdgeLines(units, reach, random)) {
            lines.Line(line.x1(), line.y1(), line.x2(), line.y2());
            PaintVector(plainPainter, line);
        }
        lines.Flush();
        QVERIFY2(drawn == plain, qPrintable(QStringLiteral("round %1").arg(round)));
    }
}

void TestLinePainter::otherStates_equalOneCallPerLine_data()
{
    QTest::addColumn<SetUp>("setUp"); // in pixels
    QTest::addColumn<QImage::Format>("format");
    QTest::addColumn<QColor>("color");
    const auto add = [](const char* name, const SetUp& setUp,
                        QImage::Format format = QImage::Format_RGB32, QColor color = Qt::darkBlue) {
        QTest::newRow(name) << setUp << format << color;
    };
    const auto nothing = [](QPainter& /*painter*/) {};
    add("nothing", nothing);
    add("16 bits", nothing, QImage::Format_RGB16);
    add("translucent color", nothing, QImage::Format_RGB32, QColor(90, 0, 200, 120));
    add("color of 16 bits a part", nothing, QImage::Format_RGB32,
        QColor::fromRgba64(0x12FF, 0x8080, 0xFE01));
    add("opacity", [](QPainter& painter) { painter.setOpacity(0.5); });
    add("another mode",
        [](QPainter& painter) { painter.setCompositionMode(QPainter::CompositionMode_Plus); });
    add("not antialiased",
        [](QPainter& painter) { painter.setRenderHint(QPainter::Antialiasing, false); });
    add("clip", [](QPainter& painter) { painter.setClipRect(0, 13, 90, 21); });
    add("clip beside the image", [](QPainter& painter) { painter.setClipRect(95, 0, 9, 9); });
    add("clip of nothing", [](QPainter& painter) { painter.setClipRect(QRect()); });
    add("clip that is switched off", [](QPainter& painter) {
        painter.setClipRect(0, 13, 90, 21);
        painter.setClipping(false);
    });
    add("clip between pixels",
        [](QPainter& painter) { painter.setClipRect(QRectF(9.4, 13.5, 40.3, 21.7)); });
    add("clip in other units", [](QPainter& painter) {
        painter.scale(0.7, 0.3);
        painter.setClipRect(9, 13, 55, 91);
        painter.resetTransform();
    });
    add("clip of two parts", [](QPainter& painter) {
        painter.setClipRegion(QRegion(3, 4, 20, 50) | QRegion(40, 9, 33, 11));
    });
    add("clip with a gap", [](QPainter& painter) {
        painter.setClipRegion(QRegion(3, 4, 60, 50) - QRegion(20, 9, 33, 11));
    });
    add("round clip", [](QPainter& painter) {
        QPainterPath path;
        path.addEllipse(10, 5, 60, 50);
        painter.setClipPath(path);
    });
    add("round clip and clip", [](QPainter& painter) {
        QPainterPath path;
        path.addEllipse(0, 0, 30, 30);
        painter.setClipPath(path);
        painter.setClipRect(2, 3, 5, 4, Qt::IntersectClip);
    });
    add("clips of two parts and of one", [](QPainter& painter) {
        painter.setClipRegion(QRegion(3, 4, 20, 50) | QRegion(40, 9, 33, 11));
        painter.setClipRect(10, 3, 75, 24, Qt::IntersectClip);
    });
    add("clip and clip", [](QPainter& painter) {
        painter.setClipRect(0, 13, 60, 41);
        painter.setClipRect(20, 0, 70, 29, Qt::IntersectClip);
    });
}

void TestLinePainter::otherStates_equalOneCallPerLine()
{
    QFETCH(SetUp, setUp);
    QFETCH(QImage::Format, format);
    QFETCH(QColor, color);
    std::mt19937 random(1);
    const QSize size(90, 70);
    for (const double ratio : {1.0, 1.5, 2.0}) {
        QImage drawn(size, format);
        drawn.setDevicePixelRatio(ratio);
        drawn.fill(Qt::yellow);
        QImage plain = drawn.copy();
        QPainter drawnPainter(&drawn);
        QPainter plainPainter(&plain);
        for (QPainter* painter : {&drawnPainter, &plainPainter}) {
            painter->setRenderHint(QPainter::Antialiasing);
            painter->scale(1 / ratio, 1 / ratio);
            setUp(*painter);
            painter->setWindow(0, 0, 360, 140);
            painter->setPen(QPen(color, 6));
        }
        LinePainter lines(drawnPainter);
        lines.SetPen(drawnPainter.pen());
        for (const QLine& line : EdgeLines(QSize(360, 140), 50, random)) {
            lines.Line(line.x1(), line.y1(), line.x2(), line.y2());
            PaintVector(plainPainter, line);
        }
        lines.Flush();
        QVERIFY2(drawn == plain, qPrintable(QStringLiteral("ratio %1").arg(ratio)));
    }
}

void TestLinePainter::rectanglesBetweenLines_keepTheirPlace()
{
    const QSize size(90, 70);
    QImage drawn = NewImage(size);
    QImage plain = NewImage(size);
    QPainter drawnPainter(&drawn);
    QPainter plainPainter(&plain);
    for (QPainter* painter : {&drawnPainter, &plainPainter}) {
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setWindow(0, 0, 90, 35);
    }
    LinePainter lines(drawnPainter);
    for (int i = 0; i < 6; ++i) {
        const QPen pen(i % 2 == 0 ? Qt::red : Qt::blue, 4);
        lines.SetPen(pen);
        lines.Line(3, 3 + 4 * i, 80, 20);
        lines.Flush();
        drawnPainter.fillRect(10 * i, 5, 12, 20, Qt::green);
        plainPainter.setPen(pen);
        plainPainter.drawLine(3, 3 + 4 * i, 80, 20);
        plainPainter.fillRect(10 * i, 5, 12, 20, Qt::green);
    }
    QVERIFY(drawn == plain);
}

void TestLinePainter::painter_hasNoClipAfterwards()
{
    QImage image = NewImage({100, 80});
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setWindow(0, 0, kPlfWidth, kPlfHeight);
    const QTransform mapping = painter.combinedTransform();
    {
        LinePainter lines(painter);
        lines.SetPen(QPen(Qt::black, 0));
        QVERIFY(painter.hasClipping());
        QCOMPARE(painter.combinedTransform(), mapping);
    }
    QVERIFY(!painter.hasClipping());
}

void TestLinePainter::filledLines_letTheWatchLook()
{
    constexpr int kBeforeALook = 256;
    QImage image = NewImage({100, 80});
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setWindow(0, 0, kPlfWidth, kPlfHeight);
    bool isTold = false;
    PassWatch watch([&isTold] { isTold = true; });
    const QDeadlineTimer patience(PassWatch::kPatience);
    while (!patience.hasExpired())
        QThread::yieldCurrentThread();
    LinePainter lines(painter);
    lines.Watch(&watch);
    lines.SetPen(QPen(Qt::black, 100));
    for (int i = 1; i < kBeforeALook; ++i)
        lines.Line(i, 0, 2000, 1000);
    QVERIFY(!isTold);
    lines.Line(0, 0, 2000, 1000);
    QVERIFY(isTold);
}

void TestLinePainter::hiddenLines_areCounted()
{
    QFile graph(QFINDTESTDATA("../samples/plate.plf"));
    QVERIFY(graph.open(QIODevice::ReadOnly));
    LoadBytes(graph.readAll());
    DrawWithInterpreter({QSize(64, 48), {true, 1.0, {}}});
    const unsigned long whole = gdwVectorCnt;
    QVERIFY(whole > 1000);
    DrawWithInterpreter({QSize(64, 48), {true, 1.0, Zoom(10, 10, 20, 20)}});
    QCOMPARE(gdwVectorCnt, whole);
}

void TestLinePainter::otherEngines_getEveryLine()
{
    QFile graph(QFINDTESTDATA("../samples/plate.plf"));
    QVERIFY(graph.open(QIODevice::ReadOnly));
    LoadBytes(graph.readAll());
    const qsizetype whole = Drawn(Record()).size();
    QVERIFY(whole > 1000);
    QCOMPARE(Drawn(Record({true, 1.0, Zoom(10, 10, 20, 20)})).size(), whole);
}

QTEST_MAIN(TestLinePainter)
#include "test_linepainter.moc"
