// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A graph as data: the same vectors, texts and damage as somebody gets who follows each byte.
#include "meta/damage.h"
#include "meta/drawing.h"
#include "meta/observer.h"
#include "meta/pass.h"
#include "tests/kit/files.h"
#include "tests/kit/plf.h"

#include <QDir>
#include <QtTest>

#include <random>

namespace {

// What an observer is told.
class Follower : public NoObserver
{
public:
    void Vector(PlfSpan /*span*/, const PlfVector& vector) override { vectors.push_back(vector); }
    void Text(const PlfText& text) override
    {
        if (!text.text.empty())
            texts.push_back(std::string(text.text) + '@' + std::to_string(text.x) + ',' +
                            std::to_string(text.y) + ' ' + std::string(text.font) + ' ' +
                            std::to_string(text.size));
    }

    std::vector<PlfVector> vectors;
    std::vector<std::string> texts;
};

PlfGraph Loaded(const std::string& bytes)
{
    const char* problem = nullptr;
    return PlfGraph::FromBytes(bytes, &problem);
}

bool IsSame(const VectorRecord& a, const PlfVector& b)
{
    return a.x1 == b.x1 && a.y1 == b.y1 && a.x2 == b.x2 && a.y2 == b.y2 && a.color == b.color &&
           a.width == b.width;
}

void CheckSame(const PlfDamageMap& damage, const PlfDamageMap& expected)
{
    QCOMPARE(damage.size(), expected.size());
    for (const auto& [kind, noted] : expected) {
        QVERIFY(damage.contains(kind));
        QCOMPARE(damage.at(kind).offset, noted.offset);
        QCOMPARE(damage.at(kind).count, noted.count);
    }
}

void CompareReadings(const std::string& bytes)
{
    const PlfGraph graph = Loaded(bytes);
    if (!graph.IsLoaded())
        return;
    Follower follower;
    PlfPass pass;
    pass.graph = graph.Bytes();
    FollowGraph(pass, follower);
    PlfDrawing drawing;
    DamageObserver observer;
    observer.Begin(graph.Bytes());
    drawing = ReadDrawing(graph.Bytes(), observer);
    QCOMPARE(drawing.vectors.size(), follower.vectors.size());
    QVERIFY(std::equal(drawing.vectors.begin(), drawing.vectors.end(), follower.vectors.begin(),
                       IsSame));
    std::vector<std::string> texts;
    for (const TextRecord& text : drawing.texts)
        texts.push_back(text.text + '@' + std::to_string(text.x) + ',' + std::to_string(text.y) +
                        ' ' + text.font + ' ' + std::to_string(text.size));
    QVERIFY(texts == follower.texts);
    DamageObserver everything; // sees every address
    everything.Begin(graph.Bytes());
    FollowGraph(pass, everything);
    CheckSame(observer.Damage(), everything.Damage());
    CheckSame(FindDamage(graph.Bytes()), everything.Damage());
}

} // namespace

class TestDrawing : public QObject
{
    Q_OBJECT

private slots:
    void read_samples_areWhatAnObserverIsTold();
    void read_damagedGraphs_areWhatAnObserverIsTold();
    void paths_areNumberedFromZero();
    void texts_haveTheirPlaceAmongVectorsAndTheLineColor();
    void background_isTheFiles();
};

void TestDrawing::read_samples_areWhatAnObserverIsTold()
{
    const QDir samples(Text(PLOTVW_SAMPLES));
    const QStringList names = samples.entryList({Text("*.plf")});
    QVERIFY(!names.isEmpty());
    for (const QString& name : names)
        CompareReadings(ReadFile(samples.filePath(name)).toStdString());
}

void TestDrawing::read_damagedGraphs_areWhatAnObserverIsTold()
{
    const std::string whole =
        ReadFile(QDir(Text(PLOTVW_SAMPLES)).filePath(Text("tour.plf"))).toStdString();
    std::mt19937 random(5);
    for (int i = 0; i < 300; ++i) {
        std::string bytes = whole;
        for (int j = 0; j < 8; ++j)
            bytes[kPlfHeaderSize + random() % (bytes.size() - kPlfHeaderSize)] =
                static_cast<char>(random());
        bytes.resize(kPlfHeaderSize + random() % (bytes.size() - kPlfHeaderSize));
        CompareReadings(bytes);
    }
}

void TestDrawing::paths_areNumberedFromZero()
{
    const PlfDrawing drawing =
        ReadDrawing(Loaded(plf::Start() + plf::Line(0, 0, 10, 0) + plf::Draw(20, 0) +
                           plf::Line(50, 0, 60, 0) + plf::Width(7) + plf::Draw(70, 0) + plf::End())
                        .Bytes());
    std::vector<uint32_t> paths;
    for (const VectorRecord& vector : drawing.vectors)
        paths.push_back(vector.path);
    QVERIFY((paths == std::vector<uint32_t>{0, 0, 1, 2}));
    QCOMPARE(drawing.vectors.back().width, 7);
}

void TestDrawing::texts_haveTheirPlaceAmongVectorsAndTheLineColor()
{
    const PlfDrawing drawing =
        ReadDrawing(Loaded(plf::Start() + plf::ColorMapEntry(2, 90, 50, 100) + plf::LineIndex(2) +
                           plf::Line(0, 0, 10, 0) + plf::Text(100, 200, "Ohm") +
                           plf::Line(0, 0, 10, 0) + plf::End())
                        .Bytes());
    QCOMPARE(drawing.texts.size(), size_t{1});
    QCOMPARE(drawing.texts[0].text, std::string("Ohm"));
    QCOMPARE(drawing.texts[0].x, 100);
    QCOMPARE(drawing.texts[0].y, 200);
    QCOMPARE(drawing.texts[0].before, size_t{1});
    QCOMPARE(drawing.texts[0].lineColor, 12);
}

void TestDrawing::background_isTheFiles()
{
    QCOMPARE(
        ReadDrawing(Loaded(plf::WithBackground(plf::Start(), 3) + plf::End()).Bytes()).background,
        3);
    QCOMPARE(ReadDrawing(Loaded(plf::Diagonal()).Bytes()).background, 15);
}

QTEST_APPLESS_MAIN(TestDrawing)
#include "test_drawing.moc"
