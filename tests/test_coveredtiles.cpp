// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Lines that are left out because later ones cover them: the picture is the same, and where pens
// are wide, most are left out.
#include "meta/fill/coveredtiles.h"
#include "tests/kit/plainpainter.h"
#include "tests/kit/sanitized.h"

#include <QColor>
#include <QImage>
#include <QLine>
#include <QPainter>
#include <QPen>
#include <QTest>

#include <algorithm>
#include <random>
#include <vector>

namespace {

constexpr unsigned kPictures = kSanitized ? 5 : 60;
constexpr int kLines = 400;
constexpr QSize kSize(61, 43); // the last tiles are cut

struct Drawn {
    QLine line;
    QPen pen;
};

class Dice
{
public:
    explicit Dice(unsigned seed) : random(seed) {}

    int Below(int end) { return static_cast<int>(random() % static_cast<unsigned>(end)); }
    QPoint Place() { return {Below(100) - 20, Below(80) - 20}; }
    // Long, short, flat and upright ones, and some of no length; few are narrow.
    Drawn Any()
    {
        const QPoint start = Place();
        QPoint end = Below(3) == 0 ? start + QPoint(Below(9) - 4, Below(9) - 4) : Place();
        if (Below(6) == 0)
            end.setX(start.x());
        if (Below(6) == 0)
            end.setY(start.y());
        const int width = Below(4) == 0 ? Below(6) : Below(40);
        return {{start, end}, {QColor(Below(256), Below(256), Below(256)), double(width)}};
    }

private:
    std::mt19937 random;
};

std::vector<Drawn> AnyLines(unsigned seed)
{
    Dice dice(seed);
    std::vector<Drawn> lines;
    for (int i = 0; i < kLines; ++i)
        lines.push_back(dice.Any());
    return lines;
}

std::vector<bool> FindHidden(const std::vector<Drawn>& lines, const QRect& part,
                             const QTransform& toDevice)
{
    CoveredTiles tiles(part, toDevice);
    std::vector<bool> hidden(lines.size());
    for (size_t i = lines.size(); i-- > 0;) {
        const QLine& line = lines[i].line;
        tiles.SetWidth(lines[i].pen.widthF());
        hidden[i] = tiles.Take(line.x1(), line.y1(), line.x2(), line.y2());
    }
    return hidden;
}

QImage Paint(const std::vector<Drawn>& lines, const std::vector<bool>& hidden, const QRect& part,
             const QTransform& toDevice)
{
    QImage image(kSize, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipRect(part);
    painter.setTransform(toDevice);
    for (size_t i = 0; i < lines.size(); ++i) {
        painter.setPen(lines[i].pen);
        if (!hidden[i])
            PaintVector(painter, lines[i].line);
    }
    return image;
}

} // namespace

class TestCoveredTiles : public QObject
{
    Q_OBJECT

private slots:
    void pictures_areTheSame_data();
    void pictures_areTheSame();
    void wideLines_hideEarlierOnes();
    void narrowLines_hideNothing();
    void lineThatIsFarTooWide_hidesAll();
    void linesBeyondThePart_areLeftOut();
};

void TestCoveredTiles::pictures_areTheSame_data()
{
    QTest::addColumn<QTransform>("toDevice");
    QTest::newRow("window") << QTransform::fromScale(1.0, 0.9);
    QTest::newRow("wide") << QTransform(2.5, 0, 0, 0.7, -10.3, 4.2);
    QTest::newRow("upside down") << QTransform(0.8, 0, 0, -1.3, 0, 40);
    QTest::newRow("mirrored") << QTransform(-1.1, 0, 0, 1.9, 60, -17);
}

void TestCoveredTiles::pictures_areTheSame()
{
    QFETCH(QTransform, toDevice);
    for (unsigned seed = 0; seed < kPictures; ++seed) {
        const std::vector<Drawn> lines = AnyLines(seed);
        const QRect part = seed % 2 == 0 ? QRect({}, kSize) : QRect(5, 9, 33, 22);
        const std::vector<bool> none(lines.size());
        const std::vector<bool> hidden = FindHidden(lines, part, toDevice);
        QVERIFY2(Paint(lines, hidden, part, toDevice) == Paint(lines, none, part, toDevice),
                 qPrintable(QString::number(seed)));
    }
}

void TestCoveredTiles::wideLines_hideEarlierOnes()
{
    const std::vector<bool> hidden =
        FindHidden(AnyLines(1), {{}, kSize}, QTransform::fromScale(1.0, 0.9));
    const auto count = std::count(hidden.begin(), hidden.end(), true);
    QVERIFY2(count > kLines * 3 / 4, qPrintable(QString::number(count)));
}

void TestCoveredTiles::narrowLines_hideNothing()
{
    const QTransform toDevice = QTransform::fromScale(1.0, 0.5);
    CoveredTiles tiles({{}, kSize}, toDevice);
    QVERIFY(!CoveredTiles::CanCover(8, toDevice));
    QVERIFY(CoveredTiles::CanCover(40, toDevice));
    tiles.SetWidth(8);
    for (int i = 0; i < 100; ++i)
        QVERIFY(!tiles.Take(10, 40, 50, 40));
    tiles.SetWidth(200); // covers all
    QVERIFY(!tiles.Take(10, 40, 50, 40));
    tiles.SetWidth(8);
    QVERIFY(tiles.Take(10, 40, 50, 40));
}

void TestCoveredTiles::lineThatIsFarTooWide_hidesAll()
{
    CoveredTiles tiles({{}, kSize}, QTransform(100, 0, 0, 64, -204'000, -99'000));
    tiles.SetWidth(25'600);
    QVERIFY(!tiles.Take(0, 0, 4095, 3119));
    tiles.SetWidth(0);
    QVERIFY(tiles.Take(2039, 1547, 2042, 1549));
}

void TestCoveredTiles::linesBeyondThePart_areLeftOut()
{
    CoveredTiles tiles({10, 10, 20, 20}, QTransform::fromScale(1.0, 0.9));
    tiles.SetWidth(4);
    QVERIFY(tiles.Take(0, 0, 30, 3));
    QVERIFY(!tiles.Take(0, 0, 30, 30));
}

QTEST_MAIN(TestCoveredTiles)
#include "test_coveredtiles.moc"
