// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What counts as a difference of two graphs, and how differences are counted.
#include "fuzz/graphmutator.h"
#include "tests/kit/files.h"
#include "tests/kit/plf.h"
#include "tests/kit/seeds.h"
#include "tools/diff/compare.h"

#include <QDir>
#include <QtTest>

#include <map>
#include <numeric>
#include <random>

namespace {

using diff::Comparison;
using diff::Rules;
using diff::TextChange;
using Random = std::mt19937;

// Line indices of the test graphs.
constexpr int kRed = 2;
constexpr int kGreen = 3;

struct Line {
    int x1, y1, x2, y2;
    int color = kRed;
    int width = 0;
};
using Lines = std::vector<Line>;

std::string Start()
{
    return plf::Start() + plf::ColorMapEntry(kRed, 90, 50, 100) +
           plf::ColorMapEntry(kGreen, 210, 50, 100);
}

PlfDrawing Read(const std::string& bytes)
{
    const char* problem = nullptr;
    return ReadDrawing(PlfGraph::FromBytes(bytes, &problem).Bytes());
}

// Writes positions, with all of their bytes or with the fewest.
class Writer
{
public:
    explicit Writer(bool isShort) : shortens(isShort) {}

    std::string Position(int x, int y)
    {
        const std::string full = plf::Address(x, y);
        std::string bytes = full;
        if (shortens && !last.empty())
            bytes = Shortened(full);
        last = full;
        return bytes;
    }

private:
    // High y, extra, low y, high x, low x.
    [[nodiscard]] std::string Shortened(const std::string& full) const
    {
        std::string bytes;
        if (full[0] != last[0])
            bytes += full[0];
        if (full[1] != last[1])
            bytes += full[1];
        if (full[1] != last[1] || full[2] != last[2] || full[3] != last[3])
            bytes += full[2];
        if (full[3] != last[3])
            bytes += full[3];
        return bytes + full[4];
    }

    bool shortens;
    std::string last;
};

std::string Bytes(const Lines& lines, bool shortens = false)
{
    Writer writer(shortens);
    std::string bytes = Start();
    Line last = {-1, -1, -1, -1, 0, 0};
    for (const Line& line : lines) {
        if (line.color != last.color)
            bytes += plf::LineIndex(line.color);
        if (line.width != last.width)
            bytes += plf::Width(line.width);
        if (!shortens || line.x1 != last.x2 || line.y1 != last.y2)
            bytes += '\x1d' + writer.Position(line.x1, line.y1);
        bytes += writer.Position(line.x2, line.y2);
        last = line;
    }
    return bytes + plf::End();
}

PlfDrawing Drawing(const Lines& lines, bool shortens = false)
{
    return Read(Bytes(lines, shortens));
}

Comparison Compared(const Lines& a, const Lines& b, const Rules& rules = {})
{
    return diff::Compare(Drawing(a), Drawing(b), rules);
}

Comparison ComparedTexts(const std::string& a, const std::string& b, const Rules& rules = {})
{
    return diff::Compare(Read(Start() + a + plf::End()), Read(Start() + b + plf::End()), rules);
}

Rules Within(double tolerance)
{
    Rules rules;
    rules.tolerance = tolerance;
    return rules;
}

int Below(Random* random, int limit)
{
    return static_cast<int>((*random)() % static_cast<unsigned>(limit));
}

// Lines along the axes, one over the other.
Lines Crowd(Random* random)
{
    Lines lines;
    for (int i = 2 + Below(random, 5); i > 0; --i) {
        const int at = Below(random, 9);
        const int from = Below(random, 11);
        const int to = from + 1 + Below(random, 11 - from);
        const int color = kRed + Below(random, 3);
        lines.push_back(Below(random, 2) == 0 ? Line{from, at, to, at, color}
                                              : Line{at, from, at, to, color});
    }
    return lines;
}

// A part of a line.
Line PieceOf(const Line& line, Random* random)
{
    const bool isAcross = line.y1 == line.y2;
    const int length = isAcross ? line.x2 - line.x1 : line.y2 - line.y1;
    const int from = Below(random, length);
    const int to = from + 1 + Below(random, length - from);
    Line piece = line;
    (isAcross ? piece.x1 : piece.y1) += from;
    (isAcross ? piece.x2 : piece.y2) = (isAcross ? line.x1 : line.y1) + to;
    return piece;
}

// Draws a piece of a line once more, one line later or earlier, or one in two pieces.
void ChangeOrder(Lines* lines, Random* random)
{
    const size_t number = (*random)() % lines->size();
    const Line line = (*lines)[number];
    const auto place = [&] {
        return lines->begin() + static_cast<ptrdiff_t>((*random)() % (lines->size() + 1));
    };
    const int way = Below(random, 3);
    if (way == 0) {
        lines->insert(place(), PieceOf(line, random));
        return;
    }
    lines->erase(lines->begin() + static_cast<ptrdiff_t>(number));
    Line end = PieceOf(line, random);
    end.x2 = line.x2;
    end.y2 = line.y2;
    Line start = line;
    start.x2 = end.x1;
    start.y2 = end.y1;
    if (way == 1 || (start.x1 == start.x2 && start.y1 == start.y2)) {
        lines->insert(place(), line);
        return;
    }
    lines->insert(place(), start);
    lines->insert(place(), end);
}

// The color on top at each place.
std::map<std::pair<int, int>, int> Seen(const Lines& lines)
{
    std::map<std::pair<int, int>, int> colors;
    for (const Line& line : lines) {
        for (int x = line.x1; x <= line.x2; ++x) {
            for (int y = line.y1; y <= line.y2; ++y)
                colors[{x, y}] = line.color;
        }
    }
    return colors;
}

// Lines that are far from one another, each with steps of a whole number of units inside.
Lines Apart(Random* random)
{
    Lines lines;
    for (int x = 100; x < 4000; x += 200) {
        for (int y = 100; y < 3000; y += 200) {
            const int steps = 2 + Below(random, 6);
            const int dx = 1 + Below(random, 9);
            const int dy = Below(random, 19) - 9;
            lines.push_back({x, y, x + steps * dx, y + steps * dy, kRed + Below(random, 2),
                             10 * Below(random, 3)});
        }
    }
    return lines;
}

// The same line in two parts, where it has a whole unit.
void Cut(Lines* lines, size_t at)
{
    Line& line = (*lines)[at];
    const int steps = std::gcd(line.x2 - line.x1, line.y2 - line.y1);
    if (steps < 2)
        return;
    Line rest = line;
    rest.x1 = line.x2 = line.x1 + (line.x2 - line.x1) / steps;
    rest.y1 = line.y2 = line.y1 + (line.y2 - line.y1) / steps;
    lines->push_back(rest);
}

void Turn(Line* line)
{
    std::swap(line->x1, line->x2);
    std::swap(line->y1, line->y2);
}

// The same drawing in another way.
Lines Rearranged(Lines lines, Random* random)
{
    for (size_t i = 0, count = lines.size(); i < count; ++i) {
        if (Below(random, 3) == 0)
            Cut(&lines, i);
        if (Below(random, 2) == 0)
            Turn(&lines[i]);
        if (Below(random, 9) == 0)
            lines.push_back(lines[i]);
    }
    std::shuffle(lines.begin(), lines.end(), *random);
    return lines;
}

} // namespace

class TestCompare : public QObject
{
    Q_OBJECT

private slots:
    void sameDrawingInOtherBytes_isEqual();
    void movedVectors_areFoundExactlyBelowTheirDistance();
    void lookOfVectors_countsUnlessIgnored();
    void goneAndNewVectors_areCounted();
    void widerTolerance_findsPiecesNearALine();
    void lineAcross_coversNothing();
    void partOfALine_doesNotCoverIt();
    void dots_countUnlessIgnored();
    void order_countsWhereColorsTouch();
    void order_ofTextsOverLines_counts();
    void order_ofPieces_isWhatIsSeen();
    void text_nearManyEqualOnes_isFound();
    void dotThatGrew_hasNotMoved();
    void medianMove_ofTwo_isTheirMean();
    void order_whereVectorsCame_doesNotCount();
    void ignoredArea_leavesTheRest();
    void texts_areComparedByWhatIsDrawn();
    void texts_withinTolerance_areFound();
    void background_countsUnlessIgnored();
    void areas_areAroundTheChanges();
    void areas_holdChangedTexts_data();
    void areas_holdChangedTexts();
    void areas_areFew();
    void damagedGraphs_areComparedTheSameBothWays();
};

void TestCompare::sameDrawingInOtherBytes_isEqual()
{
    for (unsigned seed = 0; seed < ChosenSeeds(6).count; ++seed) {
        Random random(seed);
        const Lines lines = Apart(&random);
        const Lines other = Rearranged(lines, &random);
        for (const double tolerance : {0.0, 1.0}) {
            const Comparison result =
                diff::Compare(Drawing(lines, false), Drawing(other, true), Within(tolerance));
            QCOMPARE(result.Changes(), size_t{0});
            QCOMPARE(diff::Compare(Drawing(other, true), Drawing(lines, false), Within(tolerance))
                         .Changes(),
                     size_t{0});
            QVERIFY(result.areas.empty());
        }
    }
}

void TestCompare::movedVectors_areFoundExactlyBelowTheirDistance()
{
    for (unsigned seed = 0; seed < ChosenSeeds(6).count; ++seed) {
        Random random(seed);
        const Lines lines = Apart(&random);
        Lines moved = lines;
        const auto count = static_cast<size_t>(1 + Below(&random, 50));
        for (size_t i = 0; i < count; ++i) {
            moved[i].x1 += 3;
            moved[i].x2 += 3;
            moved[i].y1 -= 4;
            moved[i].y2 -= 4;
        }
        std::shuffle(moved.begin(), moved.end(), random);
        for (const double tolerance : {0.0, 1.0, 4.99}) {
            const Comparison result = Compared(lines, moved, Within(tolerance));
            QCOMPARE(result.counts.moved, count);
            QCOMPARE(result.Changes(), count);
            QCOMPARE(result.farthest, 5.0);
            QCOMPARE(result.medianMove, 5.0);
        }
        for (const double tolerance : {5.0, 20.0})
            QCOMPARE(Compared(lines, moved, Within(tolerance)).Changes(), size_t{0});
    }
}

void TestCompare::lookOfVectors_countsUnlessIgnored()
{
    const Lines lines = {{100, 100, 200, 200, kRed, 10},
                         {300, 100, 400, 200, kRed, 10},
                         {500, 100, 600, 200, kRed, 10}};
    Lines other = lines;
    other[0].color = kGreen;
    other[1].width = 20;
    const Comparison result = Compared(lines, other);
    QCOMPARE(result.counts.recolored, size_t{1});
    QCOMPARE(result.counts.rewidened, size_t{1});
    QCOMPARE(result.Changes(), size_t{2});
    Rules rules;
    rules.ignoresColor = true;
    QCOMPARE(Compared(lines, other, rules).Changes(), size_t{1});
    rules.ignoresWidth = true;
    QCOMPARE(Compared(lines, other, rules).Changes(), size_t{0});
}

void TestCompare::goneAndNewVectors_areCounted()
{
    const Lines lines = {{100, 100, 200, 200}, {2000, 2000, 2100, 2300}, {3000, 100, 3900, 100}};
    const Lines other = {
        lines[0], {1000, 500, 1010, 900}, {3000, 2000, 3500, 3000}, {500, 2000, 510, 2500}};
    const Comparison result = Compared(lines, other);
    QCOMPARE(result.counts.gone, size_t{2});
    QCOMPARE(result.counts.come, size_t{3});
    QCOMPARE(result.Changes(), size_t{5});
    QCOMPARE(result.fates[0][0], diff::Fate::kFound);
    QCOMPARE(result.fates[0][1], diff::Fate::kAlone);
}

void TestCompare::widerTolerance_findsPiecesNearALine()
{
    const Lines line = {{100, 100, 500, 110}};
    const Lines pieces = {
        {100, 101, 180, 103}, {250, 103, 180, 102}, {250, 103, 390, 108}, {390, 108, 500, 111}};
    QCOMPARE(Compared(line, pieces, Within(2.5)).Changes(), size_t{0});
    QCOMPARE(Compared(pieces, line, Within(2.5)).Changes(), size_t{0});
    QVERIFY(Compared(line, pieces).Changes() > 0);
    Lines gap = pieces;
    gap.erase(gap.begin() + 1);
    const Comparison result = Compared(line, gap, Within(2.5));
    QCOMPARE(result.counts.gone, size_t{1});
    QCOMPARE(result.counts.come, size_t{0});
}

void TestCompare::lineAcross_coversNothing()
{
    Lines ladder = {{100, 100, 500, 100}};
    for (int x = 100; x <= 500; x += 2)
        ladder.push_back({x, 50, x, 150});
    const Lines without(ladder.begin() + 1, ladder.end());
    for (const double tolerance : {0.0, 3.0}) {
        const Comparison result = Compared(ladder, without, Within(tolerance));
        QCOMPARE(result.counts.gone, size_t{1});
        QCOMPARE(result.Changes(), size_t{1});
    }
}

void TestCompare::partOfALine_doesNotCoverIt()
{
    const Lines line = {{100, 100, 500, 100}};
    const Lines part = {{100, 100, 480, 100}};
    for (const double tolerance : {0.0, 5.0}) {
        const Comparison result = Compared(line, part, Within(tolerance));
        QCOMPARE(result.counts.gone, size_t{1});
        QCOMPARE(result.counts.come, size_t{0});
    }
    QCOMPARE(Compared(line, part, Within(20)).Changes(), size_t{0});
}

void TestCompare::dots_countUnlessIgnored()
{
    const Lines lines = {{100, 100, 500, 100}};
    const Lines dotted = {lines[0], {200, 100, 200, 100}, {900, 900, 900, 900}};
    const Comparison result = Compared(lines, dotted);
    QCOMPARE(result.counts.come, size_t{2});
    Rules rules;
    rules.ignoresDots = true;
    QCOMPARE(Compared(lines, dotted, rules).Changes(), size_t{0});
    const Lines moved = {lines[0], {202, 100, 202, 100}, {900, 901, 900, 901}};
    QCOMPARE(Compared(dotted, moved, Within(1)).Changes(), size_t{1});
    QCOMPARE(Compared(dotted, moved, Within(2)).Changes(), size_t{0});
}

void TestCompare::order_countsWhereColorsTouch()
{
    const Line red = {100, 100, 500, 500, kRed};
    const Line green = {100, 500, 500, 100, kGreen};
    const Line apart = {1000, 500, 1500, 100, kGreen};
    QVERIFY(Compared({red, green}, {green, red}).counts.reordered > 0);
    QCOMPARE(Compared({red, green}, {green, red}).Changes(), size_t{1});
    QCOMPARE(Compared({red, apart}, {apart, red}).Changes(), size_t{0});
    Line alsoRed = green;
    alsoRed.color = kRed;
    QCOMPARE(Compared({red, alsoRed}, {alsoRed, red}).Changes(), size_t{0});
    // What lies below everything may be in any order.
    const Line cover = {0, 300, 4000, 300, kRed, 2000};
    QCOMPARE(Compared({red, green, cover}, {green, red, cover}).Changes(), size_t{0});
    // Of a vector that is drawn twice the last time counts.
    QCOMPARE(Compared({red, green, red}, {green, red}).Changes(), size_t{0});
    // Only wide lines touch.
    const Line low = {100, 700, 500, 700, kRed, 100};
    const Line high = {100, 740, 500, 740, kGreen, 100};
    QVERIFY(Compared({low, high}, {high, low}).counts.reordered > 0);
    Rules rules;
    rules.ignoresOrder = true;
    QCOMPARE(Compared({red, green}, {green, red}, rules).Changes(), size_t{0});
    rules = {};
    rules.ignoredAreas.push_back({290, 290, 310, 310});
    QCOMPARE(Compared({red, green}, {green, red}, rules).Changes(), size_t{0});
    QVERIFY(Compared({red, green}, {green, red}, Within(2)).counts.reordered > 0);
}

void TestCompare::order_ofTextsOverLines_counts()
{
    const std::string text = plf::LineIndex(kGreen) + plf::Text(100, 100, "over");
    const std::string line = plf::LineIndex(kRed) + plf::Line(50, 105, 500, 105);
    QVERIFY(ComparedTexts(text + line, line + text).counts.reordered > 0);
    const std::string below = plf::LineIndex(kRed) + plf::Line(50, 50, 500, 50);
    QCOMPARE(ComparedTexts(text + below, below + text).Changes(), size_t{0});
}

void TestCompare::order_ofPieces_isWhatIsSeen()
{
    constexpr unsigned kGraphs = 200;
    for (unsigned seed = 0; seed < kGraphs; ++seed) {
        Random random(seed);
        const Lines lines = Crowd(&random);
        Lines changed = lines;
        for (int i = Below(&random, 3); i >= 0; --i)
            ChangeOrder(&changed, &random);
        const bool isSame = Seen(lines) == Seen(changed);
        for (const Comparison& result : {Compared(lines, changed), Compared(changed, lines)}) {
            QVERIFY2(result.counts.gone + result.counts.come + result.counts.moved == 0,
                     qPrintable(QString::number(seed)));
            QVERIFY2((result.Changes() == 0) == isSame, qPrintable(QString::number(seed)));
        }
    }
}

// Nor what lies below them.
void TestCompare::order_whereVectorsCame_doesNotCount()
{
    const Line green = {100, 100, 500, 100, kGreen};
    const Line red = {200, 100, 300, 100, kRed};
    const Line longRed = {200, 100, 301, 100, kRed};
    const Comparison result = Compared({green, longRed}, {green, red});
    QCOMPARE(result.counts.reordered, size_t{0});
    QCOMPARE(result.Changes(), size_t{1});
    Rules rules;
    rules.ignoresDots = true;
    const Line dot = {150, 100, 150, 100, kRed, 20};
    QCOMPARE(Compared({green, dot}, {dot, green}, rules).Changes(), size_t{0});
    QCOMPARE(Compared({green, dot}, {dot, green}).Changes(), size_t{1});
}

// As of markers.
void TestCompare::text_nearManyEqualOnes_isFound()
{
    std::string block;
    for (int i = 0; i < 100; ++i)
        block += plf::Text(1000 + i % 10, 1000 + i / 10, "+");
    const Comparison result = ComparedTexts(block + plf::Text(1105, 1095, "+"),
                                            block + plf::Text(1095, 1095, "+"), Within(100));
    QCOMPARE(result.Changes(), size_t{0});
}

// No tolerance would make them equal.
void TestCompare::dotThatGrew_hasNotMoved()
{
    const Comparison result = Compared({{100, 100, 100, 100}}, {{100, 100, 101, 100}});
    QCOMPARE(result.counts.moved, size_t{0});
    QCOMPARE(result.counts.gone, size_t{1});
    QCOMPARE(result.counts.come, size_t{1});
}

void TestCompare::medianMove_ofTwo_isTheirMean()
{
    const Lines before = {{100, 100, 200, 100}, {100, 2000, 200, 2000}};
    const Lines after = {{100, 102, 200, 102}, {100, 2005, 200, 2005}};
    QCOMPARE(Compared(before, after).medianMove, 3.5);
    QCOMPARE(Compared(before, after).farthest, 5.0);
}

void TestCompare::ignoredArea_leavesTheRest()
{
    const Lines lines = {{100, 100, 500, 100}, {1000, 1000, 1100, 1100}};
    const Lines longer = {{100, 100, 600, 100}, {1000, 1000, 1100, 1100}, {450, 90, 460, 110}};
    Rules rules;
    rules.ignoredAreas.push_back({400, 50, 700, 200});
    for (const double tolerance : {0.0, 1.0}) {
        rules.tolerance = tolerance;
        QCOMPARE(Compared(lines, longer, rules).Changes(), size_t{0});
        QCOMPARE(Compared(longer, lines, rules).Changes(), size_t{0});
        Lines moved = longer;
        moved[0].y1 += 20; // leaves the line outside of the area
        QVERIFY(Compared(lines, moved, rules).Changes() > 0);
    }
    rules.ignoredAreas[0] = {400, 50, 560, 200};
    QCOMPARE(Compared(lines, longer, rules).Changes(), size_t{1});
}

void TestCompare::texts_areComparedByWhatIsDrawn()
{
    const std::string before = plf::Text(100, 200, "f = 50") + plf::Text(900, 100, "gone") +
                               plf::Text(500, 500, "both") + plf::Text(700, 800, "moves");
    const std::string after = plf::Text(500, 500, "both") + plf::Text(100, 200, "f = 51") +
                              plf::Text(1500, 100, "new") + plf::Text(710, 800, "moves");
    const Comparison result = ComparedTexts(before, after);
    QCOMPARE(result.Changes(), size_t{4});
    std::vector<TextChange::Kind> kinds;
    for (const TextChange& change : result.texts)
        kinds.push_back(change.kind);
    std::sort(kinds.begin(), kinds.end());
    QVERIFY((kinds == std::vector<TextChange::Kind>{TextChange::kGone, TextChange::kNew,
                                                    TextChange::kMoved, TextChange::kChanged}));
    Rules rules;
    rules.ignoresText = true;
    QCOMPARE(ComparedTexts(before, after, rules).Changes(), size_t{0});
    // Fonts and sizes are not used for drawing.
    QCOMPARE(ComparedTexts(before, plf::Command("ZS", {40}) + before).Changes(), size_t{0});
    const std::string red = plf::LineIndex(kRed) + plf::Text(1, 1, "a");
    const std::string green = plf::LineIndex(kGreen) + plf::Text(1, 1, "a");
    QCOMPARE(ComparedTexts(red, green).Changes(), size_t{1});
    rules = {};
    rules.ignoresColor = true;
    QCOMPARE(ComparedTexts(red, green, rules).Changes(), size_t{0});
    rules = {};
    rules.ignoredAreas.push_back({0, 0, 10, 10});
    QCOMPARE(ComparedTexts(red, "", rules).Changes(), size_t{0});
}

void TestCompare::texts_withinTolerance_areFound()
{
    const std::string before = plf::Text(100, 200, "a") + plf::Text(100, 200, "b");
    const std::string after = plf::Text(103, 204, "a") + plf::Text(100, 200, "b");
    QCOMPARE(ComparedTexts(before, after, Within(4.9)).Changes(), size_t{1});
    QCOMPARE(ComparedTexts(before, after, Within(5)).Changes(), size_t{0});
}

void TestCompare::background_countsUnlessIgnored()
{
    const PlfDrawing white = Read(plf::Diagonal());
    const PlfDrawing blue =
        Read(plf::WithBackground(plf::Start(), 1) + plf::Line(0, 0, 4095, 3119) + plf::End());
    const Comparison result = diff::Compare(white, blue, {});
    QVERIFY(result.hasOtherBackground);
    QCOMPARE(result.Changes(), size_t{1});
    Rules rules;
    rules.ignoresBackground = true;
    QCOMPARE(diff::Compare(white, blue, rules).Changes(), size_t{0});
}

void TestCompare::areas_areAroundTheChanges()
{
    const Lines lines = {{10, 10, 4000, 10}};
    const Lines other = {
        lines[0], {1000, 1000, 1100, 1300}, {1050, 1000, 1150, 1200}, {3000, 2000, 3010, 2010}};
    const Comparison result = Compared(lines, other);
    QCOMPARE(result.areas.size(), size_t{2});
    QCOMPARE(result.areas[0].counts.come, size_t{2});
    QCOMPARE(result.areas[0].area.left, 1000);
    QCOMPARE(result.areas[0].area.right, 1150);
    QCOMPARE(result.areas[0].area.bottom, 1000);
    QCOMPARE(result.areas[0].area.top, 1300);
    QCOMPARE(result.areas[1].area.left, 3000);
    QCOMPARE(result.areas[1].counts.come, size_t{1});
}

void TestCompare::areas_holdChangedTexts_data()
{
    QTest::addColumn<std::string>("before");
    QTest::addColumn<std::string>("after");
    QTest::addColumn<QRect>("area"); // left, bottom, and how far it reaches
    const std::string text = plf::Text(1000, 2000, "Ohm");
    QTest::newRow("gone") << text << std::string() << QRect(1000, 2000, 84, 48);
    QTest::newRow("new") << std::string() << text << QRect(1000, 2000, 84, 48);
    QTest::newRow("longer") << text << plf::Text(1000, 2000, "Volt") << QRect(1000, 2000, 112, 48);
    QTest::newRow("moved") << text << plf::Text(1010, 2020, "Ohm") << QRect(1000, 2000, 94, 68);
    QTest::newRow("at the top") << std::string() << plf::Text(500, 3110, "A")
                                << QRect(500, 3110, 28, 10);
    QTest::newRow("at the right") << std::string() << plf::Text(4090, 5, "Ohm")
                                  << QRect(4090, 5, 5, 48);
}

void TestCompare::areas_holdChangedTexts()
{
    QFETCH(std::string, before);
    QFETCH(std::string, after);
    QFETCH(QRect, area);
    const Comparison result = ComparedTexts(before, after);
    QCOMPARE(result.areas.size(), size_t{1});
    const diff::Area& around = result.areas[0].area;
    QCOMPARE(
        QRect(around.left, around.bottom, around.right - around.left, around.top - around.bottom),
        area);
}

void TestCompare::areas_areFew()
{
    Random random(1);
    const Comparison result = Compared(Apart(&random), {});
    QVERIFY(!result.areas.empty());
    QVERIFY(result.areas.size() <= 12);
    size_t gone = 0;
    for (const diff::ChangedArea& area : result.areas)
        gone += area.counts.gone;
    QCOMPARE(gone, result.counts.gone);
}

void TestCompare::damagedGraphs_areComparedTheSameBothWays()
{
    const std::string tour =
        ReadFile(QDir(Text(PLOTVW_SAMPLES)).filePath(Text("tour.plf"))).toStdString();
    const PlfDrawing whole = Read(tour);
    const Seeds seeds = ChosenSeeds(60);
    for (unsigned seed = seeds.first; seed < seeds.End(); ++seed) {
        std::string bytes = tour;
        for (unsigned i = 0; i < 1 + seed % 5; ++i)
            bytes = fuzz::MutateGraph(bytes, seed * 7 + i, 2 * tour.size());
        const PlfDrawing other = Read(bytes);
        Rules rules = Within(seed % 3);
        rules.ignoresColor = seed % 7 == 0;
        const Comparison there = diff::Compare(whole, other, rules);
        const Comparison back = diff::Compare(other, whole, rules);
        QCOMPARE(there.Changes() == 0, back.Changes() == 0);
        QCOMPARE(there.counts.gone + there.counts.moved + there.counts.Looks(),
                 back.counts.come + back.counts.moved + back.counts.Looks());
        QCOMPARE(diff::Compare(other, Read(bytes), rules).Changes(), size_t{0});
    }
}

QTEST_APPLESS_MAIN(TestCompare)
#include "test_compare.moc"
