// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Lines that are left out because all around them has their color: the picture is the one that
// QPainter draws, and where much is full, most are left out.
#include "meta/fill/blend.h"
#include "meta/fill/fulltiles.h"
#include "meta/fill/linefiller.h"
#include "tests/kit/plainpainter.h"
#include "tests/kit/sanitized.h"

#include <QImage>
#include <QLine>
#include <QPainter>
#include <QTest>

#include <array>
#include <random>

namespace {

constexpr int kPictures = kSanitized ? 6 : 60;
constexpr int kLines = kSanitized ? 3000 : 12000; // enough for a rest and a trial after it
constexpr QSize kSize(61, 43);                    // the last tiles are cut
const QTransform kToDevice = QTransform::fromScale(0.31, 0.17);

// 152 and 169 laid over themselves are rounded to another color.
constexpr std::array kColors = {0xFF000000, 0xFFFFFFFF, 0xFFFF0000,
                                0xFF0080FF, 0xFF980000, 0xFFA9A998};

class Dice
{
public:
    explicit Dice(unsigned seed) : random(seed) {}

    int Below(int end) { return static_cast<int>(random() % static_cast<unsigned>(end)); }
    QPoint Place() { return {Below(240) - 20, Below(290) - 20}; }
    QLine Line()
    {
        const QPoint start = Place();
        if (Below(10) == 0)
            return {start, start};
        return {start, Below(20) == 0 ? Place() : start + QPoint(Below(15) - 7, Below(15) - 7)};
    }

private:
    std::mt19937 random;
};

QImage White()
{
    QImage image(kSize, QImage::Format_RGB32);
    image.fill(Qt::white);
    return image;
}

void SetUp(QPainter& painter, const QRect& clip)
{
    painter.setClipRect(clip);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setTransform(kToDevice);
}

// What is not a line of the filler, in a color of its own.
void PaintText(QPainter& painter)
{
    painter.save();
    painter.setPen(Qt::green);
    painter.drawText(QPoint(30, 120), QStringLiteral("text"));
    painter.restore();
}

void PaintText(QImage& image, const QRect& clip)
{
    QPainter painter(&image);
    SetUp(painter, clip);
    PaintText(painter);
}

// The lines of one color follow each other for a while, or change from one to the next.
struct Drawing {
    int colorsFor; // so many lines
    int colors;    // of them
    bool hasTexts;
};

void CompareWithPainter(const Drawing& drawing, const QRect& clip, Dice& dice)
{
    QImage filled = White();
    QImage painted = White();
    LineFiller filler(filled, clip, kToDevice);
    QPainter painter(&painted);
    SetUp(painter, clip);
    for (int i = 0; i < kLines; ++i) {
        if (i % drawing.colorsFor == 0) {
            const QPen pen(QColor(kColors[static_cast<size_t>(dice.Below(drawing.colors))]),
                           1 + dice.Below(60));
            filler.SetPen(pen);
            painter.setPen(pen);
        }
        if (drawing.hasTexts && dice.Below(300) == 0) {
            PaintText(filled, clip);
            PaintText(painter);
            filler.ForgetPixels();
        }
        const QLine line = dice.Line();
        QVERIFY(filler.Line(line.x1(), line.y1(), line.x2(), line.y2()));
        PaintVector(painter, line);
        // Later lines cover what was wrong.
        if (i % 50 == 0)
            QVERIFY2(filled == painted, qPrintable(QString::number(i)));
    }
}

// Draws many short lines of a color, and returns how many of them were left out.
int CountHidden(FullTiles& tiles, LineFiller& filler, int lines)
{
    Dice dice(1);
    int hidden = 0;
    for (int i = 0; i < lines; ++i) {
        const QLine line = dice.Line();
        if (tiles.Hides(line.x1(), line.y1(), line.x2(), line.y2())) {
            ++hidden;
            continue;
        }
        filler.Line(line.x1(), line.y1(), line.x2(), line.y2());
        tiles.Draw();
    }
    return hidden;
}

} // namespace

class TestFullTiles : public QObject
{
    Q_OBJECT

private slots:
    void pictures_equalPainters_data();
    void pictures_equalPainters();
    void linesOnTheirColor_areLeftOut_data();
    void linesOnTheirColor_areLeftOut();
    void lineBesideTheImage_isLeftOut();
    void tileThatFillsLate_isFoundFull();
    void anotherColor_isNotHidden();
    void colorThatKeepsItself_isTold();
};

void TestFullTiles::pictures_equalPainters_data()
{
    QTest::addColumn<int>("colorsFor");
    QTest::addColumn<int>("colors");
    QTest::addColumn<bool>("hasTexts");
    QTest::newRow("one color") << kLines << 1 << false;
    QTest::newRow("one color, many pens") << 50 << 1 << false;
    QTest::newRow("each line another") << 1 << 6 << false;
    QTest::newRow("two by turns") << 1 << 2 << false;
    QTest::newRow("another for a while") << 700 << 6 << false;
    QTest::newRow("texts between") << 500 << 6 << true;
}

void TestFullTiles::pictures_equalPainters()
{
    QFETCH(int, colorsFor);
    QFETCH(int, colors);
    QFETCH(bool, hasTexts);
    for (unsigned seed = 0; seed < kPictures / 6; ++seed) {
        Dice dice(seed);
        const QRect whole({}, kSize);
        const QRect clip = seed % 2 == 0 ? whole : QRect(5, 9, 33, 22);
        CompareWithPainter({colorsFor, colors, hasTexts}, clip, dice);
        if (QTest::currentTestFailed())
            return;
    }
}

void TestFullTiles::linesOnTheirColor_areLeftOut_data()
{
    QTest::addColumn<QRgb>("color");
    QTest::addColumn<bool>("areHidden");
    QTest::newRow("black") << QRgb(0xFF000000) << true;
    QTest::newRow("another") << QRgb(0xFF0080FF) << true;
    QTest::newRow("one that does not keep itself") << QRgb(0xFF980000) << false;
}

void TestFullTiles::linesOnTheirColor_areLeftOut()
{
    QFETCH(QRgb, color);
    QFETCH(bool, areHidden);
    QImage image = White();
    FullTiles tiles(image.constBits(), image.bytesPerLine(), image.rect(), kToDevice);
    LineFiller filler(image, image.rect(), kToDevice);
    filler.SetPen(QPen(QColor(color), 40));
    tiles.SetPen(color, 40);
    const int hidden = CountHidden(tiles, filler, 20000);
    QVERIFY2(areHidden ? hidden > 15000 : hidden == 0, qPrintable(QString::number(hidden)));
}

void TestFullTiles::lineBesideTheImage_isLeftOut()
{
    const QImage image = White();
    const QRect band(0, 20, 61, 5);
    FullTiles tiles(image.constBits(), image.bytesPerLine(), band, kToDevice);
    tiles.SetPen(qRgb(0, 0, 0), 20);
    QVERIFY(tiles.Hides(50, 20, 60, 25));
    QVERIFY(!tiles.Hides(50, 130, 60, 135));
}

// As where a long walk stays for a while before it goes on.
void TestFullTiles::tileThatFillsLate_isFoundFull()
{
    constexpr int kManyTouches = 500;
    QImage image = White();
    FullTiles tiles(image.constBits(), image.bytesPerLine(), image.rect(), kToDevice);
    tiles.SetPen(qRgb(0, 0, 0), 20);
    const auto hides = [&tiles] { return tiles.Hides(100, 100, 104, 103); };
    for (int i = 0; i < kManyTouches; ++i) {
        QVERIFY(!hides());
        tiles.Draw();
    }
    image.fill(Qt::black);
    bool isHidden = false;
    for (int i = 0; i < 8 && !isHidden; ++i) {
        isHidden = hides();
        tiles.Draw();
    }
    QVERIFY(isHidden);
}

void TestFullTiles::anotherColor_isNotHidden()
{
    QImage image = White();
    image.fill(Qt::black);
    FullTiles tiles(image.constBits(), image.bytesPerLine(), image.rect(), kToDevice);
    const auto hides = [&tiles](QRgb color) {
        tiles.SetPen(color, 20);
        const bool isHidden = tiles.Hides(100, 100, 104, 103);
        if (!isHidden)
            tiles.Draw();
        return isHidden;
    };
    for (int i = 0; i < 4; ++i)
        QVERIFY(!hides(qRgb(0, 0, 0)));
    QVERIFY(hides(qRgb(0, 0, 0)));
    QVERIFY(!hides(qRgb(255, 0, 0)));
    QVERIFY(!hides(qRgb(0, 0, 0)));
    tiles.Forget();
    QVERIFY(!hides(qRgb(0, 0, 0)));
}

void TestFullTiles::colorThatKeepsItself_isTold()
{
    for (const int part : {0, 1, 128, 254, 255})
        QVERIFY(KeepsItself(qRgb(part, part, part)));
    for (const int part : {152, 169, 173, 188, 191}) {
        QVERIFY(!KeepsItself(qRgb(part, 0, 0)));
        QVERIFY(!KeepsItself(qRgb(0, part, 0)));
        QVERIFY(!KeepsItself(qRgb(0, 0, part)));
    }
}

QTEST_MAIN(TestFullTiles)
#include "test_fulltiles.moc"
