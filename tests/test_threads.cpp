// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Passes that run at once: over many graphs, and over one.
#include "app/state/globals.h"
#include "meta/bands.h"
#include "meta/bytesink.h"
#include "meta/pass.h"
#include "tests/kit/sanitized.h"
#include "tools/info/inspector.h"
#include "tools/info/summarytext.h"

#include <QDir>
#include <QImage>
#include <QPainter>
#include <QTest>

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <thread>
#include <vector>

using namespace info;

namespace {

constexpr int kThreads = 8;
// A pass takes 10 to 30 times as long with a sanitizer; threads are what the other one looks for.
constexpr int kRounds = kSanitized ? 30 : 1000;
// As many units to a pixel both ways, and no pen of a pixel or more, with which Qt is fastest.
constexpr QSize kSize(128, 97);

// Everything that can be made of a graph.
struct Made {
    QImage image;
    std::string eps;
    QByteArray inspection; // its summary and its pieces
    unsigned long vectors = 0;

    bool operator==(const Made& other) const = default;
};

// Each thread draws in a way of its own, so that options that go astray show.
PlfPass PassOf(const PlfGraph& graph, int thread)
{
    PlfPass pass;
    pass.graph = graph.Bytes();
    pass.whiteBackground = thread % 2 == 0;
    pass.widthScale = 0.25 * thread;
    if (thread % 3 == 1)
        pass.zoom = {100 * thread, 100, 2000 + 100 * thread, 1500, 2000, 1400};
    if (thread % 3 == 2)
        pass.colors.rule = LineColors::kAllBlack;
    pass.eps.scale = 0.25 * (1 + thread);
    pass.eps.minLineWidth = thread;
    pass.eps.fillsBackground = thread % 2 == 1;
    pass.eps.backgroundIndex = static_cast<unsigned long>(thread);
    return pass;
}

// Returns the number of vectors.
unsigned long Paint(const PlfPass& pass, QImage* image, const QRect& clip = {})
{
    QPainter painter(image);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!clip.isNull())
        painter.setClipRect(clip);
    return PaintGraph(pass, painter).vectors;
}

// The pieces of a graph as one number: their text would take most of the time.
class PieceSum
{
public:
    void Add(const Item& item)
    {
        const PlfVector& v = item.vector;
        for (const int number : {static_cast<int>(item.kind), static_cast<int>(item.span.end), v.x1,
                                 v.y1, v.x2, v.y2, v.color, v.width})
            sum = sum * 31 + static_cast<uint64_t>(number);
    }
    [[nodiscard]] QByteArray Text() const { return QByteArray::number(qulonglong{sum}); }

private:
    uint64_t sum = 0;
};

QByteArray Inspected(const PlfBytes& graph)
{
    PieceSum sum;
    Inspector inspector([&sum](const Item& item) { sum.Add(item); });
    return SummaryText("graph", inspector.Inspect(graph)) + sum.Text();
}

Made Make(const PlfPass& pass)
{
    Made made;
    made.image = QImage(kSize, QImage::Format_RGB32);
    made.vectors = Paint(pass, &made.image);
    StringSink eps;
    WriteEps(pass, eps);
    made.eps = eps.Text();
    made.inspection = Inspected(pass.graph);
    return made;
}

// Runs a function in so many threads, each with its number.
void InThreads(int count, const std::function<void(int)>& run)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i)
        threads.emplace_back(run, i);
    for (std::thread& thread : threads)
        thread.join();
}

PlfGraph LoadSample(const QString& name)
{
    const char* problem = nullptr;
    PlfGraph graph = PlfGraph::FromFile(QFile::encodeName(name).constData(), &problem);
    if (problem != nullptr)
        qFatal("%s: %s", qPrintable(name), problem);
    return graph;
}

} // namespace

class TestThreads : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        const QDir folder(QStringLiteral(PLOTVW_SAMPLES));
        const QStringList names =
            folder.entryList({QStringLiteral("*.plf")}, QDir::Files, QDir::Name);
        QVERIFY(names.size() >= kThreads);
        for (int i = 0; i < kThreads; ++i)
            graphs[static_cast<size_t>(i)] = LoadSample(folder.filePath(names[i]));
    }

    void manyGraphs_drawnAtOnce_areAsDrawnAlone()
    {
        std::vector<Made> alone;
        for (int i = 0; i < kThreads; ++i)
            alone.push_back(Make(PassOf(Graph(i), i)));
        std::atomic<int> differences = 0;
        InThreads(kThreads, [&](int i) {
            const PlfPass pass = PassOf(Graph(i), i);
            for (int round = 0; round < kRounds; ++round) {
                if (!(Make(pass) == alone[static_cast<size_t>(i)]))
                    ++differences;
            }
        });
        QCOMPARE(differences.load(), 0);
    }

    void oneGraph_drawnInManyWaysAtOnce_isAsDrawnAlone()
    {
        std::vector<Made> alone;
        for (int i = 0; i < kThreads; ++i)
            alone.push_back(Make(PassOf(Graph(0), i)));
        std::atomic<int> differences = 0;
        InThreads(kThreads, [&](int i) {
            for (int round = 0; round < kRounds / 30; ++round) {
                if (!(Make(PassOf(Graph(0), i)) == alone[static_cast<size_t>(i)]))
                    ++differences;
            }
        });
        QCOMPARE(differences.load(), 0);
    }

    // Each painter has the whole picture and paints on its own rows of it.
    void oneGraph_drawnInBandsAtOnce_isOnePicture_data()
    {
        QTest::addColumn<int>("bands");
        QTest::newRow("two") << 2;
        QTest::newRow("eight") << kThreads;
    }

    void oneGraph_drawnInBandsAtOnce_isOnePicture()
    {
        QFETCH(int, bands);
        const QSize window(640, 446);
        for (const PlfGraph& graph : graphs) {
            PlfPass pass;
            pass.graph = graph.Bytes();
            pass.whiteBackground = false;
            QImage whole(window, QImage::Format_RGB32);
            Paint(pass, &whole);
            QImage banded(window, QImage::Format_RGB32);
            banded.fill(Qt::red);
            InThreads(bands, [&, bits = banded.bits(), line = banded.bytesPerLine()](int i) {
                QImage rows(bits, window.width(), window.height(), line, QImage::Format_RGB32);
                const int top = window.height() * i / bands;
                const int bottom = window.height() * (i + 1) / bands;
                Paint(pass, &rows, QRect(0, top, window.width(), bottom - top));
            });
            QCOMPARE(banded, whole);
        }
    }

    // As the program itself does it, by threads that it calls for each picture.
    void manyGraphs_drawnAtOnceInBands_areAsDrawnAlone()
    {
        const QSize window(640, 446);
        const RowCuts cuts = {100, 200, 300, 400};
        const auto paint = [&](int i, const RowCuts& where) {
            PlfPass pass = PassOf(Graph(i), i);
            pass.threads = 3;
            QImage image(window, QImage::Format_RGB32);
            QPainter painter(&image);
            painter.setRenderHint(QPainter::Antialiasing);
            PaintInBands(pass, painter, where);
            painter.end();
            return image;
        };
        std::vector<QImage> alone;
        for (int i = 0; i < kThreads; ++i)
            alone.push_back(paint(i, {}));
        std::atomic<int> differences = 0;
        InThreads(kThreads, [&](int i) {
            for (int round = 0; round < 20; ++round) {
                if (paint(i, cuts) != alone[static_cast<size_t>(i)])
                    ++differences;
            }
        });
        QCOMPARE(differences.load(), 0);
    }

    void passes_leaveTheProgramsVariablesAlone()
    {
        gdwVectorCnt = 4711;
        gdwBkClrFile = 3;
        gbBkClrWhite = true;
        gdwLineClrFlag = 1;
        gdEpsCvtScale = 100.0;
        const Made changed = Make(PassOf(Graph(0), 3));
        QCOMPARE(gdwVectorCnt, 4711UL);
        QCOMPARE(gdwBkClrFile, 3UL);
        QVERIFY(gpPlfmembuf == nullptr);
        gbBkClrWhite = false;
        gdwLineClrFlag = 0;
        gdEpsCvtScale = 0.25;
        QVERIFY(changed == Make(PassOf(Graph(0), 3)));
    }

private:
    [[nodiscard]] const PlfGraph& Graph(int i) const { return graphs[static_cast<size_t>(i)]; }

    std::array<PlfGraph, kThreads> graphs;
};

QTEST_MAIN(TestThreads)
#include "test_threads.moc"
