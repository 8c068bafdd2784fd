// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Pictures in bands of rows, pixel for pixel beside one call of Qt for each line, and beside one
// band.
#include "app/state/globals.h"
#include "meta/bands.h"
#include "meta/pass.h"
#include "meta/passwatch.h"
#include "meta/plfbuffer.h"
#include "meta/plfgraph.h"
#include "meta/plfmeta.h"
#include "meta/tape.h"
#include "tests/kit/bandpicture.h"
#include "tests/kit/graph.h"
#include "tests/kit/plf.h"
#include "tests/kit/sanitized.h"
#include "tests/reference/streams.h"

#include <QBuffer>
#include <QDataStream>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFont>
#include <QImage>
#include <QPainter>
#include <QRegion>
#include <QTemporaryFile>
#include <QTest>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <iterator>
#include <new>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>

#include <dlfcn.h>
#include <pthread.h>

namespace {

std::atomic<bool> noThreads = false;

// So many allocations of that size fail, after so many that do not.
std::atomic<size_t> failing = 0;
std::atomic<int> successes = 0;
std::atomic<int> failures = 0;
// Called before one fails.
std::function<void()> beforeFailing;

} // namespace

// Sanitizers have allocations and threads of their own.
#ifndef PLOTVW_SANITIZED

namespace {

bool Fails(size_t size)
{
    if (size != failing || failures <= 0 || successes-- > 0 || failures-- <= 0)
        return false;
    if (beforeFailing)
        beforeFailing();
    return true;
}

} // namespace

void* operator new(size_t size)
{
    void* memory = Fails(size) ? nullptr : malloc(size);
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}

void operator delete(void* memory) noexcept
{
    free(memory);
}

void operator delete(void* memory, size_t /*size*/) noexcept
{
    free(memory);
}

// In place of the system's own: fails when a test asks for that.
extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                              void* (*run)(void*), void* argument)
{
    using Create = int (*)(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
    static const auto create = reinterpret_cast<Create>(dlsym(RTLD_NEXT, "pthread_create"));
    return noThreads ? EAGAIN : create(thread, attributes, run, argument);
}

#endif

namespace {

// A sanitizer takes ten times as long.
constexpr unsigned kGraphs = kSanitized ? 40 : 400;
constexpr unsigned kStreams = kSanitized ? 20 : 150;
// The whole, small parts, one beyond the edges, an inverted one and the smallest there can be.
Rect AnyZoom(unsigned seed)
{
    const Rect zooms[] = {{},
                          MakeRect(1000, 900, 2365, 1940),
                          MakeRect(2000, 1500, 2082, 1562),
                          MakeRect(1000, 2000, 3000, 900),
                          MakeRect(-300, 2900, 700, 3700),
                          MakeRect(2000, 1500, 2001, 1501)};
    return zooms[seed % std::size(zooms)];
}

Look AnyLook(unsigned seed)
{
    constexpr QSize kSizes[] = {{160, 112}, {128, 97}, {60, 120}, {120, 60}, {37, 300}, {256, 195}};
    constexpr double kRatios[] = {1.0, 1.5, 2.0};
    Look look;
    look.size = kSizes[seed / 6 % std::size(kSizes)];
    look.zoom = AnyZoom(seed);
    look.ratio = kRatios[seed / 2 % std::size(kRatios)];
    if (seed % 5 == 0)
        look.part = QRect(10, 7, 60, 71);
    look.fillsBackground = seed % 7 != 0;
    look.widthScale = seed % 3 == 0 ? 1.0 : 0.1 * (seed % 30);
    return look;
}

} // namespace

Q_DECLARE_METATYPE(std::function<void(QPainter&)>)

class TestBands : public QObject
{
    Q_OBJECT

private slots:
    void samples_equalPlainLines_data();
    void samples_equalPlainLines();
    void seededGraphs_equalPlainLines();
    void wideLines_thatHideOthers_equalOneBand();
    void pensFarWiderThanThePicture_doNotFreeze();
    void graphThatIsTooLongToKeep_isDrawnFromItsBytes();
    void seededStreams_equalOneBand();
    void otherPainters_getOneBand_data();
    void otherPainters_getOneBand();
    void work_decidesWhereToCut();
    void smallWork_isNotCut();
    void lines_thatEachClipPaintsAnew_areNotCut();
    void environment_limitsTheThreads_data();
    void environment_limitsTheThreads();
    void cleanup() { qunsetenv("PLOTVW_THREADS"); }
    void watch_isToldByTheCallerAlone();
    void watchThatThrows_leavesNoThreadBehind();
    void result_isThatOfOneBand();
    void interpreter_isLeftAsByOneBand();
    void longGraphs_equalOneBand_data();
    void longGraphs_equalOneBand();
    void bandThatFindsNoMemory_isDrawnAgain();
    void recordingThatFindsNoMemory_isDrawnFromItsBytes();
    void withoutThreads_theCallerDraws(); // the last one: Qt counts those threads for ever

private:
    static void Compare(const PlfPass& pass, const Look& look, const QByteArray& what);
};

void TestBands::Compare(const PlfPass& pass, const Look& look, const QByteArray& what)
{
    const QImage plain = PaintPlain(pass, look);
    for (const int bands : {1, 2, 3, 8, 64})
        QVERIFY2(PaintBands(pass, look, bands) == plain,
                 what + " in " + QByteArray::number(bands) + " bands");
}

void TestBands::samples_equalPlainLines_data()
{
    QTest::addColumn<QString>("file");
    const QDir samples(QStringLiteral(PLOTVW_SAMPLES));
    for (const QString& name : samples.entryList({QStringLiteral("*.plf")}))
        QTest::newRow(qPrintable(name)) << samples.filePath(name);
}

void TestBands::samples_equalPlainLines()
{
    QFETCH(QString, file);
    const char* problem = nullptr;
    const PlfGraph graph = PlfGraph::FromFile(QFile::encodeName(file).constData(), &problem);
    QVERIFY(graph.IsLoaded());
    for (const QSize size : {QSize(640, 446), QSize(512, 390)}) {
        for (const double widthScale : {0.0, 4.0}) {
            if (kSanitized && widthScale == 0.0)
                continue;
            const Look look = {size, {}, widthScale};
            Compare(PassOf(graph, look), look, "sample");
        }
    }
}

void TestBands::seededGraphs_equalPlainLines()
{
    constexpr int kWidths[] = {0, 4, 16, 80};
    for (unsigned seed = 0; seed < kGraphs; ++seed) {
        const int width = kWidths[seed % std::size(kWidths)];
        const PlfGraph graph = GraphOf(SeededGraph(seed, width, false));
        const Look look = AnyLook(seed / 4);
        Compare(PassOf(graph, look), look, "seed " + QByteArray::number(seed));
        if (QTest::currentTestFailed())
            return;
    }
}

// In several colors, with texts between them.
void TestBands::wideLines_thatHideOthers_equalOneBand()
{
    constexpr int kLines = 600;
    for (unsigned seed = 0; seed < kGraphs / 20; ++seed) {
        const bool isWhole = seed % 2 == 0;
        const PlfGraph graph = GraphOf(SeededGraph(seed, isWhole ? 800 : 300, true, kLines));
        const Look look = {{160, 112}, isWhole ? Rect() : MakeRect(1000, 900, 2365, 1940)};
        const PlfPass pass = PassOf(graph, look);
        const QImage one = PaintBands(pass, look, 1);
        for (const int bands : {2, 8})
            QVERIFY2(PaintBands(pass, look, bands) == one, qPrintable(QString::number(seed)));
    }
}

// As when the mouse is pressed and the view repainted before it moves. Qt would need an hour.
void TestBands::pensFarWiderThanThePicture_doNotFreeze()
{
    constexpr int kLines = 5000;
    const PlfGraph graph = GraphOf(SeededGraph(1, 80, false, kLines));
    const Look look = {{640, 446}, MakeRect(2000, 1500, 2001, 1501), 640.0};
    const PlfPass pass = PassOf(graph, look);
    const QImage one = PaintBands(pass, look, 1);
    QImage plain = one.copy();
    plain.fill(one.pixel(0, 0));
    QVERIFY(one == plain);
    QVERIFY(PaintBands(pass, look, 3) == one);
}

// With more vectors than are kept decoded, though it has fewer bytes.
void TestBands::graphThatIsTooLongToKeep_isDrawnFromItsBytes()
{
    if (kSanitized)
        QSKIP("four million lines take minutes with a sanitizer");
    constexpr size_t kMany = Tape::kMostBytes / sizeof(Tape::Line) + 1000;
    std::string bytes = SeededGraph(1, 16, true);
    bytes.back() = '\x1d'; // it does not end yet
    bytes += plf::Address(100, 100);
    for (size_t i = 0; i < kMany; ++i)
        bytes += static_cast<char>('@' + i * 7 % 32); // the last part of an address
    const PlfGraph graph = GraphOf(bytes + '\x07');
    QVERIFY(bytes.size() < Tape::kMostBytes);
    const Look look = {{160, 112}};
    PlfPass pass = PassOf(graph, look);
    QCOMPARE(CountVectors(pass).vectors, kMany + 100);
    pass.zoom = MakeRect(60, 2990, 160, 3070);
    QVERIFY(PaintBands(pass, look, 2) == PaintBands(pass, look, 1));
}

// Hostile ones among them, with texts of any size.
void TestBands::seededStreams_equalOneBand()
{
    for (unsigned seed = 0; seed < kStreams; ++seed) {
        const bool isPlain = seed % 4 == 0;
        const PlfGraph graph = GraphOf(isPlain ? SeededGraph(seed, 16, true) : streams::Make(seed));
        const Look look = AnyLook(seed);
        const PlfPass pass = PassOf(graph, look);
        const QImage one = PaintBands(pass, look, 1);
        for (const int bands : {2, 8})
            QVERIFY2(PaintBands(pass, look, bands) == one,
                     "seed " + QByteArray::number(seed) + " in " + QByteArray::number(bands));
    }
}

void TestBands::otherPainters_getOneBand_data()
{
    using SetUpOther = std::function<void(QPainter&)>;
    QTest::addColumn<SetUpOther>("setUp");
    const auto add = [](const char* name, const SetUpOther& setUp) {
        QTest::newRow(name) << setUp;
    };
    add("not antialiased",
        [](QPainter& painter) { painter.setRenderHint(QPainter::Antialiasing, false); });
    add("opacity", [](QPainter& painter) { painter.setOpacity(0.5); });
    add("another mode",
        [](QPainter& painter) { painter.setCompositionMode(QPainter::CompositionMode_Plus); });
    add("turned", [](QPainter& painter) { painter.rotate(10); });
    add("clip of two parts", [](QPainter& painter) {
        painter.setClipRegion(QRegion(3, 4, 20, 50) | QRegion(40, 9, 33, 11));
    });
    add("clip between pixels",
        [](QPainter& painter) { painter.setClipRect(QRectF(9.4, 13.5, 40.3, 21.7)); });
    add("font", [](QPainter& painter) { painter.setFont(QFont(QString(), 33)); });
    add("viewport", [](QPainter& painter) { painter.setViewport(10, 20, 100, 50); });
    add("moved", [](QPainter& painter) { painter.translate(300, -200); });
}

// Where bands would do, they take the painter's state over.
void TestBands::otherPainters_getOneBand()
{
    QFETCH(std::function<void(QPainter&)>, setUp);
    const PlfGraph graph = GraphOf(SeededGraph(1, 16, true));
    const Look look = {{160, 112}};
    const PlfPass pass = PassOf(graph, look);
    QImage one = AnyGround(look);
    QImage many = AnyGround(look);
    for (QImage* image : {&one, &many}) {
        QPainter painter(image);
        painter.setRenderHint(QPainter::Antialiasing);
        setUp(painter);
        PaintInBands(pass, painter, image == &one ? RowCuts() : RowCuts{30, 60});
    }
    QVERIFY(one == many);
}

// What is to be drawn here takes long enough for so many threads.
constexpr int kManyLines = 40000;

void TestBands::work_decidesWhereToCut()
{
    std::string bytes = plf::Start() + plf::Width(16);
    for (int i = 0; i < kManyLines; ++i)
        bytes += plf::Line(i % 3900, 3000, i % 3900 + 100, 2800);
    const PlfGraph graph = GraphOf(bytes + '\x07');
    const Look look = {{640, 446}};
    QImage image = AnyGround(look);
    QPainter painter(&image);
    SetUp(painter, look);
    PlfPass pass = PassOf(graph, look);
    pass.threads = 2;
    const RowCuts cuts = FindCuts(pass, painter);
    QVERIFY(cuts.size() > 1); // whoever has less to do takes another one
    QVERIFY(cuts.front() > (3120 - 3000) * 446 / 3120);
    QVERIFY(cuts.back() < (3120 - 2800) * 446 / 3120 + 3); // with what the pen reaches
    QVERIFY(std::is_sorted(cuts.begin(), cuts.end()));
    pass.threads = 1;
    QVERIFY(FindCuts(pass, painter).empty());
}

void TestBands::smallWork_isNotCut()
{
    const Look look = {{640, 446}};
    QImage image = AnyGround(look);
    QPainter painter(&image);
    SetUp(painter, look);
    const PlfGraph small = GraphOf(SeededGraph(1, 4, false, 100));
    QVERIFY(FindCuts(PassOf(small, look), painter).empty());
    const PlfGraph large = GraphOf(SeededGraph(1, 4, false, kManyLines));
    QVERIFY(!FindCuts(PassOf(large, look), painter).empty());
    PlfPass beside = PassOf(large, look);
    beside.zoom = MakeRect(-3000, 100, -1000, 1600);
    QVERIFY(FindCuts(beside, painter).empty());
}

void TestBands::lines_thatEachClipPaintsAnew_areNotCut()
{
    const Look look = {{512, 390}};
    QImage image = AnyGround(look);
    QPainter painter(&image);
    SetUp(painter, look);
    const PlfGraph thin = GraphOf(SeededGraph(1, 0, false, kManyLines));
    QVERIFY(!FindCuts(PassOf(thin, look), painter).empty());
    const PlfGraph wide = GraphOf(SeededGraph(1, 40, false, kManyLines));
    QVERIFY(FindCuts(PassOf(wide, look), painter).empty());

    // Even where only the bands themselves find out.
    Compare(PassOf(wide, look), look, "wide lines");
}

void TestBands::environment_limitsTheThreads_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<int>("threads");
    QTest::newRow("one") << QByteArray("1") << 1;
    QTest::newRow("three") << QByteArray("3") << 3;
    QTest::newRow("none") << QByteArray("0") << 1;
    QTest::newRow("fewer than none") << QByteArray("-5") << 1;
    QTest::newRow("too many") << QByteArray("9999") << 64;
}

void TestBands::environment_limitsTheThreads()
{
    QFETCH(QByteArray, value);
    const int processors = ThreadLimit();
    QVERIFY(processors >= 1);
    qputenv("PLOTVW_THREADS", "many");
    QCOMPARE(ThreadLimit(), processors);
    qputenv("PLOTVW_THREADS", value);
    QTEST(ThreadLimit(), "threads");
}

// Which thread would come first, is chance: so more than once.
void TestBands::watch_isToldByTheCallerAlone()
{
    constexpr int kRounds = 5;
    const Look look = {{160, 112}};
    const PlfGraph graph = GraphOf(SeededGraph(1, 16, false, 20000));
    PlfPass pass = PassOf(graph, look);
    for (int round = 0; round < kRounds; ++round) {
        int told = 0;
        bool isCaller = false;
        PassWatch watch([&, caller = std::this_thread::get_id()] {
            ++told;
            isCaller = std::this_thread::get_id() == caller;
        });
        const QDeadlineTimer patience(PassWatch::kPatience);
        while (!patience.hasExpired())
            QThread::yieldCurrentThread();
        pass.watch = &watch;
        PaintBands(pass, look, 8);
        QCOMPARE(told, 1);
        QVERIFY(isCaller);
    }
}

// Until another thread helps.
constexpr int kRounds = 10;

// Sees from elsewhere when somebody paints on an image.
class Onlooker
{
public:
    explicit Onlooker(const QImage& watched)
        : bits(watched.constBits()), ground(watched.copy()), size(watched.sizeInBytes())
    {
    }

    /// Waits for it, but not for ever: the threads may still end what they did before, so that the
    /// caller is alone. With a sanitizer not at all: it would call that a race.
    bool Await() const
    {
        constexpr std::chrono::seconds kLongest{3};
        const QDeadlineTimer patience(kLongest);
        while (!kSanitized && memcmp(bits, ground.constBits(), static_cast<size_t>(size)) == 0) {
            if (patience.hasExpired())
                return false;
            QThread::yieldCurrentThread();
        }
        return true;
    }

private:
    const uchar* bits; // which are somebody else's
    QImage ground;
    qsizetype size;
};

// Another thread waits for what the caller decodes when the watch is told.
void TestBands::watchThatThrows_leavesNoThreadBehind()
{
    const Look look = {{160, 112}};
    const PlfGraph graph = GraphOf(SeededGraph(1, 16, false, 20000));
    PlfPass pass = PassOf(graph, look);
    const QImage one = PaintBands(pass, look, 1);
    bool isPainted = false;
    for (int round = 0; round < kRounds && !isPainted; ++round) {
        QImage image = AnyGround(look);
        const Onlooker onlooker(image);
        QPainter painter(&image);
        SetUp(painter, look);
        PassWatch watch([&] {
            isPainted = onlooker.Await();
            throw std::runtime_error("told");
        });
        const QDeadlineTimer patience(PassWatch::kPatience);
        while (!patience.hasExpired())
            QThread::yieldCurrentThread();
        pass.watch = &watch;
        QVERIFY_THROWS_EXCEPTION(std::runtime_error,
                                 PaintInBands(pass, painter, EvenCuts(look, 8)));
        pass.watch = nullptr;
        QVERIFY(PaintBands(pass, look, 8) == one);
    }
    QVERIFY(isPainted);
}

void TestBands::result_isThatOfOneBand()
{
    const Look look = {{160, 112}};
    const PlfGraph graph =
        GraphOf(SeededGraph(1, 16, true)
                    .insert(SeededStart().size(), "\x1bZD" + std::string(2000, 'x') + "\x1b"));
    const PlfPass pass = PassOf(graph, look);
    QImage image = AnyGround(look);
    QPainter painter(&image);
    SetUp(painter, look);
    const PlfResult one = PaintInBands(pass, painter, {});
    const PlfResult many = PaintInBands(pass, painter, EvenCuts(look, 3));
    QVERIFY(one.vectors > 0);
    QCOMPARE(one.textsRefused, 1);
    QCOMPARE(many.vectors, one.vectors);
    QCOMPARE(many.textsRefused, one.textsRefused);
    QCOMPARE(many.background, one.background);
}

// What a pass of the window's interpreter left behind.
QByteArray DrawnInWindow(const QByteArray& threads)
{
    qputenv("PLOTVW_THREADS", threads);
    QImage image = AnyGround({{640, 446}});
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    char name[] = "graph.plf";
    CPlfMeta meta(name, &painter, nullptr, 1.0, 0);
    Rect zoom = {};
    Rect full = kWholeArea;
    meta.DrawPlf(&zoom, &full);
    QByteArray left;
    QBuffer buffer(&left);
    buffer.open(QIODevice::WriteOnly);
    QDataStream stream(&buffer);
    stream << meta.TextFont() << painter.pen() << painter.background() << painter.window()
           << quint64{gdwVectorCnt} << quint64{gdwBkClrFile};
    return left;
}

void TestBands::interpreter_isLeftAsByOneBand()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    std::string bytes = SeededGraph(3, 16, true, kManyLines);
    bytes.insert(SeededStart().size(),
                 std::string(100, '0') + "\x1bRA12\x1bRA12\x1bZFCourier\x1bZS?");
    file.write(QByteArray::fromStdString(bytes));
    file.close();
    char message[kPathSize] = "";
    QCOMPARE(LoadPlfFile(file.fileName().toLocal8Bit().data(), message), 0);
    gbBkClrWhite = false;
    const QByteArray one = DrawnInWindow("1");
    QVERIFY(DrawnInWindow("4") == one);
    gbBkClrWhite = true;
    QVERIFY(DrawnInWindow("1") != one); // the settings count
    FreePlfBuffer();
}

void TestBands::longGraphs_equalOneBand_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("lateWidth");
    QTest::newRow("thin") << 0 << 0;
    QTest::newRow("narrow") << 4 << 4;
    QTest::newRow("wide") << 800 << 800;
    QTest::newRow("wide late") << 0 << 800;
    QTest::newRow("narrow late") << 800 << 4;
}

// Which are recorded in several pieces.
void TestBands::longGraphs_equalOneBand()
{
    QFETCH(int, width);
    QFETCH(int, lateWidth);
    constexpr int kLines = kSanitized ? 6000 : 15000;
    std::string bytes = SeededGraph(1, width, true, kLines);
    bytes.resize(bytes.size() - plf::End().size());
    const std::string late = SeededGraph(2, lateWidth, true, kLines);
    const PlfGraph graph = GraphOf(bytes + late.substr(SeededStart().size()));
    for (const Rect& zoom : {Rect(), MakeRect(1000, 900, 2365, 1940)}) {
        const Look look = {{160, 112}, zoom};
        const PlfPass pass = PassOf(graph, look);
        const QImage one = PaintBands(pass, look, 1);
        for (const int bands : {2, 3, 8})
            QVERIFY2(PaintBands(pass, look, bands) == one, qPrintable(QString::number(bands)));
    }
}

// What a filler needs.
constexpr size_t kFiller = 4096 * sizeof(int);

void TestBands::bandThatFindsNoMemory_isDrawnAgain()
{
    if (kSanitized)
        QSKIP("the sanitizer has its own allocations and threads");
    const PlfGraph graph = GraphOf(SeededGraph(1, 16, true));
    for (const double ratio : {1.0, 1.5}) {
        const Look look = {{160, 112}, {}, 1.0, ratio, {}, false};
        const PlfPass pass = PassOf(graph, look);
        const QImage one = PaintBands(pass, look, 1);
        failing = kFiller;
        failures = 2;
        const QImage many = PaintBands(pass, look, 4);
        QCOMPARE(failures.load(), 0);
        QVERIFY(many == one);
    }
}

// Threads have drawn some of it then.
void TestBands::recordingThatFindsNoMemory_isDrawnFromItsBytes()
{
    if (kSanitized)
        QSKIP("the sanitizer has its own allocations and threads");
    constexpr size_t kPiece = 4096 * sizeof(Tape::Line);
    const PlfGraph graph = GraphOf(SeededGraph(1, 16, true, 20000));
    const Look look = {{160, 112}, {}, 1.0, 1.0, {}, false};
    const PlfPass pass = PassOf(graph, look);
    const QImage one = PaintBands(pass, look, 1);
    bool isPainted = false;
    for (int round = 0; round < kRounds && !isPainted; ++round) {
        QImage image = AnyGround(look);
        const Onlooker onlooker(image);
        QPainter painter(&image);
        SetUp(painter, look);
        beforeFailing = [&] { isPainted = onlooker.Await(); };
        failing = kPiece;
        successes = 3;
        failures = 1;
        PaintInBands(pass, painter, EvenCuts(look, 4));
        beforeFailing = nullptr;
        QCOMPARE(failures.load(), 0);
        QVERIFY(image == one);
    }
    QVERIFY(isPainted);
}

void TestBands::withoutThreads_theCallerDraws()
{
    if (kSanitized)
        QSKIP("the sanitizer has its own allocations and threads");
    constexpr int kMoreThanThereWere = 5;
    const Look look = {{160, 112}};
    const PlfGraph graph = GraphOf(SeededGraph(1, 16, true));
    PlfPass pass = PassOf(graph, look);
    const QImage one = PaintBands(pass, look, 1);
    pass.threads = kMoreThanThereWere;
    noThreads = true;
    QVERIFY(PaintBands(pass, look, 64) == one);
    noThreads = false;
    QVERIFY(PaintBands(pass, look, 64) == one);
}

QTEST_MAIN(TestBands)
#include "test_bands.moc"
