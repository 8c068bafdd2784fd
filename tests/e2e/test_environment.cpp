// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The viewer where things are not as usual: no home directory, no place for temporary files, tiny
// and huge windows, screens with more pixels, a desktop without an X server.
#include "tests/e2e/marks.h"
#include "tests/kit/commalocale.h"
#include "tests/kit/files.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QImageReader>
#include <QTemporaryDir>

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <optional>

namespace {

const QString kGraphTitle = QStringLiteral("KORVEL Viewer - graph.plf");

// What a program writes of the window that the settings file holds.
constexpr qint64 kSettingsSize = 59;

void Xdotool(const QStringList& arguments)
{
    RunTool(QStringLiteral("xdotool"), arguments);
}

void ResizeWindow(const WindowId& window, QSize size)
{
    Xdotool({QStringLiteral("windowsize"), window, QString::number(size.width()),
             QString::number(size.height())});
}

void MoveMouse(QPoint to)
{
    Xdotool({QStringLiteral("mousemove"), QString::number(to.x()), QString::number(to.y())});
}

// The point at some tenths of an area's width and height.
QPoint Tenths(const QRect& area, int x, int y)
{
    return area.topLeft() + QPoint(area.width() * x / 10, area.height() * y / 10);
}

// A picture in which one area is blank, to compare what lies around it.
QImage Without(const QImage& picture, const QRect& area)
{
    QImage rest = picture.convertToFormat(QImage::Format_RGB32);
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x)
            rest.setPixel(x, y, 0);
    }
    return rest;
}

// Done in the viewer's process before it starts.
using Action = void (*)();

template <int kStream> void CloseStream()
{
    close(kStream);
}

void CloseAllStreams()
{
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        close(stream);
}

// A compositor for as long as the object lives, which shows its windows to nobody.
class Compositor
{
public:
    /// @param folder  only for its user, as the directory of such sockets has to be
    explicit Compositor(const QString& folder) : socket(folder + QStringLiteral("/wayland"))
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), folder);
        process.setProcessEnvironment(environment);
        process.setStandardOutputFile(QProcess::nullDevice());
        process.setStandardErrorFile(QProcess::nullDevice());
        process.start(QStringLiteral("weston"),
                      {QStringLiteral("--backend=headless-backend.so"),
                       QStringLiteral("--no-config"), QStringLiteral("--use-pixman"),
                       QStringLiteral("--idle-time=0"), QStringLiteral("--socket=wayland")},
                      QIODevice::NotOpen);
    }
    Q_DISABLE_COPY_MOVE(Compositor)
    ~Compositor()
    {
        process.terminate();
        if (!process.waitForFinished())
            process.kill();
        process.waitForFinished();
    }

    [[nodiscard]] bool AwaitSocket() const
    {
        return Await([this] { return QFile::exists(socket); });
    }

private:
    QString socket;
    QProcess process;
};

} // namespace

class TestEnvironment : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void home_thatCannotBeUsed_isDoneWithout_data();
    void home_thatCannotBeUsed_isDoneWithout();
    void home_withBlanksAndOtherLetters_isUsed();
    void temporaryDirectory_thatIsNotNamed_isNotMissed();
    void decimalComma_changesNoNumber();

    void stream_closedAtTheStart_isNotMissed_data();
    void stream_closedAtTheStart_isNotMissed();

    void window_tiny_isSurvivedAndGrows_data();
    void window_tiny_isSurvivedAndGrows();
    void window_ofTenThousandPixels_isFilledByTheGraph_data();
    void window_ofTenThousandPixels_isFilledByTheGraph();

    void pixelRatio_picture_isTheGraph_data() { PixelRatios(); }
    void pixelRatio_picture_isTheGraph();
    void pixelRatio_movingBand_leavesNothingUnpainted_data() { PixelRatios(); }
    void pixelRatio_movingBand_leavesNothingUnpainted();

    void desktop_hostDrivesTheViewer_data();
    void desktop_hostDrivesTheViewer();

private:
    QString Path(const char* name) const { return home->filePath(QString::fromLatin1(name)); }
    static void PixelRatios();
    void Open(const QStringList& more = {});
    void ExpectMarks();
    void Quit();

    std::optional<QTemporaryDir> home;
    std::optional<Viewer> viewer;
};

void TestEnvironment::initTestCase()
{
    CheckTools();
    QVERIFY2(!RunTool(QStringLiteral("weston"), {QStringLiteral("--version")}).isEmpty(),
             "Is the package weston installed?");
}

// Every test has a directory of its own with the graph in it, where the program is started.
void TestEnvironment::init()
{
    TakeFreeWindowIds();
    home.emplace(QDir::tempPath() + QStringLiteral("/environment_XXXXXX"));
    QVERIFY(home->isValid());
    QVERIFY(WriteFile(Path("graph.plf"), MarkedGraph()));
    viewer.emplace(home->path());
}

// What the program complains about is a failure, whatever the screen showed.
void TestEnvironment::cleanup()
{
    const QByteArray errors = viewer ? viewer->Errors() : QByteArray();
    viewer.reset();
    home.reset();
    QVERIFY2(errors.isEmpty(), errors.constData());
}

void TestEnvironment::Open(const QStringList& more)
{
    QVERIFY(viewer->Start(QStringList{QStringLiteral("graph.plf")} + more));
    QVERIFY(viewer->AwaitWindow(kGraphTitle));
}

// After a failure nothing more is worth telling: the same holds for the function below.
void TestEnvironment::ExpectMarks()
{
    if (QTest::currentTestFailed())
        return;
    const QString fault = FaultOfMarks(*viewer);
    QVERIFY2(fault.isEmpty(), qPrintable(fault));
}

void TestEnvironment::Quit()
{
    if (QTest::currentTestFailed())
        return;
    PressKeys(QStringLiteral("ctrl+q"));
    QCOMPARE(viewer->AwaitEnd(), 0);
}

void TestEnvironment::home_thatCannotBeUsed_isDoneWithout_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("saves");
    QTest::newRow("unset") << QString() << false; // settings would go to the root directory
    QTest::newRow("missing") << QStringLiteral("/nonexistent/home") << true;
    QTest::newRow("a file") << QStringLiteral("/dev/null") << true;
    QTest::newRow("where nobody may write") << QStringLiteral("/proc") << true;
    QTest::newRow("too long") << u'/' + QString(2000, u'h') << false;
}

// The settings are neither read nor written; nothing else changes.
void TestEnvironment::home_thatCannotBeUsed_isDoneWithout()
{
    QFETCH(QString, path);
    QFETCH(bool, saves);
    if (path.isEmpty())
        viewer->UnsetEnvironment(QStringLiteral("HOME"));
    else
        viewer->SetEnvironment(QStringLiteral("HOME"), path);
    Open({QStringLiteral("-c=2")});
    ExpectMarks();
    if (saves)
        QVERIFY(viewer->Choose(QStringLiteral("&File"), QStringLiteral("&Save Settings")));
    Quit();
    QVERIFY(ReadFile(Path("graph.eps")).startsWith("%!PS"));
    if (path.size() > 1000)
        QVERIFY(viewer->Errors().contains("the home directory"));
}

void TestEnvironment::home_withBlanksAndOtherLetters_isUsed()
{
    const QString folder = home->filePath(QString::fromUtf8("Müllers Ordner Ω"));
    QVERIFY(QDir().mkdir(folder));
    QVERIFY(WriteFile(folder + QStringLiteral("/plotvw.cfg"), "eps_scalefactor=0.5\n"));
    viewer->SetEnvironment(QStringLiteral("HOME"), folder);
    Open({QStringLiteral("-c=2")});
    ExpectMarks();
    const QString settings = folder + QStringLiteral("/.plotvwsettings");
    ResizeWindow(viewer->Window(), {700, 520});
    QVERIFY(Await([&] { return viewer->Content().size() == QSize(700, 520); }));
    QVERIFY(viewer->Choose(QStringLiteral("&File"), QStringLiteral("&Save Settings")));
    QVERIFY(Await([&] { return QFileInfo(settings).size() == kSettingsSize; }));
    Quit();
    QVERIFY(ReadFile(Path("graph.eps")).contains("\n0.50 0.50 scale\n"));
    viewer.emplace(home->path());
    viewer->SetEnvironment(QStringLiteral("HOME"), folder);
    Open();
    QCOMPARE(viewer->Content().size(), QSize(700, 520));
    Quit();
}

void TestEnvironment::temporaryDirectory_thatIsNotNamed_isNotMissed()
{
    for (const char* name : {"TMP", "TEMP", "TMPDIR"})
        viewer->UnsetEnvironment(QString::fromLatin1(name));
    Open({QStringLiteral("-c=1"), QStringLiteral("-c=2")});
    ExpectMarks();
    Quit();
    QVERIFY(ReadFile(Path("graph.eps")).startsWith("%!PS"));
}

// What goes through files and options is written with a point, and read so.
void TestEnvironment::decimalComma_changesNoNumber()
{
    const QStringList arguments = {QStringLiteral("-c=2"), QStringLiteral("-wp=100,100,500,400")};
    QVERIFY(WriteFile(Path("plotvw.cfg"), "eps_scalefactor=0.3\nprinter_page_size=1.5,0.5\n"));
    Open(arguments);
    ExpectMarks();
    Quit();
    const QByteArray eps = ReadFile(Path("graph.eps"));
    QVERIFY(QFile::remove(Path("graph.eps")));
    const CommaLocale comma;
    QVERIFY(CommaLocale::IsInForce());
    viewer.emplace(home->path()); // with the variable that tells where the locale is
    viewer->SetEnvironment(QStringLiteral("LC_ALL"), QStringLiteral("de_DE.UTF-8"));
    Open(arguments);
    ExpectMarks();
    QCOMPARE(viewer->Content().size(), QSize(500, 400));
    Quit();
    QVERIFY(eps.contains("\n0.30 0.30 scale\n"));
    QCOMPARE(ReadFile(Path("graph.eps")), eps);
}

void TestEnvironment::stream_closedAtTheStart_isNotMissed_data()
{
    QTest::addColumn<Action>("closing");
    QTest::newRow("standard input") << Action{CloseStream<STDIN_FILENO>};
    QTest::newRow("standard output") << Action{CloseStream<STDOUT_FILENO>};
    QTest::newRow("standard error") << Action{CloseStream<STDERR_FILENO>};
    QTest::newRow("all") << Action{CloseAllStreams};
}

// The connection to the X server would get the stream's number, and what is written for each file
// would go there.
void TestEnvironment::stream_closedAtTheStart_isNotMissed()
{
    QFETCH(Action, closing);
    viewer->BeforeStart(closing);
    Open({QStringLiteral("-c=2")});
    ExpectMarks();
    Quit();
    QVERIFY(ReadFile(Path("graph.eps")).startsWith("%!PS"));
}

void TestEnvironment::window_tiny_isSurvivedAndGrows_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("one pixel") << QSize(1, 1);
    QTest::newRow("one pixel wide") << QSize(1, 500);
    QTest::newRow("one pixel high") << QSize(500, 1);
}

// It opens with a size to work in; the user can make it tiny.
void TestEnvironment::window_tiny_isSurvivedAndGrows()
{
    QFETCH(QSize, size);
    Open({QStringLiteral("-wp=100,100,%1,%2").arg(size.width()).arg(size.height()),
          QStringLiteral("-c=2")});
    QCOMPARE(viewer->Content().size(), size.expandedTo({160, 120}));
    static constexpr int kBars = 60; // at its top and bottom, which keep their height
    ResizeWindow(viewer->Window(), size);
    QVERIFY(Await([this, size] {
        const QSize tiny = viewer->Content().size();
        return tiny.width() == size.width() && tiny.height() <= std::max(size.height(), kBars);
    }));
    QVERIFY(viewer->AwaitStillPicture());
    ResizeWindow(viewer->Window(), {640, 487});
    QVERIFY(Await([this] { return viewer->Content().size() == QSize(640, 487); }));
    ExpectMarks();
    Quit();
    QVERIFY(ReadFile(Path("graph.eps")).startsWith("%!PS"));
}

void TestEnvironment::window_ofTenThousandPixels_isFilledByTheGraph_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("wide") << QSize(10'000, 487);
    QTest::newRow("high") << QSize(640, 10'000);
    QTest::newRow("both") << QSize(10'000, 10'000);
}

// Its picture, that no screen can show, is looked at in the export.
void TestEnvironment::window_ofTenThousandPixels_isFilledByTheGraph()
{
    QFETCH(QSize, size);
    Open({QStringLiteral("-wp=0,0,%1,%2").arg(size.width()).arg(size.height()),
          QStringLiteral("-c=1")});
    QCOMPARE(viewer->Content().size(), size);
    Quit();
    QImageReader::setAllocationLimit(0);
    const QImage picture(Path("graph.jpg"));
    QCOMPARE(picture.width(), size.width());
    QVERIFY(picture.height() > size.height() - 100); // less the bars at its top and bottom
    const auto at = [&picture](const Mark& mark) {
        const double x = mark.at.x() * picture.width() / kGraphWidth;
        const double y = (kGraphHeight - mark.at.y()) * picture.height() / kGraphHeight;
        return QPoint(static_cast<int>(x), static_cast<int>(y));
    };
    for (const Mark& mark : kMarks) {
        const QColor found = picture.pixelColor(at(mark));
        const int off = std::abs(found.red() - mark.color.red()) +
                        std::abs(found.green() - mark.color.green()) +
                        std::abs(found.blue() - mark.color.blue());
        QVERIFY2(off < 30, mark.name);
    }
}

void TestEnvironment::PixelRatios()
{
    QTest::addColumn<QString>("factor");
    for (const char* factor : {"1", "1.5", "2"})
        QTest::newRow(factor) << QString::fromLatin1(factor);
}

void TestEnvironment::pixelRatio_picture_isTheGraph()
{
    QFETCH(QString, factor);
    viewer->SetEnvironment(QStringLiteral("QT_SCALE_FACTOR"), factor);
    Open({QStringLiteral("-wp=20,20,500,380"), QStringLiteral("-c=1")});
    QCOMPARE(viewer->Content().size(), QSize(500, 380) * factor.toDouble());
    ExpectMarks();
    const QSize canvas = viewer->Canvas(kWhite).size();
    Quit();
    const QImage picture(Path("graph.jpg"));
    QCOMPARE(picture.width(), canvas.width());
    QVERIFY(std::abs(picture.height() - canvas.height()) <= 1); // a part of a pixel is left out
}

// What a smaller band uncovers looks as before, pixel by pixel, and so does all when it is gone.
void TestEnvironment::pixelRatio_movingBand_leavesNothingUnpainted()
{
    QFETCH(QString, factor);
    viewer->SetEnvironment(QStringLiteral("QT_SCALE_FACTOR"), factor);
    Open({QStringLiteral("-wp=20,20,500,380")});
    ExpectMarks();
    QVERIFY(viewer->AwaitStillPicture());
    const QRect canvas = viewer->Canvas(kWhite);
    const QImage before = GrabScreen().copy(canvas);
    const QPoint corner = Tenths(canvas, 1, 1);
    Drag(corner, Tenths(canvas, 9, 9));
    QVERIFY(Await([&] { return GrabScreen().copy(canvas) != before; }));
    for (const QPoint& end : {Tenths(canvas, 7, 9), Tenths(canvas, 9, 6), Tenths(canvas, 5, 5)}) {
        MoveMouse(end);
        const QRect band = QRect(corner, end).translated(-canvas.topLeft());
        constexpr int kRounding = 4; // logical pixels are whole, and the band's end is one more
        const QRect mostBand = band.adjusted(-kRounding, -kRounding, kRounding, kRounding);
        const QImage around = Without(before, mostBand);
        QVERIFY2(Await([&] { return Without(GrabScreen().copy(canvas), mostBand) == around; }),
                 "around the band");
    }
    Drop();
    QVERIFY(viewer->AwaitStillPicture());
    PressKeys(QStringLiteral("Escape"));
    QVERIFY2(Await([&] { return GrabScreen().copy(canvas) == before; }), "behind the band");
    Quit();
}

void TestEnvironment::desktop_hostDrivesTheViewer_data()
{
    QTest::addColumn<QString>("platform");
    QTest::newRow("X11") << QStringLiteral("xcb");
    QTest::newRow("Wayland") << QStringLiteral("wayland");
}

// A file, an export and the end, by the program that plays the host.
void TestEnvironment::desktop_hostDrivesTheViewer()
{
    QFETCH(QString, platform);
    viewer.reset();              // the host starts one
    const QTemporaryDir runtime; // which is for its user alone
    const Compositor compositor(runtime.path());
    QVERIFY(compositor.AwaitSocket());
    QVERIFY(WriteFile(Path("other.plf"), MarkedGraph()));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), home->path());
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), platform);
    if (platform == QStringLiteral("wayland")) {
        environment.remove(QStringLiteral("DISPLAY"));
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtime.path());
        environment.insert(QStringLiteral("WAYLAND_DISPLAY"), QStringLiteral("wayland"));
    }
    QProcess host;
    host.setProcessChannelMode(QProcess::MergedChannels);
    host.setProcessEnvironment(environment);
    host.setWorkingDirectory(home->path());
    host.start(QStringLiteral(KRVHOST_PROGRAM),
               {QStringLiteral("--viewer"), QStringLiteral(PLOTVW_PROGRAM), QStringLiteral("--arg"),
                QStringLiteral("graph.plf"), QStringLiteral("--stay"),
                QStringLiteral("other.plf -c=2 -cf=out"), QStringLiteral("other.plf -c=1 -cf=out"),
                QStringLiteral("graph.plf -q")});
    // A start, four loads, two exports and an end, each of which may take so long.
    constexpr int kSteps = 8;
    QVERIFY(QTest::qWaitFor([&host] { return host.state() == QProcess::NotRunning; },
                            kSteps * kPatience));
    QCOMPARE(host.exitStatus(), QProcess::NormalExit);
    const QByteArray output = host.readAll();
    QVERIFY2(host.exitCode() == 0, output.constData());
    QCOMPARE(output.count("ack "), 3);
    QVERIFY(ReadFile(Path("out.eps")).startsWith("%!PS"));
    QCOMPARE(QImage(Path("out.jpg")).width(), 640);
}

QTEST_MAIN(TestEnvironment)

#include "test_environment.moc"
