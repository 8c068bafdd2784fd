// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Jobs of the command line: pages on a print server, JPEG and EPS files. Pages are measured.
#include "tests/e2e/jobstest.h"

#include <QFile>

namespace {

const QString kTitle = QStringLiteral("KORVEL Viewer");

} // namespace

class TestJobs : public QObject, protected JobsTest
{
    Q_OBJECT

private slots:
    void initTestCase() { BeginAll(); }
    void cleanupTestCase() { EndAll(); }
    void init() { Begin(); }
    void cleanup() { End(); }

    void jobs_writeTheirFilesAndPages_data();
    void jobs_writeTheirFilesAndPages();
    void jobs_paperAndOrientation_data();
    void jobs_paperAndOrientation();
    void jobs_pageShiftAndSize_data();
    void jobs_pageShiftAndSize();
    void jobs_penWidths_data();
    void jobs_penWidths();
    void jobs_graphThatCannotBeRead_printsAnEmptyPage();
    void jobs_jpegQuality_followsTheConfiguration();
    void jobs_jpegThatFails_isReported();
    void jobs_quitOption_staysOpen_data();
    void jobs_quitOption_staysOpen();

    void noServer_nothingHangsAndTheChainGoesOn();
    void stoppedQueue_keepsTheJobAndTheChainGoesOn();
    void refusingQueue_losesTheJobAndTheChainGoesOn();
};

void TestJobs::jobs_writeTheirFilesAndPages_data()
{
    QTest::addColumn<QString>("options"); // HOME stands for the home directory
    QTest::addColumn<QString>("files");
    QTest::addColumn<int>("pages");
    const auto row = [](const char* options, const char* files, int pages) {
        QTest::newRow(options) << QString::fromUtf8(options) << QString::fromUtf8(files) << pages;
    };
    row("-p", "", 1);
    row("-c=1", "graph.jpg", 0);
    row("-c=2", "graph.eps", 0);
    row("-c=3", "", 0);
    row("-c=1 -p", "graph.jpg", 1);
    row("-p -c=1", "graph.jpg", 0);
    row("-c=2 -p", "graph.eps", 1);
    row("-p -c=2", "graph.eps", 0);
    row("-c=1 -c=2", "graph.eps", 0);
    row("-c=2 -c=1", "graph.jpg", 0);
    row("-c=1 -p -p", "graph.jpg", 1);
    row("-c=1 -cf=out", "out.jpg", 0);
    row("-c=2 -cf=out", "out.eps", 0);
    row("-c=1 -cf=out.png", "out.png", 0);
    row("-c=1 -cf=sub/out", "sub/out.jpg", 0);
    row("-c=1 -cf=out -cwd=HOME/sub", "sub/out.jpg", 0);
    row("-cwd=HOME/sub -cf=out -c=2", "sub/out.eps", 0);
    row("-c=2 -cwd=HOME/sub", "graph.eps", 0); // the graph's name has a directory
    row("-c=2 -cf=Größe", "Größe.eps", 0);
    row("-cf=out -cwd=HOME/sub", "", 0);
    row("-c=2 -p -cf=out -cwd=HOME/sub -po=p", "sub/out.eps", 1);
}

void TestJobs::jobs_writeTheirFilesAndPages()
{
    QFETCH(QString, options);
    QFETCH(QString, files);
    QFETCH(int, pages);
    Open(Words(options.replace(QStringLiteral("HOME"), home->path())));
    Quit();
    QCOMPARE(Files(), Words(files));
    QCOMPARE(PrintServer::Jobs() - jobsBefore, qsizetype{pages});
    for (const QString& file : Files()) {
        QVERIFY2(
            ReadFile(Path(file))
                .startsWith(file.endsWith(QStringLiteral(".eps")) ? "%!PS-Adobe" : "\xff\xd8\xff"),
            qPrintable(file));
    }
    for (int page = 0; page < pages; ++page)
        QVERIFY(TakePage().lines.size() > 0);
}

void TestJobs::jobs_paperAndOrientation_data()
{
    QTest::addColumn<QByteArray>("paper"); // configured
    QTest::addColumn<QString>("options");
    QTest::addColumn<Sheet>("sheet");
    const auto row = [](const char* paper, const char* options, const Sheet& sheet) {
        QTest::addRow("%s %s", paper, options)
            << QByteArray(paper) << QString::fromLatin1(options) << sheet;
    };
    row("", "-p", kLetterLandscape);
    row("0", "-p", kLetterLandscape);
    row("0", "-p -po=p", kLetterPortrait);
    row("0", "-p -po=l", kLetterLandscape);
    row("1", "-p", kLegalLandscape);
    row("1", "-po=p -p", kLegalPortrait);
    row("2", "-p", kA4Landscape);
    row("2", "-p -po=portrait", kA4Portrait);
    row("3", "-p", kLegalLandscape);
    row("-1", "-p -po=landscape", kLegalLandscape);
}

void TestJobs::jobs_paperAndOrientation()
{
    QFETCH(QByteArray, paper);
    QFETCH(QString, options);
    QFETCH(Sheet, sheet);
    if (!paper.isEmpty())
        Configure("printer_paper_type=" + paper + '\n');
    Open(Words(options));
    CheckPage(TakePage(), sheet, PrintedGraph(sheet));
    QCOMPARE(server->Name(jobsBefore), QStringLiteral("graph.plf"));
    Quit();
}

void TestJobs::jobs_pageShiftAndSize_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QPoint>("shift");
    QTest::addColumn<QPointF>("size");
    QTest::newRow("half") << QByteArray("printer_page_size=0.5,0.5\n") << QPoint()
                          << QPointF(0.5, 0.5);
    QTest::newRow("each its own, in fractions of dots")
        << QByteArray("printer_page_size=0.333,0.777\n") << QPoint() << QPointF(0.333, 0.777);
    QTest::newRow("shifted") << QByteArray("printer_page_shift=601,-333\n") << QPoint(601, -333)
                             << QPointF(1, 1);
    QTest::newRow("both") << QByteArray("printer_page_shift=-480,1200\nprinter_page_size=0.7,0.8\n")
                          << QPoint(-480, 1200) << QPointF(0.7, 0.8);
}

void TestJobs::jobs_pageShiftAndSize()
{
    QFETCH(QByteArray, lines);
    QFETCH(QPoint, shift);
    QFETCH(QPointF, size);
    Configure(lines);
    Open({QStringLiteral("-p")});
    const PrintedPage page = TakePage();
    const QRectF area = PrintedGraph(kLetterLandscape, shift, size);
    CheckPage(page, kLetterLandscape, area);
    QCOMPARE(page.areas.size(), 1);
    const QRectF filled = page.areas.constFirst().box;
    QVERIFY2(IsNear(filled.topLeft(), area.topLeft()) &&
                 IsNear(filled.bottomRight(), area.bottomRight()),
             Describe(filled) + " and not " + Describe(area));
    Quit();
}

void TestJobs::jobs_penWidths_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QString>("options");
    QTest::addColumn<int>("thick"); // drawing units
    QTest::addColumn<int>("thin");
    QTest::newRow("usual window") << QByteArray() << QStringLiteral("-p") << 160 << 4;
    QTest::newRow("wide window") << QByteArray() << QStringLiteral("-p -wp=20,20,960,700") << 240
                                 << 4;
    QTest::newRow("narrow window")
        << QByteArray() << QStringLiteral("-p -wp=20,20,320,300") << 80 << 4;
    QTest::newRow("thicker at least")
        << QByteArray("printer_min_linewidth=7\n") << QStringLiteral("-p") << 160 << 14;
    QTest::newRow("thicker than all")
        << QByteArray("printer_min_linewidth=100\n") << QStringLiteral("-p") << 200 << 200;
}

// On paper a line is twice as many units wide as in the file, in a window of the usual width.
void TestJobs::jobs_penWidths()
{
    QFETCH(QByteArray, lines);
    QFETCH(QString, options);
    QFETCH(int, thick);
    QFETCH(int, thin);
    Configure(lines);
    Open(Words(options));
    const PrintedPage page = TakePage();
    QCOMPARE(page.lines.size(), qsizetype{std::size(kStrokes)} + 1);
    const QRectF area = PrintedGraph(kLetterLandscape);
    const double unitWidth = area.width() / kGraphWidth;
    const double unitHeight = area.height() / kGraphHeight;
    const double level = page.lines.constFirst().width;
    const double upright = page.lines.at(1).width;
    const double last = page.lines.constLast().width;
    QVERIFY2(IsNear(level, thick * unitHeight), QByteArray::number(level));
    QVERIFY2(IsNear(upright, thick * unitWidth), QByteArray::number(upright));
    QVERIFY2(IsNear(last, thin * unitHeight), QByteArray::number(last));
    Quit();
}

void TestJobs::jobs_graphThatCannotBeRead_printsAnEmptyPage()
{
    QVERIFY(viewer->Start({QStringLiteral("none.plf"), QStringLiteral("-p")}));
    QVERIFY(viewer->AwaitWindow(QStringLiteral("Error")));
    PressKeys(QStringLiteral("Return"));
    QVERIFY(viewer->AwaitWindow(kTitle));
    const PrintedPage page = TakePage();
    QCOMPARE(page.paper, kLetterLandscape.size);
    QCOMPARE(page.lines.size() + page.areas.size() + page.letters, 0);
    Quit();
}

void TestJobs::jobs_jpegQuality_followsTheConfiguration()
{
    const QStringList options{QStringLiteral("-c=1")};
    Open(options);
    Quit();
    const QByteArray best = ReadFile(Path(QStringLiteral("graph.jpg")));
    QCOMPARE(viewer->Errors(), QByteArray());
    Configure("export_quality=7\n");
    viewer.emplace(home->path());
    Open(options);
    Quit();
    const QByteArray good = ReadFile(Path(QStringLiteral("graph.jpg")));
    QVERIFY(best.startsWith("\xff\xd8\xff") && good.startsWith("\xff\xd8\xff"));
    QVERIFY(good.size() < best.size());
    // The table of the luminance, behind its length and number: all ones is the best.
    const qsizetype table = best.indexOf("\xff\xdb") + 5;
    QCOMPARE(best.mid(table, 64), QByteArray(64, 1));
    QCOMPARE(good.at(table), char{10}); // the standard's 16 at 60 percent
}

void TestJobs::jobs_jpegThatFails_isReported()
{
    QVERIFY(viewer->Start({QStringLiteral("graph.plf"), QStringLiteral("-c=1"),
                           QStringLiteral("-p"), QStringLiteral("-cf=none/out")}));
    QVERIFY(viewer->AwaitWindow(QStringLiteral("Save failed")));
    QVERIFY(viewer->AwaitText(QStringLiteral("Export failed for file: none/out.jpg")));
    QVERIFY(TakePage().lines.size() > 0); // it came before
    PressKeys(QStringLiteral("Return"));
    QVERIFY(viewer->AwaitWindow(kGraphTitle));
    Quit();
    QCOMPARE(Files(), QStringList());
}

void TestJobs::jobs_quitOption_staysOpen_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<QString>("files");
    QTest::newRow("no job") << QStringLiteral("-q") << QString();
    QTest::newRow("JPEG") << QStringLiteral("-q -c=1") << QStringLiteral("graph.jpg");
    QTest::newRow("EPS and print") << QStringLiteral("-c=2 -p -q") << QStringLiteral("graph.eps");
}

// Qt ignores a request to quit that comes before its event loop.
void TestJobs::jobs_quitOption_staysOpen()
{
    QFETCH(QString, options);
    QFETCH(QString, files);
    Open(Words(options));
    QVERIFY(viewer->AwaitStillPicture());
    QVERIFY(Canvas().height() > 0);
    QCOMPARE(Files(), Words(files));
    Quit();
}

void TestJobs::noServer_nothingHangsAndTheChainGoesOn()
{
    viewer->SetEnvironment(QStringLiteral("CUPS_SERVER"), Path(QStringLiteral("nowhere")));
    Open({QStringLiteral("-c=2"), QStringLiteral("-p")});
    QVERIFY(ReadFile(Path(QStringLiteral("graph.eps"))).startsWith("%!PS"));
    QVERIFY(viewer->AwaitWindowCount(1));
    Quit();
    QCOMPARE(PrintServer::Jobs(), jobsBefore);
    QCOMPARE(viewer->Errors(), QByteArray("plotvw: no printer found\n"));
}

void TestJobs::stoppedQueue_keepsTheJobAndTheChainGoesOn()
{
    const QString queue = QStringLiteral("stopped");
    const qsizetype before = PrintServer::Jobs(queue);
    viewer->SetEnvironment(QStringLiteral("LPDEST"), queue);
    Open({QStringLiteral("-c=1"), QStringLiteral("-p")});
    QVERIFY(viewer->AwaitWindowCount(1));
    Quit();
    QCOMPARE(PrintServer::Jobs(queue), before + 1);
    QCOMPARE(Files(), QStringList(QStringLiteral("graph.jpg")));
    QVERIFY(!QFile::exists(server->Page(jobsBefore + 1)));
}

void TestJobs::refusingQueue_losesTheJobAndTheChainGoesOn()
{
    viewer->SetEnvironment(QStringLiteral("LPDEST"), QStringLiteral("refusing"));
    Open({QStringLiteral("-c=2"), QStringLiteral("-p")});
    QVERIFY(viewer->AwaitWindowCount(1));
    Quit();
    QCOMPARE(PrintServer::Jobs(), jobsBefore);
    QCOMPARE(Files(), QStringList(QStringLiteral("graph.eps")));
}

QTEST_MAIN(TestJobs)
#include "test_jobs.moc"
