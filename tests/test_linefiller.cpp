// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Compares wide lines that are filled here with those that QPainter draws, pixel for pixel.
#include "meta/fill/linefiller.h"
#include "meta/fill/paintcheck.h"
#include "tests/kit/plainpainter.h"
#include "tests/kit/sanitized.h"

#include <QImage>
#include <QLine>
#include <QPainter>
#include <QTest>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>

namespace {

// The rows of singleLines_equalPainters() draw a million together.
constexpr int kLinesInRow = kSanitized ? 2'000 : 46'000;
constexpr int kLinesInImage = 20;
constexpr int kLinesInPicture = kSanitized ? 1'000 : 20'000;

constexpr std::array kFormats = {QImage::Format_RGB32, QImage::Format_ARGB32_Premultiplied};
constexpr std::array kPens = {1, 2, 4, 8, 16, 40, 80, 200};
constexpr double kGraphWidth = 4096;
constexpr double kGraphHeight = 3120;

// Everything that is random here; the same in every run.
class Dice
{
public:
    explicit Dice(unsigned seed) : random(seed) {}

    int Between(int low, int high)
    {
        return low + static_cast<int>(random() % static_cast<unsigned>(high - low + 1));
    }
    bool OneOf(int count) { return random() % static_cast<unsigned>(count) == 0; }
    double Fraction() { return static_cast<double>(random()) / 0x1p32; }
    QRgb Color() { return static_cast<QRgb>(random()); }
    template <typename List> auto Pick(const List& list) { return list[random() % list.size()]; }

private:
    std::mt19937 random;
};

QImage AnyImage(QSize size, QImage::Format format, Dice& dice)
{
    QImage image(size, format);
    for (int y = 0; y < size.height(); ++y) {
        auto* const row = reinterpret_cast<QRgb*>(image.scanLine(y));
        std::generate_n(row, size.width(), [&] {
            return format == QImage::Format_RGB32 ? dice.Color() | 0xFF000000
                                                  : qPremultiply(dice.Color());
        });
    }
    return image;
}

QRect AnyPart(QSize size, Dice& dice)
{
    const int left = dice.Between(0, size.width() - 1);
    const int top = dice.Between(0, size.height() - 1);
    return {left, top, dice.Between(1, size.width() - left), dice.Between(1, size.height() - top)};
}

QPen AnyPen(Dice& dice)
{
    return {QColor(dice.Color() | 0xFF000000), static_cast<qreal>(dice.Pick(kPens))};
}

QPoint ToUnits(const QTransform& toDevice, QPointF pixels)
{
    return toDevice.inverted().map(pixels).toPoint();
}

// In pixels, how far the ends of lines may lie from an image.
constexpr std::array kReaches = {0, 0, 0, 20, 20, 500};
constexpr int kFarReach = 100'000; // seldom: QPainter needs much time for such lines

QPoint AnyPoint(const QTransform& toDevice, QSize size, Dice& dice)
{
    const int reach = dice.OneOf(500) ? kFarReach : dice.Pick(kReaches);
    const QPointF pixels((size.width() + 2 * reach) * dice.Fraction() - reach,
                         (size.height() + 2 * reach) * dice.Fraction() - reach);
    return ToUnits(toDevice, pixels);
}

// Of any length and of a few units; horizontal and vertical ones; some of no length.
QLine AnyLine(const QTransform& toDevice, QSize size, Dice& dice)
{
    const QPoint start = AnyPoint(toDevice, size, dice);
    QPoint end = AnyPoint(toDevice, size, dice);
    if (dice.OneOf(3))
        end = start + QPoint(dice.Between(-9, 9), dice.Between(-9, 9));
    if (dice.OneOf(8))
        end.setX(start.x());
    if (dice.OneOf(8))
        end.setY(start.y());
    if (dice.OneOf(8))
        end = start;
    return dice.OneOf(2) ? QLine(start, end) : QLine(end, start);
}

void SetUp(QPainter& painter, const QTransform& toDevice)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setTransform(toDevice);
}

bool Fill(LineFiller& filler, const QLine& line)
{
    return filler.Line(line.x1(), line.y1(), line.x2(), line.y2());
}

QString Describe(const QTransform& toDevice, const QImage& image, const QRect& clip,
                 const QPen& pen, const QLine& line)
{
    QString text;
    QDebug(&text) << image.size() << clip << toDevice << pen.width() << line;
    return text;
}

// Lines on one image, each compared. Returns what differed, or nothing.
QString CompareLines(const QTransform& toDevice, QImage::Format format, Dice& dice)
{
    const QSize size(dice.Between(1, 60), dice.Between(1, 50));
    QImage filled = AnyImage(size, format, dice);
    QImage painted = filled.copy();
    const QRect clip = dice.OneOf(2) ? AnyPart(size, dice) : filled.rect();
    QPainter painter(&painted);
    painter.setClipRect(clip);
    SetUp(painter, toDevice);
    LineFiller filler(filled, clip, toDevice);
    for (int i = 0; i < kLinesInImage; ++i) {
        const QPen pen = AnyPen(dice);
        const QLine line = AnyLine(toDevice, size, dice);
        filler.SetPen(pen);
        painter.setPen(pen);
        PaintVector(painter, line);
        if (!Fill(filler, line) || filled != painted)
            return Describe(toDevice, filled, clip, pen, line);
    }
    return {};
}

QTransform AnyShift(const QTransform& toDevice, Dice& dice)
{
    const double units = dice.OneOf(2) ? dice.Between(-3000, 3000) : 0;
    const double pixels = dice.OneOf(2) ? dice.Between(-6400, 6400) / 128.0 : 0;
    return toDevice * QTransform::fromTranslate(units * toDevice.m11() + pixels,
                                                units * toDevice.m22() - pixels);
}

// What a million vectors of a graph look like to the one who draws them: each begins where the
// last one ended.
QList<QLine> Walk(int step, Dice& dice)
{
    QList<QLine> lines;
    QPoint at(dice.Between(0, 4095), dice.Between(0, 3119));
    for (int i = 0; i < kLinesInPicture; ++i) {
        const QPoint next(std::clamp(at.x() + dice.Between(-step, step), 0, 4095),
                          std::clamp(at.y() + dice.Between(-step, step), 0, 3119));
        lines.append({at, next});
        at = next;
    }
    return lines;
}

QTransform ToImage(QSize size)
{
    return QTransform::fromScale(size.width() / kGraphWidth, size.height() / kGraphHeight);
}

QImage PaintPlainly(const QList<QLine>& lines, QSize size, const QPen& pen)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::darkYellow);
    QPainter painter(&image);
    SetUp(painter, ToImage(size));
    painter.setPen(pen);
    for (const QLine& line : lines)
        PaintVector(painter, line);
    return image;
}

QImage FillInBands(const QList<QLine>& lines, QSize size, const QPen& pen, int bands)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::darkYellow);
    for (int i = 0; i < bands; ++i) {
        const int top = size.height() * i / bands;
        const int bottom = size.height() * (i + 1) / bands;
        LineFiller filler(image, QRect(0, top, size.width(), bottom - top), ToImage(size));
        filler.SetPen(pen);
        for (const QLine& line : lines)
            Fill(filler, line);
    }
    return image;
}

} // namespace

class TestLineFiller : public QObject
{
    Q_OBJECT

private slots:
    void check_agreesWithThisQt();
    void singleLines_equalPainters_data();
    void singleLines_equalPainters();
    void pictures_equalPainters_data();
    void pictures_equalPainters();
    void canFill_onlyWhatIsEqual_data();
    void canFill_onlyWhatIsEqual();
    void canFill_onlyScalesThatDiffer_data();
    void canFill_onlyScalesThatDiffer();
    void canFill_onlyTwoFormats();
    void farLines_areRefused();
    void farLines_thatCoverAll_orNothing_equalPainters_data();
    void farLines_thatCoverAll_orNothing_equalPainters();
    void farLines_ofAnotherColor_areDrawn();
};

void TestLineFiller::check_agreesWithThisQt()
{
    QVERIFY(FillsLikePainter());
}

void TestLineFiller::singleLines_equalPainters_data()
{
    QTest::addColumn<double>("across"); // pixels for a unit
    QTest::addColumn<double>("down");
    QTest::addColumn<int>("format");
    struct Shape {
        const char* name;
        double across;
        double down;
    };
    constexpr Shape kShapes[] = {{"window", 640 / kGraphWidth, 446 / kGraphHeight},
                                 {"large window", 1280 / kGraphWidth, 892 / kGraphHeight},
                                 {"narrow and high", 37 / kGraphWidth, 1000 / kGraphHeight},
                                 {"one to two", 0.25, 0.5},
                                 {"two to one", 1, 0.5},
                                 {"on the middle between roundings", 3 / 128.0, 5 / 128.0},
                                 {"upside down", 0.31, -0.17},
                                 {"mirrored", -0.31, 0.17},
                                 {"turned round", -1.7, -2.9},
                                 {"zoom 3", 3 * 640 / kGraphWidth, 3 * 446 / kGraphHeight},
                                 {"zoom 50", 50 * 640 / kGraphWidth, 50 * 446 / kGraphHeight}};
    for (const Shape& shape : kShapes) {
        for (const QImage::Format format : kFormats)
            QTest::addRow("%s, format %d", shape.name, format)
                << shape.across << shape.down << int{format};
    }
}

void TestLineFiller::singleLines_equalPainters()
{
    QFETCH(double, across);
    QFETCH(double, down);
    QFETCH(int, format);
    Dice dice(static_cast<unsigned>(format));
    for (int i = 0; i < kLinesInRow / kLinesInImage; ++i) {
        const QTransform toDevice = AnyShift(QTransform::fromScale(across, down), dice);
        const QString difference = CompareLines(toDevice, QImage::Format(format), dice);
        QVERIFY2(difference.isEmpty(), qPrintable(difference));
    }
}

void TestLineFiller::pictures_equalPainters_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("step"); // units
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("bands");
    QTest::newRow("short, thin") << QSize(640, 446) << 8 << 2 << 1;
    QTest::newRow("short, wide") << QSize(640, 446) << 8 << 40 << 1;
    QTest::newRow("long") << QSize(640, 446) << 600 << 8 << 2;
    QTest::newRow("wide in a large window") << QSize(1280, 892) << 60 << 80 << 3;
    QTest::newRow("narrow and high") << QSize(37, 1000) << 300 << 16 << 8;
    QTest::newRow("bands of a row") << QSize(200, 64) << 30 << 8 << 64;
    // A row of it is longer than what is kept for the rows of smaller images.
    QTest::newRow("a wide image") << QSize(9000, 40) << 4000 << 80 << 2;
}

void TestLineFiller::pictures_equalPainters()
{
    QFETCH(QSize, size);
    QFETCH(int, step);
    QFETCH(int, width);
    QFETCH(int, bands);
    Dice dice(1);
    QList<QLine> lines = Walk(step, dice);
    if (step > 500)
        lines.resize(lines.size() / 10);
    const QPen pen(Qt::darkCyan, width);
    QVERIFY(FillInBands(lines, size, pen, bands) == PaintPlainly(lines, size, pen));
}

void TestLineFiller::canFill_onlyWhatIsEqual_data()
{
    QTest::addColumn<QPen>("pen");
    QTest::addColumn<bool>("can");
    const QPen wide(Qt::red, 1);
    const auto with = [&wide](auto change) {
        QPen pen = wide;
        change(pen);
        return pen;
    };
    QTest::newRow("one unit wide") << wide << true;
    QTest::newRow("wide") << with([](QPen& pen) { pen.setWidth(80); }) << true;
    QTest::newRow("width 0") << with([](QPen& pen) { pen.setWidth(0); }) << false;
    QTest::newRow("in pixels") << with([](QPen& pen) { pen.setCosmetic(true); }) << false;
    QTest::newRow("round ends") << with([](QPen& pen) { pen.setCapStyle(Qt::RoundCap); }) << false;
    QTest::newRow("flat ends") << with([](QPen& pen) { pen.setCapStyle(Qt::FlatCap); }) << false;
    QTest::newRow("dashed") << with([](QPen& pen) { pen.setStyle(Qt::DashLine); }) << false;
    QTest::newRow("none") << with([](QPen& pen) { pen.setStyle(Qt::NoPen); }) << false;
    QTest::newRow("translucent") << with([](QPen& pen) { pen.setColor(QColor(9, 9, 9, 254)); })
                                 << false;
    QTest::newRow("pattern") << with([](QPen& pen) { pen.setBrush(Qt::Dense4Pattern); }) << false;
}

void TestLineFiller::canFill_onlyWhatIsEqual()
{
    QFETCH(QPen, pen);
    QFETCH(bool, can);
    QCOMPARE(LineFiller::CanFill(pen, QTransform::fromScale(1, 2), QImage::Format_RGB32), can);
}

void TestLineFiller::canFill_onlyScalesThatDiffer_data()
{
    QTest::addColumn<QTransform>("toDevice");
    QTest::addColumn<bool>("can");
    QTest::newRow("different") << QTransform::fromScale(1, 1.000001) << true;
    QTest::newRow("shifted") << QTransform(2, 0, 0, -3, 1e6, -1e6) << true;
    QTest::newRow("equal") << QTransform::fromScale(0.7, 0.7) << false;
    QTest::newRow("equal but for a sign") << QTransform::fromScale(0.7, -0.7) << false;
    QTest::newRow("none") << QTransform() << false;
    QTest::newRow("turned") << QTransform::fromScale(1, 2).rotate(90) << false;
    QTest::newRow("flat") << QTransform::fromScale(1, 0) << false;
    QTest::newRow("shifted far") << QTransform(2, 0, 0, 3, 1e9, 0) << false;
    QTest::newRow("infinite") << QTransform(2, 0, 0, 3, INFINITY, 0) << false;
    QTest::newRow("not a number") << QTransform(2, 0, 0, 3, 0, NAN) << false;
}

void TestLineFiller::canFill_onlyScalesThatDiffer()
{
    QFETCH(QTransform, toDevice);
    QFETCH(bool, can);
    QCOMPARE(LineFiller::CanFill(QPen(Qt::red, 3), toDevice, QImage::Format_RGB32), can);
}

void TestLineFiller::canFill_onlyTwoFormats()
{
    for (int format = 0; format < QImage::NImageFormats; ++format) {
        const bool can = std::find(kFormats.begin(), kFormats.end(), format) != kFormats.end();
        QCOMPARE(LineFiller::CanFill(QPen(Qt::red, 3), QTransform::fromScale(1, 2),
                                     QImage::Format(format)),
                 can);
    }
}

void TestLineFiller::farLines_areRefused()
{
    constexpr int kMost = std::numeric_limits<int>::max();
    constexpr int kLeast = std::numeric_limits<int>::min();
    constexpr int kFar = 1 << 20;
    QImage image(30, 20, QImage::Format_RGB32);
    image.fill(Qt::white);
    const QImage empty = image.copy();
    LineFiller filler(image, image.rect(), QTransform::fromScale(1, 0.5));
    filler.SetPen(QPen(Qt::red, 4));
    for (const QLine& line : {QLine(10, 10, kFar, 10), QLine(10, 10, 10, -2 * kFar),
                              QLine(-kFar, 7, 3, 4), QLine(kLeast, kLeast, kMost, kMost)}) {
        QVERIFY(!Fill(filler, line));
        QVERIFY(image == empty);
    }
    QVERIFY(Fill(filler, QLine(kMost, kLeast, kMost, kMost)));
    QVERIFY(image == empty);
    QVERIFY(Fill(filler, QLine(10, 10, kFar - 10, 10)));
    QVERIFY(image != empty);
}

// As when a part of a graph of the size of a pixel is shown.
const QTransform kHugely(100, 0, 0, 64, -204'000, -99'000);
constexpr int kHugePen = 25'600;

void TestLineFiller::farLines_thatCoverAll_orNothing_equalPainters_data()
{
    QTest::addColumn<QLine>("line");
    QTest::addColumn<int>("width");
    QTest::addColumn<bool>("covers");
    QTest::newRow("short") << QLine(2000, 1500, 2010, 1507) << kHugePen << true;
    QTest::newRow("long") << QLine(0, 0, 4095, 3119) << kHugePen << true;
    QTest::newRow("flat") << QLine(3000, 1540, 100, 1540) << kHugePen << true;
    QTest::newRow("beside") << QLine(-20'000, -20'000, 20'000, -20'000) << kHugePen << false;
    QTest::newRow("before") << QLine(20'000, 1540, 30'000, 1540) << kHugePen / 2 << false;
}

void TestLineFiller::farLines_thatCoverAll_orNothing_equalPainters()
{
    QFETCH(QLine, line);
    QFETCH(int, width);
    QFETCH(bool, covers);
    QImage filled(30, 20, QImage::Format_RGB32);
    filled.fill(Qt::yellow);
    QImage painted = filled.copy();
    const QPen pen(Qt::darkCyan, width);
    LineFiller filler(filled, filled.rect().adjusted(-7, -9, 11, 13), kHugely);
    filler.SetPen(pen);
    QVERIFY(Fill(filler, line));
    QPainter painter(&painted);
    SetUp(painter, kHugely);
    painter.setPen(pen);
    PaintVector(painter, line);
    QVERIFY(filled == painted);
    QCOMPARE(filled.pixelColor(3, 4), QColor(covers ? Qt::darkCyan : Qt::yellow));
}

void TestLineFiller::farLines_ofAnotherColor_areDrawn()
{
    QImage image(30, 20, QImage::Format_RGB32);
    LineFiller filler(image, image.rect(), kHugely);
    for (const Qt::GlobalColor color : {Qt::red, Qt::blue, Qt::red}) {
        filler.SetPen(QPen(color, kHugePen));
        for (int i = 0; i < 3; ++i)
            QVERIFY(Fill(filler, QLine(2000, 1500, 2010, 1507)));
        QCOMPARE(image.pixelColor(29, 19), QColor(color));
        filler.SetPen(QPen(Qt::green, 1));
        QVERIFY(Fill(filler, QLine(2039, 1547, 2042, 1547)));
        QCOMPARE(image.pixelColor(15, 10), QColor(Qt::green));
    }
    image.fill(Qt::white);
    filler.ForgetPixels();
    filler.SetPen(QPen(Qt::red, kHugePen));
    QVERIFY(Fill(filler, QLine(2000, 1500, 2010, 1507)));
    QCOMPARE(image.pixelColor(0, 0), QColor(Qt::red));
}

QTEST_MAIN(TestLineFiller)
#include "test_linefiller.moc"
