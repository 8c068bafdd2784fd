// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Damaged variants of the samples: each is drawn and written as EPS, as the plain interpreter of
// the tests says, with work and memory that its size explains. The same seed gives the same
// variant everywhere. PLOTVW_SEEDS=FIRST:COUNT chooses other ones.
#include "app/state/globals.h"
#include "meta/palette.h"
#include "meta/plfbuffer.h"
#include "meta/plfmeta.h"
#include "tests/kit/epsfile.h"
#include "tests/kit/graph.h"
#include "tests/kit/seeds.h"
#include "tests/reference/reference.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <random>

#include <malloc.h>

#if defined(__SANITIZE_ADDRESS__)
#define COUNTED_BY_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define COUNTED_BY_SANITIZER 1
#endif
#endif
#ifdef COUNTED_BY_SANITIZER
#include <sanitizer/allocator_interface.h>
#endif

namespace {

constexpr unsigned kVariants = 10'000;
// One variant in so many is that of a whole sample, the others are pieces of one. One in so many is
// also drawn as pixels.
constexpr unsigned kWholeSampleEvery = 8;
constexpr unsigned kPixelsEvery = 20;
// Bytes of a sample up to the end of its color map, and of a piece.
constexpr int kHead = 300;
constexpr int kPiece = 1500;
constexpr int kMostDamages = 12;
constexpr int kLongestRun = 40; // bytes that one damage changes

// Longest EPS of a byte: a point of an address that is one byte, as a path of its own.
constexpr qsizetype kEpsPerByte = 40;
constexpr qsizetype kEpsHead = 1000;
// Beside the file itself: its longest address twice while that grows, and the writer's buffer.
constexpr size_t kMemoryPerByte = 4;
constexpr size_t kMemoryOfAPass = 500'000;
// What Qt keeps for characters that it sees first.
constexpr size_t kMemoryKept = 4'000'000;

size_t BytesInUse()
{
#ifdef COUNTED_BY_SANITIZER
    return __sanitizer_get_current_allocated_bytes();
#else
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
#endif
}

// Numbers from a seed, the same with every standard library.
class Random
{
public:
    explicit Random(unsigned seed) : engine(seed) {}
    /// 0 .. below - 1
    int Below(qsizetype below)
    {
        return static_cast<int>(engine() % static_cast<std::mt19937::result_type>(below));
    }

private:
    std::mt19937 engine;
};

// Counts what is painted, and looks how much memory is in use meanwhile.
class CountingEngine : public QPaintEngine
{
public:
    CountingEngine() : QPaintEngine(AllFeatures) {}
    bool begin(QPaintDevice* /*device*/) override { return true; }
    bool end() override { return true; }
    void updateState(const QPaintEngineState& /*change*/) override { Count(1); }
    void drawRects(const QRectF* /*rects*/, int count) override { Count(count); }
    void drawRects(const QRect* /*rects*/, int count) override { Count(count); }
    void drawLines(const QLine* /*lines*/, int count) override { Count(count); }
    void drawLines(const QLineF* /*lines*/, int count) override { Count(count); }
    void drawPath(const QPainterPath& /*path*/) override { Count(1); }
    void drawTextItem(const QPointF& /*at*/, const QTextItem& /*item*/) override { Count(1); }
    void drawPixmap(const QRectF& /*r*/, const QPixmap& /*pm*/, const QRectF& /*sr*/) override
    {
        Count(1);
    }
    [[nodiscard]] Type type() const override { return User; }

    [[nodiscard]] qsizetype Operations() const { return operations; }
    [[nodiscard]] size_t MostInUse() const { return mostInUse; }

private:
    void Count(int count)
    {
        constexpr qsizetype kLookEvery = 64;
        if (operations / kLookEvery != (operations + count) / kLookEvery)
            mostInUse = std::max(mostInUse, BytesInUse());
        operations += count;
    }

    qsizetype operations = 0;
    size_t mostInUse = 0;
};

class CountingDevice : public QPaintDevice
{
public:
    [[nodiscard]] QPaintEngine* paintEngine() const override { return &engine; }
    [[nodiscard]] const CountingEngine& Counted() const { return engine; }

protected:
    [[nodiscard]] int metric(PaintDeviceMetric metric) const override
    {
        constexpr int kSide = 100; // pixels, and dots per inch
        switch (metric) {
        case PdmDepth:
            return 32;
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return static_cast<int>(devicePixelRatioFScale());
        default:
            return kSide;
        }
    }

private:
    mutable CountingEngine engine;
};

// One damage of each kind: a run of bytes, or a bit of one.
void FlipBit(Random& random, QByteArray& file)
{
    char& byte = file[random.Below(file.size())];
    byte = static_cast<char>(byte ^ (1 << random.Below(8)));
}

void Delete(Random& random, QByteArray& file)
{
    file.remove(random.Below(file.size()), 1 + random.Below(kLongestRun));
}

void Insert(Random& random, QByteArray& file)
{
    QByteArray bytes;
    for (int i = random.Below(kLongestRun); i >= 0; --i)
        bytes += static_cast<char>(random.Below(256));
    file.insert(random.Below(file.size()), bytes);
}

void Repeat(Random& random, QByteArray& file)
{
    const int at = random.Below(file.size());
    file.insert(at, file.mid(at, 1 + random.Below(kLongestRun)));
}

void Splice(Random& random, QByteArray& file)
{
    const QByteArray run = file.mid(random.Below(file.size()), 1 + random.Below(kLongestRun));
    file.replace(random.Below(file.size()), run.size(), run);
}

void SetControl(Random& random, QByteArray& file)
{
    constexpr char kControls[] = {'\x1b', '\x1d', '\r', '\n', '\x1f', '\xff', '\0', '\a'};
    // What ends the drawing is rare, so that not every variant ends early.
    const int kinds = random.Below(8) == 0 ? 8 : 5;
    file[random.Below(file.size())] = kControls[random.Below(kinds)];
}

void Truncate(Random& random, QByteArray& file)
{
    file.truncate(file.size() - random.Below(file.size()) / 4);
}

using Damage = void (*)(Random&, QByteArray&);
constexpr Damage kDamages[] = {FlipBit, FlipBit,    FlipBit, Delete,     Insert,
                               Repeat,  SetControl, Splice,  SetControl, Truncate};

QList<QByteArray> Samples()
{
    const QDir folder(QFINDTESTDATA("../samples"));
    QList<QByteArray> samples;
    for (const QString& name : folder.entryList({QStringLiteral("*.plf")})) {
        QFile sample(folder.filePath(name));
        if (sample.open(QIODevice::ReadOnly))
            samples += sample.readAll();
    }
    return samples;
}

// The header stays: what does not begin with it is no graph.
QByteArray MakeVariant(unsigned seed, const QList<QByteArray>& samples)
{
    Random random(seed);
    QByteArray rest = samples[seed % samples.size()].sliced(kPlfHeaderSize);
    if (seed / 8 % kWholeSampleEvery != 0)
        rest = rest.left(kHead) + rest.mid(random.Below(rest.size()), kPiece);
    for (int i = random.Below(kMostDamages); i >= 0 && !rest.isEmpty(); --i)
        kDamages[random.Below(std::size(kDamages))](random, rest);
    return PlfHeader() + rest;
}

Pass PassOf(unsigned seed)
{
    constexpr double kScales[] = {1.0, 0.3, 4.7};
    Pass pass;
    pass.whiteBackground = seed % 2 == 0;
    pass.widthScale = kScales[seed % std::size(kScales)];
    if (seed % 5 == 0)
        SetRect(&pass.zoom, 1000, 800, 2500, 1900);
    return pass;
}

QByteArray ReferenceEps(const QByteArray& file, const Pass& pass)
{
    reference::View view;
    view.whiteBackground = pass.whiteBackground;
    view.widthScale = pass.widthScale;
    view.zoomLeft = pass.zoom.left;
    view.zoomTop = pass.zoom.top;
    view.zoomRight = pass.zoom.right;
    view.zoomBottom = pass.zoom.bottom;
    return QByteArray::fromStdString(reference::DrawEps(file.toStdString(), view, {}));
}

void DrawPixels(const Pass& pass)
{
    QImage image(64, 48, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    Rect zoom = pass.zoom;
    Rect full = kWholeArea;
    char name[] = "variant.plf";
    CPlfMeta meta(name, &painter, nullptr, pass.widthScale, 0);
    QCOMPARE(meta.DrawPlf(&zoom, &full), 1);
}

// Every operation is asked for by a byte at least, and so is every change of the painter's state
// in front of it.
void CheckWork(const CountingEngine& counted, qsizetype size)
{
    QVERIFY2(gdwVectorCnt <= static_cast<unsigned long>(size), "more vectors than bytes");
    QVERIFY2(counted.Operations() <= 2 * size, "more painting than bytes");
}

} // namespace

class TestMutations : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase() { FreePlfBuffer(); }

    void variants_areTheSameEverywhere();
    void everyVariant_isDrawnAsTheReferenceDrawsIt_withWorkThatItsSizeExplains();

private:
    void DrawVariant(unsigned seed);

    QList<QByteArray> samples;
    QTemporaryDir folder;
    qsizetype operations = 0;
};

void TestMutations::initTestCase()
{
    initGraphics();
    ResetEpsOptions();
    samples = Samples();
    QVERIFY(samples.size() >= 8);
}

// Or a failure on one machine could not be looked at on another.
void TestMutations::variants_areTheSameEverywhere()
{
    Random random(1);
    QList<int> numbers;
    for (int i = 0; i < 4; ++i)
        numbers += random.Below(1000);
    QCOMPARE(numbers, QList<int>({845, 139, 124, 368}));
    QCOMPARE(MakeVariant(7, samples), MakeVariant(7, samples));
    QVERIFY(MakeVariant(7, samples) != MakeVariant(7 + 8, samples));
}

void TestMutations::everyVariant_isDrawnAsTheReferenceDrawsIt_withWorkThatItsSizeExplains()
{
    const auto [first, count] = ChosenSeeds(kVariants);
    operations = 0;
    size_t inUse = 0;
    for (unsigned seed = first; seed < first + count; ++seed) {
        DrawVariant(seed);
        if (QTest::currentTestFailed())
            qFatal("variant %u", seed);
        if (seed == first + count / 4)
            inUse = BytesInUse();
    }
    QVERIFY2(BytesInUse() <= inUse + kMemoryKept, "memory grows with every graph");
    QVERIFY2(operations > 50 * static_cast<qsizetype>(count), "the variants draw too little");
}

void TestMutations::DrawVariant(unsigned seed)
{
    const QByteArray file = MakeVariant(seed, samples);
    const Pass pass = PassOf(seed);
    const QString path = folder.filePath(QStringLiteral("variant.eps"));
    LoadBytes(file);
    CountingDevice device;
    {
        QPainter painter(&device);
        const size_t before = BytesInUse();
        WriteEps(path, pass, &painter);
        QVERIFY2(device.Counted().MostInUse() <=
                     before + kMemoryOfAPass + kMemoryPerByte * static_cast<size_t>(file.size()),
                 "more memory than the size explains");
    }
    CheckWork(device.Counted(), file.size());
    operations += device.Counted().Operations();
    QFile eps(path);
    QVERIFY(eps.open(QIODevice::ReadOnly));
    QVERIFY2(eps.size() <= kEpsHead + kEpsPerByte * file.size(), "more EPS than the size explains");
    QVERIFY2(eps.readAll() == ReferenceEps(file, pass), "not what the reference writes");
    if (seed % kPixelsEvery == 0)
        DrawPixels(pass);
}

QTEST_MAIN(TestMutations)
#include "test_mutations.moc"
