// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Graphs as values, and passes over them into each kind of target: without the window's variables.
#include "meta/bytesink.h"
#include "meta/observer.h"
#include "meta/palette.h"
#include "meta/pass.h"
#include "meta/plfbuffer.h"
#include "meta/state.h"
#include "tests/kit/epsfile.h"
#include "tests/kit/graph.h"
#include "tests/kit/plf.h"
#include "tests/kit/recorder.h"
#include "tests/reference/streams.h"

#include <QPainter>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <string>
#include <thread>

#include <unistd.h>

namespace {

constexpr unsigned kStreams = 500;

const std::string kHeader(gszPlfhdr, kPlfHeaderSize);

PlfGraph Load(const std::string& bytes)
{
    const char* problem = nullptr;
    return PlfGraph::FromBytes(bytes, &problem);
}

QByteArray Contents(const PlfGraph& graph)
{
    const PlfBytes bytes = graph.Bytes();
    return {bytes.data, static_cast<qsizetype>(bytes.size)};
}

// The graph that comes out of a pipe which those bytes are written into, piece by piece.
PlfGraph LoadThroughPipe(const std::string& bytes, const char** problem)
{
    constexpr size_t kPiece = 1000;
    int ends[2] = {-1, -1};
    if (pipe(ends) != 0)
        qFatal("no pipe");
    std::thread writer([&] {
        for (size_t at = 0; at < bytes.size(); at += kPiece) {
            const std::string piece = bytes.substr(at, kPiece);
            if (write(ends[1], piece.data(), piece.size()) < 0)
                qFatal("a pipe that is read takes no bytes");
        }
        close(ends[1]);
    });
    PlfGraph graph = PlfGraph::FromStream(ends[0], problem);
    writer.join();
    close(ends[0]);
    return graph;
}

// Counts the vectors that it is told of.
class VectorCounter final : public NoObserver
{
public:
    void Vector(PlfSpan /*span*/, const PlfVector& /*vector*/) override { ++count; }

    unsigned long count = 0;
};

} // namespace

class TestPass : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initGraphics(); }
    void init() { ResetEpsOptions(); }
    void cleanup() { FreePlfBuffer(); }

    void graph_ofBytes_hasThemWithAZeroTail()
    {
        const std::string bytes = kHeader + "some data";
        const PlfGraph graph = Load(bytes);
        QCOMPARE(Contents(graph), QByteArray::fromStdString(bytes));
        const char* tail = graph.Bytes().End();
        QVERIFY(std::all_of(tail, tail + kPlfTailSize, [](char c) { return c == 0; }));
    }

    void graph_ofWrongBytes_isNone_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QByteArray>("problem");
        const QByteArray header = QByteArray::fromStdString(kHeader);
        QTest::newRow("none") << QByteArray() << QByteArray(kCannotOpenGraph);
        QTest::newRow("part of the header") << header.chopped(1) << QByteArray(kNotAGraph);
        QTest::newRow("another header") << header.chopped(1) + '1' << QByteArray(kNotAGraph);
    }

    void graph_ofWrongBytes_isNone()
    {
        QFETCH(QByteArray, bytes);
        const char* problem = nullptr;
        const PlfGraph graph = PlfGraph::FromBytes(bytes.toStdString(), &problem);
        QVERIFY(!graph.IsLoaded());
        QTEST(QByteArray(problem), "problem");
    }

    void graph_ofAStream_isReadToItsEnd_data()
    {
        QTest::addColumn<int>("size");
        for (const int size : {16, 65535, 65536, 65537, 131072, 300000})
            QTest::addRow("%d bytes", size) << size;
    }

    void graph_ofAStream_isReadToItsEnd()
    {
        QFETCH(int, size);
        std::string bytes = kHeader;
        while (bytes.size() < static_cast<size_t>(size))
            bytes += static_cast<char>(bytes.size() % 251);
        const char* problem = nullptr;
        const PlfGraph graph = LoadThroughPipe(bytes, &problem);
        QCOMPARE(Contents(graph), QByteArray::fromStdString(bytes));
        const char* tail = graph.Bytes().End();
        QVERIFY(std::all_of(tail, tail + kPlfTailSize, [](char c) { return c == 0; }));
    }

    void graph_ofAWrongStream_isNone()
    {
        const char* problem = nullptr;
        QVERIFY(!LoadThroughPipe({}, &problem).IsLoaded());
        QCOMPARE(problem, kNoBytes);
        QVERIFY(!LoadThroughPipe("no graph", &problem).IsLoaded());
        QCOMPARE(problem, kNotAGraph);
        QVERIFY(!PlfGraph::FromStream(-1, &problem).IsLoaded());
        QCOMPARE(QByteArray(problem), QByteArray("Bad file descriptor"));
    }

    void seededStream_goesIntoEveryTargetAsTheWindowSendsIt()
    {
        for (unsigned seed = 0; seed < kStreams; ++seed) {
            const std::string bytes = streams::Make(seed);
            const PlfGraph graph = Load(bytes);
            PlfPass pass;
            pass.graph = graph.Bytes();
            Recorder recorder;
            QPainter painter(&recorder);
            const PlfResult painted = PaintGraph(pass, painter);
            StringSink eps;
            const PlfResult written = WriteEps(pass, eps);
            VectorCounter counter;
            FollowGraph(pass, counter);

            LoadBytes(QByteArray::fromStdString(bytes));
            QCOMPARE(recorder.Operations(), Record());
            QCOMPARE(QByteArray::fromStdString(eps.Text()), Eps());
            for (const unsigned long vectors :
                 {written.vectors, counter.count, CountVectors(pass).vectors})
                QCOMPARE(vectors, painted.vectors);
        }
    }

    void result_hasTheBackgroundAndTheTextsRefused()
    {
        const std::string tooLong = "\x1bZD" + std::string(kTextSize, 'x');
        const PlfGraph graph = Load(kHeader + "0000" + std::string(100, '\n') + "\x1bRA11\x1bRA14" +
                                    tooLong + tooLong + "\x1bR!\x07");
        PlfPass pass;
        pass.graph = graph.Bytes();
        pass.whiteBackground = false;
        const PlfResult result = CountVectors(pass);
        QCOMPARE(result.background, 1);
        QCOMPARE(result.textsRefused, 2);
        QCOMPARE(result.texts, 0);
        QTest::ignoreMessage(QtWarningMsg,
                             "plotvw: ignored 2 texts or font names longer than 1023 bytes");
        TellRefusedTexts(result);
        TellRefusedTexts({}); // says nothing
    }

    void painterThatDidNotBegin_drawsNothing()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
        const PlfGraph graph = Load(plf::Start() + plf::Line(0, 0, 100, 100) +
                                    plf::Text(100, 200, "text") + plf::End());
        PlfPass pass;
        pass.graph = graph.Bytes();
        QPainter painter;
        QCOMPARE(PaintGraph(pass, painter).vectors, 1UL);
        VectorCounter counter;
        QCOMPARE(FollowGraph(pass, counter, &painter).vectors, 1UL);
        QCOMPARE(counter.count, 1UL);
    }

    void withoutAGraph_aPassHasNothingButItsBackground()
    {
        QCOMPARE(CountVectors({}).vectors, 0UL);
        Recorder recorder;
        QPainter painter(&recorder);
        PaintGraph({}, painter);
        QCOMPARE(recorder.Operations().last(), QStringLiteral("fill 0 0 4096 3120 #ffffff"));
    }
};

QTEST_MAIN(TestPass)
#include "test_pass.moc"
