// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What leaves the viewer: pages on a print server, JPEG and EPS files, as jobs of its command line
// and as the user asks for them. Pages and pictures are measured.
#include "tests/e2e/viewer.h"
#include "tests/kit/files.h"
#include "tests/kit/plf.h"
#include "tests/kit/printedpage.h"
#include "tests/kit/script.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>

namespace {

const QString kTitle = QStringLiteral("KORVEL Viewer");
const QString kGraphTitle = QStringLiteral("KORVEL Viewer - graph.plf");
const QString kPrintTitle = QStringLiteral("Print Graph");
const QString kPropertiesTitle = QStringLiteral("Printer Properties");

constexpr double kGraphWidth = 4096;
constexpr double kGraphHeight = 3120;
constexpr QRectF kWholeGraph(0, 0, kGraphWidth, kGraphHeight);

constexpr double kPointsPerInch = 72;
constexpr double kDotsPerInch = 1200; // what the toolkit calls a high resolution
// Points; a dot is 0.06.
constexpr double kTolerance = 0.02;

constexpr QRgb kWhite = qRgb(255, 255, 255);
constexpr QRgb kBlack = qRgb(0, 0, 0);
constexpr QRgb kGreen = qRgb(0, 255, 0);
constexpr QRgb kRed = qRgb(255, 0, 0);
constexpr QRgb kYellow = qRgb(255, 255, 0); // the test graph's own background

// A line of the test graph; y downward.
struct Stroke {
    QLine line;
    QRgb color;
};

constexpr int kPen = 80; // file units
constexpr Stroke kStrokes[] = {
    {{600, 520, 3600, 520}, kBlack},
    {{1200, 720, 1200, 2720}, kGreen},
    {{1700, 2520, 3400, 920}, kRed},
};

// The strokes and a thin line at the lower end, on yellow. The second "RA1" tells the background,
// and only behind the first 100 bytes.
QByteArray TestGraph()
{
    QByteArray graph = ScriptBytes(QStringLiteral(R"(ESC "TG14" #0 #0 #0 #0 ESC "TG14" #1 #0 #0 #0
        ESC "TG14" #2 #210 #50 #100 ESC "TG14" #3 #90 #50 #100 *100 GS
        ESC "RA1" "0" ESC "RA1" "7" ESC "GT")")
                                       .simplified()) +
                       QByteArray::fromStdString(plf::Int(kPen));
    int index = 1;
    for (const Stroke& stroke : kStrokes) {
        const QLine& line = stroke.line;
        graph += ScriptBytes(QStringLiteral("ESC \"ML\" #%1 GS @%2,%3 @%4,%5")
                                 .arg(index++)
                                 .arg(line.x1())
                                 .arg(3120 - line.y1())
                                 .arg(line.x2())
                                 .arg(3120 - line.y2()));
    }
    graph += ScriptBytes(QStringLiteral("ESC \"ML\" #1 ESC \"GT\" #1 GS @600,100 @3600,100 BEL"));
    return graph;
}
const QLine kThinLine(600, 3020, 3600, 3020);

bool IsNear(double a, double b)
{
    return std::abs(a - b) <= kTolerance;
}

bool IsNear(const QPointF& a, const QPointF& b)
{
    return IsNear(a.x(), b.x()) && IsNear(a.y(), b.y());
}

QByteArray Describe(const QPointF& p)
{
    return QByteArray::number(p.x()) + ',' + QByteArray::number(p.y());
}

QByteArray Describe(const QRectF& r)
{
    return Describe(r.topLeft()) + " to " + Describe(r.bottomRight());
}

// Where a point of the graph is when the target shows that part of the graph in an area.
QPointF Mapped(const QPointF& point, const QRectF& area, const QRectF& part = kWholeGraph)
{
    return {area.left() + (point.x() - part.left()) * area.width() / part.width(),
            area.top() + (point.y() - part.top()) * area.height() / part.height()};
}

// The part of the graph under a selection in canvas pixels: whole units.
QRectF PartUnder(const QRect& selection, const QRect& canvas)
{
    const auto units = [](int pixel, int pixels, double all) {
        return std::floor(pixel * all / pixels);
    };
    const QPoint end = selection.topLeft() + QPoint(selection.width(), selection.height());
    return {QPointF(units(selection.left(), canvas.width(), kGraphWidth),
                    units(selection.top(), canvas.height(), kGraphHeight)),
            QPointF(units(end.x(), canvas.width(), kGraphWidth),
                    units(end.y(), canvas.height(), kGraphHeight))};
}

// A sheet of the print server's paper as it lies before the reader, in points. Its margins are
// whole numbers of dots.
struct Sheet {
    QSizeF size;
    QPointF corner; // of the area that can be printed on
};

// The toolkit turns the sheet and leaves the margins as they are.
constexpr Sheet kLetterLandscape = {{792, 612}, {30, 36}};
constexpr Sheet kLetterPortrait = {{612, 792}, {30, 36}};
constexpr Sheet kA4Landscape = {{842, 595}, {12, 18}};
constexpr Sheet kA4Portrait = {{595, 842}, {12, 18}};
constexpr Sheet kLegalLandscape = {{1008, 612}, {18, 24}};
constexpr Sheet kLegalPortrait = {{612, 1008}, {18, 24}};

// The area that holds the graph, in points.
QRectF PrintedGraph(const Sheet& sheet, QPoint shift = {}, QPointF size = {1, 1})
{
    const auto dots = [](double inches, double add) {
        return std::trunc(inches * kDotsPerInch + add);
    };
    const auto length = [](double inches, double factor) {
        return std::trunc(kDotsPerInch * inches * factor);
    };
    constexpr double kPoint = kPointsPerInch / kDotsPerInch;
    return {sheet.corner + QPointF(dots(0.8, shift.x()), dots(0.6, shift.y())) * kPoint,
            QSizeF(length(9.0, size.x()), length(6.855, size.y())) * kPoint};
}

// A print server that stays for as long as the object lives.
class PrintServer
{
public:
    PrintServer() = default;
    ~PrintServer()
    {
        process.closeWriteChannel();
        process.waitForFinished(kPatience);
    }
    Q_DISABLE_COPY_MOVE(PrintServer)

    [[nodiscard]] bool Start(const QString& path)
    {
        folder = path;
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(QStringLiteral(PRINT_SERVER), {folder});
        return Await([this] {
                   return process.canReadLine() || process.state() == QProcess::NotRunning;
               }) &&
               process.readLine() == "ready\n";
    }

    [[nodiscard]] QString Socket() const { return folder + QStringLiteral("/socket"); }

    // How many jobs it has taken so far.
    [[nodiscard]] static qsizetype Jobs(const QString& queue = {})
    {
        QStringList arguments{QStringLiteral("-W"), QStringLiteral("all"), QStringLiteral("-o")};
        if (!queue.isEmpty())
            arguments.append(queue);
        return RunTool(QStringLiteral("lpstat"), arguments).split(u'\n', Qt::SkipEmptyParts).size();
    }

    // The page of the job with that number, counted from 1.
    [[nodiscard]] QString Page(qsizetype job) const
    {
        return QStringLiteral("%1/pages/%2.pdf").arg(folder).arg(job);
    }

    // The name of a job whose page is there.
    [[nodiscard]] QString Name(qsizetype job) const
    {
        return QString::fromUtf8(ReadFile(QStringLiteral("%1/pages/%2.name").arg(folder).arg(job)));
    }

private:
    QProcess process;
    QString folder;
};

// Points to look at in a picture of the graph, and the color that each has.
struct Sample {
    QPointF at; // in the graph
    QRgb color;
};

double Distance(const QPointF& point, const QLine& line)
{
    const QPointF start = line.p1();
    const QPointF along = line.p2() - line.p1();
    const double part =
        QPointF::dotProduct(point - start, along) / QPointF::dotProduct(along, along);
    const QPointF nearest = start + along * std::clamp(part, 0.0, 1.0);
    return QLineF(point, nearest).length();
}

// On the middle of every stroke, at several places, and away from all of them by more than any
// target's pen reaches. The edges of the part are left out.
QList<Sample> Samples(const QRectF& part, double reach)
{
    constexpr int kPlaces = 12;
    QList<Sample> samples;
    const QRectF inside = part.adjusted(40, 40, -40, -40);
    for (const Stroke& stroke : kStrokes) {
        for (int i = 1; i < kPlaces; ++i) {
            const QPointF at = QLineF(stroke.line).pointAt(double{1} * i / kPlaces);
            if (inside.contains(at))
                samples.append({at, stroke.color});
        }
    }
    for (int column = 0; column <= kPlaces; ++column) {
        for (int row = 0; row <= kPlaces; ++row) {
            const QPointF at(inside.left() + inside.width() * column / kPlaces,
                             inside.top() + inside.height() * row / kPlaces);
            const bool clear =
                Distance(at, kThinLine) > reach &&
                std::all_of(std::begin(kStrokes), std::end(kStrokes),
                            [&](const Stroke& s) { return Distance(at, s.line) > reach; });
            if (clear)
                samples.append({at, kWhite});
        }
    }
    return samples;
}

// The color of the test graph on white that a pixel is nearest to.
QRgb NearestColor(QRgb pixel)
{
    const auto distance = [pixel](QRgb color) {
        return std::abs(qRed(pixel) - qRed(color)) + std::abs(qGreen(pixel) - qGreen(color)) +
               std::abs(qBlue(pixel) - qBlue(color));
    };
    constexpr QRgb kColors[] = {kWhite, kBlack, kGreen, kRed};
    return *std::min_element(std::begin(kColors), std::end(kColors),
                             [&](QRgb a, QRgb b) { return distance(a) < distance(b); });
}

// Looks for the samples in a picture that shows the part of the graph in an area of it. A place may
// be off by a pixel in each direction.
void CheckPicture(const char* what, const QImage& picture, const QRectF& area, const QRectF& part,
                  double reach)
{
    QMap<QRgb, int> seen;
    for (const Sample& sample : Samples(part, reach)) {
        const QPoint at = Mapped(sample.at, area, part).toPoint();
        for (const QPoint off :
             {QPoint(0, 0), QPoint(1, 0), QPoint(-1, 0), QPoint(0, 1), QPoint(0, -1)}) {
            QVERIFY2(picture.rect().contains(at + off), what);
            const QRgb color = NearestColor(picture.pixel(at + off));
            QVERIFY2(color == sample.color, what + QByteArray(" at ") + Describe(sample.at) + ": " +
                                                QByteArray::number(color, 16));
        }
        ++seen[sample.color];
    }
    for (const QRgb color : {kWhite, kBlack, kGreen, kRed})
        QVERIFY2(seen.value(color) >= 3, what);
}

// The EPS as a picture of its bounding box, read by another program.
QImage RenderEps(const QString& eps, int pixelsPerPoint)
{
    const QTemporaryDir folder;
    const QString png = folder.filePath(QStringLiteral("picture.png"));
    RunTool(QStringLiteral("gs"), {QStringLiteral("-q"), QStringLiteral("-dSAFER"),
                                   QStringLiteral("-dBATCH"), QStringLiteral("-dNOPAUSE"),
                                   QStringLiteral("-dEPSCrop"), QStringLiteral("-sDEVICE=png16m"),
                                   QStringLiteral("-r%1").arg(kPointsPerInch * pixelsPerPoint),
                                   QStringLiteral("-sOutputFile=") + png, eps});
    return QImage(png).convertToFormat(QImage::Format_RGB32);
}

QStringList Words(const QString& text)
{
    return text.split(u' ', Qt::SkipEmptyParts);
}

} // namespace

Q_DECLARE_METATYPE(Sheet)

class TestJobs : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();

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

    void print_accepted_printsWhatIsShown();
    void print_zoomed_fillsTheArea();
    void print_ownBackground_isPrinted();
    void print_cancelled_sendsNothing();
    void print_afterAJob_keepsPaperAndOrientation_data();
    void print_afterAJob_keepsPaperAndOrientation();
    void print_properties_beginWithThePrintersPaper_data();
    void print_properties_beginWithThePrintersPaper();

    void noServer_nothingHangsAndTheChainGoesOn();
    void stoppedQueue_keepsTheJobAndTheChainGoesOn();
    void refusingQueue_losesTheJobAndTheChainGoesOn();

    void save_byKeyboard_copiesTheFile();
    void samePicture_everywhere_data();
    void samePicture_everywhere();

private:
    QString Path(const QString& name) const { return home->filePath(name); }
    QStringList Files() const;
    void Open(const QStringList& options = {});
    void Quit();
    void Configure(const QByteArray& lines);
    QRect Canvas() const;
    PrintedPage TakePage();
    void Zoom(const QRect& selection);
    void CheckPage(const PrintedPage& page, const Sheet& sheet, const QRectF& area,
                   const QRectF& part = kWholeGraph);
    void Export(const QString& keys, const QString& title, const QString& name);
    void AwaitEnding(const QString& file, const QByteArray& ending);

    std::optional<QTemporaryDir> serverFolder;
    std::optional<PrintServer> server;
    qsizetype jobsBefore = 0;
    std::optional<QTemporaryDir> home;
    std::optional<Viewer> viewer;
};

// A name without what counts as an option.
static QString FolderTemplate()
{
    return QDir::tempPath() + QStringLiteral("/plotvwXXXXXX");
}

void TestJobs::initTestCase()
{
    QVERIFY2(!RunTool(QStringLiteral("xdotool"), {QStringLiteral("getdisplaygeometry")}).isEmpty(),
             "Is the package xdotool installed, and is this run by with-xserver.sh?");
    serverFolder.emplace(FolderTemplate());
    server.emplace();
    QVERIFY2(server->Start(serverFolder->path()), "the print server does not start");
    qputenv("CUPS_SERVER", server->Socket().toLocal8Bit());
    for (const char* variable : {"LPDEST", "PRINTER"})
        qunsetenv(variable);
}

void TestJobs::cleanupTestCase()
{
    server.reset();
}

// Every test has a home directory of its own, with the test graph in it.
void TestJobs::init()
{
    home.emplace(FolderTemplate());
    QVERIFY(home->isValid());
    QVERIFY(WriteFile(Path(QStringLiteral("graph.plf")), TestGraph()));
    QVERIFY(QDir(home->path()).mkdir(QStringLiteral("sub")));
    viewer.emplace(home->path());
    jobsBefore = PrintServer::Jobs();
}

// What the program complains about on its standard error output is a failure, whatever came out.
void TestJobs::cleanup()
{
    const QByteArray errors = viewer->Errors();
    viewer.reset();
    home.reset();
    QVERIFY2(errors.isEmpty(), errors.constData());
}

// What was written beside the graph.
QStringList TestJobs::Files() const
{
    QStringList files;
    QDirIterator all(home->path(), QDir::Files, QDirIterator::Subdirectories);
    while (all.hasNext())
        files.append(QDir(home->path()).relativeFilePath(all.next()));
    files.removeAll(QStringLiteral("graph.plf"));
    files.removeAll(QStringLiteral("plotvw.cfg"));
    files.sort();
    return files;
}

void TestJobs::Open(const QStringList& options)
{
    QVERIFY(viewer->Start(QStringList(QStringLiteral("graph.plf")) + options));
    QVERIFY(viewer->AwaitWindow(kGraphTitle));
    QVERIFY(Await([this] { return Canvas().height() > 0; }));
}

// When this works the program has done all its jobs, which come before its event loop.
void TestJobs::Quit()
{
    PressKeys(QStringLiteral("ctrl+q"));
    QCOMPARE(viewer->AwaitEnd(), 0);
}

void TestJobs::Configure(const QByteArray& lines)
{
    QVERIFY(WriteFile(Path(QStringLiteral("plotvw.cfg")), lines));
}

QRect TestJobs::Canvas() const
{
    return viewer->Canvas(QColor(kWhite));
}

// The page that the print server got next.
PrintedPage TestJobs::TakePage()
{
    const QString page = server->Page(++jobsBefore);
    if (!Await([&page] { return QFile::exists(page); })) {
        QTest::qFail("no page arrives", __FILE__, __LINE__);
        return {};
    }
    return ReadPage(page);
}

void TestJobs::CheckPage(const PrintedPage& page, const Sheet& sheet, const QRectF& area,
                         const QRectF& part)
{
    QCOMPARE(page.paper, sheet.size);
    QVERIFY(page.lines.size() >= qsizetype{std::size(kStrokes)});
    for (size_t i = 0; i < std::size(kStrokes); ++i) {
        const PrintedLine& printed = page.lines.at(static_cast<qsizetype>(i));
        const QPointF start = Mapped(kStrokes[i].line.p1(), area, part);
        const QPointF end = Mapped(kStrokes[i].line.p2(), area, part);
        QVERIFY2(IsNear(printed.line.p1(), start),
                 Describe(printed.line.p1()) + " and not " + Describe(start));
        QVERIFY2(IsNear(printed.line.p2(), end),
                 Describe(printed.line.p2()) + " and not " + Describe(end));
        QCOMPARE(printed.color.rgb(), kStrokes[i].color);
    }
}

// Selects a part of the view, in canvas pixels.
void TestJobs::Zoom(const QRect& selection)
{
    const QPoint corner = Canvas().topLeft() + selection.topLeft();
    Drag(corner, corner + QPoint(selection.width(), selection.height()));
    Drop();
    QVERIFY(viewer->AwaitStillPicture());
}

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

// The toolkit ignores a request to quit that comes before its event loop.
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

void TestJobs::print_accepted_printsWhatIsShown()
{
    Open();
    for (int i = 0; i < 2; ++i) {
        PressKeys(QStringLiteral("ctrl+p"));
        QVERIFY(viewer->AwaitWindow(kPrintTitle));
        PressKeys(QStringLiteral("Return"));
        QVERIFY(viewer->AwaitWindow(kGraphTitle));
        CheckPage(TakePage(), kA4Portrait, PrintedGraph(kA4Portrait));
        QCOMPARE(server->Name(jobsBefore), QStringLiteral("graph.plf"));
    }
    QCOMPARE(PrintServer::Jobs(), jobsBefore);
    Quit();
}

void TestJobs::print_zoomed_fillsTheArea()
{
    const QRect selection(60, 40, 400, 300);
    Configure("printer_paper_type=2\n");
    Open({QStringLiteral("-p")});
    CheckPage(TakePage(), kA4Landscape, PrintedGraph(kA4Landscape));
    const QRectF part = PartUnder(selection, Canvas());
    Zoom(selection);
    PressKeys(QStringLiteral("ctrl+p"));
    QVERIFY(viewer->AwaitWindow(kPrintTitle));
    PressKeys(QStringLiteral("Return"));
    CheckPage(TakePage(), kA4Landscape, PrintedGraph(kA4Landscape), part);
    QVERIFY(viewer->AwaitWindow(kGraphTitle));
    Quit();
}

void TestJobs::print_ownBackground_isPrinted()
{
    Open();
    PressKeys(QStringLiteral("ctrl+b"));
    QVERIFY(Await([this] { return viewer->Canvas(QColor(kYellow)).height() > 0; }));
    PressKeys(QStringLiteral("ctrl+p"));
    QVERIFY(viewer->AwaitWindow(kPrintTitle));
    PressKeys(QStringLiteral("Return"));
    const PrintedPage page = TakePage();
    QCOMPARE(page.areas.size(), 1);
    QCOMPARE(page.areas.constFirst().color.rgb(), kYellow);
    QVERIFY(viewer->AwaitWindow(kGraphTitle));
    Quit();
}

void TestJobs::print_cancelled_sendsNothing()
{
    Open();
    PressKeys(QStringLiteral("ctrl+p"));
    QVERIFY(viewer->AwaitWindow(kPrintTitle));
    PressKeys(QStringLiteral("Escape"));
    QVERIFY(viewer->AwaitWindow(kGraphTitle));
    Quit();
    QCOMPARE(PrintServer::Jobs(), jobsBefore);
}

void TestJobs::print_afterAJob_keepsPaperAndOrientation_data()
{
    QTest::addColumn<QByteArray>("paper");
    QTest::addColumn<QString>("options");
    QTest::addColumn<Sheet>("sheet");
    QTest::newRow("Letter landscape")
        << QByteArray("0") << QStringLiteral("-p") << kLetterLandscape;
    QTest::newRow("Legal portrait")
        << QByteArray("1") << QStringLiteral("-p -po=p") << kLegalPortrait;
    QTest::newRow("A4 landscape") << QByteArray("2") << QStringLiteral("-p") << kA4Landscape;
}

// The toolkit's own choice would be the queue's paper, A4.
void TestJobs::print_afterAJob_keepsPaperAndOrientation()
{
    QFETCH(QByteArray, paper);
    QFETCH(QString, options);
    QFETCH(Sheet, sheet);
    Configure("printer_paper_type=" + paper + '\n');
    Open(Words(options));
    CheckPage(TakePage(), sheet, PrintedGraph(sheet));
    PressKeys(QStringLiteral("ctrl+p"));
    QVERIFY(viewer->AwaitWindow(kPrintTitle));
    PressKeys(QStringLiteral("Return"));
    CheckPage(TakePage(), sheet, PrintedGraph(sheet));
    QVERIFY(viewer->AwaitWindow(kGraphTitle));
    Quit();
}

void TestJobs::print_properties_beginWithThePrintersPaper_data()
{
    QTest::addColumn<QStringList>("windows"); // keys for the properties window, each time it opens
    QTest::addColumn<Sheet>("sheet");
    const QString legal = QStringLiteral("Tab l e g ");
    const QString accept = QStringLiteral("Return");
    const QString cancel = QStringLiteral("Escape");
    QTest::newRow("accepted") << QStringList{accept} << kLetterLandscape;
    QTest::newRow("cancelled") << QStringList{cancel} << kLetterLandscape;
    QTest::newRow("other paper") << QStringList{legal + accept} << kLegalLandscape;
    QTest::newRow("other paper cancelled") << QStringList{legal + cancel} << kLetterLandscape;
    QTest::newRow("cancelled, then accepted") << QStringList{cancel, accept} << kLetterLandscape;
    QTest::newRow("other paper, then accepted")
        << QStringList{legal + accept, accept} << kLegalLandscape;
}

void TestJobs::print_properties_beginWithThePrintersPaper()
{
    QFETCH(QStringList, windows);
    QFETCH(Sheet, sheet);
    Configure("printer_paper_type=0\n");
    Open({QStringLiteral("-p")});
    CheckPage(TakePage(), kLetterLandscape, PrintedGraph(kLetterLandscape));
    PressKeys(QStringLiteral("ctrl+p"));
    QVERIFY(viewer->AwaitWindow(kPrintTitle));
    for (const QString& keys : windows) {
        PressKeys(QStringLiteral("alt+r"));
        QVERIFY(viewer->AwaitWindow(kPropertiesTitle));
        for (const QString& key : Words(keys))
            PressKeys(key);
        QVERIFY(viewer->AwaitWindow(kPrintTitle));
    }
    PressKeys(QStringLiteral("Return"));
    QCOMPARE(TakePage().paper, sheet.size); // the margins are then the toolkit's choice
    QVERIFY(viewer->AwaitWindow(kGraphTitle));
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

// Presses the keys that open a file dialog, and gives it a name.
void TestJobs::Export(const QString& keys, const QString& title, const QString& name)
{
    for (const QString& key : Words(keys))
        PressKeys(key);
    QVERIFY(viewer->AwaitWindow(title));
    TypeText(Path(name));
    PressKeys(QStringLiteral("Return"));
    QVERIFY(viewer->AwaitWindow(kGraphTitle));
}

// The window is there again before the file is complete.
void TestJobs::AwaitEnding(const QString& file, const QByteArray& ending)
{
    QVERIFY(Await([&] { return ReadFile(Path(file)).endsWith(ending); }));
}

void TestJobs::save_byKeyboard_copiesTheFile()
{
    Open();
    Export(QStringLiteral("ctrl+s"), QStringLiteral("Save as"), QStringLiteral("sub/copy"));
    QVERIFY(viewer->AwaitText(Path(QStringLiteral("sub/copy.plf")) + QStringLiteral(" saved.")));
    QCOMPARE(ReadFile(Path(QStringLiteral("sub/copy.plf"))), TestGraph());
    QCOMPARE(Files(), QStringList(QStringLiteral("sub/copy.plf")));
    Quit();
}

void TestJobs::samePicture_everywhere_data()
{
    QTest::addColumn<bool>("zoomed");
    QTest::newRow("whole") << false;
    QTest::newRow("zoomed") << true;
}

// Pens differ: on paper they reach twice as far as in the EPS, and four times as far as on screen.
// With their square ends that is the pen's width times the root of two.
void TestJobs::samePicture_everywhere()
{
    constexpr int kPixelsPerInch = 144;
    constexpr int kPixelsPerPoint = 2;
    constexpr double kEpsScale = 0.25;
    QFETCH(bool, zoomed);
    Configure("printer_paper_type=2\n");
    Open({QStringLiteral("-p")});
    QRectF part = kWholeGraph;
    if (zoomed) {
        const QRect selection(80, 60, 400, 330);
        part = PartUnder(selection, Canvas());
        Zoom(selection);
    }
    const double reach = kPen * kGraphWidth / part.width() * M_SQRT2 + 30;

    const QImage screen = GrabScreen().copy(Canvas());
    CheckPicture("screen", screen, QRectF(screen.rect()), part, reach);

    Export(QStringLiteral("alt+f e j"), QStringLiteral("Export JPEG image"), QStringLiteral("a"));
    AwaitEnding(QStringLiteral("a.jpg"), "\xff\xd9");
    const QImage jpeg(Path(QStringLiteral("a.jpg")));
    QCOMPARE(jpeg.size(), screen.size());
    CheckPicture("JPEG", jpeg, QRectF(jpeg.rect()), part, reach);

    Export(QStringLiteral("alt+f e e"), QStringLiteral("Export EPS file"), QStringLiteral("a"));
    AwaitEnding(QStringLiteral("a.eps"), "\nstroke\n");
    const QImage eps = RenderEps(Path(QStringLiteral("a.eps")), kPixelsPerPoint);
    // The box that is shown lies on whole points.
    const QPointF corner(std::trunc(part.left() * kEpsScale),
                         std::trunc((kGraphHeight - part.top()) * kEpsScale));
    const QPointF origin((part.left() * kEpsScale - corner.x()) * kPixelsPerPoint,
                         (corner.y() - (kGraphHeight - part.top()) * kEpsScale) * kPixelsPerPoint);
    CheckPicture("EPS", eps, QRectF(origin, part.size() * kEpsScale * kPixelsPerPoint), part,
                 reach);

    TakePage(); // of the command line, for its paper
    PressKeys(QStringLiteral("ctrl+p"));
    QVERIFY(viewer->AwaitWindow(kPrintTitle));
    PressKeys(QStringLiteral("Return"));
    CheckPage(TakePage(), kA4Landscape, PrintedGraph(kA4Landscape), part);
    const QImage paper = RenderPage(server->Page(jobsBefore), kPixelsPerInch);
    const QRectF area = PrintedGraph(kA4Landscape);
    const double pixel = kPixelsPerInch / kPointsPerInch;
    CheckPicture("paper", paper, QRectF(area.topLeft() * pixel, area.size() * pixel), part, reach);

    QVERIFY(viewer->AwaitWindow(kGraphTitle));
    Quit();
}

QTEST_MAIN(TestJobs)

#include "test_jobs.moc"
