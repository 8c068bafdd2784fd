// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Printing, judged by the page: the toolkit's printer writes PDF files, which another program reads
// back.
#include "app/cmdline.h"
#include "tests/kit/appfixture.h"
#include "tests/kit/printedpage.h"

#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QPageLayout>
#include <QPageSize>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QRadioButton>
#include <QStatusBar>
#include <QTranslator>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

using fixture::Settle;
using fixture::ShownArea;
using fixture::Window;

namespace {

constexpr double kPointsPerInch = 72.0;
// Points; a printer's dot is 0.06 at its best. The reader of the page rounds by a tenth of that.
constexpr double kTolerance = 0.02;
constexpr int kPatience = 20000; // milliseconds until a test gives up
constexpr QSize kViewSize(640, 480);
constexpr QRectF kWholeGraph(0, 0, 4096, 3120);
constexpr QSizeF kLargePaper(3000, 4000);
const QColor kGreen(0, 255, 0);
constexpr int kGreenIndex = 10;
constexpr int kRedHue = 90; // degrees

// A stroke of the test graph, as the file has it: y upward.
struct Stroke {
    QLine line;
    int width;
};

const Stroke kStrokes[] = {
    {{0, 0, 4095, 0}, 10},
    {{4095, 0, 4095, 3119}, 10},
    {{100, 200, 3000, 2500}, 40},
    {{700, 2900, 3900, 150}, 1},
};

// The strokes in black, then a red one; the file's own background is green.
std::string Graph()
{
    std::string file = plf::Start() + plf::ColorMapEntry(2, kRedHue, 50, 100) + plf::LineIndex(1);
    for (const Stroke& stroke : kStrokes) {
        file += plf::Width(stroke.width) +
                plf::Line(stroke.line.x1(), stroke.line.y1(), stroke.line.x2(), stroke.line.y2());
    }
    file += plf::LineIndex(2) + plf::Line(1000, 1000, 1000, 2000) + plf::Text(300, 300, "Text");
    return plf::WithBackground(file, kGreenIndex) + plf::End();
}

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

// What the view's printer is made to be, and what it says of itself then.
struct Paper {
    QPointF corner;     // of the printable area, points
    int resolution = 0; // dots per inch
};

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

// Answers everything with its context and itself.
class Marker : public QTranslator
{
public:
    Marker() { QCoreApplication::installTranslator(this); }
    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char* context, const char* text, const char* /*hint*/,
                                    int /*n*/) const override
    {
        return QLatin1String(context) == QStringLiteral("DrawView")
                   ? QStringLiteral("~") + QLatin1String(text)
                   : QString();
    }
};

void PressPrint(QPrintDialog& dialog)
{
    for (auto* button : dialog.findChildren<QPushButton*>()) {
        if (button->text() == QStringLiteral("&Print"))
            QTest::mouseClick(button, Qt::LeftButton);
    }
}

// Prints into a file, as the user would say it where there is no printer.
void AcceptInto(QPrintDialog& dialog, const std::string& pdf)
{
    auto* name = dialog.findChild<QLineEdit*>(QStringLiteral("filename"));
    QVERIFY(name != nullptr);
    name->setText(Text(pdf));
    PressPrint(dialog);
}

// Opens the dialog of properties, which stands on top of the print dialog, and calls handler with
// it.
template <typename Handler> void WithProperties(QPrintDialog& dialog, Handler handler)
{
    bool shown = false;
    QTimer::singleShot(0, &dialog, [&] {
        auto* properties = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        QVERIFY(properties != nullptr && properties != &dialog);
        shown = true;
        handler(*properties);
        properties->accept();
    });
    dialog.findChild<QPushButton*>(QStringLiteral("properties"))->click();
    QVERIFY(shown);
}

constexpr char kLandscape[] = "landscape";
constexpr char kPortrait[] = "portrait";

} // namespace

class TestPrinting : public QObject, protected fixture::WindowTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void cmdPrint_orientation_data();
    void cmdPrint_orientation();
    void cmdPrint_orientationOption_data();
    void cmdPrint_orientationOption();
    void cmdPrint_paperType_data();
    void cmdPrint_paperType();
    void cmdPrint_paperTypeOfTheConfigurationFile();
    void cmdPrint_again_takesTheNewSettings();
    void cmdPrint_endsItsJob();
    void cmdPrint_showsNoDialog();

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

    void print_dialog_isThePrintersOwn();
    void print_dialog_translatedTitle();
    void print_dialog_isMadeAnewAndGoesWithTheView();
    void print_ctrlP_asks();
    void print_cancelled_printsNothing();
    void print_accepted_printsOnce();
    void print_choiceInTheDialog_isPrinted_data();
    void print_choiceInTheDialog_isPrinted();
    void print_cancelledAfterACmdPrint_keepsItsSettings();
    void print_afterACmdPrint_startsFromItsSettings_data();
    void print_afterACmdPrint_startsFromItsSettings();
    void print_again_startsFromTheLastChoice();
    void print_quittingWhileOpen_isSurvived();

    void printer_isOfHighResolution();
    void printing_leavesTheViewAsItIs();
    void noPrinter_isNotReported_data();
    void noPrinter_isNotReported();
    void noPrinter_chainGoesOn();
    void noPrinter_theNextPrintIntoAFile_works_data();
    void noPrinter_theNextPrintIntoAFile_works();
    void unwritableFile_isNotReported();
    void unwritableFile_theNextPrintIntoAnother_works();
    void unwritableFile_isNotDrawnOn();
    void pipeThatNobodyReads_isNotReported();
    void pipeThatIsRead_getsThePage();

    void slots_haveTheirOrder();

private:
    void Open(Window& window, QSize size = kViewSize);
    void OpenEmpty(Window& window);
    Paper SetPrinter(const Window& window, const std::string& pdf, int resolution = 1200);
    static QRectF Zoom();
    QRectF Area(const PrintedPage& page);
    PrintedPage Printed();
    void CheckArea(const QRectF& area);
    static void CheckStroke(const PrintedLine& printed, const Stroke& stroke, const QRectF& area,
                            const QRectF& part);
    void CheckLines(const PrintedPage& page, const QRectF& area, const QRectF& part);
    void CheckPage(const std::string& pdf, QPageSize::PageSizeId size,
                   QPageLayout::Orientation orientation);
    static void Choose(QDialog& properties, QPageSize::PageSizeId size,
                       QPageLayout::Orientation orientation);
};

void TestPrinting::initTestCase()
{
    qputenv("CUPS_SERVER", "/nonexistent"); // the system's printers are none of these tests
    QVERIFY(!QPrinter().printerName().size());
}

void TestPrinting::init()
{
    Begin();
}

void TestPrinting::cleanup()
{
    End();
}

// Shows the test graph in a view of a size.
void TestPrinting::Open(Window& window, QSize size)
{
    window.AddViewOf(directories->Write("a.plf", Graph()));
    QVERIFY(window.Show());
    window->resize(window->size() + size - gpDraw->size());
    QTRY_COMPARE(gpDraw->size(), size);
    Settle();
}

// Shows a window whose user did not choose a file.
void TestPrinting::OpenEmpty(Window& window)
{
    dialogs->Expect<QFileDialog>([](QFileDialog& dialog) { dialog.reject(); });
    window.AddView();
    QVERIFY(window.Show());
}

// Lets the view's printer, which the print dialog gives away, write into a file. The paper is so
// large that nothing is cut off.
Paper TestPrinting::SetPrinter(const Window& window, const std::string& pdf, int resolution)
{
    Paper paper;
    dialogs->Expect<QPrintDialog>([&](QPrintDialog& dialog) {
        QPrinter& printer = *dialog.printer();
        printer.setOutputFileName(Text(pdf));
        printer.setResolution(resolution);
        printer.setPageSize(QPageSize(kLargePaper, QPageSize::Point));
        paper.resolution = printer.resolution();
        paper.corner = QPointF(printer.pageLayout().paintRectPixels(resolution).topLeft()) *
                       kPointsPerInch / resolution;
        dialog.reject();
    });
    window->view->printIt();
    return paper;
}

// The page that the graph makes; every test that uses it prints once, into this file.
PrintedPage TestPrinting::Printed()
{
    gpDraw->PrintGraph();
    return ReadPage(Text(Path("page.pdf")));
}

// Selects a part of the view and returns which part of the graph that is.
QRectF TestPrinting::Zoom()
{
    QTest::mousePress(gpDraw, Qt::LeftButton, {}, {160, 120});
    QTest::mouseMove(gpDraw, {480, 340});
    QTest::mouseRelease(gpDraw, Qt::LeftButton, {}, {480, 340});
    const QRectF part(1024, 780, 2048, 1430);
    [&] { QCOMPARE(QRectF(ShownArea(*gpDraw)), part); }();
    return part;
}

// The background is the whole graph's, so it shows where that is.
QRectF TestPrinting::Area(const PrintedPage& page)
{
    return page.areas.size() == 1 ? page.areas.constFirst().box : QRectF();
}

// Prints and checks where the page shows the graph.
void TestPrinting::CheckArea(const QRectF& area)
{
    const PrintedPage page = Printed();
    QVERIFY2(IsNear(Area(page), area), Describe(Area(page)) + " and not " + Describe(area));
    CheckLines(page, area, kWholeGraph);
}

void TestPrinting::CheckStroke(const PrintedLine& printed, const Stroke& stroke, const QRectF& area,
                               const QRectF& part)
{
    const auto place = [&](const QPoint& end) {
        return OnPaper(QPointF(end.x(), 3120 - end.y()), area, part);
    };
    const QByteArray which = QByteArray::number(&stroke - kStrokes);
    QVERIFY2(IsNear(printed.line.p1(), place(stroke.line.p1())), which);
    QVERIFY2(IsNear(printed.line.p2(), place(stroke.line.p2())), which);
}

void TestPrinting::CheckLines(const PrintedPage& page, const QRectF& area, const QRectF& part)
{
    QCOMPARE(page.lines.size(), qsizetype{std::size(kStrokes)} + 1);
    for (size_t i = 0; i < std::size(kStrokes); ++i)
        CheckStroke(page.lines.at(static_cast<qsizetype>(i)), kStrokes[i], area, part);
}

void TestPrinting::CheckPage(const std::string& pdf, QPageSize::PageSizeId size,
                             QPageLayout::Orientation orientation)
{
    QSizeF paper = QPageSize::size(size, QPageSize::Point);
    if (orientation == QPageLayout::Landscape)
        paper.transpose();
    const PrintedPage page = ReadPage(Text(pdf));
    QCOMPARE(page.paper, paper);
    QVERIFY(page.lines.size() >= 3); // the area is wider than a portrait page, and so cut
}

void TestPrinting::cmdPrint_orientation_data()
{
    QTest::addColumn<int>("setting");
    QTest::addColumn<QPageLayout::Orientation>("orientation");
    QTest::newRow("0") << 0 << QPageLayout::Landscape;
    for (const int setting : {1, 2, -1, 256, std::numeric_limits<int>::min()})
        QTest::addRow("%d", setting) << setting << QPageLayout::Portrait;
}

void TestPrinting::cmdPrint_orientation()
{
    QFETCH(int, setting);
    QFETCH(QPageLayout::Orientation, orientation);
    Window window;
    Open(window);
    SetPrinter(window, Path("page.pdf"));
    giCmdPrintOrientation = setting;
    gpDraw->cmdPrint();
    CheckPage(Path("page.pdf"), QPageSize::Letter, orientation);
}

void TestPrinting::cmdPrint_orientationOption_data()
{
    QTest::addColumn<QByteArray>("option");
    QTest::addColumn<QPageLayout::Orientation>("orientation");
    QTest::newRow("none") << QByteArray("-p") << QPageLayout::Landscape;
    QTest::newRow("p") << QByteArray("-po=p") << QPageLayout::Portrait;
    QTest::newRow("portrait") << QByteArray("-po=portrait") << QPageLayout::Portrait;
    QTest::newRow("l") << QByteArray("-po=l") << QPageLayout::Landscape;
    QTest::newRow("landscape") << QByteArray("-po=landscape") << QPageLayout::Landscape;
    QTest::newRow("nothing") << QByteArray("-po=") << QPageLayout::Landscape;
}

void TestPrinting::cmdPrint_orientationOption()
{
    QFETCH(QByteArray, option);
    QFETCH(QPageLayout::Orientation, orientation);
    static_cast<void>(directories->Write("work/a.plf", Graph()));
    QByteArray program("plotvw");
    QByteArray print("-p");
    QByteArray file("a.plf");
    char* argv[] = {program.data(), print.data(), option.data(), file.data(), nullptr};
    QCOMPARE(ProcessCmdline(4, argv, 1), 0);
    Window window;
    window.AddView();
    SetPrinter(window, Path("page.pdf"));
    gpDraw->PostCmdargDone(0);
    CheckPage(Path("page.pdf"), QPageSize::Letter, orientation);
    QCOMPARE(giCmdArg, 0);
}

void TestPrinting::cmdPrint_paperType_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("paper");
    QTest::newRow("0") << 0 << int{QPageSize::Letter};
    QTest::newRow("2") << 2 << int{QPageSize::A4};
    for (const int type : {-1, 1, 3, 4, 100, std::numeric_limits<int>::max()})
        QTest::addRow("%d", type) << type << int{QPageSize::Legal};
}

void TestPrinting::cmdPrint_paperType()
{
    QFETCH(int, type);
    QFETCH(int, paper);
    Window window;
    Open(window);
    giCmdPrintPapertype = type;
    SetPrinter(window, Path("landscape.pdf"));
    gpDraw->cmdPrint();
    giCmdPrintOrientation = 1;
    SetPrinter(window, Path("portrait.pdf"));
    gpDraw->cmdPrint();
    const auto size = static_cast<QPageSize::PageSizeId>(paper);
    CheckPage(Path("landscape.pdf"), size, QPageLayout::Landscape);
    CheckPage(Path("portrait.pdf"), size, QPageLayout::Portrait);
}

void TestPrinting::cmdPrint_paperTypeOfTheConfigurationFile()
{
    static_cast<void>(directories->Write("home/plotvw.cfg", "printer_paper_type=2\n"));
    Window window;
    Open(window);
    SetPrinter(window, Path("page.pdf"));
    gpDraw->cmdPrint();
    CheckPage(Path("page.pdf"), QPageSize::A4, QPageLayout::Landscape);
}

void TestPrinting::cmdPrint_again_takesTheNewSettings()
{
    Window window;
    Open(window);
    SetPrinter(window, Path("first.pdf"));
    giCmdPrintPapertype = 2;
    giCmdPrintOrientation = 1;
    gpDraw->cmdPrint();
    SetPrinter(window, Path("second.pdf"));
    giCmdPrintPapertype = 1;
    giCmdPrintOrientation = 0;
    gpDraw->cmdPrint();
    CheckPage(Path("first.pdf"), QPageSize::A4, QPageLayout::Portrait);
    CheckPage(Path("second.pdf"), QPageSize::Legal, QPageLayout::Landscape);
}

void TestPrinting::cmdPrint_endsItsJob()
{
    Window window;
    Open(window);
    SetPrinter(window, Path("page.pdf"));
    giCmdArg = kJobPrint | kJobEps;
    gpDraw->cmdPrint();
    QCOMPARE(giCmdArg, 0);
    QVERIFY(Exists(Path("a.eps")));
    CheckPage(Path("page.pdf"), QPageSize::Letter, QPageLayout::Landscape);
}

// The test's cleanup tells of any dialog.
void TestPrinting::cmdPrint_showsNoDialog()
{
    Window window;
    Open(window);
    SetPrinter(window, Path("page.pdf"));
    const QString status = window->statusBar()->currentMessage();
    gpDraw->cmdPrint();
    Settle();
    QCOMPARE(window->statusBar()->currentMessage(), status);
}

void TestPrinting::page_area_followsTheResolution_data()
{
    QTest::addColumn<int>("resolution");
    QTest::addColumn<QRect>("dots");
    QTest::newRow("1200") << 1200 << QRect(960, 720, 10800, 8226);
    QTest::newRow("600") << 600 << QRect(480, 360, 5400, 4113);
    QTest::newRow("300") << 300 << QRect(240, 180, 2700, 2056);
    QTest::newRow("72") << 72 << QRect(57, 43, 648, 493);
}

void TestPrinting::page_area_followsTheResolution()
{
    QFETCH(int, resolution);
    QFETCH(QRect, dots);
    Window window;
    Open(window);
    const Paper paper = SetPrinter(window, Path("page.pdf"), resolution);
    QCOMPARE(paper.resolution, resolution);
    CheckArea(Dots(paper, dots.x(), dots.y(), dots.width(), dots.height()));
}

void TestPrinting::page_halfSizeAt600_is2700By2056()
{
    Window window;
    Open(window);
    const Paper paper = SetPrinter(window, Path("page.pdf"), 600);
    gdPageSizeX = gdPageSizeY = 0.5;
    CheckArea(Dots(paper, 480, 360, 2700, 2056));
}

void TestPrinting::page_sizeAndShift_areTruncated_data()
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

void TestPrinting::page_sizeAndShift_areTruncated()
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

void TestPrinting::page_sizeAndShiftOfTheConfigurationFile()
{
    static_cast<void>(directories->Write("home/plotvw.cfg",
                                         "printer_page_shift=-12,30\nprinter_page_size=0.5,0.5\n"));
    Window window;
    Open(window);
    const Paper paper = SetPrinter(window, Path("page.pdf"), 600);
    CheckArea(Dots(paper, 468, 390, 2700, 2056));
}

void TestPrinting::page_emptySize_isSurvived_data()
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

void TestPrinting::page_emptySize_isSurvived()
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

void TestPrinting::page_lines_areWhereTheirCoordinatesSay()
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

void TestPrinting::page_penWidths_data()
{
    QTest::addColumn<int>("least");
    QTest::addColumn<QList<int>>("widths"); // of the strokes, drawing units
    QTest::newRow("the default") << 2 << QList<int>{20, 20, 80, 4};
    QTest::newRow("none") << 0 << QList<int>{20, 20, 80, 2};
    QTest::newRow("less than none") << -5 << QList<int>{20, 20, 80, 2};
    QTest::newRow("as wide as some") << 10 << QList<int>{20, 20, 80, 20};
    QTest::newRow("wide") << 25 << QList<int>{50, 50, 80, 50};
}

void TestPrinting::page_penWidths()
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

void TestPrinting::page_penWidths_followTheViewsWidth()
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

void TestPrinting::page_background_data()
{
    QTest::addColumn<bool>("white");
    QTest::addColumn<QColor>("color");
    QTest::newRow("white") << true << QColor(255, 255, 255);
    QTest::newRow("the file's own") << false << kGreen;
}

void TestPrinting::page_background()
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

void TestPrinting::page_texts_arePrinted()
{
    Window window;
    Open(window);
    SetPrinter(window, Path("page.pdf"));
    QCOMPARE(Printed().letters, 4);
}

void TestPrinting::page_title_isTheGraphsName()
{
    Window window;
    Open(window);
    SetPrinter(window, Path("page.pdf"));
    gpDraw->PrintGraph();
    QCOMPARE(ReadTitle(Text(Path("page.pdf"))), QStringLiteral("a.plf"));
    window->load(Text(directories->Write("größer.plf", Graph())));
    gpDraw->cmdPrint();
    QCOMPARE(ReadTitle(Text(Path("page.pdf"))), QString::fromUtf8("größer.plf"));
}

void TestPrinting::page_title_withoutAGraph_isTheProgramsName()
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

void TestPrinting::page_isNotWrittenAsEpsToo()
{
    Window window;
    Open(window);
    SetPrinter(window, Path("page.pdf"));
    QVERIFY(CopyText(gszCvtFilename, Path("last.eps").c_str()));
    QVERIFY(!Printed().lines.isEmpty());
    QVERIFY(!Exists(Path("last.eps")));
}

void TestPrinting::page_zoomed_fillsTheAreaWithThePart()
{
    Window window;
    Open(window);
    const Paper paper = SetPrinter(window, Path("page.pdf"));
    const QRectF part = Zoom();
    const PrintedPage page = Printed();
    const QRectF area = DefaultArea(paper);
    // Only the third and the fourth stroke reach into the part.
    QCOMPARE(page.lines.size(), 2);
    CheckStroke(page.lines.at(0), kStrokes[2], area, part);
    CheckStroke(page.lines.at(1), kStrokes[3], area, part);
    // Twice as large as the whole graph, and so are the pens.
    const QLineF stroke = kStrokes[2].line;
    const double stretch = page.lines.at(0).line.length() / stroke.length();
    const double square = area.width() / part.width() * area.height() / part.height();
    const double width = page.lines.at(0).width;
    QVERIFY2(IsPenWidth(width, 160 * square / stretch), QByteArray::number(width));
    // What is shown fills the area: its corners are where those of the part are.
    QVERIFY(IsNear(OnPaper(part.topLeft(), area, part), area.topLeft()));
    QVERIFY(Area(page).contains(area));
}

// The graph's other parts would have room on this paper, on every side.
void TestPrinting::page_zoomed_leavesThePaperAroundTheAreaEmpty()
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

void TestPrinting::page_zoomedAndInverted_showsThePart()
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
    CheckStroke(page.lines.at(0), kStrokes[2], area, part);
    CheckStroke(page.lines.at(1), kStrokes[3], area, part);
}

// Addresses reach higher than the area, and texts may run over its edge.
void TestPrinting::page_wholeGraph_goesOnBeyondItsArea()
{
    const std::string above = plf::Start() + plf::Line(1000, 3200, 3000, 3200) + plf::End();
    Window window;
    window.AddViewOf(directories->Write("above.plf", above));
    const Paper paper = SetPrinter(window, Path("page.pdf"));
    const PrintedPage page = Printed();
    QCOMPARE(page.lines.size(), 1);
    QVERIFY(IsNear(page.lines.at(0).line.p1(), OnPaper({1000, -80}, DefaultArea(paper))));
}

void TestPrinting::page_withoutAGraph_isEmpty()
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

void TestPrinting::page_afterAFailedLoad_isEmpty()
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

void TestPrinting::print_dialog_isThePrintersOwn()
{
    Window window;
    Open(window);
    const QPrinter* printer = nullptr;
    for (int i = 0; i < 2; ++i) {
        dialogs->Expect<QPrintDialog>([&](QPrintDialog& dialog) {
            QCOMPARE(dialog.windowTitle(), QStringLiteral("Print Graph"));
            QCOMPARE(dialog.parentWidget(), window->view);
            QVERIFY(dialog.isModal());
            QVERIFY(printer == nullptr || printer == dialog.printer());
            printer = dialog.printer();
        });
        QVERIFY(QMetaObject::invokeMethod(window.Get(), "print"));
    }
    QVERIFY(printer != nullptr);
}

void TestPrinting::print_dialog_translatedTitle()
{
    Window window;
    Open(window);
    const Marker marker;
    dialogs->Expect<QPrintDialog>([](QPrintDialog& dialog) {
        QCOMPARE(dialog.windowTitle(), QStringLiteral("~Print Graph"));
    });
    gpDraw->printIt();
}

void TestPrinting::print_dialog_isMadeAnewAndGoesWithTheView()
{
    QList<QPointer<QPrintDialog>> shown;
    {
        Window window;
        Open(window);
        for (int i = 0; i < 3; ++i) {
            dialogs->Expect<QPrintDialog>([&](QPrintDialog& dialog) {
                QVERIFY(!shown.contains(&dialog));
                shown.append(&dialog);
            });
            gpDraw->printIt();
        }
        Settle();
        QCOMPARE(gpDraw->findChildren<QPrintDialog*>().size(), 3);
    }
    QCOMPARE(shown, QList<QPointer<QPrintDialog>>(3));
}

void TestPrinting::print_ctrlP_asks()
{
    Window window;
    Open(window);
    int shown = 0;
    dialogs->Expect<QPrintDialog>([&](QPrintDialog&) { ++shown; });
    QTest::keyClick(window.Get(), Qt::Key_P, Qt::ControlModifier);
    QTRY_COMPARE_WITH_TIMEOUT(shown, 1, kPatience);
    QTRY_VERIFY_WITH_TIMEOUT(QApplication::activeModalWidget() == nullptr, kPatience);
}

void TestPrinting::print_cancelled_printsNothing()
{
    Window window;
    Open(window);
    const QString status = window->statusBar()->currentMessage();
    const std::string pdf = Path("page.pdf");
    dialogs->Expect<QPrintDialog>([&](QPrintDialog& dialog) {
        dialog.printer()->setOutputFileName(Text(pdf));
        dialog.findChild<QLineEdit*>(QStringLiteral("filename"))->setText(Text(pdf));
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    gpDraw->printIt();
    QVERIFY(!Exists(pdf));
    QCOMPARE(window->statusBar()->currentMessage(), status);
}

void TestPrinting::print_accepted_printsOnce()
{
    Window window;
    Open(window);
    const std::string pdf = Path("page.pdf");
    gbCmdQuit = true; // concerns jobs of the command line alone
    dialogs->Expect<QPrintDialog>([&](QPrintDialog& dialog) { AcceptInto(dialog, pdf); });
    gpDraw->printIt();
    CheckPage(pdf, QPageSize::A4, QPageLayout::Portrait);
    QVERIFY(!window.IsGone() && window->isVisible());
}

// In the dialog's own dialog of properties.
void TestPrinting::Choose(QDialog& properties, QPageSize::PageSizeId size,
                          QPageLayout::Orientation orientation)
{
    auto* sizes = properties.findChild<QComboBox*>(QStringLiteral("pageSizeCombo"));
    auto* button = properties.findChild<QRadioButton*>(
        QString::fromLatin1(orientation == QPageLayout::Landscape ? kLandscape : kPortrait));
    QVERIFY(sizes != nullptr);
    QVERIFY(button != nullptr);
    const int index = sizes->findText(QPageSize::name(size));
    QVERIFY(index >= 0);
    sizes->setCurrentIndex(index);
    button->click();
}

void TestPrinting::print_choiceInTheDialog_isPrinted_data()
{
    QTest::addColumn<int>("paper");
    QTest::addColumn<QPageLayout::Orientation>("orientation");
    QTest::newRow("A5 landscape") << int{QPageSize::A5} << QPageLayout::Landscape;
    QTest::newRow("Legal portrait") << int{QPageSize::Legal} << QPageLayout::Portrait;
}

// The settings of the command line do not count here.
void TestPrinting::print_choiceInTheDialog_isPrinted()
{
    QFETCH(int, paper);
    QFETCH(QPageLayout::Orientation, orientation);
    const auto size = static_cast<QPageSize::PageSizeId>(paper);
    Window window;
    Open(window);
    const std::string pdf = Path("page.pdf");
    giCmdPrintPapertype = 2;
    giCmdPrintOrientation = orientation == QPageLayout::Landscape ? 1 : 0;
    dialogs->Expect<QPrintDialog>([&](QPrintDialog& dialog) {
        WithProperties(dialog, [&](QDialog& properties) { Choose(properties, size, orientation); });
        AcceptInto(dialog, pdf);
    });
    gpDraw->printIt();
    CheckPage(pdf, size, orientation);
}

void TestPrinting::print_cancelledAfterACmdPrint_keepsItsSettings()
{
    Window window;
    Open(window);
    SetPrinter(window, Path("first.pdf"));
    giCmdPrintPapertype = 2;
    giCmdPrintOrientation = 1;
    gpDraw->cmdPrint();
    dialogs->Expect<QPrintDialog>([&](QPrintDialog& dialog) {
        dialog.printer()->setOutputFileName(Text(Path("second.pdf")));
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    gpDraw->printIt();
    gpDraw->PrintGraph();
    CheckPage(Path("second.pdf"), QPageSize::A4, QPageLayout::Portrait);
}

void TestPrinting::print_afterACmdPrint_startsFromItsSettings_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("setting");
    QTest::addColumn<int>("paper");
    QTest::addColumn<QPageLayout::Orientation>("orientation");
    QTest::newRow("Letter landscape") << 0 << 0 << int{QPageSize::Letter} << QPageLayout::Landscape;
    QTest::newRow("Legal portrait") << 1 << 1 << int{QPageSize::Legal} << QPageLayout::Portrait;
    QTest::newRow("A4 landscape") << 2 << 0 << int{QPageSize::A4} << QPageLayout::Landscape;
}

void TestPrinting::print_afterACmdPrint_startsFromItsSettings()
{
    QFETCH(int, type);
    QFETCH(int, setting);
    QFETCH(int, paper);
    QFETCH(QPageLayout::Orientation, orientation);
    const auto size = static_cast<QPageSize::PageSizeId>(paper);
    Window window;
    Open(window);
    giCmdPrintPapertype = type;
    giCmdPrintOrientation = setting;
    SetPrinter(window, Path("first.pdf"));
    gpDraw->cmdPrint();
    giCmdPrintPapertype = 3;
    giCmdPrintOrientation = 1 - setting;
    dialogs->Expect<QPrintDialog>([&](QPrintDialog& dialog) {
        const QPageLayout layout = dialog.printer()->pageLayout();
        QCOMPARE(layout.pageSize().id(), size);
        QCOMPARE(layout.orientation(), orientation);
        WithProperties(dialog, [&](QDialog& properties) {
            QCOMPARE(
                properties.findChild<QComboBox*>(QStringLiteral("pageSizeCombo"))->currentText(),
                QPageSize::name(size));
            QCOMPARE(
                properties.findChild<QRadioButton*>(QString::fromLatin1(kLandscape))->isChecked(),
                orientation == QPageLayout::Landscape);
        });
        AcceptInto(dialog, Path("page.pdf"));
    });
    gpDraw->printIt();
    CheckPage(Path("page.pdf"), size, orientation);
}

void TestPrinting::print_again_startsFromTheLastChoice()
{
    Window window;
    Open(window);
    const std::string first = Path("first.pdf");
    const std::string second = Path("second.pdf");
    dialogs->Expect<QPrintDialog>([&](QPrintDialog& dialog) {
        WithProperties(dialog, [](QDialog& properties) {
            Choose(properties, QPageSize::A5, QPageLayout::Landscape);
        });
        AcceptInto(dialog, first);
    });
    gpDraw->printIt();
    dialogs->Expect<QPrintDialog>([&](QPrintDialog& dialog) {
        QCOMPARE(dialog.printer()->outputFileName(), Text(first));
        AcceptInto(dialog, second);
    });
    gpDraw->printIt();
    CheckPage(second, QPageSize::A5, QPageLayout::Landscape);
}

void TestPrinting::print_quittingWhileOpen_isSurvived()
{
    Window window;
    Open(window);
    dialogs->Expect<QPrintDialog>([](QPrintDialog&) { QCoreApplication::quit(); });
    QTimer::singleShot(0, window.Get(), [] { gpDraw->printIt(); });
    QCOMPARE(QApplication::exec(), 0);
    QTRY_VERIFY(window.IsGone());
}

void TestPrinting::printer_isOfHighResolution()
{
    Window window;
    Open(window);
    const int resolution = QPrinter(QPrinter::HighResolution).resolution();
    dialogs->Expect<QPrintDialog>([&](QPrintDialog& dialog) {
        QCOMPARE(dialog.printer()->resolution(), resolution);
        QVERIFY(!dialog.printer()->fullPage());
        QVERIFY(resolution > 300);
    });
    gpDraw->printIt();
}

void TestPrinting::printing_leavesTheViewAsItIs()
{
    Window window;
    Open(window);
    SetPrinter(window, Path("page.pdf"));
    const QImage picture = gpDraw->grab().toImage();
    const QString title = window->windowTitle();
    gpDraw->cmdPrint();
    QCOMPARE(gpDraw->grab().toImage(), picture);
    QCOMPARE(ShownArea(*gpDraw), fixture::kWholeArea);
    QCOMPARE(window->windowTitle(), title);
    QCOMPARE(gdwVectorCnt, static_cast<unsigned long>(std::size(kStrokes)) + 1);
}

void TestPrinting::noPrinter_isNotReported_data()
{
    QTest::addColumn<bool>("byCommand");
    QTest::newRow("command line") << true;
    QTest::newRow("directly") << false;
}

void TestPrinting::noPrinter_isNotReported()
{
    QFETCH(bool, byCommand);
    Window window;
    Open(window);
    const QString status = window->statusBar()->currentMessage();
    byCommand ? gpDraw->cmdPrint() : gpDraw->PrintGraph();
    Settle();
    QCOMPARE(window->statusBar()->currentMessage(), status);
    QCOMPARE(QDir(Text(Path("work"))).entryList(QDir::Files), QStringList());
}

void TestPrinting::noPrinter_chainGoesOn()
{
    Window window;
    Open(window);
    giCmdArg = kJobPrint | kJobJpeg | kJobEps;
    gpDraw->PostCmdargDone(0);
    QCOMPARE(giCmdArg, 0);
    QVERIFY(Exists(Path("a.jpg")) && Exists(Path("a.eps")));
}

void TestPrinting::noPrinter_theNextPrintIntoAFile_works_data()
{
    QTest::addColumn<bool>("failedBefore");
    QTest::newRow("first print") << false;
    QTest::newRow("after one that could not begin") << true;
}

// The printer is the same one; what the user chooses makes it work.
void TestPrinting::noPrinter_theNextPrintIntoAFile_works()
{
    QFETCH(bool, failedBefore);
    Window window;
    Open(window);
    if (failedBefore)
        gpDraw->cmdPrint();
    const std::string pdf = Path("page.pdf");
    dialogs->Expect<QPrintDialog>([&](QPrintDialog& dialog) { AcceptInto(dialog, pdf); });
    gpDraw->printIt();
    QVERIFY(Exists(pdf));
}

void TestPrinting::unwritableFile_theNextPrintIntoAnother_works()
{
    Window window;
    Open(window);
    SetPrinter(window, Path("none/page.pdf"));
    gpDraw->PrintGraph();
    SetPrinter(window, Path("page.pdf"));
    QVERIFY(!Printed().lines.isEmpty());
}

void TestPrinting::unwritableFile_isNotReported()
{
    Window window;
    Open(window);
    SetPrinter(window, Path("none/page.pdf"));
    giCmdArg = kJobPrint | kJobEps;
    gpDraw->PostCmdargDone(0);
    QCOMPARE(giCmdArg, 0);
    QVERIFY(!Exists(Path("none")) && Exists(Path("a.eps")));
}

void TestPrinting::unwritableFile_isNotDrawnOn()
{
    constexpr unsigned long kUntouched = 4711;
    Window window;
    Open(window);
    SetPrinter(window, Path("none/page.pdf"));
    gdwVectorCnt = kUntouched;
    gpDraw->PrintGraph();
    QCOMPARE(gdwVectorCnt, kUntouched);
}

void TestPrinting::pipeThatNobodyReads_isNotReported()
{
    Window window;
    Open(window);
    QCOMPARE(mkfifo(Path("pipe").c_str(), 0600), 0);
    SetPrinter(window, Path("pipe"));
    giCmdArg = kJobPrint | kJobEps;
    gpDraw->PostCmdargDone(0);
    QCOMPARE(giCmdArg, 0);
    QVERIFY(Exists(Path("a.eps")));
}

// The page is smaller than what a pipe holds.
void TestPrinting::pipeThatIsRead_getsThePage()
{
    Window window;
    Open(window);
    QCOMPARE(mkfifo(Path("pipe").c_str(), 0600), 0);
    const int reader = open(Path("pipe").c_str(), O_RDONLY | O_NONBLOCK);
    QVERIFY(reader >= 0);
    SetPrinter(window, Path("pipe"));
    gpDraw->PrintGraph();
    char bytes[65536];
    const QByteArray page(bytes, std::max<ssize_t>(read(reader, bytes, sizeof bytes), 0));
    close(reader);
    QVERIFY(page.startsWith("%PDF-"));
    QVERIFY(page.trimmed().endsWith("%%EOF"));
}

void TestPrinting::slots_haveTheirOrder()
{
    const QStringList table = {
        QStringLiteral("updateIt()"),
        QStringLiteral("printIt()"),
        QStringLiteral("cmdPrint()"),
        QStringLiteral("customEvent(QCustomEvent*)"),
        QStringLiteral("PostCmdargDone(int)"),
        QStringLiteral("drawIt(QPainter*,bool,int)"),
        QStringLiteral("drawIt(QPainter*,bool)"),
        QStringLiteral("drawIt(QPainter*)"),
    };
    QCOMPARE(fixture::OwnMethods(DrawView::staticMetaObject, QMetaMethod::Slot), table);
}

QTEST_MAIN(TestPrinting)
#include "test_printing.moc"
