// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The viewer on a screen with a window manager, used with mouse and keyboard, and judged by what
// the screen shows.
#include "tests/e2e/marks.h"
#include "tests/kit/commalocale.h"
#include "tests/kit/files.h"
#include "tests/kit/plf.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const QString kTitle = QStringLiteral("KORVEL Viewer");
const QString kGraphTitle = QStringLiteral("KORVEL Viewer - graph.plf");

// The part of the graph under a selection in canvas pixels: whole units.
QRectF PartUnder(const QRect& selection, const QRect& canvas)
{
    const auto units = [](int pixel, int pixels, double all) {
        return static_cast<double>(static_cast<int>(pixel * all / pixels));
    };
    const QPoint end = selection.topLeft() + QPoint(selection.width(), selection.height());
    const QPointF topLeft(units(selection.left(), canvas.width(), kGraphWidth),
                          units(selection.top(), canvas.height(), kGraphHeight));
    const QPointF bottomRight(units(end.x(), canvas.width(), kGraphWidth),
                              units(end.y(), canvas.height(), kGraphHeight));
    return {topLeft, bottomRight};
}

// A pipe that nobody reads until the test says so: a program that writes much into it stands still.
class Pipe
{
public:
    explicit Pipe(const QString& name)
    {
        const QByteArray path = name.toLocal8Bit();
        if (mkfifo(path.constData(), 0600) == 0)
            fd = open(path.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    }
    ~Pipe() { close(fd); }
    Q_DISABLE_COPY_MOVE(Pipe)

    /// Waits until a program has written something.
    [[nodiscard]] bool AwaitBytes() const
    {
        return Await([this] {
            int waiting = 0;
            return ioctl(fd, FIONREAD, &waiting) == 0 && waiting > 0;
        });
    }

    /// Reads until the program has written everything.
    [[nodiscard]] bool AwaitEnd() const
    {
        return Await([this] {
            char bytes[4096];
            ssize_t count = 0;
            while ((count = read(fd, bytes, sizeof bytes)) > 0) {
            }
            return count == 0;
        });
    }

private:
    int fd = -1;
};

} // namespace

class TestViewer : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void start_withAGraph_opensAtTheDefaultPlace();
    void start_withAGraph_drawsItWhereItsCoordinatesSay();
    void start_withoutAFile_asksForOne();
    void start_withOptionsOfQt_leavesThemToQt_data();
    void start_withOptionsOfQt_leavesThemToQt();
    void start_withAConfigurationBesideTheProgram_usesIt_data();
    void start_withAConfigurationBesideTheProgram_usesIt();
    void start_whoseWindowIsClosedDuringAJob_endsTheProgram();
    void start_withHelpOption_showsTheUsageAndEnds();
    void start_withBadFile_saysWhy_data();
    void start_withBadFile_saysWhy();
    void windowPositionOption_isUsed_data();
    void windowPositionOption_isUsed();

    void drag_zoomsAndEscapeRefreshes();
    void drag_tooNarrow_keepsTheWholeGraph();
    void whiteBackground_switchesByKeyAndByMenu();
    void resizedWindow_isFilledByTheGraph();
    void resetAspectRatio_givesTheWindowTheGraphsShape();

    void open_showsAnotherGraph();
    void open_cancelled_keepsTheGraph();
    void saveSettings_nextStartLooksTheSame();
    void configurationAndExport_underADecimalComma();

    void quit_endsTheProgram_data();
    void quit_endsTheProgram();

    void samples_showSomething_data();
    void samples_showSomething();

private:
    QString Path(const char* name) const { return home->filePath(QString::fromLatin1(name)); }
    void OpenTestGraph();
    void Quit();
    void ExpectMarks(const QRectF& part = kWholeGraph, QColor background = kWhite);

    std::optional<QTemporaryDir> home;
    std::optional<Viewer> viewer;
};

void TestViewer::initTestCase()
{
    CheckTools();
    QVERIFY2(!RunTool(QStringLiteral("xwininfo"), {QStringLiteral("-root")}).isEmpty(),
             "Is the package x11-utils installed?");
}

// Every test has a home directory of its own, with the test graph in it. The program is given names
// in it without their path, because it takes a "-p" or "-q" anywhere in an argument for an option.
void TestViewer::init()
{
    home.emplace();
    QVERIFY(home->isValid());
    QVERIFY(WriteFile(Path("graph.plf"), MarkedGraph()));
    viewer.emplace(home->path());
}

// What the program complains about on its standard error output is a failure, whatever the screen
// showed.
void TestViewer::cleanup()
{
    const QByteArray errors = viewer->Errors();
    viewer.reset();
    home.reset();
    QVERIFY2(errors.isEmpty(), errors.constData());
}

void TestViewer::OpenTestGraph()
{
    QVERIFY(viewer->Start({QStringLiteral("graph.plf")}));
    QVERIFY(viewer->AwaitWindow(kGraphTitle));
    ExpectMarks();
}

// After a failure nothing more is worth telling: the same holds for the function below.
void TestViewer::Quit()
{
    if (QTest::currentTestFailed())
        return;
    PressKeys(QStringLiteral("ctrl+q"));
    QCOMPARE(viewer->AwaitEnd(), 0);
}

void TestViewer::ExpectMarks(const QRectF& part, QColor background)
{
    if (QTest::currentTestFailed())
        return;
    const QString fault = FaultOfMarks(*viewer, part, background);
    QVERIFY2(fault.isEmpty(), qPrintable(fault));
}

void TestViewer::start_withAGraph_opensAtTheDefaultPlace()
{
    OpenTestGraph();
    QCOMPARE(viewer->Frame().topLeft(), QPoint(200, 200));
    QCOMPARE(viewer->Content().size(), QSize(640, 487));
    Quit();
}

void TestViewer::start_withAGraph_drawsItWhereItsCoordinatesSay()
{
    OpenTestGraph();
    const QRect canvas = viewer->Canvas(kWhite);
    QCOMPARE(canvas.width(), 640);
    QVERIFY(canvas.height() > 400);
    const QImage screen = GrabScreen();
    // A stroke is 200 units long and 60 wide, and its ends stand out by half its width.
    constexpr double kMarkArea = (200 + 60) * 60;
    const double pixelsPerUnit = canvas.width() * canvas.height() / (kGraphWidth * kGraphHeight);
    for (const Mark& mark : kMarks) {
        const auto pixels = static_cast<double>(CountColor(screen, canvas, mark.color));
        QVERIFY2(pixels > 0.7 * kMarkArea * pixelsPerUnit, mark.name);
        QVERIFY2(pixels < 1.1 * kMarkArea * pixelsPerUnit, mark.name);
    }
    Quit();
}

void TestViewer::start_withoutAFile_asksForOne()
{
    QVERIFY(viewer->Start({}));
    QVERIFY(viewer->AwaitWindow(QStringLiteral("Open File")));
    QVERIFY(viewer->AwaitWindowCount(1));
    PressKeys(QStringLiteral("Escape"));
    QVERIFY(viewer->AwaitWindow(kTitle));
    QCOMPARE(viewer->Content().size(), QSize(640, 487));
    // The window without a document opens one anyway.
    PressKeys(QStringLiteral("ctrl+f"));
    QVERIFY(viewer->AwaitWindow(QStringLiteral("Open File")));
    TypeText(Path("graph.plf"));
    PressKeys(QStringLiteral("Return"));
    QVERIFY(viewer->AwaitWindow(kGraphTitle));
    ExpectMarks();
    Quit();
}

void TestViewer::start_withOptionsOfQt_leavesThemToQt_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::newRow("in front") << QStringLiteral("-platform xcb -style fusion graph.plf");
    QTest::newRow("behind") << QStringLiteral("graph.plf -style fusion -platform xcb");
    QTest::newRow("with our own") << QStringLiteral("-wp=200,200 -style fusion graph.plf -name x");
}

// Taken for the program's own, "-platform" would print, and "fusion" would be the file.
void TestViewer::start_withOptionsOfQt_leavesThemToQt()
{
    QFETCH(QString, arguments);
    QVERIFY(viewer->Start(arguments.split(u' ')));
    QVERIFY(viewer->AwaitWindow(kGraphTitle));
    ExpectMarks();
    Quit();
}

void TestViewer::start_withAConfigurationBesideTheProgram_usesIt_data()
{
    QTest::addColumn<bool>("homeHasOne");
    QTest::addColumn<QByteArray>("scale");
    QTest::newRow("none at home") << false << QByteArray("\n0.50 0.50 scale\n");
    QTest::newRow("another at home") << true << QByteArray("\n0.75 0.75 scale\n");
}

void TestViewer::start_withAConfigurationBesideTheProgram_usesIt()
{
    QFETCH(bool, homeHasOne);
    QFETCH(QByteArray, scale);
    const QTemporaryDir folder;
    const QString program = folder.filePath(QStringLiteral("plotvw"));
    QVERIFY(QFile::copy(QStringLiteral(PLOTVW_PROGRAM), program));
    QVERIFY(WriteFile(folder.filePath(QStringLiteral("plotvw.cfg")), "eps_scalefactor=0.5\n"));
    if (homeHasOne)
        QVERIFY(WriteFile(Path("plotvw.cfg"), "eps_scalefactor=0.75\n"));
    viewer->SetProgram(program);
    QVERIFY(viewer->Start({QStringLiteral("graph.plf"), QStringLiteral("-c=2")}));
    QVERIFY(viewer->AwaitWindow(kGraphTitle));
    Quit();
    QVERIFY(ReadFile(Path("graph.eps")).contains(scale));
}

// The event loop, which would end with the last window, begins only after the jobs. The viewer
// stands still in one while the window manager tells it to close.
void TestViewer::start_whoseWindowIsClosedDuringAJob_endsTheProgram()
{
    constexpr int kLines = 20'000; // their EPS is far larger than what a pipe holds
    constexpr QPoint kMoved(31, 17);
    std::string lines = plf::Start();
    for (int i = 0; i < kLines; ++i)
        lines += plf::Line(1000 + i % 1000, 1000, 3000, 3000);
    QVERIFY(WriteFile(Path("lines.plf"), QByteArray::fromStdString(lines + plf::End())));
    const Pipe eps(Path("lines.eps"));
    QVERIFY(viewer->Start(
        {QStringLiteral("lines.plf"), QStringLiteral("-tmp"), QStringLiteral("-c=2")}));
    QVERIFY(viewer->AwaitWindow(QStringLiteral("KORVEL Viewer - lines.plf")));
    QVERIFY(eps.AwaitBytes());
    PressKeys(QStringLiteral("alt+F4"));
    // It does one thing after the other: when the frame has moved, the viewer has been told.
    RunTool(QStringLiteral("xdotool"), {QStringLiteral("windowmove"), viewer->Window(),
                                        QString::number(kMoved.x()), QString::number(kMoved.y())});
    QVERIFY(Await([&] { return viewer->Frame().topLeft() == kMoved; }));
    QVERIFY(eps.AwaitEnd());
    QCOMPARE(viewer->AwaitEnd(), 0);
    QVERIFY2(!QFile::exists(Path("lines.plf")), "the window was not deleted");
}

void TestViewer::start_withHelpOption_showsTheUsageAndEnds()
{
    QVERIFY(viewer->Start({QStringLiteral("-?"), QStringLiteral("graph.plf")}));
    QVERIFY(viewer->AwaitWindow(QStringLiteral("PLOTVW Usage")));
    QVERIFY(viewer->AwaitWindowCount(1));
    PressKeys(QStringLiteral("Return"));
    QCOMPARE(viewer->AwaitEnd(), 0);
}

void TestViewer::start_withBadFile_saysWhy_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("reason");
    const QString unreadable = QStringLiteral("Error opening file.");
    QTest::newRow("missing") << QStringLiteral("missing.plf") << QByteArray() << unreadable;
    QTest::newRow("empty") << QStringLiteral("empty.plf") << QByteArray("") << unreadable;
    QTest::newRow("a text") << QStringLiteral("text.plf") << QByteArray("Once upon a time\n")
                            << QStringLiteral("File is not a recognized PLF graphic format.");
}

void TestViewer::start_withBadFile_saysWhy()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(QString, reason);
    const QString path = home->filePath(name);
    if (!content.isNull())
        QVERIFY(WriteFile(path, content));
    QVERIFY(viewer->Start({name}));
    QVERIFY(viewer->AwaitWindow(QStringLiteral("Error")));
    QVERIFY(viewer->AwaitText(reason));
    PressKeys(QStringLiteral("Return"));
    QVERIFY(viewer->AwaitWindow(kTitle));
    QVERIFY(viewer->AwaitText(QStringLiteral("Error reading ") + path));
    Quit();
}

void TestViewer::windowPositionOption_isUsed_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<QPoint>("corner");
    QTest::addColumn<QSize>("size");
    QTest::newRow("all four") << QStringLiteral("-wp=300,150,500,400") << QPoint(300, 150)
                              << QSize(500, 400);
    QTest::newRow("two") << QStringLiteral("-wp=10,20") << QPoint(10, 20) << QSize(640, 487);
}

void TestViewer::windowPositionOption_isUsed()
{
    QFETCH(QString, option);
    QFETCH(QPoint, corner);
    QFETCH(QSize, size);
    QVERIFY(viewer->Start({QStringLiteral("graph.plf"), option}));
    QVERIFY(viewer->AwaitWindow(kGraphTitle));
    QCOMPARE(viewer->Frame().topLeft(), corner);
    QCOMPARE(viewer->Content().size(), size);
    ExpectMarks();
    Quit();
}

void TestViewer::drag_zoomsAndEscapeRefreshes()
{
    OpenTestGraph();
    const QRect canvas = viewer->Canvas(kWhite);
    const QRect selection(160, 120, 320, 220);
    const QPoint end = selection.topLeft() + QPoint(selection.width(), selection.height());
    const QPoint corner = canvas.topLeft() + selection.topLeft();
    Drag(corner, canvas.topLeft() + end);
    const QPoint bandEdge = corner + QPoint(0, selection.height() / 2);
    QVERIFY(Await([&] { return ScreenColor(bandEdge) != kWhite; }));
    Drop();
    const QRectF part = PartUnder(selection, canvas);
    ExpectMarks(part);
    QCOMPARE(viewer->Canvas(kWhite), canvas);
    PressKeys(QStringLiteral("Escape"));
    ExpectMarks();
    Quit();
}

void TestViewer::drag_tooNarrow_keepsTheWholeGraph()
{
    OpenTestGraph();
    const QPoint corner = viewer->Canvas(kWhite).topLeft() + QPoint(300, 50);
    Drag(corner, corner + QPoint(19, 100));
    Drop();
    QVERIFY(viewer->AwaitStillPicture());
    ExpectMarks();
    Quit();
}

void TestViewer::whiteBackground_switchesByKeyAndByMenu()
{
    OpenTestGraph();
    const QRect canvas = viewer->Canvas(kWhite);
    PressKeys(QStringLiteral("ctrl+b"));
    ExpectMarks(kWholeGraph, kYellow);
    QCOMPARE(viewer->Canvas(kYellow), canvas);
    QVERIFY(viewer->Choose(QStringLiteral("&View"), QStringLiteral("&White Background")));
    ExpectMarks();
    Quit();
}

void TestViewer::resizedWindow_isFilledByTheGraph()
{
    OpenTestGraph();
    const QSize bars = viewer->Content().size() - viewer->Canvas(kWhite).size();
    const QSize size(850, 420);
    RunTool(QStringLiteral("xdotool"),
            {QStringLiteral("windowsize"), viewer->Window(), QString::number(size.width()),
             QString::number(size.height())});
    QVERIFY(Await([&] { return viewer->Content().size() == size; }));
    QVERIFY(Await([&] { return viewer->Canvas(kWhite).size() == size - bars; }));
    ExpectMarks();
    Quit();
}

void TestViewer::resetAspectRatio_givesTheWindowTheGraphsShape()
{
    OpenTestGraph();
    RunTool(QStringLiteral("xdotool"), {QStringLiteral("windowsize"), viewer->Window(),
                                        QStringLiteral("800"), QStringLiteral("300")});
    QVERIFY(Await([&] { return viewer->Content().size() == QSize(800, 300); }));
    PressKeys(QStringLiteral("ctrl+0"));
    QVERIFY(Await([&] { return viewer->Content().size() == QSize(800, 609); }));
    ExpectMarks();
    Quit();
}

void TestViewer::open_showsAnotherGraph()
{
    QVERIFY(WriteFile(Path("blank.plf"), MarkedGraph().left(60)));
    QVERIFY(viewer->Start({QStringLiteral("blank.plf")}));
    QVERIFY(viewer->AwaitWindow(QStringLiteral("KORVEL Viewer - blank.plf")));
    QVERIFY(viewer->Choose(QStringLiteral("&File"), QStringLiteral("&Open")));
    QVERIFY(viewer->AwaitWindow(QStringLiteral("Open File")));
    TypeText(Path("graph.plf"));
    PressKeys(QStringLiteral("Return"));
    QVERIFY(viewer->AwaitWindow(kGraphTitle));
    ExpectMarks();
    Quit();
}

void TestViewer::open_cancelled_keepsTheGraph()
{
    OpenTestGraph();
    PressKeys(QStringLiteral("ctrl+f"));
    QVERIFY(viewer->AwaitWindow(QStringLiteral("Open File")));
    PressKeys(QStringLiteral("Escape"));
    QVERIFY(viewer->AwaitWindow(kGraphTitle));
    ExpectMarks();
    Quit();
}

// Twice, because a place that is read wrongly by the height of the frame drifts from start to
// start.
void TestViewer::saveSettings_nextStartLooksTheSame()
{
    OpenTestGraph();
    RunTool(QStringLiteral("xdotool"), {QStringLiteral("windowsize"), viewer->Window(),
                                        QStringLiteral("700"), QStringLiteral("520")});
    RunTool(QStringLiteral("xdotool"), {QStringLiteral("windowmove"), viewer->Window(),
                                        QStringLiteral("333"), QStringLiteral("222")});
    PressKeys(QStringLiteral("ctrl+b"));
    for (int start = 0; start < 3; ++start) {
        QVERIFY(Await([&] { return viewer->Content().size() == QSize(700, 520); }));
        QVERIFY(Await([&] { return viewer->Frame().topLeft() == QPoint(333, 222); }));
        ExpectMarks(kWholeGraph, kYellow);
        QVERIFY(viewer->Choose(QStringLiteral("&File"), QStringLiteral("&Save Settings")));
        QVERIFY(Await([&] { return QFile::exists(Path(".plotvwsettings")); }));
        Quit();
        QCOMPARE(viewer->Errors(), QByteArray());
        viewer.emplace(home->path());
        QVERIFY(viewer->Start({QStringLiteral("graph.plf")}));
        QVERIFY(viewer->AwaitWindow(kGraphTitle));
    }
    Quit();
}

void TestViewer::configurationAndExport_underADecimalComma()
{
    const CommaLocale comma;
    QVERIFY(CommaLocale::IsInForce());
    viewer.emplace(home->path()); // with the variable that tells where the locale is
    QVERIFY(WriteFile(Path("plotvw.cfg"), "eps_scalefactor=0.5\nautosave=yes\n"));
    viewer->SetEnvironment(QStringLiteral("LC_ALL"), QStringLiteral("de_DE.UTF-8"));
    QVERIFY(viewer->Start({QStringLiteral("graph.plf"), QStringLiteral("-c=2")}));
    QVERIFY(viewer->AwaitWindow(kGraphTitle));
    ExpectMarks();
    Quit();
    const QByteArray eps = ReadFile(Path("graph.eps"));
    QVERIFY2(eps.contains("\n%%BoundingBox: 0 0 2048 1560\n"), eps.left(300).constData());
    QVERIFY2(eps.contains("\n0.50 0.50 scale\n"), eps.left(300).constData());
    QCOMPARE(ReadFile(Path(".plotvwsettings")).size(), 59);
}

void TestViewer::quit_endsTheProgram_data()
{
    QTest::addColumn<QString>("keys");
    QTest::newRow("the program's key") << QStringLiteral("ctrl+q");
    QTest::newRow("the window manager's") << QStringLiteral("alt+F4");
    QTest::newRow("the menu, by keys") << QStringLiteral("alt+f q");
}

void TestViewer::quit_endsTheProgram()
{
    QFETCH(QString, keys);
    OpenTestGraph();
    for (const QString& key : keys.split(u' '))
        PressKeys(key);
    QCOMPARE(viewer->AwaitEnd(), 0);
    QVERIFY2(!QFile::exists(Path(".plotvwsettings")), "settings were saved that nobody asked for");
}

void TestViewer::samples_showSomething_data()
{
    QTest::addColumn<QString>("path");
    QDirIterator samples(QStringLiteral(PLOTVW_SAMPLES), {QStringLiteral("*.plf")}, QDir::Files);
    while (samples.hasNext()) {
        const QString path = samples.next();
        QTest::newRow(qPrintable(samples.fileName())) << path;
    }
}

void TestViewer::samples_showSomething()
{
    QFETCH(QString, path);
    const QString name = QFileInfo(path).fileName();
    QVERIFY(QFile::copy(path, home->filePath(name)));
    QVERIFY(viewer->Start({name}));
    QVERIFY(viewer->AwaitWindow(kTitle + QStringLiteral(" - ") + name));
    constexpr qsizetype kLeastInk = 1000;
    QVERIFY(Await([&] {
        const QRect canvas = viewer->Canvas(kWhite);
        const qsizetype pixels = qsizetype{canvas.width()} * canvas.height();
        return pixels > 0 && pixels - CountColor(GrabScreen(), canvas, kWhite) > kLeastInk;
    }));
    Quit();
}

QTEST_MAIN(TestViewer)

#include "test_viewer.moc"
