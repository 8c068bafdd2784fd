// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// plfinfo as people and programs call it: what it prints, how it ends, what it refuses.
#include "tests/kit/gzip.h"
#include "tests/kit/plf.h"
#include "tests/kit/tooltest.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <unistd.h>

namespace {

QByteArray SmallGraph()
{
    return QByteArray::fromStdString(plf::Start() + plf::Width(7) + plf::Line(0, 0, 4095, 3119) +
                                     plf::Text(100, 200, "20 \xc2\xb0\x43 \"hot\"") + plf::End());
}

// What is found in a document with the right version; nothing in another one.
QJsonArray Graphs(const QByteArray& json)
{
    const QJsonObject document = QJsonDocument::fromJson(json).object();
    const bool isRight = document.keys() == QStringList{Text("graphs"), Text("version")} &&
                         document[Text("version")] == 1;
    return isRight ? document[Text("graphs")].toArray() : QJsonArray();
}

// A graph without its end mark, and one in which line indices are not finished.
QByteArray CutGraph()
{
    return QByteArray::fromStdString(plf::Start() + plf::Line(0, 0, 9, 9) + "\x1d");
}

QByteArray BrokenGraph()
{
    return QByteArray::fromStdString(plf::Start() + "\x1bML@\x1bML@\x1bQQ\r" +
                                     plf::Line(0, 0, 9, 9) + plf::End() + "xy");
}

// Whole, although it has a command that is not known here.
QByteArray GraphWithUnknownCommand()
{
    return QByteArray::fromStdString(plf::Start() + "\x1bQQ\r" + plf::Line(0, 0, 9, 9) +
                                     plf::End());
}

} // namespace

class TestPlfInfo : public QObject, private ToolTest
{
    Q_OBJECT

public:
    TestPlfInfo() : ToolTest(PLFINFO_PROGRAM) {}

private slots:
    void init();

    void text_graph_hasARowForEachThing();
    void text_controlCharacters_areWrittenOut();
    void json_graph_isAnObjectInTheList();
    void json_fileThatCannotBeRead_hasTheReason();
    void json_samples_agreeWithTheirDumps();
    void dump_manyGraphs_nameEach();
    void standardInput_isRead();
    void packedGraph_isRead();
    void call_fileThatCannotBeRead_namesItAndGoesOn_data();
    void call_fileThatCannotBeRead_namesItAndGoesOn();
    void call_wrongUsage_endsWith2_data();
    void call_wrongUsage_endsWith2();
    void call_outputThatCannotBeWritten_endsWith1();
    void call_helpAndVersion_endWith0();
    void call_nameThatIsNoText_isRead();
    void json_nameThatIsNoTextAndCannotBeRead_hasItsBytes();
    void hostileName_isNotObeyed();
    void check_wholeGraphs_printsNothing();
    void check_damagedGraphs_haveALineEach();
    void check_packedGraphThatIsCut_isDamaged();
    void check_otherOutput_isPrintedAndTheCodeTells_data();
    void check_otherOutput_isPrintedAndTheCodeTells();
    void check_fileThatCannotBeRead_endsWith1();
    void folder_hasItsGraphsInNaturalOrder();
    void folder_recursive_hasThoseBelow();
    void folder_withoutGraphs_isAFailure();
    void folder_thatCannotBeSearched_isAFailure();
    void folder_namedLikeTheStandardInput_isNotSearched();
    void folder_linksInACircle_endTheSearch();
    void jsonLines_graphs_haveALineEach();
    void csv_vectors_areRows();
    void csv_manyGraphs_haveNames_data();
    void csv_manyGraphs_haveNames();
    void csv_folder_hasNamesWithOneGraphToo();
    void csv_longName_isWhole();
    void csv_samples_haveARowForEachVector();
    void json_tenThousandGraphs_areAllInTheDocument();
};

void TestPlfInfo::init()
{
    Begin();
    Write("graph.plf", SmallGraph());
}

void TestPlfInfo::text_graph_hasARowForEachThing()
{
    const Call call = Run({Text("graph.plf")});
    QCOMPARE(call.errors, QByteArray());
    QCOMPARE(call.code, 0);
    const qsizetype size = SmallGraph().size();
    QCOMPARE(call.output, QByteArray("graph.plf\n"
                                     "  Size          " +
                                     QByteArray::number(size) +
                                     " bytes, 16 of them the header\n"
                                     "  Commands      GT 1, TG 2, ZD 1, ZP 1\n"
                                     "  Vectors       1\n"
                                     "  Moves         1\n"
                                     "  Line indices  none\n"
                                     "  Colors        0 #000000\n"
                                     "  Widths        7\n"
                                     "  Extent        0,0 to 4095,3119\n"
                                     "  Background    15 #ffffff, as the file names none\n"
                                     "  Skipped       2 bytes\n"
                                     "  End           bel at byte " +
                                     QByteArray::number(size - 1) +
                                     "\n"
                                     "  Texts         1\n"
                                     "    100,200 \"20 \u00b0C \\\"hot\\\"\", color 0, byte 43\n"
                                     "  Damage        none\n"));
}

// A terminal would obey them.
void TestPlfInfo::text_controlCharacters_areWrittenOut()
{
    Write("graph\x1b.plf",
          QByteArray::fromStdString(plf::Start() + plf::Text(1, 1, "\x9b[2J\x07") + plf::End()));
    for (const char* option : {"--", "--dump"}) {
        const Call call = Run({Text(option), Text("graph\x1b.plf"), Text("graph\x1b.plf")});
        QCOMPARE(call.code, 0);
        QVERIFY(call.output.contains("graph\\x1b.plf"));
        QVERIFY(call.output.contains("\"\\x9b[2J\\x07\""));
        QVERIFY(!call.output.contains('\x1b') && !call.output.contains("\xc2\x9b"));
    }
}

void TestPlfInfo::json_graph_isAnObjectInTheList()
{
    const Call call = Run({Text("--json"), Text("graph.plf")});
    QCOMPARE(call.code, 0);
    const QJsonArray graphs = Graphs(call.output);
    QCOMPARE(graphs.size(), 1);
    const QJsonObject graph = graphs[0].toObject();
    const int size = static_cast<int>(SmallGraph().size());
    const QJsonObject expected = {
        {Text("file"), Text("graph.plf")},
        {Text("size"), size},
        {Text("header"), 16},
        {Text("commands"),
         QJsonObject{{Text("GT"), 1}, {Text("TG"), 2}, {Text("ZD"), 1}, {Text("ZP"), 1}}},
        {Text("vectors"), 1},
        {Text("moves"), 1},
        {Text("texts"), QJsonArray{QJsonObject{{Text("text"), Text("20 \u00b0C \"hot\"")},
                                               {Text("x"), 100},
                                               {Text("y"), 200},
                                               {Text("font"), QString()},
                                               {Text("size"), 0},
                                               {Text("color"), 0},
                                               {Text("bold"), false},
                                               {Text("italic"), false},
                                               {Text("offset"), 43}}}},
        {Text("lineIndices"), QJsonArray()},
        {Text("colors"), QJsonArray{0}},
        {Text("widths"), QJsonArray{7}},
        {Text("extent"),
         QJsonObject{
             {Text("left"), 0}, {Text("bottom"), 0}, {Text("right"), 4095}, {Text("top"), 3119}}},
        {Text("background"), QJsonObject{{Text("index"), 15},
                                         {Text("source"), Text("default")},
                                         {Text("offset"), QJsonValue::Null}}},
        {Text("skippedBytes"), 2},
        {Text("end"), QJsonObject{{Text("offset"), size - 1}, {Text("reason"), Text("bel")}}},
        {Text("damage"), QJsonArray()}};
    QCOMPARE(graph.keys(), expected.keys());
    for (const QString& key : expected.keys())
        QCOMPARE(graph[key], expected[key]);
}

void TestPlfInfo::json_fileThatCannotBeRead_hasTheReason()
{
    const Call call = Run({Text("-j"), Text("none.plf"), Text("graph.plf")});
    QCOMPARE(call.code, 1);
    const QJsonArray graphs = Graphs(call.output);
    QCOMPARE(graphs.size(), 2);
    QCOMPARE(graphs[0].toObject().keys(), (QStringList{Text("error"), Text("file")}));
    QCOMPARE(graphs[0][Text("file")].toString(), Text("none.plf"));
    QCOMPARE(graphs[0][Text("error")].toString(), Text("No such file or directory"));
    QCOMPARE(graphs[1][Text("vectors")].toInt(), 1);
}

void TestPlfInfo::json_samples_agreeWithTheirDumps()
{
    const QDir samples(Text(PLOTVW_SAMPLES));
    QStringList names;
    for (const QString& name : samples.entryList({Text("*.plf")}))
        names += samples.filePath(name);
    QVERIFY(names.size() >= 8);
    const Call json = Run(QStringList(Text("--json")) + names);
    const QJsonArray graphs = Graphs(json.output);
    QCOMPARE(graphs.size(), names.size());
    for (qsizetype i = 0; i < names.size(); ++i) {
        const QByteArray dump = Run({Text("--dump"), names[i]}).output;
        QCOMPARE(dump.count(" line "), graphs[i][Text("vectors")].toInt());
        QCOMPARE(dump.count(" move "), graphs[i][Text("moves")].toInt());
        QCOMPARE(dump.count(" command ZD "), graphs[i][Text("texts")].toArray().size());
        QVERIFY(graphs[i][Text("vectors")].toInt() > 0);
        QVERIFY(dump.endsWith(QByteArray::number(QFile(names[i]).size()) + " end bel\n"));
    }
}

void TestPlfInfo::dump_manyGraphs_nameEach()
{
    Write("empty.plf", QByteArray::fromStdString(plf::Start()));
    const Call call = Run({Text("-d"), Text("empty.plf"), Text("empty.plf")});
    const QByteArray one = "# empty.plf\n0 9 command TG 1 4 0 0 0 0\n"
                           "9 18 command TG 1 4 1 0 0 0\n18 18 end end-of-file\n";
    QCOMPARE(call.output, one + one);
    QCOMPARE(call.code, 0);
    QCOMPARE(Run({Text("-d"), Text("empty.plf")}).output, one.mid(one.indexOf('\n') + 1));
}

void TestPlfInfo::standardInput_isRead()
{
    const Call call = Run({Text("-")}, SmallGraph());
    QCOMPARE(call.code, 0);
    QVERIFY(call.output.startsWith("-\n  Size "));
}

// Also through a pipe with a name.
void TestPlfInfo::packedGraph_isRead()
{
    const QByteArray plain = Run({Text("graph.plf")}).output;
    const QByteArray piped = RunLine(Text("gzip graph.plf; \"$0\" <(cat graph.plf.gz)")).output;
    QCOMPARE(piped.mid(piped.indexOf('\n')), plain.mid(plain.indexOf('\n')));
    const QByteArray packed = Run({Text("graph.plf.gz")}).output;
    QCOMPARE(packed.mid(packed.indexOf('\n')), plain.mid(plain.indexOf('\n')));
}

void TestPlfInfo::call_fileThatCannotBeRead_namesItAndGoesOn_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("reason");
    QTest::newRow("missing") << Text("none.plf") << QByteArray("No such file or directory");
    QTest::newRow("folder") << Text("sub") << QByteArray("contains no graph");
    QTest::newRow("empty") << Text("empty.plf") << QByteArray("is empty");
    QTest::newRow("no graph") << Text("text.plf")
                              << QByteArray("File is not a recognized PLF graphic format.");
    QTest::newRow("no input") << Text("-") << QByteArray("is empty");
    QTest::newRow("line end in the name")
        << Text("no\nne") << QByteArray("No such file or directory");
}

void TestPlfInfo::call_fileThatCannotBeRead_namesItAndGoesOn()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, reason);
    Write("empty.plf", "");
    Write("text.plf", "text");
    QVERIFY(QDir(folder->path()).mkdir(Text("sub")));
    const Call call = Run({name, Text("graph.plf")});
    QCOMPARE(call.code, 1);
    QCOMPARE(call.errors,
             "plfinfo: " + name.toUtf8().replace("\n", "\\x0a") + ": " + reason + '\n');
    QVERIFY(call.output.startsWith("graph.plf\n"));
}

void TestPlfInfo::call_wrongUsage_endsWith2_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("no graph") << QStringList();
    QTest::newRow("unknown option") << QStringList{Text("--nonsense"), Text("graph.plf")};
    QTest::newRow("no table") << QStringList{Text("graph.plf"), Text("--csv")};
    QTest::newRow("unknown table") << QStringList{Text("--csv"), Text("texts"), Text("graph.plf")};
    QTest::newRow("lines and JSON")
        << QStringList{Text("--json"), Text("--json-lines"), Text("graph.plf")};
    QTest::newRow("rows and a dump")
        << QStringList{Text("-d"), Text("--csv=vectors"), Text("graph.plf")};
    QTest::newRow("two kinds") << QStringList{Text("--json"), Text("--dump"), Text("graph.plf")};
}

void TestPlfInfo::call_wrongUsage_endsWith2()
{
    QFETCH(QStringList, arguments);
    const Call call = Run(arguments);
    QCOMPARE(call.code, 2);
    QCOMPARE(call.output, QByteArray());
    QVERIFY(call.errors.startsWith("plfinfo: "));
    QVERIFY(call.errors.endsWith("\nTry 'plfinfo --help'.\n"));
}

void TestPlfInfo::call_outputThatCannotBeWritten_endsWith1()
{
    const Call call = RunWithFullOutput({Text("graph.plf")});
    QCOMPARE(call.code, 1);
    QCOMPARE(call.errors, QByteArray("plfinfo: cannot write output: No space left on device\n"));
}

void TestPlfInfo::call_helpAndVersion_endWith0()
{
    const Call help = Run({Text("--help")});
    QCOMPARE(help.code, 0);
    QVERIFY(help.output.contains("Exit codes: 0 "));
    const Call version = Run({Text("-v")});
    QCOMPARE(version.code, 0);
    QCOMPARE(version.output, QByteArray("plfinfo " PLOTVW_VERSION "\n"));
}

void TestPlfInfo::call_nameThatIsNoText_isRead()
{
    const std::string name = folder->path().toStdString() + "/caf\xe9.plf";
    QVERIFY(WriteFile(name, SmallGraph().toStdString()));
    const Call call = RunLine(Text("\"$0\" --json caf*"));
    QCOMPARE(unlink(name.c_str()), 0); // Qt cannot
    QCOMPARE(call.code, 0);
    const QJsonArray graphs = Graphs(call.output);
    QCOMPARE(graphs[0][Text("file")].toString(), Text("caf\ufffd.plf"));
    QCOMPARE(QByteArray::fromBase64(graphs[0][Text("fileBase64")].toString().toLatin1()),
             QByteArray("caf\xe9.plf"));
}

void TestPlfInfo::json_nameThatIsNoTextAndCannotBeRead_hasItsBytes()
{
    const Call call = RunLine(Text("\"$0\" --json none$'\\xe9' none"));
    const QJsonArray graphs = Graphs(call.output);
    QCOMPARE(graphs[0].toObject().keys(),
             (QStringList{Text("error"), Text("file"), Text("fileBase64")}));
    QCOMPARE(graphs[0][Text("fileBase64")].toString(), Text("bm9uZek="));
    QCOMPARE(graphs[1].toObject().keys(), (QStringList{Text("error"), Text("file")}));
    QVERIFY(call.errors.startsWith("plfinfo: none\\xe9: "));
}

// Whatever the output, and where the name is in it.
void TestPlfInfo::hostileName_isNotObeyed()
{
    const QString name = Text("a\x1b[2J\xc2\x9b\xe2\x80\xae\\.plf");
    const QByteArray visible = "a\\x1b[2J\\xc2\\x9b\\xe2\\x80\\xae\\\\.plf";
    Write(name,
          QByteArray::fromStdString(plf::Start() + plf::Text(1, 1, "\xe2\x80\xae") + plf::End()));
    const QByteArray text = Run({name}).output;
    QVERIFY(text.startsWith(visible + '\n'));
    QVERIFY(text.contains("\"\\u202e\""));
    QVERIFY(Run({Text("--dump"), name, name}).output.startsWith("# " + visible + '\n'));
    const Call failed = Run({name + Text("x")});
    QVERIFY2(failed.errors.startsWith("plfinfo: " + visible + "x: "), failed.errors.constData());
    const QByteArray json = Run({Text("--json"), name}).output;
    QCOMPARE(Graphs(json)[0][Text("file")].toString(), name);
    for (const QByteArray& output : {text, failed.errors, json}) {
        for (const char* obeyed : {"\x1b", "\xc2\x9b", "\xe2\x80\xae"})
            QVERIFY2(!output.contains(obeyed), output.constData());
    }
}

void TestPlfInfo::check_wholeGraphs_printsNothing()
{
    Write("unknown.plf", GraphWithUnknownCommand());
    for (const char* option : {"-c", "--check"}) {
        const Call call = Run({Text(option), Text("graph.plf"), Text("unknown.plf")});
        QCOMPARE(call.output + call.errors, QByteArray());
        QCOMPARE(call.code, 0);
    }
}

void TestPlfInfo::check_damagedGraphs_haveALineEach()
{
    Write("a\n.plf", CutGraph());
    Write("b.plf", BrokenGraph());
    const Call call = Run({Text("-c"), Text("graph.plf"), Text("a\n.plf"), Text("b.plf")});
    QCOMPARE(call.errors, QByteArray());
    QCOMPARE(call.output, "a\\x0a.plf: no end mark at byte " +
                              QByteArray::number(CutGraph().size()) +
                              "\nb.plf: unfinished parameter at byte 18 (2 times, the first), "
                              "data after the end at byte " +
                              QByteArray::number(BrokenGraph().size() - 2) + " (2 bytes)\n");
    QCOMPARE(call.code, 1);
}

void TestPlfInfo::check_packedGraphThatIsCut_isDamaged()
{
    const QByteArray graph = ReadFile(Path("graph.plf"));
    Write("cut.plf.gz", Packed(graph).chopped(1));
    const Call call = Run("--check cut.plf.gz");
    QCOMPARE(call.output, "cut.plf.gz: cut in the packed data at byte " +
                              QByteArray::number(graph.size()) + '\n');
    QCOMPARE(call.code, 1);
    QCOMPARE(Run("cut.plf.gz").code, 0);
}

void TestPlfInfo::check_otherOutput_isPrintedAndTheCodeTells_data()
{
    QTest::addColumn<QStringList>("kind");
    QTest::newRow("JSON") << QStringList{Text("--json")};
    QTest::newRow("lines") << QStringList{Text("--json-lines")};
    QTest::newRow("dump") << QStringList{Text("--dump")};
    QTest::newRow("rows") << QStringList{Text("--csv"), Text("vectors")};
}

void TestPlfInfo::check_otherOutput_isPrintedAndTheCodeTells()
{
    QFETCH(QStringList, kind);
    Write("cut.plf", CutGraph());
    const QStringList check = QStringList(Text("--check")) + kind;
    const Call plain = Run(kind + QStringList{Text("cut.plf"), Text("graph.plf")});
    const Call checked = Run(check + QStringList{Text("cut.plf"), Text("graph.plf")});
    QVERIFY(!plain.output.isEmpty());
    QCOMPARE(checked.output, plain.output);
    QCOMPARE(plain.code, 0);
    QCOMPARE(checked.code, 1);
    QCOMPARE(Run(check + QStringList{Text("graph.plf")}).code, 0);
}

void TestPlfInfo::check_fileThatCannotBeRead_endsWith1()
{
    const Call call = Run({Text("-c"), Text("none.plf"), Text("graph.plf")});
    QCOMPARE(call.code, 1);
    QCOMPARE(call.output, QByteArray());
    QCOMPARE(call.errors, QByteArray("plfinfo: none.plf: No such file or directory\n"));
}

// Also one without an extension, but no other file, however it is called.
void TestPlfInfo::folder_hasItsGraphsInNaturalOrder()
{
    QDir(folder->path()).mkpath(Text("sub/below.plf"));
    for (const char* name :
         {"sub/g10.PLF", "sub/g9.plf", "sub/graph", "sub/graph.txt", "sub/below.plf/deep.plf"})
        Write(name, CutGraph());
    Write("sub/text", "text");
    const Call call = Run({Text("-c"), Text("sub")});
    const QByteArray damage = ": no end mark at byte " + QByteArray::number(CutGraph().size());
    QCOMPARE(call.errors, QByteArray());
    QCOMPARE(call.output,
             "sub/g9.plf" + damage + "\nsub/g10.PLF" + damage + "\nsub/graph" + damage + '\n');
    QVERIFY(Run({Text("-c"), Text("sub/")}).output.startsWith("sub/g9.plf:"));
}

void TestPlfInfo::folder_recursive_hasThoseBelow()
{
    QDir(folder->path()).mkpath(Text("sub/b/c"));
    for (const char* name : {"sub/z.plf", "sub/b/y.plf", "sub/b/c/x"})
        Write(name, SmallGraph());
    for (const char* option : {"-r", "--recursive"}) {
        const Call call = Run({Text(option), Text("-d"), Text("sub"), Text("graph.plf")});
        QCOMPARE(call.code, 0);
        QByteArrayList names;
        for (const QByteArray& line : call.output.split('\n')) {
            if (line.startsWith("# "))
                names += line.mid(2);
        }
        QCOMPARE(names, (QByteArrayList{"sub/b/c/x", "sub/b/y.plf", "sub/z.plf", "graph.plf"}));
    }
}

void TestPlfInfo::folder_withoutGraphs_isAFailure()
{
    QDir(folder->path()).mkpath(Text("sub/below"));
    Write("sub/below/graph.plf", SmallGraph());
    const Call call = Run({Text("--json"), Text("sub")});
    QCOMPARE(call.code, 1);
    QCOMPARE(call.errors, QByteArray("plfinfo: sub: contains no graph\n"));
    QCOMPARE(Graphs(call.output),
             (QJsonArray{QJsonObject{{Text("file"), Text("sub")},
                                     {Text("error"), Text("contains no graph")}}}));
    QCOMPARE(Run({Text("-r"), Text("sub")}).code, 0);
}

void TestPlfInfo::folder_thatCannotBeSearched_isAFailure()
{
    if (geteuid() == 0)
        QSKIP("Root may search every folder.");
    QDir(folder->path()).mkpath(Text("sub/closed"));
    Write("sub/graph.plf", SmallGraph());
    const QString closed = Path("sub/closed");
    QVERIFY(QFile::setPermissions(closed, {}));
    const Call call = Run({Text("-r"), Text("-c"), Text("sub")});
    QVERIFY(QFile::setPermissions(closed, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    QCOMPARE(call.code, 1);
    QCOMPARE(call.errors, QByteArray("plfinfo: sub/closed: Permission denied\n"));
}

void TestPlfInfo::folder_namedLikeTheStandardInput_isNotSearched()
{
    QDir(folder->path()).mkpath(Text("-"));
    Write("-/cut.plf", CutGraph());
    QCOMPARE(Run({Text("-c"), Text("-")}, SmallGraph()).code, 0);
    QCOMPARE(Run({Text("-c"), Text("./-")}, SmallGraph()).code, 1);
}

void TestPlfInfo::folder_linksInACircle_endTheSearch()
{
    QVERIFY(QFile::link(folder->path(), Path("again")));
    QVERIFY(QFile::link(Path("graph.plf"), Path("link.plf")));
    const Call call = Run({Text("-r"), Text("--json-lines"), Text(".")});
    QCOMPARE(call.code, 0);
    QCOMPARE(call.output.count("\"file\":\"./"), 2);
}

void TestPlfInfo::jsonLines_graphs_haveALineEach()
{
    const QStringList names = {Text("graph.plf"), Text("none\n.plf"), Text("graph.plf")};
    const Call call = Run(QStringList(Text("--json-lines")) + names);
    QCOMPARE(call.code, 1);
    const QJsonArray graphs = Graphs(Run(QStringList(Text("--json")) + names).output);
    QByteArrayList lines = call.output.split('\n');
    QCOMPARE(lines.takeLast(), QByteArray());
    QCOMPARE(lines.size(), names.size());
    for (qsizetype i = 0; i < lines.size(); ++i) {
        QJsonObject object = QJsonDocument::fromJson(lines[i]).object();
        QCOMPARE(object.take(Text("version")), QJsonValue(1));
        QCOMPARE(object, graphs[i].toObject());
    }
}

void TestPlfInfo::csv_vectors_areRows()
{
    Write("two.plf",
          QByteArray::fromStdString(plf::Start() + plf::Width(-7) + plf::Line(0, 0, 4095, 3119) +
                                    plf::Address(1, 2) + plf::Command("ML", {1}) +
                                    plf::Line(5, 5, 5, 5) + plf::End()));
    const Call call = Run({Text("--csv"), Text("vectors"), Text("two.plf")});
    QCOMPARE(call.code, 0);
    QCOMPARE(call.output, QByteArray("x1,y1,x2,y2,color,width,path\n"
                                     "0,0,4095,3119,0,-7,0\n"
                                     "4095,3119,1,2,0,-7,0\n"
                                     "5,5,5,5,0,-7,1\n"));
}

void TestPlfInfo::csv_manyGraphs_haveNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("field");
    QTest::newRow("plain") << Text("a b.plf") << QByteArray("a b.plf");
    QTest::newRow("comma") << Text("a,b.plf") << QByteArray("\"a,b.plf\"");
    QTest::newRow("quotation marks") << Text("a\"b\".plf") << QByteArray("\"a\"\"b\"\".plf\"");
    QTest::newRow("line end") << Text("a\r\n,b.plf") << QByteArray("\"a\\x0d\\x0a,b.plf\"");
    QTest::newRow("escape") << Text("a\x1b.plf") << QByteArray("a\\x1b.plf");
}

void TestPlfInfo::csv_manyGraphs_haveNames()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, field);
    Write(name, SmallGraph());
    const Call call = Run({Text("--csv=vectors"), Text("graph.plf"), name});
    QCOMPARE(call.output, "file,x1,y1,x2,y2,color,width,path\n"
                          "graph.plf,0,0,4095,3119,0,7,0\n" +
                              field + ",0,0,4095,3119,0,7,0\n");
}

void TestPlfInfo::csv_folder_hasNamesWithOneGraphToo()
{
    QCOMPARE(Run({Text("--csv=vectors"), Text(".")}).output,
             QByteArray("file,x1,y1,x2,y2,color,width,path\n./graph.plf,0,0,4095,3119,0,7,0\n"));
}

// A name that is longer as a field than what is written at once.
void TestPlfInfo::csv_longName_isWhole()
{
    const QByteArray name = QByteArray("./").repeated(1000) + "graph.plf";
    std::string lines;
    for (int i = 0; i < 200; ++i)
        lines += plf::Line(0, 0, 4095, 3119);
    Write("graph.plf", QByteArray::fromStdString(plf::Start() + lines + plf::End()));
    const Call call = Run({Text("--csv=vectors"), Text(name.constData()), Text("graph.plf")});
    QCOMPARE(call.output.count('\n' + name + ",0,0,4095,3119,0,0,"), 200);
    QCOMPARE(call.output.count("\ngraph.plf,0,0,4095,3119,0,0,"), 200);
    QVERIFY(call.output.endsWith(",199\n"));
}

void TestPlfInfo::csv_samples_haveARowForEachVector()
{
    const QString samples = Text(PLOTVW_SAMPLES);
    const QJsonArray graphs = Graphs(Run({Text("--json"), samples}).output);
    const QByteArray rows = Run({Text("--csv=vectors"), samples}).output;
    QVERIFY(graphs.size() >= 8);
    for (const QJsonValue graph : graphs) {
        const QByteArray name = graph[Text("file")].toString().toUtf8();
        QCOMPARE(rows.count('\n' + name + ','), graph[Text("vectors")].toInt());
    }
}

void TestPlfInfo::json_tenThousandGraphs_areAllInTheDocument()
{
    QStringList names;
    for (int i = 0; i < 10000; ++i)
        names += Text("graph.plf");
    const Call call = Run(QStringList(Text("--json")) + names);
    QCOMPARE(call.code, 0);
    QCOMPARE(Graphs(call.output).size(), 10000);
}

QTEST_GUILESS_MAIN(TestPlfInfo)
#include "test_plfinfo.moc"
