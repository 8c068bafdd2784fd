// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Graphs that any Qt program reads as images, through the plug-in.
#include "tests/converter.h"
#include "tests/kit/gzip.h"
#include "tests/kit/plf.h"
#include "tests/kit/script.h"

#include <QBuffer>
#include <QColorSpace>
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QImageReader>
#include <QImageWriter>
#include <QLibraryInfo>
#include <QProcess>
#include <QScopeGuard>
#include <QtTest>

#include <algorithm>
#include <atomic>
#include <climits>
#include <cstring>
#include <functional>
#include <random>
#include <thread>
#include <vector>

namespace {

constexpr QSize kSize(1280, 975);
const char* const kSamples[] = {"bode", "energy",   "membrane",  "plate",
                                "tour", "portrait", "resonance", "walk"};

// A device that tells how much was read from it, and may be a pipe, which gives a little at a time.
class CountingDevice final : public QIODevice
{
public:
    explicit CountingDevice(QByteArray contents, bool isPipe = false)
        : bytes(std::move(contents)), pipe(isPipe)
    {
        open(QIODevice::ReadOnly);
    }

    [[nodiscard]] qint64 Delivered() const { return delivered; }
    [[nodiscard]] bool isSequential() const override { return pipe; }
    [[nodiscard]] qint64 size() const override { return pipe ? QIODevice::size() : bytes.size(); }
    [[nodiscard]] bool atEnd() const override { return QIODevice::atEnd() && at == bytes.size(); }
    bool seek(qint64 position) override
    {
        at = position;
        return QIODevice::seek(position);
    }

protected:
    qint64 readData(char* data, qint64 most) override
    {
        constexpr qint64 kPipeGives = 1000;
        const qint64 count = std::min({most, bytes.size() - at, pipe ? kPipeGives : most});
        memcpy(data, bytes.constData() + at, static_cast<size_t>(count));
        at += count;
        delivered += count;
        return count;
    }
    qint64 writeData(const char* /*data*/, qint64 /*size*/) override { return -1; }

private:
    QByteArray bytes;
    bool pipe;
    qint64 at = 0;
    qint64 delivered = 0;
};

QByteArray Graph(const std::string& drawing)
{
    return QByteArray::fromStdString(plf::Start() + drawing + plf::End());
}

// How a program wants its image.
using Setting = std::function<void(QImageReader&)>;

QImage Read(QByteArray bytes, const Setting& set = {}, const QByteArray& format = {})
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, format);
    if (set)
        set(reader);
    return reader.read();
}

QImage ReadFrom(QIODevice* device)
{
    return QImageReader(device).read();
}

// As it comes from a picture file.
QImage Stored(const QImage& image)
{
    QImage stored = image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32
                                                                  : QImage::Format_RGB32);
    stored.setColorSpace({});
    return stored;
}

QByteArray Named(const char* sample)
{
    return Sample(Text(sample) + Text(".plf"));
}

Setting Scaled(QSize size)
{
    return [size](QImageReader& reader) { reader.setScaledSize(size); };
}

Setting Clipped(const QRect& clip)
{
    return [clip](QImageReader& reader) { reader.setClipRect(clip); };
}

// Each file of the fuzzer, and each case of the decoder's scripts.
QList<QByteArray> HostileFiles()
{
    QList<QByteArray> files;
    const QDir corpus(Text(PLOTVW_TOP "/fuzz/corpus/graphs"));
    for (const QString& name : corpus.entryList(QDir::Files))
        files += ReadFile(corpus.filePath(name));
    const QDir scripts(Text(PLOTVW_TOP "/tests/data/decoder"));
    for (const QString& name : scripts.entryList({Text("*.txt")})) {
        for (const ScriptCase& one : ReadScript(scripts.filePath(name)))
            files += one.file;
    }
    return files;
}

bool IsGraph(const QByteArray& bytes)
{
    return bytes.startsWith(QByteArray::fromStdString(plf::Header()));
}

} // namespace

class TestImagePlugin : public QObject, protected ConverterTest
{
    Q_OBJECT

private slots:
    void init() { Begin(); }
    void cleanup() { End(); }

    void format_isReadAndNotWritten();
    void samples_areAsConverted_data() { SampleRows(); }
    void samples_areAsConverted();
    void question_readsTheHeaderOnly_data();
    void question_readsTheHeaderOnly();
    void size_isThatOfTheImage();
    void clips_arePartsOfTheWhole_data();
    void clips_arePartsOfTheWhole();
    void deepClip_showsAFewUnits();
    void clipThatIsScaled_showsMoreOfIt();
    void aroundTheGraph_thereIsBackground();
    void background_isThatOfTheProgram();
    void transparentImage_isAsConverted();
    void absurdSizes_areRefused_data();
    void absurdSizes_areRefused();
    void largeImage_isRefusedByTheLimit();
    void garbage_isRefused_data();
    void garbage_isRefused();
    void otherImage_namedAsAGraph_isRead();
    void packedGraphs_areReadAsGraphs_data() { SampleRows(); }
    void packedGraphs_areReadAsGraphs();
    void packedGraph_withALongName_isRead();
    void packedGraph_isReadWhereSvgComesFirst();
    void otherPackedFiles_areNone_data();
    void otherPackedFiles_areNone();
    void packedGraph_thatIsCutOff_showsWhatIsThere();
    void packedGraph_unpacksToTheLimit();
    void cutOffGraphs_showWhatIsThere();
    void hostileFiles_areReadOrRefused();
    void pipe_isReadToItsEnd();
    void graphInsideADevice_isRead();
    void secondImage_isNone();
    void manyThreads_readTheSameImages();
    void programWithoutWindows_getsNoTexts_data();
    void programWithoutWindows_getsNoTexts();

private:
    [[nodiscard]] QImage Converted(const QByteArray& graph, const QString& options) const;
    [[nodiscard]] QByteArray PackedLarge() const;
    [[nodiscard]] QImage ReadByProgram(const QString& kind, const QByteArray& graph,
                                       const char* name = "read.plf") const;
};

QImage TestImagePlugin::Converted(const QByteArray& graph, const QString& options) const
{
    Write(Path("converted.plf"), graph);
    const Call call =
        Run(QStringList{Text("converted.plf"), Text("converted.png")} + options.split(u' '));
    if (call.code != 0)
        qFatal("%s", call.errors.constData());
    return Stored(QImage(Path("converted.png")));
}

// A packed graph that stays large.
QByteArray TestImagePlugin::PackedLarge() const
{
    std::string vectors;
    std::minstd_rand random;
    const auto below = [&random](unsigned long limit) {
        return static_cast<int>(random() % limit);
    };
    for (int i = 0; i < 300000; ++i)
        vectors += plf::Line(below(4096), below(3120), below(4096), below(3120));
    return Packed(Graph(vectors));
}

void TestImagePlugin::format_isReadAndNotWritten()
{
    QVERIFY(QImageReader::supportedImageFormats().contains("plf"));
    QVERIFY(QImageReader::supportedMimeTypes().contains("image/x-korvel-plf"));
    QCOMPARE(QImageReader::imageFormatsForMimeType("image/x-korvel-plf"), {"plf"});
    QVERIFY(!QImageWriter::supportedImageFormats().contains("plf"));
}

void TestImagePlugin::samples_areAsConverted()
{
    QFETCH(QString, sample);
    const QByteArray graph = Sample(sample);
    QCOMPARE(Stored(Read(graph)), Converted(graph, Text("--width 1280")));
    QCOMPARE(Stored(Read(graph, Scaled({640, 487}))), Converted(graph, Text("--width 640")));
    QCOMPARE(Stored(Read(graph, Scaled({300, 700}))), Converted(graph, Text("--size 300x700")));
}

void TestImagePlugin::question_readsTheHeaderOnly_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<bool>("pipe");
    constexpr qsizetype kLarge = 10000000;
    const QByteArray graph = Graph(plf::Line(0, 0, 9, 9)) + QByteArray(kLarge, '\n');
    QTest::newRow("file") << graph << false;
    QTest::newRow("pipe") << graph << true;
    const QByteArray packed = PackedLarge();
    QVERIFY(packed.size() > 1000000);
    QTest::newRow("packed file") << packed << false;
    QTest::newRow("packed pipe") << packed << true;
}

// Qt reads ahead by a few kilobytes.
void TestImagePlugin::question_readsTheHeaderOnly()
{
    QFETCH(QByteArray, contents);
    QFETCH(bool, pipe);
    CountingDevice device(contents, pipe);
    QImageReader reader(&device);
    QVERIFY(reader.canRead());
    QCOMPARE(reader.format(), "plf");
    QCOMPARE(reader.size(), kSize);
    QCOMPARE(device.pos(), 0);
    QVERIFY(device.Delivered() < 100000);
}

void TestImagePlugin::size_isThatOfTheImage()
{
    QByteArray bytes = SmallGraph();
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    QCOMPARE(reader.size(), kSize);
    QCOMPARE(reader.imageFormat(), QImage::Format_RGB32);
    const QImage image = reader.read();
    QCOMPARE(image.size(), kSize);
    QCOMPARE(image.format(), QImage::Format_RGB32);
    QCOMPARE(reader.size(), kSize);
}

void TestImagePlugin::clips_arePartsOfTheWhole_data()
{
    QTest::addColumn<QRect>("clip");
    QTest::newRow("corner") << QRect(0, 0, 100, 100);
    QTest::newRow("middle") << QRect(600, 400, 211, 133);
    QTest::newRow("row") << QRect(0, 500, 640, 1);
    QTest::newRow("end") << QRect(600, 400, 40, 87);
}

void TestImagePlugin::clips_arePartsOfTheWhole()
{
    QFETCH(QRect, clip);
    for (const char* sample : kSamples) {
        const QByteArray graph = Named(sample);
        QCOMPARE(Read(graph, Clipped(clip)), Read(graph).copy(clip));
        const QSize size(2000, 1500);
        const auto set = [&](QImageReader& reader) {
            reader.setScaledSize(size);
            reader.setScaledClipRect(clip);
        };
        QCOMPARE(Read(graph, set), Read(graph, Scaled(size)).copy(clip));
    }
}

// A unit is twenty pixels; the whole graph would take ten gigabytes.
void TestImagePlugin::deepClip_showsAFewUnits()
{
    const QByteArray graph =
        Graph(plf::Width(0) + plf::Line(0, 1560, 4095, 1560) + plf::Line(2048, 0, 2048, 3119));
    const auto set = [](QImageReader& reader) {
        reader.setScaledSize({81920, 62400});
        reader.setScaledClipRect({2048 * 20 - 300, 1560 * 20 - 300, 600, 600});
    };
    const QImage image = Read(graph, set);
    QCOMPARE(image.size(), QSize(600, 600));
    int rows = 0;
    for (int y = 0; y < image.height(); ++y)
        rows += image.pixelColor(5, y) == QColor(Qt::white) ? 0 : 1;
    QVERIFY(rows == 1 || rows == 2); // a thin line
    QVERIFY(image.pixelColor(5, 300) != image.pixelColor(5, 303));
    for (const QPoint at : {QPoint(5, 5), QPoint(190, 190), QPoint(410, 410), QPoint(5, 410)})
        QCOMPARE(image.pixelColor(at), QColor(Qt::white));
}

// The left half of the graph, twice as large, is the left half of the graph of twice the size.
void TestImagePlugin::clipThatIsScaled_showsMoreOfIt()
{
    const auto half = [](QImageReader& reader) {
        reader.setClipRect({0, 0, 640, 975});
        reader.setScaledSize({1280, 1950});
        reader.setScaledClipRect({100, 200, 500, 600});
    };
    const QImage twice = Read(Named("plate"), Scaled(kSize * 2));
    QCOMPARE(Read(Named("plate"), half), twice.copy(100, 200, 500, 600));
}

// Lines that are outside the graph are not shown there.
void TestImagePlugin::aroundTheGraph_thereIsBackground()
{
    const QByteArray graph =
        Graph(plf::Width(40) + plf::Line(0, 3000, 4095, 3000) + plf::Line(0, 3500, 4095, 3500));
    const QImage image = Read(graph, Clipped({-100, -200, 300, 400}));
    QCOMPARE(image.size(), QSize(300, 400));
    QImage expected(300, 400, QImage::Format_RGB32);
    expected.fill(Qt::white);
    const QImage inside = Read(graph, Clipped({0, 0, 200, 200}));
    QCOMPARE(image.copy(100, 200, 200, 200), inside);
    QCOMPARE(image.copy(0, 0, 300, 200), expected.copy(0, 0, 300, 200));
    QCOMPARE(image.copy(0, 0, 100, 400), expected.copy(0, 0, 100, 400));
}

void TestImagePlugin::background_isThatOfTheProgram()
{
    const QByteArray graph = Graph(plf::Width(100) + plf::Line(0, 1560, 4095, 1560));
    const auto set = [](QImageReader& reader) { reader.setBackgroundColor(Qt::yellow); };
    const QImage image = Read(graph, set);
    QCOMPARE(image.format(), QImage::Format_RGB32);
    QCOMPARE(image.pixelColor(5, 5), QColor(Qt::yellow));
    QCOMPARE(image.pixelColor(640, 487), QColor(Qt::black));
    const auto unset = [](QImageReader& reader) { reader.setBackgroundColor({}); };
    QCOMPARE(Read(graph, unset), Read(graph));
}

void TestImagePlugin::transparentImage_isAsConverted()
{
    const auto set = [](QImageReader& reader) { reader.setBackgroundColor(Qt::transparent); };
    const QImage image = Read(Named("tour"), set);
    QVERIFY(image.hasAlphaChannel());
    QCOMPARE(Stored(image),
             Converted(Named("tour"), Text("--width 1280 --background transparent")));
}

void TestImagePlugin::absurdSizes_areRefused_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("no rows") << QSize(100, 0);
    QTest::newRow("wider than Qt paints") << QSize(40000, 10);
    QTest::newRow("higher than Qt paints") << QSize(10, 40000);
    QTest::newRow("more memory than anyone has") << QSize(30000, 30000);
    QTest::newRow("largest numbers") << QSize(INT_MAX, INT_MAX);
}

void TestImagePlugin::absurdSizes_areRefused()
{
    QFETCH(QSize, size);
    QVERIFY(Read(SmallGraph(), Scaled(size)).isNull());
    const auto inClip = [size](QImageReader& reader) {
        reader.setClipRect({INT_MAX - 10, INT_MIN, 10, 10});
        reader.setScaledSize(size);
    };
    QVERIFY(Read(SmallGraph(), inClip).isNull());
}

void TestImagePlugin::largeImage_isRefusedByTheLimit()
{
    const auto restore = qScopeGuard(
        [limit = QImageReader::allocationLimit()] { QImageReader::setAllocationLimit(limit); });
    QImageReader::setAllocationLimit(4); // megabytes; the image has 4.8
    QVERIFY(Read(SmallGraph()).isNull());
    QVERIFY(!Read(SmallGraph(), Scaled({640, 487})).isNull());
    QImageReader::setAllocationLimit(5);
    QVERIFY(!Read(SmallGraph()).isNull());
}

void TestImagePlugin::garbage_isRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("text") << QByteArray("no graph at all");
    QTest::newRow("header cut short") << QByteArray::fromStdString(plf::Header()).chopped(1);
    QTest::newRow("zero bytes") << QByteArray(1000, '\0');
}

void TestImagePlugin::garbage_isRefused()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(Read(bytes).isNull());
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, "plf");
    QVERIFY(!reader.canRead());
    QCOMPARE(reader.size(), QSize());
    QVERIFY(reader.read().isNull());
    QCOMPARE(reader.error(), QImageReader::InvalidDataError);
}

void TestImagePlugin::otherImage_namedAsAGraph_isRead()
{
    QImage other(3, 4, QImage::Format_RGB32);
    other.fill(Qt::red);
    QVERIFY(other.save(Path("other.plf"), "png"));
    QCOMPARE(Stored(QImage(Path("other.plf"))), other);
    Write(Path("graph.png"), SmallGraph());
    QImageReader reader(Path("graph.png"));
    reader.setDecideFormatFromContent(true);
    QCOMPARE(reader.read(), Read(SmallGraph()));
}

void TestImagePlugin::packedGraphs_areReadAsGraphs()
{
    QFETCH(QString, sample);
    const QByteArray packed = Packed(Sample(sample));
    const QImage expected = Read(Sample(sample));
    QVERIFY(!expected.isNull());
    Write(Path("graph.plf.gz"), packed);
    QCOMPARE(QImage(Path("graph.plf.gz")), expected);
    CountingDevice pipe(packed, true);
    QCOMPARE(ReadFrom(&pipe), expected);
}

// gzip writes the name of the file before the data.
void TestImagePlugin::packedGraph_withALongName_isRead()
{
    const QString name(NAME_MAX - 3, u'n'); // it appends .gz
    Write(Path(name), Named("walk"));
    QCOMPARE(QProcess::execute(Text("gzip"), {Path(name)}), 0);
    const QByteArray packed = ReadFile(Path(name + Text(".gz")));
    QVERIFY(packed.contains(name.toLatin1()));
    QCOMPARE(Read(packed), Read(Named("walk")));
}

// Qt asks plug-ins in the order in which it finds them.
void TestImagePlugin::packedGraph_isReadWhereSvgComesFirst()
{
    const QByteArray own = qgetenv("QT_PLUGIN_PATH");
    const auto restore = qScopeGuard([own] { qputenv("QT_PLUGIN_PATH", own); });
    qputenv("QT_PLUGIN_PATH",
            QLibraryInfo::path(QLibraryInfo::PluginsPath).toLocal8Bit() + ':' + own);
    const QImage image = ReadByProgram(Text("gui"), Packed(Named("walk")), "read.plf.gz");
    QCOMPARE(image, Stored(Read(Named("walk"))));
}

void TestImagePlugin::otherPackedFiles_areNone_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray header = QByteArray::fromStdString(plf::Header());
    QTest::newRow("text") << Packed("no graph at all, but longer than a header");
    QTest::newRow("nothing") << Packed({});
    QTest::newRow("header cut short") << Packed(header.chopped(1));
    QTest::newRow("packed twice") << Packed(Packed(SmallGraph()));
    QTest::newRow("damaged") << Packed(SmallGraph()).replace(10, 5, QByteArray(5, '\xff'));
    QTest::newRow("magic alone") << Packed(SmallGraph()).first(2);
}

// Other plug-ins may know what they are.
void TestImagePlugin::otherPackedFiles_areNone()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(Read(bytes, {}, "plf").isNull());
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QVERIFY(!QImageReader(&buffer, "plf").canRead());
    QVERIFY(QImageReader::imageFormat(&buffer) != "plf");
    QCOMPARE(buffer.pos(), 0);
}

void TestImagePlugin::packedGraph_thatIsCutOff_showsWhatIsThere()
{
    const QByteArray packed = Packed(Named("plate"));
    for (int i = 1; i < 20; ++i)
        QVERIFY(!Read(packed.first(packed.size() * i / 20), {}, "plf").isNull());
}

void TestImagePlugin::packedGraph_unpacksToTheLimit()
{
    const auto restore = qScopeGuard(
        [limit = QImageReader::allocationLimit()] { QImageReader::setAllocationLimit(limit); });
    constexpr qsizetype kSmaller = 3 << 19; // between one and two megabytes
    const QByteArray packed = Packed(SmallGraph() + QByteArray(kSmaller, '\n'));
    QImageReader::setAllocationLimit(1); // megabytes
    QVERIFY(Read(packed, Scaled({160, 122}), "plf").isNull());
    QImageReader::setAllocationLimit(2);
    QVERIFY(!Read(packed, Scaled({160, 122}), "plf").isNull());
}

void TestImagePlugin::cutOffGraphs_showWhatIsThere()
{
    constexpr int kPlaces = 100;
    QImage nothing(160, 122, QImage::Format_RGB32);
    nothing.fill(Qt::white);
    for (const char* sample : kSamples) {
        const QByteArray whole = Named(sample);
        for (int i = 1; i <= kPlaces; ++i) {
            const QByteArray part = whole.first(whole.size() * i / kPlaces);
            const QImage image = Read(part, Scaled(nothing.size()));
            QCOMPARE(image.size(), nothing.size());
            if (i > kPlaces / 2)
                QVERIFY(image != nothing);
        }
    }
}

void TestImagePlugin::hostileFiles_areReadOrRefused()
{
    const QList<QByteArray> files = HostileFiles();
    QVERIFY(files.size() > 100);
    for (const QByteArray& bytes : files) {
        const QImage image = Read(bytes, Scaled({64, 48}));
        QCOMPARE(image.isNull(), !IsGraph(bytes));
        QCOMPARE(Read(bytes, Clipped({630, 480, 40, 30}), "plf").isNull(), !IsGraph(bytes));
    }
}

void TestImagePlugin::pipe_isReadToItsEnd()
{
    CountingDevice pipe(Named("walk"), true);
    QCOMPARE(ReadFrom(&pipe), Read(Named("walk")));
    CountingDevice other("no graph", true);
    QVERIFY(!QImageReader(&other, "plf").canRead());
    QCOMPARE(other.readAll(), "no graph");
}

void TestImagePlugin::graphInsideADevice_isRead()
{
    CountingDevice device("something before" + Named("walk"));
    QVERIFY(device.seek(16));
    QCOMPARE(ReadFrom(&device), Read(Named("walk")));
}

void TestImagePlugin::secondImage_isNone()
{
    QByteArray bytes = SmallGraph();
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    QVERIFY(!reader.supportsAnimation());
    QVERIFY(!reader.read().isNull());
    QVERIFY(reader.read().isNull());
}

void TestImagePlugin::manyThreads_readTheSameImages()
{
    constexpr int kRounds = 5;
    std::vector<QImage> alone;
    for (const char* sample : kSamples)
        alone.push_back(Read(Named(sample)));
    std::atomic<int> differences = 0;
    std::vector<std::thread> threads;
    for (size_t i = 0; i < std::size(kSamples); ++i) {
        threads.emplace_back([&, i] {
            for (int round = 0; round < kRounds; ++round)
                differences += Read(Named(kSamples[i])) == alone[i] ? 0 : 1;
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    QCOMPARE(differences.load(), 0);
}

QImage TestImagePlugin::ReadByProgram(const QString& kind, const QByteArray& graph,
                                      const char* name) const
{
    Write(Path(name), graph);
    QProcess process;
    QProcessEnvironment its = QProcessEnvironment::systemEnvironment();
    its.insert(Text("XDG_RUNTIME_DIR"), folder->path());
    process.setProcessEnvironment(its);
    process.start(Text(READIMAGE_PROGRAM), {kind, Path(name), Path("read.png")});
    const Call call = Finish(&process);
    if (call.code != 0 || !call.errors.isEmpty())
        qFatal("%d: %s", call.code, call.errors.constData());
    return Stored(QImage(Path("read.png")));
}

void TestImagePlugin::programWithoutWindows_getsNoTexts_data()
{
    QTest::addColumn<bool>("hasTexts");
    QTest::newRow("none") << false;
    QTest::newRow("core") << false;
    QTest::newRow("gui") << true;
}

void TestImagePlugin::programWithoutWindows_getsNoTexts()
{
    QFETCH(bool, hasTexts);
    const QString kind = Text(QTest::currentDataTag());
    const std::string line = plf::Line(0, 0, 4095, 3119);
    const QByteArray texts =
        Graph(plf::Text(100, 1000, "before") + line + plf::Text(2000, 500, "after"));
    const QImage lines = Stored(Read(Graph(line)));
    const QImage image = ReadByProgram(kind, texts);
    QCOMPARE(image == lines, !hasTexts);
    QCOMPARE(image == Stored(Read(texts)), hasTexts);
}

// The plug-in that was built, whatever is installed.
int main(int argc, char** argv)
{
    qputenv("QT_PLUGIN_PATH", PLOTVW_QT_PLUGINS);
    QGuiApplication application(argc, argv);
    TestImagePlugin test;
    return QTest::qExec(&test, argc, argv);
}
#include "test_imageplugin.moc"
