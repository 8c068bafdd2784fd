// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// How the fuzz targets take graphs apart and change them.
#include "fuzz/graphmutator.h"

#include "tests/kit/plf.h"

#include <QTest>

#include <algorithm>
#include <set>

namespace {

constexpr unsigned kSeeds = 2000;
constexpr size_t kMaxSize = 4096;

// One of each kind of command, and addresses of every length.
std::vector<fuzz::Unit> Pieces()
{
    return {plf::Header(),
            "00",
            "\x1bGT@5",
            "\x1d",
            plf::Address(100, 200),
            "\x60\x20\x40",
            "\x41",
            "\x1bML3",
            "\x1bTG1420A0F4",
            "\x1bZP100,200;ZDtext\n",
            "\x1b",
            "\f",
            "\x1bZFSans",
            "\x1bLTD0text",
            "\r",
            "\x1bQQ12",
            "\xff",
            "\x1bG5",
            "\a"};
}

std::string Join(const std::vector<fuzz::Unit>& units)
{
    std::string bytes;
    for (const fuzz::Unit& unit : units)
        bytes += unit;
    return bytes;
}

bool BeginsWith(const std::string& bytes, const std::string& start)
{
    return bytes.compare(0, start.size(), start) == 0;
}

} // namespace

class TestGraphMutator : public QObject
{
    Q_OBJECT

private slots:
    void graph_isSplitIntoItsCommandsAndAddresses()
    {
        const std::vector<fuzz::Unit> pieces = Pieces();
        QCOMPARE(fuzz::SplitGraph(Join(pieces)), pieces);
    }

    void anyBytes_keepTheirOrder()
    {
        std::string bytes;
        for (int i = 0; i < 512; ++i)
            bytes += static_cast<char>(i * 7);
        QCOMPARE(Join(fuzz::SplitGraph(bytes)), bytes);
    }

    void mutation_keepsTheHeaderAndTheLimit()
    {
        std::string graph = Join(Pieces());
        for (unsigned seed = 0; seed < kSeeds; ++seed) {
            graph = fuzz::MutateGraph(graph, seed, kMaxSize);
            QVERIFY(BeginsWith(graph, plf::Header()));
            QVERIFY(graph.size() <= kMaxSize);
        }
    }

    // One change leaves all other units whole.
    void mutation_leavesMostUnitsAlone()
    {
        const std::vector<fuzz::Unit> pieces = Pieces();
        size_t same = 0;
        for (unsigned seed = 0; seed < kSeeds; ++seed) {
            const auto units = fuzz::SplitGraph(fuzz::MutateGraph(Join(pieces), seed, kMaxSize));
            const std::set<fuzz::Unit> kept(units.begin(), units.end());
            same += static_cast<size_t>(
                std::count_if(pieces.begin(), pieces.end(),
                              [&kept](auto& unit) { return kept.count(unit) > 0; }));
        }
        QVERIFY(same > kSeeds * pieces.size() / 2);
    }

    void mutation_isThatOfItsSeed()
    {
        const std::string graph = Join(Pieces());
        std::set<std::string> graphs;
        for (unsigned seed = 0; seed < kSeeds; ++seed) {
            const std::string mutated = fuzz::MutateGraph(graph, seed, kMaxSize);
            QCOMPARE(fuzz::MutateGraph(graph, seed, kMaxSize), mutated);
            graphs.insert(mutated);
        }
        QVERIFY(graphs.size() > kSeeds / 2);
    }

    void bytesWithoutAHeader_getOne()
    {
        QVERIFY(BeginsWith(fuzz::MutateGraph("", 1, kMaxSize), plf::Header()));
        QVERIFY(BeginsWith(fuzz::MutateGraph("graph", 1, kMaxSize), plf::Header()));
    }

    void noRoom_isKept() { QCOMPARE(fuzz::MutateGraph(Join(Pieces()), 1, 0), std::string()); }
};

QTEST_GUILESS_MAIN(TestGraphMutator)
#include "test_graphmutator.moc"
