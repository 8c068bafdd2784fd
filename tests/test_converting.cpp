// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The converter as people call it: its pictures against a plain painting of what the graph holds,
// its messages and exit codes, and what is in the folder afterwards. It runs without a display.
#include "meta/palette.h"
#include "meta/plfbuffer.h"
#include "tests/kit/commalocale.h"
#include "tests/kit/epsfile.h"
#include "tests/kit/files.h"
#include "tests/kit/graph.h"
#include "tests/kit/plainpainter.h"
#include "tests/kit/plf.h"
#include "tests/reference/reference.h"
#include "tests/reference/streams.h"

#include <QColorSpace>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QRegularExpression>
#include <QSvgRenderer>
#include <QTemporaryDir>
#include <QtTest>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <optional>

namespace {

constexpr QSize kDefaultSize(640, 487);
constexpr int kTimeout = 120000; // milliseconds; sanitizers on a busy machine are slow

// How a call ended.
struct Call {
    int code = -1; // -1 when it did not end by itself
    QByteArray output;
    QByteArray errors;
};

void Write(const QString& name, const QByteArray& bytes)
{
    QVERIFY(WriteFile(name, bytes));
}

QByteArray Sample(const QString& name)
{
    return ReadFile(Text(PLOTVW_SAMPLES "/") + name);
}

QByteArray SmallGraph(int x = 4095)
{
    return QByteArray::fromStdString(plf::Start() + plf::Line(0, 0, x, 3119) + plf::End());
}

// Texts in seeded streams hold control characters, which each program draws in its own way.
QByteArray SeededGraph(unsigned seed)
{
    return QByteArray::fromStdString(streams::Make(seed))
        .replace("\x1bZD", "\x1bZF")
        .replace(";ZD", ";ZF");
}

QStringList Operations(const QByteArray& graph, const reference::View& view)
{
    QStringList operations;
    for (const std::string& operation : reference::Draw(graph.toStdString(), view).operations)
        operations += QString::fromStdString(operation);
    return operations;
}

reference::View ViewOf(bool whiteBackground, double widthScale = 1.0)
{
    reference::View view;
    view.whiteBackground = whiteBackground;
    view.widthScale = widthScale;
    return view;
}

// As a picture file has it.
QImage Stored(const QImage& image)
{
    return image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32
                                                         : QImage::Format_RGB32);
}

QImage Loaded(const QString& name)
{
    QImage image = Stored(QImage(name));
    image.setColorSpace({}); // two pictures with different color spaces are never equal
    return image;
}

// What options ask for, read in the plainest way.
class Wish
{
public:
    explicit Wish(const QStringList& options)
        : words(options), area(Value("--area", "0,0,4096,3120").split(u',')),
          background(Value("--background", "white"))
    {
    }

    [[nodiscard]] reference::View View() const
    {
        reference::View view = ViewOf(background != u"file", Value("--line-scale", "1").toDouble());
        if (words.contains(Text("--area"))) {
            view.zoomLeft = area[0].toLong();
            view.zoomTop = area[1].toLong();
            view.zoomRight = area[2].toLong();
            view.zoomBottom = area[3].toLong();
        }
        return view;
    }

    [[nodiscard]] QSize Size() const
    {
        const QStringList sides = Value("--size", "").split(u'x');
        if (sides.size() == 2)
            return {sides[0].toInt(), sides[1].toInt()};
        const int width = Value("--width", "640").toInt();
        return {width,
                width * (area[3].toInt() - area[1].toInt()) / (area[2].toInt() - area[0].toInt())};
    }

    [[nodiscard]] QImage::Format Format() const
    {
        return background == u"transparent" ? QImage::Format_ARGB32_Premultiplied
                                            : QImage::Format_RGB32;
    }

    // The operation as it shall be painted: one or none.
    [[nodiscard]] QStringList Changed(const QString& operation) const
    {
        QStringList parts = operation.split(u' ');
        if (parts[0] == u"fill" && background == u"transparent")
            return {};
        if (parts[0] == u"line") {
            const int thinnest = Value("--min-line-width", "0").toInt() / 2;
            parts[6] = QString::number(std::max(parts[6].toInt(), thinnest));
        }
        if (words.contains(Text("--black")) && parts[0] == u"line")
            parts[5] = Text("#000000");
        if (words.contains(Text("--black")) && parts[0] == u"text")
            parts[3] = Text("#000000");
        return {parts.join(u' ')};
    }

private:
    [[nodiscard]] QString Value(const char* name, const char* otherwise) const
    {
        const qsizetype at = words.indexOf(Text(name));
        return at < 0 ? Text(otherwise) : words[at + 1];
    }

    QStringList words;
    QStringList area;
    QString background;
};

int Difference(QRgb a, QRgb b)
{
    return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                     std::abs(qBlue(a) - qBlue(b))});
}

bool IsNear(const QImage& picture, int x, int y, QRgb color, int tolerance)
{
    for (int row = std::max(y - 1, 0); row <= std::min(y + 1, picture.height() - 1); ++row) {
        for (int column = std::max(x - 1, 0); column <= std::min(x + 1, picture.width() - 1);
             ++column) {
            if (Difference(picture.pixel(column, row), color) <= tolerance)
                return true;
        }
    }
    return false;
}

// The share of a picture's pixels that have nothing like their color in the other picture, there or
// beside it.
double Strays(const QImage& picture, const QImage& other, int tolerance)
{
    int strays = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            strays += IsNear(other, x, y, picture.pixel(x, y), tolerance) ? 0 : 1;
    }
    return strays / (1.0 * picture.width() * picture.height());
}

// Two renderers put the edges of a line on the pixels each in its own way: a pixel may differ from
// its counterpart, or one beside it, by so much of 255, and of a hundred pixels one by more.
bool LookAlike(const QImage& a, const QImage& b, int tolerance)
{
    constexpr double kMostStrays = 0.01;
    if (a.size() != b.size()) {
        qWarning() << "sizes differ" << a.size() << b.size();
        return false;
    }
    const double strays = std::max(Strays(a, b, tolerance), Strays(b, a, tolerance));
    if (strays > kMostStrays)
        qWarning("%.2f percent of the pixels differ", strays * 100.0);
    return strays <= kMostStrays;
}

constexpr int kEdgeTolerance = 64;
// A JPEG has one color for four pixels.
constexpr int kJpegTolerance = 96;
// Poppler moves thin lines onto whole pixels, where an image has two pixels of half the color.
constexpr int kPopplerTolerance = 144;

QImage RenderedSvg(const QString& name, QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::magenta);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QSvgRenderer(name).render(&painter);
    return image;
}

QByteArray RunTool(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(kTimeout) || process.exitCode() != 0)
        qWarning("%s: %s", qPrintable(program), process.readAllStandardError().constData());
    return process.readAllStandardOutput();
}

QImage RenderedPdf(const QString& name, QSize size)
{
    const QString base = name + Text(".page");
    RunTool(Text("pdftoppm"),
            {Text("-png"), Text("-singlefile"), Text("-scale-to-x"), QString::number(size.width()),
             Text("-scale-to-y"), QString::number(size.height()), name, base});
    return Loaded(base + Text(".png"));
}

// A pipe with a name, and bytes in it. It never comes to its end.
class EndlessInput
{
public:
    explicit EndlessInput(const QByteArray& name)
    {
        if (mkfifo(name.constData(), S_IRWXU) == 0)
            fd = open(name.constData(), O_RDWR | O_CLOEXEC);
        filled = write(fd, "some", 4) == 4;
    }
    ~EndlessInput() { close(fd); }
    EndlessInput(const EndlessInput&) = delete;
    EndlessInput& operator=(const EndlessInput&) = delete;

    // Whether somebody has read all the bytes, and now waits for more.
    [[nodiscard]] bool IsRead() const
    {
        int bytes = 0;
        return filled && ioctl(fd, FIONREAD, &bytes) == 0 && bytes == 0;
    }

private:
    int fd = -1;
    bool filled = false;
};

const QDir::Filters kEverything =
    QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;

} // namespace

class TestConverting : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initGraphics(); }
    void init();
    void cleanup();

    void png_isAPlainPaintingOfTheGraph_data();
    void png_isAPlainPaintingOfTheGraph();
    void png_ofSeededStreams_isTheirPlainPainting();
    void png_knowsItsResolution();
    void jpeg_looksLikeThePng();
    void jpeg_ofLowerQuality_isSmaller();
    void svg_looksLikeThePng_data() { SampleRows(); }
    void svg_looksLikeThePng();
    void pdf_looksLikeThePng_data() { SampleRows(); }
    void pdf_looksLikeThePng();
    void pdf_isAsLargeAsItsPixelsAndResolutionSay();
    void eps_isTheViewers_data() { SampleRows(); }
    void eps_isTheViewers();
    void eps_ofSeededStreams_isTheViewers();
    void eps_takesTheOptions();

    void standardStreams_areReadAndWritten_data();
    void standardStreams_areReadAndWritten();
    void format_mayDifferFromTheExtension();
    void closedOutput_isToldSo();
    void displayAndHome_areNotNeeded();
    void commaLocale_changesNothing();

    void error_namesFileAndReason_data();
    void error_namesFileAndReason();
    void wrongUsage_isCode2();
    void platformThatIsMissing_isCode3();
    void help_tellsTheExitCodes();
    void graph_isNeverOverwritten_data();
    void graph_isNeverOverwritten();
    void failure_keepsTheOldPicture();
    void fileSizeLimit_leavesNoHalfPicture_data();
    void fileSizeLimit_leavesNoHalfPicture();
    void folderWithoutPermission_isToldSo();

    void damagedFile_costsOnlyItself();
    void quiet_printsErrorsOnly();
    void folder_isConvertedWhole();
    void strangeNames_areConverted();
    void existingPictures_areReplacedOrLeftAlone();
    void workerThatIsKilled_costsItsFileAndIsTold();
    void interruptedCall_leavesOnlyWholePictures();
    void terminal_showsAProgressBar();

private:
    static void SampleRows();
    [[nodiscard]] QString Path(const QString& name) const { return folder->filePath(name); }
    [[nodiscard]] QString Path(const char* name) const { return Path(Text(name)); }
    [[nodiscard]] QStringList Entries() const
    {
        return QDir(folder->path()).entryList(kEverything);
    }
    void Start(QProcess* process, const QStringList& arguments) const;
    Call Finish(QProcess* process) const;
    Call Convert(const QStringList& arguments, const QByteArray& input = {}) const;
    Call Convert(const char* arguments, const QByteArray& input = {}) const;
    void ConvertWell(const char* arguments) const;

    std::optional<QTemporaryDir> folder; // the current one of each call
    QProcessEnvironment environment;
};

// Nothing of a desktop is there.
void TestConverting::init()
{
    folder.emplace();
    QVERIFY(folder->isValid());
    environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "XDG_RUNTIME_DIR"})
        environment.remove(Text(name));
    ResetEpsOptions();
}

void TestConverting::cleanup()
{
    FreePlfBuffer();
}

void TestConverting::Start(QProcess* process, const QStringList& arguments) const
{
    process->setWorkingDirectory(folder->path());
    process->setProcessEnvironment(environment);
    process->start(Text(PLFCONVERT_PROGRAM), arguments);
    QVERIFY(process->waitForStarted());
}

Call TestConverting::Finish(QProcess* process) const
{
    Call call;
    if (process->waitForFinished(kTimeout) && process->exitStatus() == QProcess::NormalExit)
        call.code = process->exitCode();
    call.output = process->readAllStandardOutput();
    call.errors = process->readAllStandardError();
    return call;
}

Call TestConverting::Convert(const QStringList& arguments, const QByteArray& input) const
{
    QProcess process;
    Start(&process, arguments);
    process.write(input);
    process.closeWriteChannel();
    return Finish(&process);
}

Call TestConverting::Convert(const char* arguments, const QByteArray& input) const
{
    return Convert(Text(arguments).split(u' '), input);
}

void TestConverting::ConvertWell(const char* arguments) const
{
    const Call call = Convert(arguments);
    QCOMPARE(call.errors, QByteArray());
    QCOMPARE(call.code, 0);
}

void TestConverting::SampleRows()
{
    QTest::addColumn<QString>("sample");
    for (const QString& name : QDir(Text(PLOTVW_SAMPLES)).entryList({Text("*.plf")}))
        QTest::newRow(qPrintable(name)) << name;
}

void TestConverting::png_isAPlainPaintingOfTheGraph_data()
{
    QTest::addColumn<QString>("sample");
    QTest::addColumn<QString>("options");
    for (const char* sample : {"tour.plf", "energy.plf", "bode.plf"}) {
        for (const char* options :
             {"", "--background file", "--background transparent", "--width 1000",
              "--size 300x500 --background file", "--line-scale 2.5", "--area 1000,500,3000,1500",
              "--area 2300,1000,3300,2500 --background transparent --width 300", "--black",
              "--min-line-width 20", "--min-line-width 21 --black --background file", "--dpi 300"})
            QTest::addRow("%s %s", sample, options) << Text(sample) << Text(options);
    }
}

// What the options say, done to the operations of the second interpreter.
void TestConverting::png_isAPlainPaintingOfTheGraph()
{
    QFETCH(QString, sample);
    QFETCH(QString, options);
    const QByteArray graph = Sample(sample);
    Write(Path("graph.plf"), graph);
    const QStringList words = options.split(u' ', Qt::SkipEmptyParts);
    const Call call = Convert(words + QStringList{Text("graph.plf"), Text("graph.png")});
    QCOMPARE(call.errors, QByteArray());
    QCOMPARE(call.code, 0);

    const Wish wish(words);
    QStringList expected;
    for (const QString& operation : Operations(graph, wish.View()))
        expected += wish.Changed(operation);
    QCOMPARE(Loaded(Path("graph.png")), Stored(PaintPlainly(expected, wish.Size(), wish.Format())));
}

// In one call, with their own backgrounds.
void TestConverting::png_ofSeededStreams_isTheirPlainPainting()
{
    constexpr unsigned kStreams = 80;
    for (unsigned seed = 1; seed <= kStreams; ++seed)
        Write(Path(QString::number(seed) + Text(".plf")), SeededGraph(seed));
    const Call call = Convert("--background file --output-dir out .");
    QCOMPARE(call.output, QByteArray("80 files: 80 converted, 0 failed\n"));
    QCOMPARE(call.code, 0);
    for (unsigned seed = 1; seed <= kStreams; ++seed) {
        const QStringList operations = Operations(SeededGraph(seed), ViewOf(false));
        QCOMPARE(Loaded(Path(QStringLiteral("out/%1.png").arg(seed))),
                 PaintPlainly(operations, kDefaultSize));
    }
}

void TestConverting::png_knowsItsResolution()
{
    Write(Path("a.plf"), SmallGraph());
    ConvertWell("a.plf a.png");
    QCOMPARE(QImage(Path("a.png")).dotsPerMeterX(), 3780); // 96 per inch
    ConvertWell("--dpi 300 a.plf a.png");
    QCOMPARE(QImage(Path("a.png")).dotsPerMeterX(), 11811);
    QCOMPARE(QImage(Path("a.png")).dotsPerMeterY(), 11811);
}

void TestConverting::jpeg_looksLikeThePng()
{
    Write(Path("a.plf"), Sample(Text("tour.plf")));
    ConvertWell("a.plf a.png");
    ConvertWell("a.plf a.jpg");
    QVERIFY(ReadFile(Path("a.jpg")).startsWith("\xff\xd8\xff"));
    QVERIFY(LookAlike(Loaded(Path("a.png")), Loaded(Path("a.jpg")), kJpegTolerance));
}

void TestConverting::jpeg_ofLowerQuality_isSmaller()
{
    Write(Path("a.plf"), Sample(Text("tour.plf")));
    ConvertWell("a.plf a.jpg");
    ConvertWell("--quality 20 a.plf b.jpeg");
    QVERIFY(ReadFile(Path("b.jpeg")).size() < ReadFile(Path("a.jpg")).size() / 2);
}

void TestConverting::svg_looksLikeThePng()
{
    QFETCH(QString, sample);
    Write(Path("a.plf"), Sample(sample));
    ConvertWell("--background file a.plf a.png");
    ConvertWell("--background file a.plf a.svg");
    const QByteArray svg = ReadFile(Path("a.svg"));
    QVERIFY(!svg.contains("<image")); // vectors are vectors
    QVERIFY(svg.contains("viewBox=\"0 0 640 487\""));
    QVERIFY(
        LookAlike(Loaded(Path("a.png")), RenderedSvg(Path("a.svg"), kDefaultSize), kEdgeTolerance));
}

void TestConverting::pdf_looksLikeThePng()
{
    QFETCH(QString, sample);
    Write(Path("a.plf"), Sample(sample));
    ConvertWell("--background file --width 1280 a.plf a.png");
    ConvertWell("--background file --width 1280 a.plf a.pdf");
    const QImage png = Loaded(Path("a.png"));
    QVERIFY(LookAlike(png, RenderedPdf(Path("a.pdf"), png.size()), kPopplerTolerance));
    // Two lines of heading and no picture.
    QCOMPARE(RunTool(Text("pdfimages"), {Text("-list"), Path("a.pdf")}).count('\n'), 2);
}

void TestConverting::pdf_isAsLargeAsItsPixelsAndResolutionSay()
{
    Write(Path("a.plf"), SmallGraph());
    ConvertWell("--size 1500x900 --dpi 300 a.plf a.pdf");
    const QByteArray about = RunTool(Text("pdfinfo"), {Path("a.pdf")});
    QVERIFY2(QRegularExpression(Text("Page size: +360 x 216 pts")).match(Text(about)).hasMatch(),
             about.constData());
}

void TestConverting::eps_isTheViewers()
{
    QFETCH(QString, sample);
    const QByteArray graph = Sample(sample);
    Write(Path("a.plf"), graph);
    ConvertWell("a.plf a.eps");
    LoadBytes(graph);
    QCOMPARE(ReadFile(Path("a.eps")), Eps());
    // These say what the viewer does anyway.
    ConvertWell("--background white --line-scale 1 --min-line-width 5 a.plf b.eps");
    QCOMPARE(ReadFile(Path("b.eps")), ReadFile(Path("a.eps")));
}

void TestConverting::eps_ofSeededStreams_isTheViewers()
{
    constexpr unsigned kStreams = 200;
    for (unsigned seed = 1; seed <= kStreams; ++seed)
        Write(Path(QString::number(seed) + Text(".plf")),
              QByteArray::fromStdString(streams::Make(seed)));
    QCOMPARE(Convert("--format eps --output-dir out .").code, 0);
    for (unsigned seed = 1; seed <= kStreams; ++seed) {
        const std::string expected = reference::DrawEps(streams::Make(seed), ViewOf(true), {});
        QCOMPARE(ReadFile(Path(QStringLiteral("out/%1.eps").arg(seed))),
                 QByteArray::fromStdString(expected));
    }
}

void TestConverting::eps_takesTheOptions()
{
    const std::string graph =
        plf::WithBackground(plf::Start() + plf::Width(7) + plf::Line(0, 0, 4095, 3119), 10);
    Write(Path("a.plf"), QByteArray::fromStdString(graph));
    ConvertWell("--width 1024 --dpi 72 --background file --black --min-line-width 9 "
                "--area 100,200,2148,1760 --line-scale 2 a.plf a.eps");
    reference::View view = ViewOf(false, 2.0);
    view.zoomLeft = 100;
    view.zoomTop = 200;
    view.zoomRight = 2148;
    view.zoomBottom = 1760;
    reference::EpsOptions options;
    options.scale = 0.5;
    options.minLineWidth = 9;
    options.linesToBlack = true;
    options.fillBackground = true;
    options.backgroundIndex = 10;
    QCOMPARE(ReadFile(Path("a.eps")),
             QByteArray::fromStdString(reference::DrawEps(graph, view, options)));
}

void TestConverting::standardStreams_areReadAndWritten_data()
{
    QTest::addColumn<QString>("format");
    for (const char* format : {"png", "jpeg", "svg", "eps"})
        QTest::newRow(format) << Text(format);
}

void TestConverting::standardStreams_areReadAndWritten()
{
    QFETCH(QString, format);
    const QByteArray graph = Sample(Text("tour.plf"));
    Write(Path("a.plf"), graph);
    const QString file = Text("a.") + format;
    QCOMPARE(Convert({Text("a.plf"), file}).code, 0);
    const Call call = Convert({Text("-f"), format, Text("-"), Text("-")}, graph);
    QCOMPARE(call.errors, QByteArray());
    QCOMPARE(call.code, 0);
    QCOMPARE(call.output, ReadFile(Path(file)));
}

void TestConverting::format_mayDifferFromTheExtension()
{
    Write(Path("a.plf"), SmallGraph());
    ConvertWell("--format png a.plf thumbnail");
    QVERIFY(ReadFile(Path("thumbnail")).startsWith("\x89PNG"));
    ConvertWell("--format svg a.plf b.png");
    QVERIFY(ReadFile(Path("b.png")).startsWith("<?xml"));
}

void TestConverting::closedOutput_isToldSo()
{
    Write(Path("a.plf"), SmallGraph());
    QProcess shell;
    shell.setWorkingDirectory(folder->path());
    shell.setProcessEnvironment(environment);
    shell.start(Text("bash"),
                {Text("-c"), Text("exec \"$0\" -f png a.plf - >&- <&-"), Text(PLFCONVERT_PROGRAM)});
    const Call call = Finish(&shell);
    QVERIFY2(call.errors.startsWith("plfconvert: a.plf: -: "), call.errors.constData());
    QCOMPARE(call.code, 1);
}

void TestConverting::displayAndHome_areNotNeeded()
{
    Write(Path("a.plf"), Sample(Text("tour.plf")));
    ConvertWell("a.plf a.png");
    QProcessEnvironment bare;
    bare.insert(Text("LC_ALL"), Text("C"));
    for (const char* name : {"ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS"}) {
        if (environment.contains(Text(name)))
            bare.insert(Text(name), environment.value(Text(name)));
    }
    environment = bare;
    ConvertWell("a.plf b.png");
    QCOMPARE(ReadFile(Path("b.png")), ReadFile(Path("a.png")));
}

void TestConverting::commaLocale_changesNothing()
{
    Write(Path("a.plf"), Sample(Text("tour.plf")));
    ConvertWell("--line-scale 1.5 a.plf a.svg");
    ConvertWell("--line-scale 1.5 a.plf a.eps");
    const CommaLocale comma;
    QVERIFY2(comma.IsInForce(), "Is the package locales installed?");
    environment.insert(Text("LOCPATH"), qEnvironmentVariable("LOCPATH"));
    environment.insert(Text("LC_ALL"), Text("de_DE.UTF-8"));
    ConvertWell("--line-scale 1.5 a.plf b.svg");
    ConvertWell("--line-scale 1.5 a.plf b.eps");
    QCOMPARE(ReadFile(Path("b.svg")), ReadFile(Path("a.svg")));
    QCOMPARE(ReadFile(Path("b.eps")), ReadFile(Path("a.eps")));
}

void TestConverting::error_namesFileAndReason_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QByteArray>("message");
    const auto row = [](const char* arguments, const char* message) {
        QTest::newRow(arguments) << Text(arguments) << QByteArray(message);
    };
    row("missing.plf a.png", "plfconvert: missing.plf: No such file or directory\n");
    row("empty.plf a.png", "plfconvert: empty.plf: is empty\n");
    row("text.plf a.png", "plfconvert: text.plf: File is not a recognized PLF graphic format.\n");
    row(". a.png", "plfconvert: .: is a directory\n");
    row("pipe a.png", "plfconvert: pipe: is not a regular file; use '-' to read from a pipe\n");
    row("- a.png", "plfconvert: standard input: is empty\n");
    row("a.plf none/a.png", "plfconvert: a.plf: none/a.png: No such file or directory\n");
    row("a.plf folder.png", "plfconvert: a.plf: folder.png: Is a directory\n");
    row("-f png a.plf /dev/full", "plfconvert: a.plf: /dev/full: No space left on device\n");
    row("-f jpeg a.plf /dev/full", "plfconvert: a.plf: /dev/full: No space left on device\n");
    row("-f svg a.plf /dev/full", "plfconvert: a.plf: /dev/full: No space left on device\n");
    row("-f pdf a.plf /dev/full", "plfconvert: a.plf: /dev/full: No space left on device\n");
    row("-f eps a.plf /dev/full", "plfconvert: a.plf: /dev/full: No space left on device\n");
    row("-d text.plf/out a.plf", "plfconvert: a.plf: text.plf/out/a.png: Not a directory\n");
    row("-d folder.png folder.png",
        "plfconvert: folder.png: contains no file whose name ends in .plf\n");
    row("-d out none.plf", "plfconvert: none.plf: No such file or directory\n");
}

void TestConverting::error_namesFileAndReason()
{
    QFETCH(QString, arguments);
    Write(Path("a.plf"), SmallGraph());
    Write(Path("empty.plf"), {});
    Write(Path("text.plf"), "This is no graph at all.\n");
    QVERIFY(QDir(folder->path()).mkdir(Text("folder.png")));
    QCOMPARE(mkfifo(Path("pipe").toLocal8Bit().constData(), 0600), 0);
    const QStringList before = Entries();
    const Call call = Convert(arguments.split(u' '));
    QTEST(call.errors, "message");
    QCOMPARE(call.code, 1);
    QCOMPARE(Entries(), before);
}

void TestConverting::wrongUsage_isCode2()
{
    Write(Path("a.plf"), SmallGraph());
    const Call call = Convert("--size 0x0 a.plf a.png");
    QCOMPARE(call.code, 2);
    QVERIFY2(call.errors.contains("--size '0x0'"), call.errors.constData());
    QVERIFY(!QFile::exists(Path("a.png")));
}

void TestConverting::platformThatIsMissing_isCode3()
{
    environment.insert(Text("QT_QPA_PLATFORM"), Text("none such"));
    Write(Path("a.plf"), SmallGraph());
    const Call call = Convert("a.plf a.png");
    QCOMPARE(call.code, 3);
    QVERIFY2(call.errors.endsWith("plfconvert: cannot start any worker process\n"),
             call.errors.constData());
    QVERIFY(!QFile::exists(Path("a.png")));
}

void TestConverting::help_tellsTheExitCodes()
{
    const Call help = Convert("--help");
    QCOMPARE(help.code, 0);
    QVERIFY(help.output.contains("Exit codes: 0"));
    const Call version = Convert("--version");
    QCOMPARE(version.code, 0);
    QVERIFY(
        QRegularExpression(Text("^plfconvert [0-9.]+\n$")).match(Text(version.output)).hasMatch());
}

void TestConverting::graph_isNeverOverwritten_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<QByteArray>("reason");
    for (const char* output : {"a.plf", "./a.plf", "link", "hard"})
        QTest::newRow(output) << Text(output)
                              << QByteArray("a.plf: input and output are the same file\n");
    QTest::newRow("other.plf") << Text("other.plf")
                               << QByteArray("a.plf: output 'other.plf' is a graph; graphs are "
                                             "never overwritten\n");
}

void TestConverting::graph_isNeverOverwritten()
{
    QFETCH(QString, output);
    QFETCH(QByteArray, reason);
    Write(Path("a.plf"), SmallGraph());
    Write(Path("other.plf"), SmallGraph(5));
    QVERIFY(QFile::link(Path("a.plf"), Path("link")));
    QCOMPARE(link(Path("a.plf").toLocal8Bit().constData(), Path("hard").toLocal8Bit().constData()),
             0);
    const Call call = Convert({Text("-f"), Text("png"), Text("a.plf"), output});
    QCOMPARE(call.code, 1);
    QCOMPARE(call.errors, "plfconvert: " + reason);
    QCOMPARE(ReadFile(Path("a.plf")), SmallGraph());
    QCOMPARE(ReadFile(Path("other.plf")), SmallGraph(5));
}

void TestConverting::failure_keepsTheOldPicture()
{
    Write(Path("a.plf"), "damaged");
    Write(Path("a.png"), "old");
    QCOMPARE(Convert("a.plf a.png").code, 1);
    QCOMPARE(ReadFile(Path("a.png")), QByteArray("old"));
}

void TestConverting::fileSizeLimit_leavesNoHalfPicture_data()
{
    QTest::addColumn<QString>("format");
    for (const char* format : {"png", "jpg", "svg", "pdf", "eps"})
        QTest::newRow(format) << Text(format);
}

// The limit, of a few kilobytes, stands for a disk that becomes full in the middle.
void TestConverting::fileSizeLimit_leavesNoHalfPicture()
{
    QFETCH(QString, format);
    const QString name = Text("a.") + format;
    Write(Path("a.plf"), Sample(Text("tour.plf")));
    Write(Path(name), "old");
    const QStringList before = Entries();
    QProcess shell;
    shell.setWorkingDirectory(folder->path());
    shell.setProcessEnvironment(environment);
    shell.start(Text("bash"), {Text("-c"), Text("trap '' XFSZ; ulimit -f 8; exec \"$@\""),
                               Text("bash"), Text(PLFCONVERT_PROGRAM), Text("a.plf"), name});
    const Call call = Finish(&shell);
    QCOMPARE(call.errors, "plfconvert: a.plf: " + name.toUtf8() + ": File too large\n");
    QCOMPARE(call.code, 1);
    QCOMPARE(ReadFile(Path(name)), QByteArray("old"));
    QCOMPARE(Entries(), before);
}

void TestConverting::folderWithoutPermission_isToldSo()
{
    if (geteuid() == 0)
        QSKIP("The permissions of files do not hold for root.");
    Write(Path("a.plf"), SmallGraph());
    QVERIFY(QDir(folder->path()).mkdir(Text("closed")));
    QCOMPARE(chmod(Path("closed").toLocal8Bit().constData(), 0500), 0);
    const Call call = Convert("a.plf closed/a.png");
    QCOMPARE(call.errors, QByteArray("plfconvert: a.plf: closed/a.png: Permission denied\n"));
    QCOMPARE(call.code, 1);
}

void TestConverting::damagedFile_costsOnlyItself()
{
    constexpr int kFiles = 500;
    constexpr int kDamaged = 321;
    for (int i = 1; i <= kFiles; ++i)
        Write(Path(QStringLiteral("g%1.plf").arg(i)), i == kDamaged ? "damaged" : SmallGraph(i));
    const Call call = Convert("--size 32x24 --output-dir out .");
    QCOMPARE(call.output, QByteArray("500 files: 499 converted, 1 failed\n"));
    QCOMPARE(call.errors, QByteArray("plfconvert: ./g321.plf: File is not a recognized PLF "
                                     "graphic format.\n"));
    QCOMPARE(call.code, 1);
    const QStringList pictures = QDir(Path("out")).entryList(kEverything);
    QCOMPARE(pictures.size(), kFiles - 1);
    for (const QString& picture : pictures)
        QCOMPARE(QImage(Path(Text("out/") + picture)).size(), QSize(32, 24));
}

void TestConverting::quiet_printsErrorsOnly()
{
    Write(Path("a.plf"), SmallGraph());
    Write(Path("b.plf"), "damaged");
    const Call call = Convert("--quiet --output-dir out a.plf b.plf");
    QCOMPARE(call.output, QByteArray());
    QCOMPARE(call.errors.count('\n'), 1);
    QCOMPARE(call.code, 1);
}

void TestConverting::folder_isConvertedWhole()
{
    QVERIFY(QDir(folder->path()).mkpath(Text("in/deeper")));
    Write(Path("in/a.plf"), SmallGraph());
    Write(Path("in/B.PLF"), SmallGraph());
    Write(Path("in/notes.txt"), "no graph");
    Write(Path("in/deeper/c.plf"), SmallGraph());
    const Call call =
        Convert("--format svg --output-dir new/out --pattern {number}-{name}.{ext} in");
    QCOMPARE(call.output, QByteArray("2 files: 2 converted, 0 failed\n"));
    QCOMPARE(QDir(Path("new/out")).entryList(kEverything, QDir::Name),
             QStringList({Text("1-B.svg"), Text("2-a.svg")}));
}

// Some of them the toolkit cannot even write down, so that the folder is handed over.
void TestConverting::strangeNames_areConverted()
{
    const QByteArrayList names = {"two words", "Kr\303\244fte \xf0\x9f\x93\x88",
                                  "new\nline", "-dash",
                                  "--width",   "quote'\"",
                                  "Kr\344fte", "percent %1",
                                  "{brace}"};
    for (const QByteArray& name : names)
        QVERIFY(WriteFile(folder->path().toStdString() + "/" + name.toStdString() + ".plf",
                          SmallGraph().toStdString()));
    const Call call = Convert("--size 8x8 --output-dir out .");
    QCOMPARE(call.errors, QByteArray());
    QCOMPARE(call.output, QByteArray("9 files: 9 converted, 0 failed\n"));
    for (const QByteArray& name : names)
        QCOMPARE(access((folder->path().toLocal8Bit() + "/out/" + name + ".png").constData(), F_OK),
                 0);
    QCOMPARE(
        Convert({Text("--size"), Text("8x8"), Text("--"), Text("-dash.plf"), Text("--x.png")}).code,
        0);
    QVERIFY(QFile::exists(Path("--x.png")));
    const Call missing = Convert({Text("--"), Text("no\nsuch\x1b.plf"), Text("a.png")});
    QCOMPARE(missing.errors,
             QByteArray("plfconvert: no\\x0asuch\\x1b.plf: No such file or directory\n"));
}

void TestConverting::existingPictures_areReplacedOrLeftAlone()
{
    Write(Path("a.plf"), SmallGraph());
    Write(Path("b.plf"), SmallGraph());
    Write(Path("a.png"), "old");
    const Call kept = Convert("--no-clobber --output-dir . a.plf b.plf");
    QCOMPARE(kept.output, QByteArray("2 files: 1 converted, 1 skipped, 0 failed\n"));
    QCOMPARE(kept.code, 0);
    QCOMPARE(ReadFile(Path("a.png")), QByteArray("old"));
    const Call replaced = Convert("--output-dir . a.plf b.plf");
    QCOMPARE(replaced.output, QByteArray("2 files: 2 converted, 0 failed\n"));
    QVERIFY(ReadFile(Path("a.png")).startsWith("\x89PNG"));
}

// The worker waits for the standard input when it is killed.
void TestConverting::workerThatIsKilled_costsItsFileAndIsTold()
{
    const EndlessInput input(Path("input").toLocal8Bit());
    QProcess process;
    process.setStandardInputFile(Path("input"));
    Start(&process, {Text("-"), Text("a.png")});
    QTRY_VERIFY_WITH_TIMEOUT(input.IsRead(), kTimeout);
    const QString children = QStringLiteral("/proc/%1/task/%1/children").arg(process.processId());
    const int worker = ReadFile(children).trimmed().toInt();
    QVERIFY(worker > 0);
    QCOMPARE(kill(worker, SIGKILL), 0);
    const Call call = Finish(&process);
    QCOMPARE(call.code, 1);
    QVERIFY2(call.errors.startsWith("plfconvert: standard input: ") &&
                 call.errors.contains("conversion killed by signal 9"),
             call.errors.constData());
    QCOMPARE(Entries(), QStringList(Text("input")));
}

void TestConverting::interruptedCall_leavesOnlyWholePictures()
{
    const QByteArray graph = Sample(Text("walk.plf"));
    QVERIFY(QDir(folder->path()).mkdir(Text("in")));
    for (int i = 0; i < 1000; ++i)
        Write(Path(QStringLiteral("in/%1.plf").arg(i)), graph);
    QProcess process;
    Start(&process, {Text("--output-dir"), Text("out"), Text("in")});
    QTRY_VERIFY_WITH_TIMEOUT(QDir(Path("out")).count() > 4, kTimeout);
    process.terminate();
    QVERIFY(process.waitForFinished(kTimeout));
    QCOMPARE(process.exitStatus(), QProcess::CrashExit); // by the signal, for a script to see
    const QStringList pictures = QDir(Path("out")).entryList(kEverything);
    QVERIFY(pictures.size() < 1000);
    for (const QString& picture : pictures) {
        QVERIFY2(!picture.startsWith(u'.'), qPrintable(picture));
        QCOMPARE(QImage(Path(Text("out/") + picture)).size(), kDefaultSize);
    }
}

// The program "script" gives it a terminal.
void TestConverting::terminal_showsAProgressBar()
{
    for (int i = 0; i < 20; ++i)
        Write(Path(QStringLiteral("%1.plf").arg(i)), SmallGraph());
    QProcess script;
    script.setWorkingDirectory(folder->path());
    script.setProcessEnvironment(environment);
    script.start(Text("script"),
                 {Text("-qec"), Text(PLFCONVERT_PROGRAM " -d out ."), Text("/dev/null")});
    const Call call = Finish(&script);
    QCOMPARE(call.code, 0);
    QVERIFY2(call.output.contains("/20 "), call.output.constData());
    QVERIFY2(call.output.contains("20 files: 20 converted, 0 failed"), call.output.constData());
    QVERIFY(!Convert("-d out .").errors.contains('#'));
}

QTEST_MAIN(TestConverting)
#include "test_converting.moc"
