// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Printing without a dialog: settings of the command line, and printers and files that fail.
#include "app/cmdline.h"
#include "tests/kit/printing.h"

#include <QDir>
#include <QPageLayout>
#include <QPageSize>
#include <QPrintDialog>
#include <QPrinter>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <limits>

using fixture::AcceptInto;
using fixture::kPrintStrokes;
using fixture::PrintGraph;
using fixture::Settle;
using fixture::ShownArea;
using fixture::Status;
using fixture::Window;

class TestPrinting : public QObject, protected fixture::PrintTest
{
    Q_OBJECT

private slots:
    void initTestCase() { HidePrinters(); }
    void init() { Begin(); }
    void cleanup() { End(); }

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

    void printer_isOfHighResolution();
    void printing_leavesTheViewAsItIs();
    void noPrinter_isNotReported_data();
    void noPrinter_isNotReported();
    void noPrinter_theNextPrintIntoAFile_works_data();
    void noPrinter_theNextPrintIntoAFile_works();
    void unwritableFile_isNotReported();
    void unwritableFile_theNextPrintIntoAnother_works();
    void unwritableFile_isNotDrawnOn();
    void pipeThatNobodyReads_isNotReported();
    void pipeThatIsRead_getsThePage();

    void slots_haveTheirOrder();
};

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
    directories->Write("work/a.plf", PrintGraph());
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
    directories->Write("home/plotvw.cfg", "printer_paper_type=2\n");
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
    const QString status = Status(window);
    gpDraw->cmdPrint();
    Settle();
    QCOMPARE(Status(window), status);
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
    QCOMPARE(gdwVectorCnt, static_cast<unsigned long>(std::size(kPrintStrokes)) + 1);
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
    const QString status = Status(window);
    byCommand ? gpDraw->cmdPrint() : gpDraw->PrintGraph();
    Settle();
    QCOMPARE(Status(window), status);
    QCOMPARE(QDir(Text(Path("work"))).entryList(QDir::Files), QStringList());
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
