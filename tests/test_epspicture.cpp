// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The EPS of a graph, made a picture by Ghostscript, against the same graph painted: each must have
// its lines where the other has them, in the same colors. Where a line ends and how its edge falls
// on the pixels is each program's own, so a line may be kNear pixels away from its counterpart.
#include "app/state/globals.h"
#include "meta/palette.h"
#include "meta/plfbuffer.h"
#include "meta/plfmeta.h"
#include "tests/kit/epsfile.h"
#include "tests/kit/files.h"
#include "tests/kit/graph.h"
#include "tests/kit/plf.h"

#include <QColorSpace>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <string>

namespace {

constexpr int kNear = 2; // pixels, in both directions
// At the picture's edge, where lines are cut off, this many pixels are not compared.
constexpr int kEdge = 4;
static_assert(kEdge >= kNear);
constexpr QSize kSize(1024, 780);
constexpr double kPointsPerInch = 72.0;
// An EPS line is as many units wide as the file has it, a line on screen half as many.
constexpr double kScreenWidths = 2.0;

std::string Move(double x, double y)
{
    return plf::Move(static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y)));
}

std::string Draw(double x, double y)
{
    return plf::Draw(static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y)));
}

// Gives line index n the color of palette index n.
std::string ColorMap()
{
    constexpr int kHues[] = {0, 0, 240, 300, 120, 60, 150, 0, 0, 330, 210, 270, 90, 30, 180};
    std::string map;
    for (int index = 1; index < kWhite; ++index) {
        const bool grey = index == 7 || index == 8;
        map +=
            plf::Command("TG", {1, 4, index, kHues[index], index == 8 ? 20 : 50, grey ? 0 : 100});
    }
    return map + plf::Command("TG", {1, 4, kWhite, 0, 100, 0});
}

// A fan of lines in every direction, each color its own spoke, with an arc of joined vectors around
// and a few widths. No two lines of different colors run beside each other.
std::string Fan(double x, double y)
{
    constexpr double kStep = 2.0 * M_PI / kWhite;
    std::string fan;
    for (int index = 0; index < kWhite; ++index) {
        const double angle = kStep * index + 0.1;
        fan += plf::LineIndex(index) + plf::Width(index % 3 * 5);
        fan += Move(x + 200.0 * std::cos(angle), y + 200.0 * std::sin(angle));
        fan += Draw(x + 600.0 * std::cos(angle), y + 600.0 * std::sin(angle));
        fan += Move(x + 660.0 * std::cos(angle - 0.15), y + 660.0 * std::sin(angle - 0.15));
        for (int step = -2; step <= 3; ++step) {
            const double turned = angle + 0.05 * step;
            fan += Draw(x + 660.0 * std::cos(turned), y + 660.0 * std::sin(turned));
        }
    }
    return fan;
}

QByteArray Fans()
{
    return QByteArray::fromStdString(plf::Start() + ColorMap() + Fan(1000, 1500) + Fan(3000, 1700) +
                                     plf::End());
}

// The same with a background and a line that is white on it.
QByteArray FansOnBlack()
{
    const std::string white = plf::LineIndex(kWhite) + Move(300, 300) + Draw(3800, 350);
    return QByteArray::fromStdString(plf::Start() + std::string(kBackgroundScanStart, '\r') +
                                     "\x1bRA10\x1bRA1 0" + ColorMap() + Fan(1000, 1500) +
                                     Fan(3000, 1700) + white + plf::End());
}

// Texts are painted but never written. As a font's name, a text is read in the same way.
QByteArray WithoutTexts(QByteArray file)
{
    return file.replace("\x1bZD", "\x1bZF").replace(";ZD", ";ZF");
}

// With the crop the page is the bounding box, and is shown although the file does not ask for it.
QImage Rendered(const Pass& pass, double pixelsPerPoint, bool smooth)
{
    const QTemporaryDir folder;
    const QString eps = folder.filePath(QStringLiteral("graph.eps"));
    const QString png = folder.filePath(QStringLiteral("graph.png"));
    WriteEps(eps, pass);
    QProcess gs;
    gs.start(QStringLiteral("gs"), {QStringLiteral("-q"), QStringLiteral("-dSAFER"),
                                    QStringLiteral("-dBATCH"), QStringLiteral("-dNOPAUSE"),
                                    QStringLiteral("-dEPSCrop"), QStringLiteral("-sDEVICE=png16m"),
                                    QStringLiteral("-r%1").arg(kPointsPerInch * pixelsPerPoint),
                                    QStringLiteral("-dGraphicsAlphaBits=%1").arg(smooth ? 4 : 1),
                                    QStringLiteral("-sOutputFile=") + png, eps});
    if (!gs.waitForFinished() || gs.exitCode() != 0)
        qWarning("gs: %s %s", qPrintable(gs.errorString()), gs.readAll().constData());
    QImage picture = QImage(png).convertToFormat(QImage::Format_RGB32);
    picture.setColorSpace({}); // two pictures with different color spaces are never equal
    return picture;
}

QImage Painted(Pass pass, bool smooth)
{
    gbBkClrWhite = pass.whiteBackground;
    QImage image(kSize, QImage::Format_RGB32);
    image.fill(Qt::magenta);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing, smooth);
    Rect full = kWholeArea;
    char name[] = "test.plf";
    CPlfMeta meta(name, &painter, nullptr, kScreenWidths * pass.widthScale, 0);
    meta.DrawPlf(&pass.zoom, &full);
    return image;
}

using PixelTest = std::function<bool(QRgb)>;

bool IsNear(const QImage& picture, int x, int y, const PixelTest& test)
{
    const QRect around = QRect(x - kNear, y - kNear, 2 * kNear + 1, 2 * kNear + 1);
    for (int row = around.top(); row <= around.bottom(); ++row) {
        for (int column = around.left(); column <= around.right(); ++column) {
            if (test(picture.pixel(column, row)))
                return true;
        }
    }
    return false;
}

struct Count {
    int pixels = 0; // that pass the test
    int strays = 0; // of them, without one near them in the other picture that passes its own
};

Count CountStrays(const QImage& picture, const PixelTest& test, const QImage& other,
                  const PixelTest& otherTest)
{
    Count count;
    for (int y = kEdge; y < picture.height() - kEdge; ++y) {
        for (int x = kEdge; x < picture.width() - kEdge; ++x) {
            if (!test(picture.pixel(x, y)))
                continue;
            ++count.pixels;
            count.strays += IsNear(other, x, y, otherTest) ? 0 : 1;
        }
    }
    return count;
}

// How far apart two colors are, 0..255.
int Difference(QRgb a, QRgb b)
{
    return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                     std::abs(qBlue(a) - qBlue(b))});
}

// Pixels that are at least that far from the paper.
PixelTest IsOff(QRgb paper, int difference)
{
    return [=](QRgb pixel) { return Difference(pixel, paper) >= difference; };
}

// Half is 127 here and 127.5 there.
PixelTest IsColor(QRgb color)
{
    return [=](QRgb pixel) { return Difference(pixel, color) <= 1; };
}

QByteArray Sample(const char* name)
{
    return ReadFile(QFINDTESTDATA("../samples/") + QString::fromLatin1(name));
}

const Rect kWhole = {};
// A quarter of the graph; the picture shows it at twice the size.
const Rect kPart = MakeRect(1024, 780, 3072, 2340);

double PixelsPerPoint(const Rect& zoom)
{
    return zoom.width > 0 ? 2.0 : 1.0;
}

} // namespace

class TestEpsPicture : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initGraphics(); }
    void init() { ResetEpsOptions(); }
    void cleanup() { FreePlfBuffer(); }

    void lines_areWhereTheyArePainted_data();
    void lines_areWhereTheyArePainted();
    void colors_areThoseThatArePainted_data();
    void colors_areThoseThatArePainted();
    void filledBackground_coversThePage_data();
    void filledBackground_coversThePage();
};

void TestEpsPicture::lines_areWhereTheyArePainted_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<Rect>("zoom");
    QTest::newRow("fans") << Fans() << kWhole;
    QTest::newRow("fans, zoomed") << Fans() << kPart;
    QTest::newRow("plate") << Sample("plate.plf") << kWhole;
    QTest::newRow("plate, zoomed") << Sample("plate.plf") << kPart;
    QTest::newRow("portrait") << Sample("portrait.plf") << kWhole;
    QTest::newRow("portrait, zoomed") << Sample("portrait.plf") << kPart;
}

// A line's core in one picture needs no more than its trace in the other. At a sharp turn the EPS
// has a long corner and the painting none, which is what the few strays are for.
void TestEpsPicture::lines_areWhereTheyArePainted()
{
    constexpr int kCore = 100;
    constexpr int kTrace = 40;
    constexpr int kPixelsPerStray = 1000;
    QFETCH(QByteArray, file);
    QFETCH(Rect, zoom);
    LoadBytes(WithoutTexts(file));
    const QImage rendered = Rendered({.zoom = zoom}, PixelsPerPoint(zoom), true);
    const QImage painted = Painted({.zoom = zoom}, true);
    QCOMPARE(rendered.size(), painted.size());
    const QRgb paper = PaletteColor(kWhite).rgb();
    const PixelTest core = IsOff(paper, kCore);
    const PixelTest trace = IsOff(paper, kTrace);
    const Count tooMuch = CountStrays(rendered, core, painted, trace);
    const Count missing = CountStrays(painted, core, rendered, trace);
    QVERIFY(tooMuch.pixels > 5 * kPixelsPerStray && missing.pixels > 5 * kPixelsPerStray);
    QVERIFY2(tooMuch.strays <= tooMuch.pixels / kPixelsPerStray,
             qPrintable(QString::number(tooMuch.strays)));
    QVERIFY2(missing.strays <= missing.pixels / kPixelsPerStray,
             qPrintable(QString::number(missing.strays)));
}

void TestEpsPicture::colors_areThoseThatArePainted_data()
{
    QTest::addColumn<Pass>("pass");
    const auto rows = [](const char* name, const Rect& zoom) {
        QTest::addRow("on white, %s", name) << Pass{.zoom = zoom};
        QTest::addRow("on black, %s", name) << Pass{.whiteBackground = false, .zoom = zoom};
    };
    rows("whole", kWhole);
    rows("zoomed", kPart);
}

// Without smoothing every pixel has the color of one line.
void TestEpsPicture::colors_areThoseThatArePainted()
{
    QFETCH(Pass, pass);
    gfEpsUseBkClr = pass.whiteBackground ? 0 : 1;
    LoadBytes(FansOnBlack());
    const QImage rendered = Rendered(pass, PixelsPerPoint(pass.zoom), false);
    const QImage painted = Painted(pass, false);
    QCOMPARE(rendered.size(), painted.size());
    const int paper = pass.whiteBackground ? kWhite : 0;
    for (int index = 0; index < kPaletteSize; ++index) {
        if (index == paper)
            continue;
        const PixelTest color = IsColor(PaletteColor(index).rgb());
        const Count tooMuch = CountStrays(rendered, color, painted, color);
        const Count missing = CountStrays(painted, color, rendered, color);
        const bool isDrawn = pass.zoom.width > 0 || missing.pixels > 100;
        const QByteArray strays = "color " + QByteArray::number(index) + ": " +
                                  QByteArray::number(tooMuch.strays) + " too much, " +
                                  QByteArray::number(missing.strays) + " missing";
        QVERIFY2(isDrawn && tooMuch.strays == 0 && missing.strays == 0, strays.constData());
    }
}

void TestEpsPicture::filledBackground_coversThePage_data()
{
    QTest::addColumn<Rect>("zoom");
    QTest::newRow("whole") << kWhole;
    QTest::newRow("zoomed") << kPart;
}

void TestEpsPicture::filledBackground_coversThePage()
{
    QFETCH(Rect, zoom);
    gfEpsUseBkClr = 1;
    gdwBackClrEPS = 9;
    LoadBytes(PlfHeader());
    const QImage rendered = Rendered({.zoom = zoom}, PixelsPerPoint(zoom), false);
    QImage blue(kSize, QImage::Format_RGB32);
    blue.fill(PaletteColor(9));
    QCOMPARE(rendered, blue);
}

QTEST_MAIN(TestEpsPicture)
#include "test_epspicture.moc"
