// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What a printed page shows: Qt writes it as a PDF file, which another program reads back.
#include "tests/kit/printing.h"

#include <cmath>
#include <limits>

using fixture::kPointsPerInch;
using fixture::kPrintStrokes;
using fixture::Paper;
using fixture::PrintGraph;
using fixture::PrintStroke;
using fixture::ShownArea;
using fixture::Window;

namespace {

// Points; a printer's dot is 0.06 at its best. The reader of the page rounds by a tenth of that.
constexpr double kTolerance = 0.02;
constexpr QRectF kWholeGraph(0, 0, 4096, 3120);
const QColor kGreen(0, 255, 0);

bool IsNear(double a, double b)
{
    return std::abs(a - b) <= kTolerance;
}

// Pens are round before they are mapped, and one unit is not quite as high as it is wide.
bool IsPenWidth(double width, double expected)
{
    constexpr double kStretch = 0.001;
    return std::abs(width - expected) <= kTolerance + kStretch * expected;
}

bool IsNear(const QPointF& a, const QPointF& b)
{
    return IsNear(a.x(), b.x()) && IsNear(a.y(), b.y());
}

bool IsNear(const QRectF& a, const QRectF& b)
{
    return IsNear(a.topLeft(), b.topLeft()) && IsNear(a.bottomRight(), b.bottomRight());
}

QByteArray Describe(const QRectF& r)
{
    return QByteArray::number(r.left()) + ',' + QByteArray::number(r.top()) + ' ' +
           QByteArray::number(r.width()) + 'x' + QByteArray::number(r.height());
}

// Where the page shows a point of the graph (y downward), when the area shows that part.
QPointF OnPaper(const QPointF& point, const QRectF& area, const QRectF& part = kWholeGraph)
{
    return {area.left() + (point.x() - part.left()) * area.width() / part.width(),
            area.top() + (point.y() - part.top()) * area.height() / part.height()};
}

// The printed area in points, from its numbers in dots.
QRectF Dots(const Paper& paper, int left, int top, int width, int height)
{
    const double point = kPointsPerInch / paper.resolution;
    return {paper.corner + QPointF(left, top) * point, QSizeF(width, height) * point};
}

// The printed area with the settings as they are when the program starts.
QRectF DefaultArea(const Paper& paper)
{
    return {paper.corner + QPointF(0.8, 0.6) * kPointsPerInch, QSizeF(9.0, 6.855) * kPointsPerInch};
}

} // namespace

class TestPrintPage : public QObject, protected fixture::PrintTest
{
    Q_OBJECT

private slots:
    void initTestCase() { HidePrinters(); }
    void init() { Begin(); }
    void cleanup() { End(); }

    void page_area_followsTheResolution_data();
    void page_area_followsTheResolution();
    void page_halfSizeAt600_is2700By2056();
    void page_sizeAndShift_areTruncated_data();
    void page_sizeAndShift_areTruncated();
    void page_sizeAndShiftOfTheConfigurationFile();
    void page_emptySize_isSurvived_data();
    void page_emptySize_isSurvived();
    void page_lines_areWhereTheirCoordinatesSay();
    void page_penWidths_data();
    void page_penWidths();
    void page_penWidths_followTheViewsWidth();
    void page_background_data();
    void page_background();
    void page_texts_arePrinted();
    void page_title_isTheGraphsName();
    void page_title_withoutAGraph_isTheProgramsName();
    void page_isNotWrittenAsEpsToo();
    void page_zoomed_fillsTheAreaWithThePart();
    void page_zoomed_leavesThePaperAroundTheAreaEmpty();
    void page_zoomedAndInverted_showsThePart();
    void page_wholeGraph_goesOnBeyondItsArea();
    void page_withoutAGraph_isEmpty();
    void page_afterAFailedLoad_isEmpty();

private:
    static QRectF Zoom();
    QRectF Area(const PrintedPage& page);
    void CheckArea(const QRectF& area);
    static void CheckStroke(const PrintedLine& printed, const PrintStroke& stroke,
                            const QRectF& area, const QRectF& part);
    void CheckLines(const PrintedPage& page, const QRectF& area, const QRectF& part);
};

// Selects a part of the view and returns which part of the graph that is.
QRectF TestPrintPage::Zoom()
{
    QTest::mousePress(gpDraw, Qt::LeftButton, {}, {160, 120});
    QTest::mouseMove(gpDraw, {480, 340});
    QTest::mouseRelease(gpDraw, Qt::LeftButton, {}, {480, 340});
    const QRectF part(1024, 780, 2048, 1430);
    [&] { QCOMPARE(QRectF(ShownArea(*gpDraw)), part); }();
    return part;
}

// The background is the whole graph's, so it shows where that is.
QRectF TestPrintPage::Area(const PrintedPage& page)
{
    return page.areas.size() == 1 ? page.areas.constFirst().box : QRectF();
}

// Prints and checks where the page shows the graph.
void TestPrintPage::CheckArea(const QRectF& area)
{
    const PrintedPage page = Printed();
    QVERIFY2(IsNear(Area(page), area), Describe(Area(page)) + " and not " + Describe(area));
    CheckLines(page, area, kWholeGraph);
}

void TestPrintPage::CheckStroke(const PrintedLine& printed, const PrintStroke& stroke,
                                const QRectF& area, const QRectF& part)
{
    const auto place = [&](const QPoint& end) {
        return OnPaper(QPointF(end.x(), 3120 - end.y()), area, part);
    };
    const QByteArray which = QByteArray::number(&stroke - kPrintStrokes);
    QVERIFY2(IsNear(printed.line.p1(), place(stroke.line.p1())), which);
    QVERIFY2(IsNear(printed.line.p2(), place(stroke.line.p2())), which);
}

void TestPrintPage::CheckLines(const PrintedPage& page, const QRectF& area, const QRectF& part)
{
    QCOMPARE(page.lines.size(), qsizetype{std::size(kPrintStrokes)} + 1);
    for (size_t i = 0; i < std::size(kPrintStrokes); ++i)
        CheckStroke(page.lines.at(static_cast<qsizetype>(i)), kPrintStrokes[i], area, part);
}

void TestPrintPage::page_area_followsTheResolution_data()
{
    QTest::addColumn<int>("resolution");
    QTest::addColumn<QRect>("dots");
    QTest::newRow("1200") << 1200 << QRect(960, 720, 10800, 8226);
    QTest::newRow("600") << 600 << QRect(480, 360, 5400, 4113);
    QTest::newRow("300") << 300 << QRect(240, 180, 2700, 2056);
    QTest::newRow("72") << 72 << QRect(57, 43, 648, 493);
}

void TestPrintPage::page_area_followsTheResolution()
{
    QFETCH(int, resolution);
    QFETCH(QRect, dots);
    Window window;
    Open(window);
    const Paper paper = SetPrinter(window, Path("page.pdf"), resolution);
    QCOMPARE(paper.resolution, resolution);
    CheckArea(Dots(paper, dots.x(), dots.y(), dots.width(), dots.height()));
}

void TestPrintPage::page_halfSizeAt600_is2700By2056()
{
    Window window;
    Open(window);
    const Paper paper = SetPrinter(window, Path("page.pdf"), 600);
    gdPageSizeX = gdPageSizeY = 0.5;
    CheckArea(Dots(paper, 480, 360, 2700, 2056));
}

void TestPrintPage::page_sizeAndShift_areTruncated_data()
{
    QTest::addColumn<int>("resolution");
    QTest::addColumn<QPoint>("shift");
    QTest::addColumn<QPointF>("size");
    QTest::addColumn<QRect>("dots");
    QTest::newRow("shifted") << 600 << QPoint(100, -50) << QPointF(1, 1)
                             << QRect(580, 310, 5400, 4113);
    QTest::newRow("shifted off the printable area")
        << 600 << QPoint(-600, -400) << QPointF(1, 1) << QRect(-120, -40, 5400, 4113);
    QTest::newRow("fractions of dots")
        << 1200 << QPoint(0, 0) << QPointF(0.333, 0.777) << QRect(960, 720, 3596, 6391);
    QTest::newRow("each its own") << 600 << QPoint(7, 9) << QPointF(0.25, 0.75)
                                  << QRect(487, 369, 1350, 3084);
    QTest::newRow("coarse") << 72 << QPoint(3, 4) << QPointF(0.5, 0.9) << QRect(60, 47, 324, 444);
    // Toward zero, also from below: 57.6 - 60 is -2.4, and 43.2 - 50 is -6.8.
    QTest::newRow("coarse, negative")
        << 72 << QPoint(-60, -50) << QPointF(1, 1) << QRect(-2, -6, 648, 493);
    QTest::newRow("inverted") << 600 << QPoint(5400, 4113) << QPointF(-1, -0.5)
                              << QRect(5880, 4473, -5400, -2056);
}

void TestPrintPage::page_sizeAndShift_areTruncated()
{
    QFETCH(int, resolution);
    QFETCH(QPoint, shift);
    QFETCH(QPointF, size);
    QFETCH(QRect, dots);
    Window window;
    Open(window);
    const Paper paper = SetPrinter(window, Path("page.pdf"), resolution);
    giPageX = shift.x();
    giPageY = shift.y();
    gdPageSizeX = size.x();
    gdPageSizeY = size.y();
    const QRectF area = Dots(paper, dots.x(), dots.y(), dots.width(), dots.height());
    const PrintedPage page = Printed();
    QVERIFY2(IsNear(Area(page), area.normalized()),
             Describe(Area(page)) + " and not " + Describe(area));
    CheckLines(page, area, kWholeGraph);
}

void TestPrintPage::page_sizeAndShiftOfTheConfigurationFile()
{
    directories->Write("home/plotvw.cfg", "printer_page_shift=-12,30\nprinter_page_size=0.5,0.5\n");
    Window window;
    Open(window);
    const Paper paper = SetPrinter(window, Path("page.pdf"), 600);
    CheckArea(Dots(paper, 468, 390, 2700, 2056));
}

void TestPrintPage::page_emptySize_isSurvived_data()
{
    QTest::addColumn<QPointF>("size");
    QTest::addColumn<QPoint>("shift");
    const double huge = std::numeric_limits<double>::max();
    constexpr int kMost = std::numeric_limits<int>::max();
    QTest::newRow("no width") << QPointF(0, 1) << QPoint();
    QTest::newRow("no height") << QPointF(1, 0) << QPoint();
    QTest::newRow("neither") << QPointF(0, 0) << QPoint();
    QTest::newRow("less than a dot") << QPointF(1e-9, 1e-9) << QPoint();
    QTest::newRow("huge") << QPointF(huge, huge) << QPoint();
    QTest::newRow("no number") << QPointF(std::nan(""), 1) << QPoint();
    QTest::newRow("far away") << QPointF(1, 1) << QPoint(kMost, kMost);
    QTest::newRow("far back") << QPointF(1, 1) << QPoint(-kMost, -kMost);
}

void TestPrintPage::page_emptySize_isSurvived()
{
    QFETCH(QPointF, size);
    QFETCH(QPoint, shift);
    Window window;
    Open(window);
    SetPrinter(window, Path("page.pdf"));
    gdPageSizeX = size.x();
    gdPageSizeY = size.y();
    giPageX = shift.x();
    giPageY = shift.y();
    gpDraw->PrintGraph();
    QVERIFY(QFileInfo(Text(Path("page.pdf"))).size() > 0);
}

void TestPrintPage::page_lines_areWhereTheirCoordinatesSay()
{
    Window window;
    Open(window);
    const Paper paper = SetPrinter(window, Path("page.pdf"));
    const QRectF area = DefaultArea(paper);
    const PrintedPage page = Printed();
    CheckLines(page, area, kWholeGraph);
    const PrintedLine& red = page.lines.constLast();
    QVERIFY(IsNear(red.line.p1(), OnPaper({1000, 2120}, area)));
    QVERIFY(IsNear(red.line.p2(), OnPaper({1000, 1120}, area)));
    QCOMPARE(red.color, QColor(255, 0, 0));
    QCOMPARE(page.lines.constFirst().color, QColor(0, 0, 0));
}

void TestPrintPage::page_penWidths_data()
{
    QTest::addColumn<int>("least");
    QTest::addColumn<QList<int>>("widths"); // of the strokes, drawing units
    QTest::newRow("the default") << 2 << QList<int>{20, 20, 80, 4};
    QTest::newRow("none") << 0 << QList<int>{20, 20, 80, 2};
    QTest::newRow("less than none") << -5 << QList<int>{20, 20, 80, 2};
    QTest::newRow("as wide as some") << 10 << QList<int>{20, 20, 80, 20};
    QTest::newRow("wide") << 25 << QList<int>{50, 50, 80, 50};
}

void TestPrintPage::page_penWidths()
{
    QFETCH(int, least);
    QFETCH(QList<int>, widths);
    Window window;
    Open(window);
    const Paper paper = SetPrinter(window, Path("page.pdf"));
    giPrtMinLineWidth = least;
    const PrintedPage page = Printed();
    const double unit = DefaultArea(paper).width() / kWholeGraph.width();
    for (qsizetype i = 0; i < widths.size(); ++i) {
        const double width = page.lines.at(i).width;
        QVERIFY2(IsPenWidth(width, widths.at(i) * unit), QByteArray::number(width / unit));
    }
}

void TestPrintPage::page_penWidths_followTheViewsWidth()
{
    Window window;
    Open(window, QSize(960, 480)); // half as wide again as widths are meant for
    const Paper paper = SetPrinter(window, Path("page.pdf"));
    const PrintedPage page = Printed();
    const double unit = DefaultArea(paper).width() / kWholeGraph.width();
    const int expected[] = {30, 30, 120, 4};
    for (size_t i = 0; i < std::size(expected); ++i)
        QVERIFY(IsPenWidth(page.lines.at(static_cast<qsizetype>(i)).width, expected[i] * unit));
    QVERIFY(IsNear(Area(page), DefaultArea(paper)));
}

void TestPrintPage::page_background_data()
{
    QTest::addColumn<bool>("white");
    QTest::addColumn<QColor>("color");
    QTest::newRow("white") << true << QColor(255, 255, 255);
    QTest::newRow("the file's own") << false << kGreen;
}

void TestPrintPage::page_background()
{
    QFETCH(bool, white);
    QFETCH(QColor, color);
    Window window;
    Open(window);
    const Paper paper = SetPrinter(window, Path("page.pdf"));
    gbBkClrWhite = white;
    const PrintedPage page = Printed();
    QCOMPARE(page.areas.size(), 1);
    QCOMPARE(page.areas.constFirst().color, color);
    QVERIFY(IsNear(Area(page), DefaultArea(paper)));
}

void TestPrintPage::page_texts_arePrinted()
{
    Window window;
    Open(window);
    SetPrinter(window, Path("page.pdf"));
    QCOMPARE(Printed().letters, 4);
}

void TestPrintPage::page_title_isTheGraphsName()
{
    Window window;
    Open(window);
    SetPrinter(window, Path("page.pdf"));
    gpDraw->PrintGraph();
    QCOMPARE(ReadTitle(Text(Path("page.pdf"))), QStringLiteral("a.plf"));
    window->load(Text(directories->Write("größer.plf", PrintGraph())));
    gpDraw->cmdPrint();
    QCOMPARE(ReadTitle(Text(Path("page.pdf"))), QString::fromUtf8("größer.plf"));
}

void TestPrintPage::page_title_withoutAGraph_isTheProgramsName()
{
    Window window;
    Open(window);
    SetPrinter(window, Path("page.pdf"));
    fixture::Box box;
    fixture::ExpectBox(*dialogs, box);
    window->load(Text(Path("none.plf"))); // which leaves the last short name
    gpDraw->PrintGraph();
    QCOMPARE(ReadTitle(Text(Path("page.pdf"))), QStringLiteral("KORVEL Viewer"));
}

void TestPrintPage::page_isNotWrittenAsEpsToo()
{
    Window window;
    Open(window);
    SetPrinter(window, Path("page.pdf"));
    QVERIFY(CopyText(gszCvtFilename, Path("last.eps").c_str()));
    QVERIFY(!Printed().lines.isEmpty());
    QVERIFY(!Exists(Path("last.eps")));
}

void TestPrintPage::page_zoomed_fillsTheAreaWithThePart()
{
    Window window;
    Open(window);
    const Paper paper = SetPrinter(window, Path("page.pdf"));
    const QRectF part = Zoom();
    const PrintedPage page = Printed();
    const QRectF area = DefaultArea(paper);
    // Only the third and the fourth stroke reach into the part.
    QCOMPARE(page.lines.size(), 2);
    CheckStroke(page.lines.at(0), kPrintStrokes[2], area, part);
    CheckStroke(page.lines.at(1), kPrintStrokes[3], area, part);
    // Twice as large as the whole graph, and so are the pens.
    const QLineF stroke = kPrintStrokes[2].line;
    const double stretch = page.lines.at(0).line.length() / stroke.length();
    const double square = area.width() / part.width() * area.height() / part.height();
    const double width = page.lines.at(0).width;
    QVERIFY2(IsPenWidth(width, 160 * square / stretch), QByteArray::number(width));
    // What is shown fills the area: its corners are where those of the part are.
    QVERIFY(IsNear(OnPaper(part.topLeft(), area, part), area.topLeft()));
    QVERIFY(Area(page).contains(area));
}

// The graph's other parts would have room on this paper, on every side.
void TestPrintPage::page_zoomed_leavesThePaperAroundTheAreaEmpty()
{
    constexpr int kPixelsPerInch = 36;
    constexpr int kPixel = 1; // of the area's edge, which falls between pixels
    Window window;
    Open(window);
    const Paper paper = SetPrinter(window, Path("page.pdf"));
    const int away = 10 * paper.resolution;
    giPageX = giPageY = away;
    gbBkClrWhite = false;
    Zoom();
    gpDraw->PrintGraph();
    const QImage picture = RenderPage(Text(Path("page.pdf")), kPixelsPerInch);
    const double pixel = kPixelsPerInch / kPointsPerInch;
    const QRectF area = DefaultArea(paper).translated(10 * kPointsPerInch, 10 * kPointsPerInch);
    const QRect inside = QRectF(area.topLeft() * pixel, area.size() * pixel).toRect();
    const QRect edge = inside.adjusted(-kPixel, -kPixel, kPixel, kPixel);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (!edge.contains(x, y) && picture.pixelColor(x, y) != Qt::white)
                QFAIL(Describe(QRectF(x, y, 1, 1)));
        }
    }
    // No line touches the middle of a side.
    const QRect core = inside.adjusted(kPixel, kPixel, -kPixel, -kPixel);
    const QPoint middle = core.center();
    for (const QPoint& side : {QPoint(core.left(), middle.y()), QPoint(core.right(), middle.y()),
                               QPoint(middle.x(), core.top()), QPoint(middle.x(), core.bottom())})
        QCOMPARE(picture.pixelColor(side), kGreen);
}

void TestPrintPage::page_zoomedAndInverted_showsThePart()
{
    Window window;
    Open(window);
    const Paper paper = SetPrinter(window, Path("page.pdf"), 600);
    giPageX = 5400;
    gdPageSizeX = -1;
    const QRectF part = Zoom();
    const QRectF area = Dots(paper, 5880, 360, -5400, 4113);
    const PrintedPage page = Printed();
    QCOMPARE(page.lines.size(), 2);
    CheckStroke(page.lines.at(0), kPrintStrokes[2], area, part);
    CheckStroke(page.lines.at(1), kPrintStrokes[3], area, part);
}

// Addresses reach higher than the area, and texts may run over its edge.
void TestPrintPage::page_wholeGraph_goesOnBeyondItsArea()
{
    const std::string above = plf::Start() + plf::Line(1000, 3200, 3000, 3200) + plf::End();
    Window window;
    window.AddViewOf(directories->Write("above.plf", above));
    const Paper paper = SetPrinter(window, Path("page.pdf"));
    const PrintedPage page = Printed();
    QCOMPARE(page.lines.size(), 1);
    QVERIFY(IsNear(page.lines.at(0).line.p1(), OnPaper({1000, -80}, DefaultArea(paper))));
}

void TestPrintPage::page_withoutAGraph_isEmpty()
{
    Window window;
    OpenEmpty(window);
    SetPrinter(window, Path("page.pdf"));
    gpDraw->cmdPrint();
    const PrintedPage page = ReadPage(Text(Path("page.pdf")));
    QCOMPARE(page.paper, QSizeF(792, 612));
    QCOMPARE(page.lines.size(), 0);
    QCOMPARE(page.areas.size(), 0);
    QCOMPARE(page.letters, 0);
}

void TestPrintPage::page_afterAFailedLoad_isEmpty()
{
    Window window;
    Open(window);
    SetPrinter(window, Path("page.pdf"));
    fixture::Box box;
    fixture::ExpectBox(*dialogs, box);
    window->load(Text(Path("none.plf")));
    const PrintedPage page = Printed();
    QCOMPARE(page.lines.size(), 0);
    QCOMPARE(page.areas.size(), 0);
}

QTEST_MAIN(TestPrintPage)
#include "test_printpage.moc"
