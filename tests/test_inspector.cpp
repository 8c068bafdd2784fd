// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What the interpreter tells of a graph, piece by piece and summed up.
#include "tools/info/inspector.h"

#include "app/state/globals.h"
#include "meta/pass.h"
#include "meta/plfbuffer.h"
#include "tests/kit/files.h"
#include "tests/kit/graph.h"
#include "tests/kit/plf.h"
#include "tests/kit/recorder.h"
#include "tests/kit/script.h"
#include "tests/reference/reference.h"
#include "tests/reference/streams.h"
#include "tools/info/dump.h"

#include <QDir>
#include <QPainter>
#include <QTest>

#include <algorithm>

using namespace info;

namespace {

constexpr unsigned kStreams = 3000;

// A piece of a file in the notation of the decoder scripts, and the words that the dump has for it;
// without words it is skipped.
struct Piece {
    const char* bytes;
    const char* words;
};

using Pieces = QList<Piece>;

// The header with the rest of its last entry, which begin every stream here.
const Piece kFirstEntry = {R"(ESC "TG140000")", "command TG 1 4 0 0 0 0"};
const Piece kSecondEntry = {R"(ESC "TG1410F40")", "command TG 1 4 1 0 100 0"};

QByteArray Bytes(const char* script)
{
    return ScriptBytes(Text(script).simplified());
}

QByteArray Graph(const char* script)
{
    return Bytes(kFirstEntry.bytes) + Bytes(kSecondEntry.bytes) + Bytes(script);
}

QStringList Dumped(const QByteArray& file)
{
    LoadBytes(file);
    QStringList lines;
    Inspector([&lines](const Item& item) {
        lines += QString::fromUtf8(DumpLine(item)).chopped(1);
    }).Inspect(LoadedPlf());
    return lines;
}

Summary Inspected(const QByteArray& file)
{
    LoadBytes(file);
    return Inspector().Inspect(LoadedPlf());
}

// The kinds, offsets and counts of the damage, as "unknown command" has them in words.
using DamageMap = std::map<PlfDamage, std::pair<size_t, uint64_t>>;

DamageMap DamageOf(const QByteArray& file)
{
    DamageMap damage;
    for (const auto& [kind, noted] : Inspected(file).damage)
        damage[kind] = {noted.offset, noted.count};
    return damage;
}

QStringList Draw(PlfObserver* observer)
{
    PlfPass pass;
    pass.graph = LoadedPlf();
    pass.whiteBackground = false;
    Recorder recorder;
    QPainter painter(&recorder);
    if (observer == nullptr)
        PaintGraph(pass, painter);
    else
        FollowGraph(pass, *observer, &painter);
    return recorder.Operations();
}

// The ends of the vectors, as a second interpreter reads them.
QStringList ReferenceLines(const std::string& file)
{
    QStringList lines;
    for (const std::string& operation : reference::Draw(file, {}).operations) {
        const QStringList words = QString::fromStdString(operation).split(u' ');
        if (words[0] != u"line")
            continue;
        lines += QStringLiteral("line %1,%2 %3,%4")
                     .arg(words[1].toInt())
                     .arg(kPlfHeight - words[2].toInt())
                     .arg(words[3].toInt())
                     .arg(kPlfHeight - words[4].toInt());
    }
    return lines;
}

// The lines of a dump that begin with a word, without their offsets.
QStringList WithWord(const QStringList& dump, const QString& word)
{
    QStringList lines;
    for (const QString& line : dump) {
        const QString words = line.section(u' ', 2);
        if (words.section(u' ', 0, 0) == word)
            lines += words;
    }
    return lines;
}

} // namespace

class TestInspector : public QObject
{
    Q_OBJECT

private slots:
    void cleanupTestCase() { FreePlfBuffer(); }

    void dump_handMadeStream_hasEveryPieceAtItsPlace_data();
    void dump_handMadeStream_hasEveryPieceAtItsPlace();
    void dump_seededStream_coversItAndHasTheReferencesLines();
    void observer_seededStream_changesNothingThatIsDrawn();
    void damage_ofOneKind_isNoted_data();
    void damage_ofOneKind_isNoted();
    void damage_graphThatIsCutOff_saysWhere_data();
    void damage_graphThatIsCutOff_saysWhere();
    void damage_sample_isNoLoss_data();
    void damage_sample_isNoLoss();
    void damage_wholeGraph_hasNone();
    void summary_graph_hasWhatIsInIt();
    void summary_textWithSettings_hasThem();
    void summary_textAttributes_areTwoBits_data();
    void summary_textAttributes_areTwoBits();
    void summary_textColor_isMappedLikeThatOfLines_data();
    void summary_textColor_isMappedLikeThatOfLines();
    void summary_graphWithoutVectors_hasNoExtent();
    void summary_skippedBytes_areThoseWithoutEffect();
    void background_isFoundAsTheViewerFindsIt_data();
    void background_isFoundAsTheViewerFindsIt();
};

void TestInspector::dump_handMadeStream_hasEveryPieceAtItsPlace_data()
{
    QTest::addColumn<Pieces>("pieces");
    QTest::newRow("polyline") << Pieces{{"GS", "gs"},
                                        {"@100,200", "move 100,200"},
                                        {"@300,400", "line 100,200 300,400"},
                                        {"@4095,4095", "line 300,400 4095,4095"},
                                        {"BEL", "end bel"}};
    QTest::newRow("short addresses") << Pieces{{"GS", "gs"},
                                               {"@1234,567", "move 1234,567"},
                                               {"x55", "line 1234,567 1238,567"},
                                               {"x6E x6E x55", "line 1238,567 1238,571"},
                                               {"xFF", "end byte-255"}};
    QTest::newRow("line ends between items")
        << Pieces{{"CR LF", nullptr}, {"GS", "gs"},
                  {"LF", nullptr},    {"@0,0", "move 0,0"},
                  {"LF", nullptr},    {"@8,8", "line 0,0 8,8"},
                  {"CR", nullptr},    {"NUL", "end zero-byte"}};
    QTest::newRow("commands") << Pieces{{R"(ESC "GT" #13)", "command GT 13"},
                                        {R"(ESC "ML" #-100)", "command ML -100"},
                                        {R"(ESC "TG" #1 #4 #2 "," #100)", "command TG 1 4 2 , 100"},
                                        {R"(ESC "MC" #1 #2 #3)", "command MC 1 2 3"},
                                        {R"(ESC "LT" #3 "abc")", "command LT 3 \"abc\""},
                                        {R"(ESC "LG")", "command LG"},
                                        {"@4,4", "line 0,3120 4,4"},
                                        {R"(ESC "G" LF)", "command G"},
                                        {"ESC FF", nullptr},
                                        {R"(ESC "QX" "whatever")", "command QX* \"whatever\""},
                                        {"LF", nullptr},
                                        {"BEL", "end bel"}};
    QTest::newRow("texts") << Pieces{
        {R"(ESC "ZFCourier")", "command ZF \"Courier\""},
        {R"(ESC "ZP1000,300")", "command ZP 1000,300"},
        {R"(";ZDResonance")", "command ZD \"Resonance\""},
        {R"(ESC "ZDa" x22 "b\c" LF xB5)", "command ZD \"a\\\"b\\\\c\\x0aµ\""},
        {"ESC GS", "gs"},
        {"@40,40", "move 40,40"},
        {R"(ESC "ZDopen" LF)", "command ZD \"open\\x0a\"!"},
        {"", "end end-of-file"}};
    QTest::newRow("escapes twice") << Pieces{
        {"ESC", nullptr}, {R"(ESC "ML" #2)", "command ML 2"}, {"ESC", nullptr}, {"BEL", "end bel"}};
    QTest::newRow("damaged") << Pieces{{"GS", "gs"},         {"@100,200", "move 100,200"},
                                       {"x20 x60", nullptr}, {R"(ESC "GT" "A")", "command GT 16!"},
                                       {"LF", nullptr},      {"@4,4", "line 100,200 4,4"},
                                       {"x37 x60", nullptr}, {"BEL", "end bel"}};
    QTest::newRow("cut off in a command")
        << Pieces{{R"(ESC "TG" #1)", "command TG 1 32! 32! 32! 32! 32!"}, {"", "end end-of-file"}};
    QTest::newRow("cut off behind an address")
        << Pieces{{"GS", "gs"}, {"@100,200", nullptr}, {"", "end end-of-file"}};
    QTest::newRow("cut off in the letters")
        << Pieces{{R"(ESC "M")", nullptr}, {"", "end end-of-file"}};
    QTest::newRow("data after the end") << Pieces{{"BEL", "end bel"}, {R"("more")", "unread"}};
}

void TestInspector::dump_handMadeStream_hasEveryPieceAtItsPlace()
{
    QFETCH(Pieces, pieces);
    QByteArray file;
    QStringList expected;
    qsizetype skippedFrom = -1;
    for (const Piece& piece : Pieces{kFirstEntry, kSecondEntry} + pieces) {
        const qsizetype begin = file.size();
        file += Bytes(piece.bytes);
        if (piece.words == nullptr && skippedFrom < 0)
            skippedFrom = begin;
        if (piece.words == nullptr || Text(piece.words) == u"unread")
            continue;
        const QString skipped = QStringLiteral("%1 %2 skipped %3");
        if (skippedFrom >= 0)
            expected += skipped.arg(skippedFrom).arg(begin).arg(begin - skippedFrom);
        skippedFrom = -1;
        expected += QStringLiteral("%1 %2 %3").arg(begin).arg(file.size()).arg(Text(piece.words));
    }
    QCOMPARE(Dumped(file), expected);
}

void TestInspector::dump_seededStream_coversItAndHasTheReferencesLines()
{
    for (unsigned seed = 0; seed < kStreams; ++seed) {
        const std::string file = streams::Make(seed);
        const QStringList dump = Dumped(QByteArray::fromStdString(file));
        qsizetype position = 0;
        for (const QString& line : dump) {
            QCOMPARE(line.section(u' ', 0, 0).toLongLong(), position);
            position = line.section(u' ', 1, 1).toLongLong();
        }
        QVERIFY(position <= static_cast<qsizetype>(file.size()));
        QCOMPARE(WithWord(dump, QStringLiteral("end")).size(), 1);
        QCOMPARE(WithWord(dump, QStringLiteral("line")), ReferenceLines(file));
    }
}

void TestInspector::observer_seededStream_changesNothingThatIsDrawn()
{
    for (unsigned seed = 0; seed < kStreams; ++seed) {
        LoadBytes(QByteArray::fromStdString(streams::Make(seed)));
        Inspector inspector;
        const QStringList drawn = Draw(nullptr);
        QCOMPARE(Draw(&inspector), drawn);
    }
}

void TestInspector::damage_ofOneKind_isNoted_data()
{
    const size_t start = static_cast<size_t>(Graph("").size());
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<DamageMap>("damage");
    const auto row = [](const char* name, const char* script, PlfDamage kind, size_t offset,
                        uint64_t count) {
        QTest::newRow(name) << Graph(script) << DamageMap{{kind, {offset, count}}};
    };
    row("unknown commands", R"(ESC "AB1" LF ESC "QQ2" LF BEL)", PlfDamage::kUnknownCommand, start,
        2);
    row("control in an integer", R"(ESC "GTA" LF BEL)", PlfDamage::kUnfinishedParameter, start, 1);
    row("control in the place of an integer", R"(ESC "GT" CR BEL)", PlfDamage::kUnfinishedParameter,
        start, 1);
    row("counted string too short", R"(ESC "LT" #9 "abc" LF BEL)", PlfDamage::kUnfinishedParameter,
        start, 1);
    row("letter before the end", R"(ESC "M" BEL)", PlfDamage::kUnfinishedCommand, start, 1);
    row("half an address before the end", "GS @1,1 x20 BEL", PlfDamage::kUnfinishedAddress,
        start + 6, 1);
    row("half an address before a command", R"(x20 x60 ESC "ML1" BEL)",
        PlfDamage::kUnfinishedAddress, start, 1);
    row("control in an address", "x23 x60 LF x60 x7D x27 x5A BEL", PlfDamage::kBrokenAddress, start,
        1);
    row("line index", R"(ESC "ML" #16 ESC "ML" #-1 BEL)", PlfDamage::kIndexOutOfRange, start, 2);
    row("entry of the color map", R"(ESC "TG" #1 #4 #99 #0 #0 #0 BEL)", PlfDamage::kIndexOutOfRange,
        start, 1);
    row("long text", R"(ESC "ZD" *1024 "x" ESC BEL)", PlfDamage::kTextTooLong, start, 1);
    row("long font name", R"(ESC "ZF" *1024 "x" ESC BEL)", PlfDamage::kTextTooLong, start, 1);
    row("data behind BEL", R"(BEL NUL "abc" NUL)", PlfDamage::kDataAfterTheEnd, start + 2, 3);
    row("nothing behind an item", R"(ESC "ML" #1 LF)", PlfDamage::kNoEndMark, start + 5, 1);
    row("zero bytes behind an item", R"(ESC "ML" #1 LF *99 NUL)", PlfDamage::kNoEndMark, start + 5,
        1);
}

void TestInspector::damage_graphThatIsCutOff_saysWhere_data()
{
    QTest::addColumn<QByteArray>("rest"); // of the file
    QTest::addColumn<QByteArray>("kind"); // besides the end mark that is missing
    QTest::addColumn<int>("offset");      // in the rest
    const auto row = [](const char* name, const char* script, PlfDamage kind, int offset) {
        QTest::newRow(name) << Bytes(script) << QByteArray(DamageWord(kind)) << offset;
    };
    constexpr PlfDamage kCut = PlfDamage::kCutInCommand;
    row("escape", "LF ESC", kCut, 1);
    row("letter", R"(LF ESC "M")", kCut, 1);
    row("two letters", R"(LF ESC "ML")", kCut, 1);
    row("integer", R"(ESC "GTA")", kCut, 0);
    row("line index", R"(ESC "TG" #1 #4 "@")", kCut, 0);
    row("integers", R"(ESC "MC" #1)", kCut, 0);
    row("counted string", R"(ESC "LT" #9 "abc")", kCut, 0);
    row("text", R"(ESC "ZDabc")", kCut, 0);
    row("text with a line end", R"(ESC "ZDabc" LF)", kCut, 0);
    row("position", R"(ESC "ZP1,2")", kCut, 0);
    row("font name with an end mark", R"(ESC "ZFabc" BEL)", kCut, 0);
    row("half an address", "GS @1,1 x20 x60", PlfDamage::kUnfinishedAddress, 6);
    row("whole address", "GS @1,1 @2,2", PlfDamage::kUnfinishedAddress, 6);
    row("counted string that ends early", R"(ESC "LT" #9 "abc" LF)",
        PlfDamage::kUnfinishedParameter, 0);
}

// A file that was cut off is as long as it is, or filled up with zero bytes.
void TestInspector::damage_graphThatIsCutOff_saysWhere()
{
    QFETCH(QByteArray, rest);
    QFETCH(QByteArray, kind);
    QFETCH(int, offset);
    const QByteArray start = Graph("");
    for (const qsizetype filling : {0, 1, 100}) {
        const PlfDamageMap damage = Inspected(start + rest + QByteArray(filling, '\0')).damage;
        QStringList words;
        for (const auto& [each, noted] : damage)
            words += QString::fromLatin1(DamageWord(each));
        QCOMPARE(words, QStringList({QString::fromLatin1(kind), QStringLiteral("no end mark")}));
        QCOMPARE(damage.begin()->second.offset, static_cast<size_t>(start.size() + offset));
        QCOMPARE(damage.begin()->second.count, uint64_t{1});
    }
}

void TestInspector::damage_sample_isNoLoss_data()
{
    QTest::addColumn<QString>("sample");
    for (const QString& name : QDir(Text(PLOTVW_SAMPLES)).entryList({Text("*.plf")}))
        QTest::newRow(qPrintable(name)) << name;
}

// Each one cut off is, wherever that is.
void TestInspector::damage_sample_isNoLoss()
{
    QFETCH(QString, sample);
    const QByteArray graph = ReadFile(Text(PLOTVW_SAMPLES "/") + sample);
    const auto hasLoss = [](const QByteArray& file) {
        const PlfDamageMap damage = Inspected(file).damage;
        return std::any_of(damage.begin(), damage.end(),
                           [](const auto& noted) { return IsLoss(noted.first); });
    };
    QVERIFY(!hasLoss(graph));
    for (qsizetype size = kPlfHeaderSize; size < graph.size(); size += graph.size() / 100)
        QVERIFY2(hasLoss(graph.left(size)), qPrintable(QString::number(size)));
}

void TestInspector::damage_ofOneKind_isNoted()
{
    QFETCH(QByteArray, file);
    QFETCH(DamageMap, damage);
    QCOMPARE(DamageOf(file), damage);
}

void TestInspector::damage_wholeGraph_hasNone()
{
    QCOMPARE(DamageOf(Graph(R"(ESC "ML1" ESC "TG" #1 #4 #2 "," #100 LF GS @1,1 @2,2
        ESC "LT" #0 ESC "LT" #3 "abc" ESC "ZP1,2;ZD" *1023 "x" ESC GS @3,3 ESC "ZP" ESC "GX"
        ESC BEL NUL NUL)")),
             DamageMap());
    QCOMPARE(DamageOf(Graph("xFF")), DamageMap());
}

void TestInspector::summary_graph_hasWhatIsInIt()
{
    const QByteArray file = Graph(R"(ESC "TG" #1 #4 #3 #0 #50 #100 ESC "GT" #13 GS @10,20 @30,5
        ESC "ML" #3 @40,50 ESC "ML" #3 ESC "GT" #26 GS @1,1 GS @2,2 ESC "ML" #5 BEL)");
    const Summary summary = Inspected(file);
    QCOMPARE(summary.size, static_cast<size_t>(file.size()));
    QCOMPARE(summary.vectors, 2U);
    QCOMPARE(summary.moves, 3U);
    QCOMPARE(summary.commands, (std::map<std::string, uint64_t>{{"GT", 2}, {"ML", 3}, {"TG", 3}}));
    QCOMPARE(summary.lineIndices, (std::set<int>{3, 5}));
    QCOMPARE(summary.colors, (std::set<int>{0, 1})); // 1 is the dark blue of hue 0
    QCOMPARE(summary.widths, std::set<int>{13});     // nothing is drawn with 26
    QVERIFY(summary.extent.has_value());
    QCOMPARE(summary.extent->left, 10);
    QCOMPARE(summary.extent->bottom, 5);
    QCOMPARE(summary.extent->right, 40);
    QCOMPARE(summary.extent->top, 50);
    QCOMPARE(summary.endOffset, static_cast<size_t>(file.size() - 1));
    QCOMPARE(summary.endReason, PlfEnd::kBel);
    QCOMPARE(summary.skippedBytes, 0U);
}

void TestInspector::summary_textWithSettings_hasThem()
{
    const QByteArray settings = Graph(R"(ESC "ZFCourier" ESC "ZS" #12 ESC "ZC" #4 ESC "ZA" #3)");
    const QByteArray place = Bytes(R"(ESC "ZP100,200")");
    const Summary summary =
        Inspected(settings + place + Bytes(R"(ESC "ZDone" LF ESC "ZA" #0 ESC "ZDtwo" ESC BEL)"));
    QCOMPARE(summary.texts.size(), 2U);
    const DrawnText& one = summary.texts[0];
    QCOMPARE(one.text, std::string("one"));
    QCOMPARE(one.font, std::string("Courier"));
    QCOMPARE((QList<int>{one.x, one.y, one.size, one.color}), (QList<int>{100, 200, 12, 4}));
    QVERIFY(one.isBold && one.isItalic);
    QCOMPARE(one.offset, static_cast<size_t>((settings + place).size()));
    QVERIFY(!summary.texts[1].isBold && !summary.texts[1].isItalic);
}

void TestInspector::summary_textAttributes_areTwoBits_data()
{
    QTest::addColumn<int>("attributes");
    QTest::addColumn<bool>("isBold");
    QTest::addColumn<bool>("isItalic");
    QTest::newRow("plain") << 0 << false << false;
    QTest::newRow("bold") << 1 << true << false;
    QTest::newRow("italic") << 2 << false << true;
    QTest::newRow("another bit") << 4 << false << false;
}

void TestInspector::summary_textAttributes_areTwoBits()
{
    QFETCH(int, attributes);
    QFETCH(bool, isBold);
    QFETCH(bool, isItalic);
    const QByteArray command =
        Bytes(R"(ESC "ZA")") + QByteArray::fromStdString(plf::Int(attributes));
    const Summary summary = Inspected(Graph("") + command + Bytes(R"(ESC "ZDtext" ESC BEL)"));
    QCOMPARE(summary.texts.size(), 1U);
    QCOMPARE(summary.texts[0].isBold, isBold);
    QCOMPARE(summary.texts[0].isItalic, isItalic);
}

void TestInspector::summary_textColor_isMappedLikeThatOfLines_data()
{
    QTest::addColumn<int>("asked");
    QTest::addColumn<int>("color");
    QTest::newRow("-1") << -1 << 0;
    QTest::newRow("0") << 0 << 0;
    QTest::newRow("1") << 1 << 1;
    QTest::newRow("16") << 16 << 16;
    QTest::newRow("17") << 17 << 0;
    QTest::newRow("far above") << 1'000'000 << 0;
}

void TestInspector::summary_textColor_isMappedLikeThatOfLines()
{
    QFETCH(int, asked);
    QFETCH(int, color);
    const QByteArray command = Bytes(R"(ESC "ZC")") + QByteArray::fromStdString(plf::Int(asked));
    const Summary summary = Inspected(Graph("") + command + Bytes(R"(ESC "ZDtext" ESC BEL)"));
    QCOMPARE(summary.texts.size(), 1U);
    QCOMPARE(summary.texts[0].color, color);
}

void TestInspector::summary_graphWithoutVectors_hasNoExtent()
{
    const Summary summary = Inspected(PlfHeader());
    QVERIFY(!summary.extent.has_value());
    QCOMPARE(summary.vectors, 0U);
    QVERIFY(summary.colors.empty());
    QCOMPARE(summary.endReason, PlfEnd::kEndOfFile);
}

void TestInspector::summary_skippedBytes_areThoseWithoutEffect()
{
    // two line ends, an escape with a form feed, half an address, and an unknown command with the
    // line end behind it
    QCOMPARE(Inspected(Graph(R"(CR LF ESC FF x20 ESC "AB12" LF BEL)")).skippedBytes, 11U);
}

void TestInspector::background_isFoundAsTheViewerFindsIt_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("offset"); // -1 = none
    const QByteArray start = Graph("*100 LF");
    const int at = static_cast<int>(start.size());
    QTest::newRow("named") << start + Bytes(R"(ESC "RA11" ESC "RA14" BEL)") << 1 << at + 9;
    QTest::newRow("named white") << start + Bytes(R"(ESC "RA11" ESC "RA11" BEL)") << 15 << at + 9;
    QTest::newRow("named once") << start + Bytes(R"(ESC "RA14" BEL)") << 15 << -1;
    QTest::newRow("no color") << start + Bytes(R"(ESC "RA11" ESC "RA1x" BEL)") << 16 << at + 9;
    QTest::newRow("short file") << Graph("BEL") << 15 << -1;
}

void TestInspector::background_isFoundAsTheViewerFindsIt()
{
    QFETCH(QByteArray, file);
    QFETCH(int, index);
    QFETCH(int, offset);
    const Background background = Inspected(file).background;
    QCOMPARE(background.index, index);
    QCOMPARE(background.offset ? static_cast<int>(*background.offset) : -1, offset);
    Record({.whiteBackground = false});
    QCOMPARE(static_cast<int>(gdwBkClrFile), index);
}

QTEST_MAIN(TestInspector)
#include "test_inspector.moc"
