// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Vectors of no length: each is a square as wide as its pen and at least a pixel, in pictures of
// every shape and in files that other programs draw.
#include "meta/bands.h"
#include "meta/bytesink.h"
#include "meta/pass.h"
#include "meta/plfgraph.h"
#include "tests/kit/bandpicture.h"
#include "tests/kit/graph.h"
#include "tests/kit/plf.h"
#include "tests/kit/recorder.h"

#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <QProcess>
#include <QSvgGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <string>

namespace {

// File coordinates, far from each other.
constexpr QPoint kPlaces[] = {{400, 2500}, {2001, 1003}, {3333, 1222}};
constexpr int kWidths[] = {0, 2, 4, 16, 80};
constexpr double kAreaWidth = 4096;
constexpr double kAreaHeight = 3120;

std::string Dots(int width)
{
    std::string graph = plf::Start() + plf::Width(width);
    for (const QPoint& place : kPlaces)
        graph += plf::Line(place.x(), place.y(), place.x(), place.y());
    return graph + plf::End();
}

// What is dark near a place: the box around it, and how many black pixels it is worth.
struct Mark {
    QRect box;
    double area = 0;
};

Mark MarkAt(const QImage& image, const QPointF& place, const QSizeF& around)
{
    Mark mark;
    const QRectF part(place - QPointF(around.width(), around.height()), around * 2);
    const QRect pixels = part.toAlignedRect() & image.rect();
    for (int y = pixels.top(); y <= pixels.bottom(); ++y) {
        for (int x = pixels.left(); x <= pixels.right(); ++x) {
            const int dark = 255 - qGray(image.pixel(x, y));
            mark.area += dark / 255.0;
            if (dark > 2)
                mark.box |= QRect(x, y, 1, 1);
        }
    }
    return mark;
}

// What a dot should look like: its middle and its sides, in pixels.
struct Expected {
    QPointF middle;
    QSizeF sides;
    bool isPixel; // the pen is thinner than one
};

Expected ExpectedDot(const QPoint& place, int width, QSize size, const Rect& zoom)
{
    const double across = zoom.width > 0 ? static_cast<double>(zoom.width) : kAreaWidth;
    const double down = zoom.width > 0 ? static_cast<double>(zoom.height) : kAreaHeight;
    const double scaleX = size.width() / across;
    const double scaleY = size.height() / down;
    const int pen = width / 2;
    const auto left = static_cast<double>(zoom.width > 0 ? zoom.left : 0);
    const auto top = static_cast<double>(zoom.width > 0 ? zoom.top : 0);
    return {{(place.x() - left) * scaleX, (kAreaHeight - place.y() - top) * scaleY},
            {std::max(pen * scaleX, 1.0), std::max(pen * scaleY, 1.0)},
            pen * std::max(scaleX, scaleY) < 1};
}

void CheckMark(const QImage& image, const Expected& dot)
{
    const Mark mark = MarkAt(image, dot.middle, dot.sides * 1.5 + QSizeF(4, 4));
    const double area = dot.sides.width() * dot.sides.height();
    // Edges are rounded to a 64th of a pixel, and shares of pixels to a 256th.
    QVERIFY2(std::abs(mark.area - area) <= 0.02 * area + 0.1,
             qPrintable(QStringLiteral("area %1, not %2").arg(mark.area).arg(area)));
    QVERIFY(mark.box.width() >= dot.sides.width() - 0.1);
    QVERIFY(mark.box.width() <= std::ceil(dot.sides.width()) + 1);
    QVERIFY(mark.box.height() >= dot.sides.height() - 0.1);
    QVERIFY(mark.box.height() <= std::ceil(dot.sides.height()) + 1);
    const QPointF off = QRectF(mark.box).center() - dot.middle;
    QVERIFY(std::abs(off.x()) <= 1.0 && std::abs(off.y()) <= 1.0);
    if (dot.isPixel)
        QCOMPARE(mark.box.size(), QSize(1, 1));
}

// A page of a file that has a point for four drawing units, drawn with a pixel for each unit.
constexpr QSize kPage(1024, 780);
constexpr int kPixelsPerInch = 288;

void CheckRendered(const QImage& image, int width)
{
    constexpr double kLargestShift = 1; // each program has its own way to round
    QCOMPARE(image.size(), QSize(4096, 3120));
    for (const QPoint& place : kPlaces) {
        const double side = std::max(width / 2, 1);
        const Mark mark = MarkAt(image, {0.0 + place.x(), kAreaHeight - place.y()},
                                 QSizeF(side, side) + QSizeF(8, 8));
        QVERIFY2(!mark.box.isEmpty(), "no dot");
        QVERIFY(std::abs(mark.box.width() - side) <= kLargestShift + 1);
        QVERIFY(std::abs(mark.box.height() - side) <= kLargestShift + 1);
        QVERIFY(std::abs(std::sqrt(mark.area) - side) <= kLargestShift);
        QVERIFY(mark.area > 0.2);
    }
}

void PaintOn(QPaintDevice& device, int width)
{
    const PlfGraph graph = GraphOf(Dots(width));
    QPainter painter(&device);
    PlfPass pass;
    pass.graph = graph.Bytes();
    PaintGraph(pass, painter);
}

QByteArray Output(const char* program, const QStringList& arguments)
{
    QProcess process;
    process.start(QString::fromLatin1(program), arguments);
    if (!process.waitForFinished(-1) || process.exitCode() != 0)
        QTest::qFail(process.readAllStandardError().constData(), __FILE__, __LINE__);
    return process.readAllStandardOutput();
}

void WidthRows()
{
    QTest::addColumn<int>("width");
    for (const int width : kWidths)
        QTest::addRow("%d", width) << width;
}

class StringSink final : public ByteSink
{
public:
    void Write(const char* bytes, size_t count) override { written.append(bytes, count); }

    std::string written;
};

std::string Eps(int width, bool dots)
{
    const PlfGraph graph = GraphOf(Dots(width));
    PlfPass pass;
    pass.graph = graph.Bytes();
    pass.eps.dots = dots;
    StringSink sink;
    WriteEps(pass, sink);
    return sink.written;
}

} // namespace

class TestDots : public QObject
{
    Q_OBJECT

private slots:
    void images_showSquares_data();
    void images_showSquares();
    void edges_showPixels_data();
    void edges_showPixels();
    void pdf_showsSquares_data() { WidthRows(); }
    void pdf_showsSquares();
    void svg_showsSquares_data() { WidthRows(); }
    void svg_showsSquares();
    void eps_showsSquares_ifAsked_data() { WidthRows(); }
    void eps_showsSquares_ifAsked();
    void turnedPainter_turnsTheSquare();
    void otherEngines_getTheVector();
};

void TestDots::images_showSquares_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("isZoomed");
    for (const int width : kWidths) {
        for (const QSize size : {QSize(1280, 975), QSize(1280, 892), QSize(640, 487),
                                 QSize(500, 1000), QSize(37, 1000), QSize(2048, 1560)}) {
            QTest::addRow("%d in %d x %d", width, size.width(), size.height())
                << width << size << false;
            QTest::addRow("%d in %d x %d, zoomed", width, size.width(), size.height())
                << width << size << true;
        }
    }
}

void TestDots::images_showSquares()
{
    QFETCH(int, width);
    QFETCH(QSize, size);
    QFETCH(bool, isZoomed);
    const PlfGraph graph = GraphOf(Dots(width));
    PlfPass pass;
    pass.graph = graph.Bytes();
    if (isZoomed)
        pass.zoom = MakeRect(1800, 1900, 2211, 2213);
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    PaintGraph(pass, painter);
    painter.end();
    if (isZoomed) {
        CheckMark(image, ExpectedDot(kPlaces[1], width, size, pass.zoom));
        return;
    }
    for (const QPoint& place : kPlaces)
        CheckMark(image, ExpectedDot(place, width, size, {}));
}

void TestDots::edges_showPixels_data()
{
    QTest::addColumn<QPoint>("place");
    QTest::addColumn<int>("width");
    QTest::addColumn<QSize>("size");
    for (const QPoint& place : {QPoint(4095, 1500), QPoint(4094, 70), QPoint(1500, 0), QPoint(0, 1),
                                QPoint(0, 3119), QPoint(4095, 0), QPoint(0, 0)}) {
        for (const int width : {0, 2, 13}) {
            for (const QSize size : {QSize(640, 446), QSize(640, 487), QSize(818, 626),
                                     QSize(1000, 761), QSize(4096, 3120)}) {
                QTest::addRow("%d in %d,%d, %d x %d", width, place.x(), place.y(), size.width(),
                              size.height())
                    << place << width << size;
            }
        }
    }
}

// Also in a picture of two bands, and in the place among lines.
void TestDots::edges_showPixels()
{
    QFETCH(QPoint, place);
    QFETCH(int, width);
    QFETCH(QSize, size);
    const std::string dot = plf::Line(place.x(), place.y(), place.x(), place.y());
    const PlfGraph graph = GraphOf(plf::Start() + plf::Width(width) + plf::Line(90, 90, 99, 90) +
                                   dot + plf::Line(90, 80, 99, 80) + plf::End());
    PlfPass pass;
    pass.graph = graph.Bytes();
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    PaintInBands(pass, painter, {size.height() / 2});
    painter.end();
    const QSizeF scale(size.width() / kAreaWidth, size.height() / kAreaHeight);
    const QPointF point(place.x() * scale.width(), (kAreaHeight - place.y()) * scale.height());
    // A square that is cut at a corner still has a quarter of a pixel.
    const Mark mark = MarkAt(image, point, {2, 2});
    QVERIFY2(mark.area > 0.2, qPrintable(QString::number(mark.area)));
}

void TestDots::pdf_showsSquares()
{
    QFETCH(int, width);
    const QTemporaryDir folder;
    const QString pdf = folder.filePath(QStringLiteral("dots.pdf"));
    {
        QPdfWriter writer(pdf);
        writer.setPageSize(QPageSize(QSizeF(kPage), QPageSize::Point, {}, QPageSize::ExactMatch));
        writer.setPageMargins({});
        PaintOn(writer, width);
    }
    for (const char* reader : {"pdftocairo", "pdftoppm"}) {
        const QString page = folder.filePath(QString::fromLatin1(reader));
        Output(reader, {QStringLiteral("-r"), QString::number(kPixelsPerInch),
                        QStringLiteral("-png"), QStringLiteral("-singlefile"), pdf, page});
        CheckRendered(QImage(page + QStringLiteral(".png")), width);
    }
}

void TestDots::svg_showsSquares()
{
    QFETCH(int, width);
    const QTemporaryDir folder;
    const QString svg = folder.filePath(QStringLiteral("dots.svg"));
    {
        QSvgGenerator generator;
        generator.setFileName(svg);
        generator.setSize(kPage);
        generator.setViewBox(QRect(QPoint(), kPage));
        PaintOn(generator, width);
    }
    const QByteArray png =
        Output("rsvg-convert",
               {QStringLiteral("-w"), QStringLiteral("4096"), QStringLiteral("-h"),
                QStringLiteral("3120"), QStringLiteral("-b"), QStringLiteral("white"), svg});
    CheckRendered(QImage::fromData(png), width);
}

// The file without dots is the one that hosts compare.
void TestDots::eps_showsSquares_ifAsked()
{
    QFETCH(int, width);
    const QTemporaryDir folder;
    const QString eps = folder.filePath(QStringLiteral("dots.eps"));
    const auto rendered = [&](bool dots) {
        QFile file(eps);
        file.open(QIODevice::WriteOnly);
        file.write(QByteArray::fromStdString(Eps(width, dots)));
        file.close();
        return QImage::fromData(Output(
            "gs", {QStringLiteral("-q"), QStringLiteral("-dNOPAUSE"), QStringLiteral("-dBATCH"),
                   QStringLiteral("-dSAFER"), QStringLiteral("-dEPSCrop"),
                   QStringLiteral("-sDEVICE=pnggray"), QStringLiteral("-r%1").arg(kPixelsPerInch),
                   QStringLiteral("-sOutputFile=-"), eps}));
    };
    CheckRendered(rendered(true), 2 * std::max(width, EpsOptions().minLineWidth));
    const QImage without = rendered(false);
    for (const QPoint& place : kPlaces)
        QVERIFY(MarkAt(without, {0.0 + place.x(), kAreaHeight - place.y()}, {9, 9}).box.isEmpty());
}

void TestDots::turnedPainter_turnsTheSquare()
{
    constexpr double kMiddle = 100;
    QImage image(200, 200, QImage::Format_RGB32);
    image.fill(Qt::white);
    const PlfGraph graph =
        GraphOf(plf::Start() + plf::Width(80) + plf::Line(0, 3120, 0, 3120) + plf::End());
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setViewport(0, 0, 4096, 3120);
    painter.translate(kMiddle, kMiddle);
    painter.rotate(45);
    PlfPass pass;
    pass.graph = graph.Bytes();
    pass.fillsBackground = false;
    PaintGraph(pass, painter);
    painter.end();
    const Mark mark = MarkAt(image, {kMiddle, kMiddle}, {90, 90});
    QVERIFY(std::abs(mark.area - 1600) < 16);
    QVERIFY(std::abs(mark.box.width() - 40 * std::sqrt(2)) <= 2);
    QCOMPARE(mark.box.width(), mark.box.height());
}

void TestDots::otherEngines_getTheVector()
{
    Recorder recorder;
    PaintOn(recorder, 16);
    const QStringList operations = recorder.Operations();
    QVERIFY(operations.size() > 3);
    QCOMPARE(operations.sliced(operations.size() - 3),
             (QStringList{QStringLiteral("line 400 620 400 620 #000000 8"),
                          QStringLiteral("line 2001 2117 2001 2117 #000000 8"),
                          QStringLiteral("line 3333 1898 3333 1898 #000000 8")}));
}

QTEST_MAIN(TestDots)
#include "test_dots.moc"
