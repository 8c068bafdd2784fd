// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The same picture everywhere: on the screen, in JPEG and EPS files and on paper.
#include "tests/e2e/jobstest.h"

#include <QTemporaryDir>

#include <algorithm>
#include <cmath>

namespace {

// Points to look at in a picture of the graph, and the color that each has.
struct Sample {
    QPointF at; // in the graph
    QRgb color;
};

double Distance(const QPointF& point, const QLine& line)
{
    const QPointF start = line.p1();
    const QPointF along = line.p2() - line.p1();
    const double part =
        QPointF::dotProduct(point - start, along) / QPointF::dotProduct(along, along);
    const QPointF nearest = start + along * std::clamp(part, 0.0, 1.0);
    return QLineF(point, nearest).length();
}

// On the middle of every stroke, at several places, and away from all of them by more than any
// target's pen reaches. The edges of the part are left out.
QList<Sample> Samples(const QRectF& part, double reach)
{
    constexpr int kPlaces = 12;
    QList<Sample> samples;
    const QRectF inside = part.adjusted(40, 40, -40, -40);
    for (const Stroke& stroke : kStrokes) {
        for (int i = 1; i < kPlaces; ++i) {
            const QPointF at = QLineF(stroke.line).pointAt(double{1} * i / kPlaces);
            if (inside.contains(at))
                samples.append({at, stroke.color});
        }
    }
    for (int column = 0; column <= kPlaces; ++column) {
        for (int row = 0; row <= kPlaces; ++row) {
            const QPointF at(inside.left() + inside.width() * column / kPlaces,
                             inside.top() + inside.height() * row / kPlaces);
            const bool clear =
                Distance(at, kThinLine) > reach &&
                std::all_of(std::begin(kStrokes), std::end(kStrokes),
                            [&](const Stroke& s) { return Distance(at, s.line) > reach; });
            if (clear)
                samples.append({at, kWhite});
        }
    }
    return samples;
}

// The color of the test graph on white that a pixel is nearest to.
QRgb NearestColor(QRgb pixel)
{
    const auto distance = [pixel](QRgb color) {
        return std::abs(qRed(pixel) - qRed(color)) + std::abs(qGreen(pixel) - qGreen(color)) +
               std::abs(qBlue(pixel) - qBlue(color));
    };
    constexpr QRgb kColors[] = {kWhite, kBlack, kGreen, kRed};
    return *std::min_element(std::begin(kColors), std::end(kColors),
                             [&](QRgb a, QRgb b) { return distance(a) < distance(b); });
}

// Looks for the samples in a picture that shows the part of the graph in an area of it. A place may
// be off by a pixel in each direction.
void CheckPicture(const char* what, const QImage& picture, const QRectF& area, const QRectF& part,
                  double reach)
{
    QMap<QRgb, int> seen;
    for (const Sample& sample : Samples(part, reach)) {
        const QPoint at = Mapped(sample.at, area, part).toPoint();
        for (const QPoint off :
             {QPoint(0, 0), QPoint(1, 0), QPoint(-1, 0), QPoint(0, 1), QPoint(0, -1)}) {
            QVERIFY2(picture.rect().contains(at + off), what);
            const QRgb color = NearestColor(picture.pixel(at + off));
            QVERIFY2(color == sample.color, what + QByteArray(" at ") + Describe(sample.at) + ": " +
                                                QByteArray::number(color, 16));
        }
        ++seen[sample.color];
    }
    for (const QRgb color : {kWhite, kBlack, kGreen, kRed})
        QVERIFY2(seen.value(color) >= 3, what);
}

// The EPS as a picture of its bounding box, read by another program.
QImage RenderEps(const QString& eps, int pixelsPerPoint)
{
    const QTemporaryDir folder;
    const QString png = folder.filePath(QStringLiteral("picture.png"));
    RunTool(QStringLiteral("gs"), {QStringLiteral("-q"), QStringLiteral("-dSAFER"),
                                   QStringLiteral("-dBATCH"), QStringLiteral("-dNOPAUSE"),
                                   QStringLiteral("-dEPSCrop"), QStringLiteral("-sDEVICE=png16m"),
                                   QStringLiteral("-r%1").arg(kPointsPerInch * pixelsPerPoint),
                                   QStringLiteral("-sOutputFile=") + png, eps});
    return QImage(png).convertToFormat(QImage::Format_RGB32);
}

} // namespace

class TestSamePicture : public QObject, protected JobsTest
{
    Q_OBJECT

private slots:
    void initTestCase() { BeginAll(); }
    void cleanupTestCase() { EndAll(); }
    void init() { Begin(); }
    void cleanup() { End(); }

    void save_byKeyboard_copiesTheFile();
    void samePicture_everywhere_data();
    void samePicture_everywhere();

private:
    void AwaitEnding(const QString& file, const QByteArray& ending);
};

// The window is there again before the file is complete.
void TestSamePicture::AwaitEnding(const QString& file, const QByteArray& ending)
{
    QVERIFY(Await([&] { return ReadFile(Path(file)).endsWith(ending); }));
}

void TestSamePicture::save_byKeyboard_copiesTheFile()
{
    Open();
    Export(QStringLiteral("ctrl+s"), QStringLiteral("Save as"), QStringLiteral("sub/copy"));
    QVERIFY(viewer->AwaitText(Path(QStringLiteral("sub/copy.plf")) + QStringLiteral(" saved.")));
    QCOMPARE(ReadFile(Path(QStringLiteral("sub/copy.plf"))), TestGraph());
    QCOMPARE(Files(), QStringList(QStringLiteral("sub/copy.plf")));
    Quit();
}

void TestSamePicture::samePicture_everywhere_data()
{
    QTest::addColumn<bool>("zoomed");
    QTest::newRow("whole") << false;
    QTest::newRow("zoomed") << true;
}

// Pens differ: on paper they reach twice as far as in the EPS, and four times as far as on screen.
// With their square ends that is the pen's width times the root of two.
void TestSamePicture::samePicture_everywhere()
{
    constexpr int kPixelsPerInch = 144;
    constexpr int kPixelsPerPoint = 2;
    constexpr double kEpsScale = 0.25;
    QFETCH(bool, zoomed);
    Configure("printer_paper_type=2\n");
    Open({QStringLiteral("-p")});
    QRectF part = kWholeGraph;
    if (zoomed) {
        const QRect selection(80, 60, 400, 330);
        part = PartUnder(selection, Canvas());
        Zoom(selection);
    }
    const double reach = kPen * kGraphWidth / part.width() * M_SQRT2 + 30;

    const QImage screen = GrabScreen().copy(Canvas());
    CheckPicture("screen", screen, QRectF(screen.rect()), part, reach);

    Export(QStringLiteral("alt+f e j"), QStringLiteral("Export JPEG image"), QStringLiteral("a"));
    AwaitEnding(QStringLiteral("a.jpg"), "\xff\xd9");
    const QImage jpeg(Path(QStringLiteral("a.jpg")));
    QCOMPARE(jpeg.size(), screen.size());
    CheckPicture("JPEG", jpeg, QRectF(jpeg.rect()), part, reach);

    Export(QStringLiteral("alt+f e e"), QStringLiteral("Export EPS file"), QStringLiteral("a"));
    AwaitEnding(QStringLiteral("a.eps"), "\nstroke\n");
    const QImage eps = RenderEps(Path(QStringLiteral("a.eps")), kPixelsPerPoint);
    // The box that is shown lies on whole points.
    const QPointF corner(std::trunc(part.left() * kEpsScale),
                         std::trunc((kGraphHeight - part.top()) * kEpsScale));
    const QPointF origin((part.left() * kEpsScale - corner.x()) * kPixelsPerPoint,
                         (corner.y() - (kGraphHeight - part.top()) * kEpsScale) * kPixelsPerPoint);
    CheckPicture("EPS", eps, QRectF(origin, part.size() * kEpsScale * kPixelsPerPoint), part,
                 reach);

    TakePage(); // of the command line, for its paper
    PressKeys(QStringLiteral("ctrl+p"));
    QVERIFY(viewer->AwaitWindow(kPrintTitle));
    PressKeys(QStringLiteral("Return"));
    CheckPage(TakePage(), kA4Landscape, PrintedGraph(kA4Landscape), part);
    const QImage paper = RenderPage(server->Page(jobsBefore), kPixelsPerInch);
    const QRectF area = PrintedGraph(kA4Landscape);
    const double pixel = kPixelsPerInch / kPointsPerInch;
    CheckPicture("paper", paper, QRectF(area.topLeft() * pixel, area.size() * pixel), part, reach);

    QVERIFY(viewer->AwaitWindow(kGraphTitle));
    Quit();
}

QTEST_MAIN(TestSamePicture)
#include "test_samepicture.moc"
