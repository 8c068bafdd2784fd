// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Pictures of the sizes that windows have, in bands and by one call of Qt for each line, pixel for
// pixel. All samples and seeded graphs, with all widths, shapes, zooms, pixel ratios and exposed
// parts make so many combinations that a run takes only some of them, from all over.
// PLOTVW_SEEDS=FIRST:COUNT chooses others; 0 and the number that a run prints are all of them.
#include "meta/bands.h"
#include "meta/pass.h"
#include "meta/plfgraph.h"
#include "tests/kit/bandpicture.h"
#include "tests/kit/graph.h"
#include "tests/kit/sanitized.h"
#include "tests/kit/seeds.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QRegion>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <vector>

namespace {

// Combinations of one run.
constexpr unsigned kFew = kSanitized ? 10 : 60;
// A prime number that divides no number of combinations, to get from one to another.
constexpr uint64_t kStride = 1000003;

constexpr unsigned kGraphs = 400;
constexpr int kWidths[] = {0, 4, 16, 80};
// That of the graph, of the default window, and others.
constexpr QSize kShapes[] = {{512, 390}, {640, 446}, {300, 600}, {600, 300}, {37, 1000}};
constexpr double kRatios[] = {1.0, 1.5, 2.0};

// In drawing units; the last one is what a pixel of the default window shows.
struct Zoom {
    const char* name;
    Rect area;
};
const Zoom kZooms[] = {{"none", {}},
                       {"3", MakeRect(1000, 900, 2365, 1940)},
                       {"50", MakeRect(2000, 1500, 2082, 1562)},
                       {"inverted", MakeRect(3000, 2000, 1000, 900)},
                       {"upside down", MakeRect(1000, 2000, 3000, 900)},
                       {"pixel", MakeRect(2000, 1500, 2006, 1507)}};

enum class Part { All, Rectangle, Region };
constexpr Part kParts[] = {Part::All, Part::Rectangle, Part::Region};

// The exposed part of a widget.
QRegion PartOf(Part part, QSize shape)
{
    const int w = shape.width();
    const int h = shape.height();
    const QRect rectangle(w / 3, h / 5, w / 2, h / 2);
    switch (part) {
    case Part::All:
        return {};
    case Part::Rectangle:
        return rectangle;
    case Part::Region:
        return QRegion(rectangle) - QRect(w / 2, h / 4, w / 5, h / 3) + QRect(3, h - 9, w / 2, 5);
    }
    Q_UNREACHABLE();
}

// The pixels of a widget.
QSize PixelsOf(QSize shape, double ratio)
{
    return {static_cast<int>(std::ceil(shape.width() * ratio)),
            static_cast<int>(std::ceil(shape.height() * ratio))};
}

// As the window has it, but not so large that pens are a million pixels wide: one line of them
// takes Qt half a second.
double WidthScale(QSize shape, const Rect& zoom)
{
    constexpr double kMost = 50;
    const double magnified = zoom.width == 0 ? 1.0 : 4096.0 / static_cast<double>(zoom.width);
    return shape.width() / 640.0 * std::min(magnified, kMost);
}

// Takes a number apart: what is left of it chooses among the rows of one table after another.
class Chooser
{
public:
    explicit Chooser(uint64_t number) : rest(number) {}
    template <class Table> auto From(const Table& table) { return table[Below(std::size(table))]; }
    uint64_t Below(uint64_t end)
    {
        const uint64_t chosen = rest % end;
        rest /= end;
        return chosen;
    }

private:
    uint64_t rest;
};

} // namespace

class TestBandPictures : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void everyPicture_equalsPlainLines();
    void part_isCutWhereItsPixelsAreKnown_data();
    void part_isCutWhereItsPixelsAreKnown();

private:
    [[nodiscard]] uint64_t Combinations() const;
    void Compare(uint64_t number) const;

    std::vector<PlfGraph> samples;
};

void TestBandPictures::initTestCase()
{
    const QDir folder(QStringLiteral(PLOTVW_SAMPLES));
    for (const QString& name : folder.entryList({QStringLiteral("*.plf")})) {
        const char* problem = nullptr;
        samples.push_back(
            PlfGraph::FromFile(QFile::encodeName(folder.filePath(name)).constData(), &problem));
        QVERIFY(samples.back().IsLoaded());
    }
    QVERIFY(!samples.empty());
}

uint64_t TestBandPictures::Combinations() const
{
    return std::size(kWidths) * std::size(kShapes) * std::size(kZooms) * std::size(kRatios) *
           std::size(kParts) * (samples.size() + kGraphs);
}

void TestBandPictures::Compare(uint64_t number) const
{
    Chooser choose(number);
    const int width = choose.From(kWidths);
    const QSize shape = choose.From(kShapes);
    const Zoom zoom = choose.From(kZooms);
    const double ratio = choose.From(kRatios);
    const QRegion part = PartOf(choose.From(kParts), shape);
    const uint64_t graph = choose.Below(samples.size() + kGraphs);

    const bool isSample = graph < samples.size();
    // A sample has widths of its own, of which the least is chosen.
    const Look look = {PixelsOf(shape, ratio), zoom.area, WidthScale(shape, zoom.area), ratio, part,
                       graph % 2 == 0,         shape,     isSample ? width / 2.0 : 0.0};
    const PlfGraph seeded = GraphOf(SeededGraph(static_cast<unsigned>(graph), width, false));
    const PlfPass pass = PassOf(isSample ? samples[graph] : seeded, look);
    const QImage plain = PaintPlain(pass, look);
    for (const int bands : {1, 2, 3, 8, 64}) {
        if (PaintBands(pass, look, bands) == plain)
            continue;
        QFAIL(
            qPrintable(QStringLiteral("number %1: graph %2, width %3, %4 x %5, zoom %6, ratio %7, "
                                      "%8 rectangles, %9 bands")
                           .arg(number)
                           .arg(graph)
                           .arg(width)
                           .arg(shape.width())
                           .arg(shape.height())
                           .arg(QLatin1StringView(zoom.name))
                           .arg(ratio)
                           .arg(part.rectCount())
                           .arg(bands)));
    }
}

void TestBandPictures::everyPicture_equalsPlainLines()
{
    const uint64_t all = Combinations();
    QVERIFY(all % kStride != 0);
    const Seeds seeds = ChosenSeeds(kFew);
    qInfo("%u of %llu combinations", seeds.count, static_cast<unsigned long long>(all));
    for (unsigned seed = seeds.first; seed < seeds.End(); ++seed) {
        Compare(seed * kStride % all);
        if (QTest::currentTestFailed())
            return;
    }
}

void TestBandPictures::part_isCutWhereItsPixelsAreKnown_data()
{
    QTest::addColumn<double>("ratio");
    QTest::addColumn<QRect>("part");
    QTest::addColumn<bool>("isCut");
    constexpr QRect kPart(20, 10, 300, 400);
    QTest::newRow("all") << 1.5 << QRect() << true;
    QTest::newRow("units are pixels") << 1.0 << kPart << true;
    QTest::newRow("larger than pixels") << 1.5 << kPart << false;
    QTest::newRow("twice as large") << 2.0 << kPart << false;
}

// Where a unit is more than a pixel, only Qt knows to which pixels it rounded the part: it gets
// every line.
void TestBandPictures::part_isCutWhereItsPixelsAreKnown()
{
    QFETCH(double, ratio);
    QFETCH(QRect, part);
    constexpr QSize kShape(640, 446);
    constexpr int kManyLines = 40000; // worth another thread
    const Look look = {PixelsOf(kShape, ratio), {}, 1.0, ratio, part, true, kShape};
    const PlfGraph graph = GraphOf(SeededGraph(1, 16, false, kManyLines));
    const PlfPass pass = PassOf(graph, look);
    QImage image = AnyGround(look);
    QPainter painter(&image);
    SetUp(painter, look);
    QTEST(!FindCuts(pass, painter).empty(), "isCut");
    QVERIFY(PaintBands(pass, look, 3) == PaintPlain(pass, look));
}

QTEST_MAIN(TestBandPictures)
#include "test_bandpictures.moc"
