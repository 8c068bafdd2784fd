// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// plfdiff as people and programs call it: how it ends, what it prints and draws, what it refuses.
#include "tests/kit/gzip.h"
#include "tests/kit/plf.h"
#include "tests/kit/tooltest.h"

#include <QDir>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <linux/capability.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace {

std::string Graph(int y, const std::string& text = "Ohm")
{
    return plf::Start() + plf::Line(100, 100, 4000, 100) + plf::Line(500, y, 900, y) +
           plf::Text(1000, 2000, text) + plf::End();
}

// How many pixels of an image have a color.
int CountPixels(const QImage& image, QRgb color)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += image.pixel(x, y) == color ? 1 : 0;
    }
    return count;
}

} // namespace

class TestPlfDiff : public QObject, private ToolTest
{
    Q_OBJECT

public:
    TestPlfDiff() : ToolTest(PLFDIFF_PROGRAM) {}

private slots:
    void init();

    void equalGraphs_endWith0AndSayNothing();
    void differentGraphs_endWith1AndSayWhat();
    void quiet_namesTheGraphs();
    void tolerance_hasUnits_data();
    void tolerance_hasUnits();
    void ignored_doesNotCount_data();
    void ignored_doesNotCount();
    void maxChanges_areAllowed();
    void farthestMove_isATolerance();
    void json_hasAVersionAndTheCounts();
    void folders_areComparedByName();
    void folders_haveGraphsOfEveryKind();
    void foldersInFolders_areComparedWhenAsked();
    void folderThatCannotBeRead_isTrouble();
    void standardInputAndFolder_areCompared();
    void picture_hasTheColors_data();
    void picture_hasTheColors();
    void report_hasAPageForEachPair();
    void damagedGraph_isWarnedOfAndRefusedWhenStrict();
    void hostileNamesAndTexts_areNotObeyed();
    void call_trouble_endsWith2_data();
    void call_trouble_endsWith2();
    void output_isNeverAGraph();
    void call_helpAndVersion_endWith0();
    void call_outputThatCannotBeWritten_endsWith2();

private:
    void MakeFolders(const QByteArrayList& names) const
    {
        for (const QByteArray& name : names)
            QVERIFY(QDir(folder->path()).mkpath(QString::fromLatin1(name)));
    }
};

void TestPlfDiff::init()
{
    Begin();
    Write("a.plf", Graph(500));
    Write("same.plf", Graph(500));
    Write("moved.plf", Graph(510));
    Write("text.plf", Graph(500, "Volt"));
}

void TestPlfDiff::equalGraphs_endWith0AndSayNothing()
{
    const Call call = Run("a.plf same.plf");
    QCOMPARE(call.code, 0);
    QCOMPARE(call.output, QByteArray());
    QCOMPARE(call.errors, QByteArray());
}

void TestPlfDiff::differentGraphs_endWith1AndSayWhat()
{
    const Call call = Run("a.plf moved.plf");
    QCOMPARE(call.errors, QByteArray());
    QCOMPARE(call.code, 1);
    QCOMPARE(call.output, QByteArray("a.plf and moved.plf differ\n"
                                     "  Vectors      2 and 2\n"
                                     "  Gone         0\n"
                                     "  New          0\n"
                                     "  Moved        1, at most 10 units, median 10\n"
                                     "  Other look   0\n"
                                     "  Areas        1\n"
                                     "    500,2610,900,2620: 1 moved\n"));
    QCOMPARE(Run("a.plf text.plf").output.count("changed 1000,2000 \"Ohm\" -> 1000,2000 \"Volt\""),
             1);
}

void TestPlfDiff::quiet_namesTheGraphs()
{
    const Call call = Run("-q a.plf moved.plf");
    QCOMPARE(call.code, 1);
    QCOMPARE(call.output, QByteArray("Graphs a.plf and moved.plf differ\n"));
}

void TestPlfDiff::tolerance_hasUnits_data()
{
    QTest::addColumn<QByteArray>("options");
    QTest::addColumn<int>("code");
    QTest::newRow("less") << QByteArray("-t 9.9") << 1;
    QTest::newRow("as far") << QByteArray("--tolerance 10") << 0;
    QTest::newRow("percent") << QByteArray("-t 0.25%") << 0;
    QTest::newRow("less percent") << QByteArray("-t 0.24%") << 1;
    QTest::newRow("mm as printed") << QByteArray("-t 0.56mm") << 0;
    QTest::newRow("less mm") << QByteArray("-t 0.55mm") << 1;
    QTest::newRow("mm of a small page") << QByteArray("-t 0.55mm --page 100") << 0;
}

void TestPlfDiff::tolerance_hasUnits()
{
    QFETCH(QByteArray, options);
    QTEST(Run(options + " a.plf moved.plf").code, "code");
}

void TestPlfDiff::ignored_doesNotCount_data()
{
    QTest::addColumn<QByteArray>("call");
    QTest::addColumn<int>("code");
    QTest::newRow("text") << QByteArray("-i text a.plf text.plf") << 0;
    QTest::newRow("list") << QByteArray("--ignore color,text a.plf text.plf") << 0;
    QTest::newRow("twice") << QByteArray("-i text -i width a.plf text.plf") << 0;
    QTest::newRow("others") << QByteArray("-i color,width,order,background,dots a.plf text.plf")
                            << 1;
    QTest::newRow("area") << QByteArray("--ignore-area 500,2600,900,2630 a.plf moved.plf") << 0;
    QTest::newRow("two areas")
        << QByteArray("--ignore-area 500,2600,700,2630 --ignore-area 700,2600,900,2630 "
                      "a.plf moved.plf")
        << 0;
    QTest::newRow("half of it") << QByteArray("--ignore-area 500,2600,700,2630 a.plf moved.plf")
                                << 1;
    QTest::newRow("area of the text")
        << QByteArray("--ignore-area 990,1110,1010,1130 a.plf text.plf") << 0;
}

void TestPlfDiff::ignored_doesNotCount()
{
    QFETCH(QByteArray, call);
    QTEST(Run(call).code, "code");
}

void TestPlfDiff::maxChanges_areAllowed()
{
    QCOMPARE(Run("--max-changes 1 a.plf moved.plf").code, 0);
    Write("both.plf", Graph(510, "Volt"));
    QCOMPARE(Run("--max-changes 1 a.plf both.plf").code, 1);
    QCOMPARE(Run("--max-changes 2 a.plf both.plf").code, 0);
}

// As it is printed: a root is rounded up.
void TestPlfDiff::farthestMove_isATolerance()
{
    const auto line = [](int by) {
        return plf::Start() + plf::Line(100 + by, 100 + by, 900 + by, 200 + by) + plf::End();
    };
    Write(Text("one.plf"), line(0));
    Write(Text("two.plf"), line(1));
    const Call call = Run("one.plf two.plf");
    QVERIFY2(call.output.contains("at most 1.42 units, median 1.41"), call.output.constData());
    QCOMPARE(Run("-t 1.42 one.plf two.plf").code, 0);
}

void TestPlfDiff::json_hasAVersionAndTheCounts()
{
    const Call call = Run("--json a.plf moved.plf");
    QCOMPARE(call.code, 1);
    const QJsonObject object = QJsonDocument::fromJson(call.output).object();
    QCOMPARE(object[Text("version")].toInt(), 1);
    const QJsonObject pair = object[Text("pairs")].toArray()[0].toObject();
    QCOMPARE(pair[Text("result")].toString(), Text("different"));
    QCOMPARE(pair[Text("first")].toObject()[Text("file")].toString(), Text("a.plf"));
    QCOMPARE(pair[Text("counts")].toObject()[Text("moved")].toInt(), 1);
    QCOMPARE(pair[Text("move")].toObject()[Text("most")].toDouble(), 10.0);
    const QJsonObject area = pair[Text("areas")].toArray()[0].toObject();
    QCOMPARE(area[Text("top")].toInt(), 2610);
    const Call equal = Run("--json a.plf same.plf");
    QCOMPARE(equal.code, 0);
    QVERIFY(equal.output.contains("\"equal\""));
    const Call trouble = Run("--json a.plf none.plf");
    QCOMPARE(trouble.code, 2);
    QVERIFY(trouble.output.contains("\"error\": \"No such file or directory\""));
}

void TestPlfDiff::folders_areComparedByName()
{
    MakeFolders({"old", "new"});
    for (const char* name :
         {"old/1.plf", "new/1.plf", "old/2.plf", "old/gone.plf", "old/notes.txt"})
        Write(name, Graph(500));
    Write("new/2.plf", Graph(800));
    Write("new/come.PLF", Graph(500));
    const Call call = Run("old new");
    QCOMPARE(call.errors, QByteArray());
    QCOMPARE(call.code, 1);
    const QByteArrayList rows = call.output.split('\n');
    QCOMPARE(rows.size(), 7);
    QVERIFY(rows[1].startsWith("1.plf     equal"));
    QVERIFY(rows[2].startsWith("2.plf     different"));
    QVERIFY(rows[3].startsWith("come.PLF  new"));
    QVERIFY(rows[4].startsWith("gone.plf  gone"));
    QCOMPARE(rows[5], QByteArray("1 equal, 3 different, 0 not compared"));
    Write("new/1.plf", "no graph");
    QCOMPARE(Run("old new").code, 2);
    QCOMPARE(Run("old old").code, 0);
}

void TestPlfDiff::folders_haveGraphsOfEveryKind()
{
    MakeFolders({"old", "new"});
    for (const char* name : {"old/bare", "old/graph10.plf", "old/graph2.plf", "new/bare"})
        Write(name, Graph(500));
    Write("old/notes", "no graph");
    for (const char* name : {"old/packed.plf.gz", "new/packed.plf.gz"})
        Write(name, Packed(Graph(500)));
    const Call call = Run("old new");
    QCOMPARE(call.errors, QByteArray());
    const QByteArrayList rows = call.output.split('\n');
    QCOMPARE(rows.size(), 7);
    QVERIFY(rows[1].startsWith("bare           equal"));
    QVERIFY(rows[2].startsWith("graph2.plf     gone"));
    QVERIFY(rows[3].startsWith("graph10.plf    gone"));
    QVERIFY(rows[4].startsWith("packed.plf.gz  equal"));
}

void TestPlfDiff::foldersInFolders_areComparedWhenAsked()
{
    MakeFolders({"old/deep/er", "new/deep/er"});
    for (const char* name : {"old/1.plf", "new/1.plf", "old/deep/1.plf", "old/deep/er/2.plf"})
        Write(name, Graph(500));
    Write("new/deep/1.plf", Graph(800));
    Write("new/deep/er/2.plf", Graph(500));
    QCOMPARE(Run("old new").code, 0);
    const Call call = Run("-r old new/");
    QCOMPARE(call.errors, QByteArray());
    QCOMPARE(call.code, 1);
    const QByteArrayList rows = call.output.split('\n');
    QCOMPARE(rows.size(), 6);
    QVERIFY(rows[1].startsWith("1.plf          equal"));
    QVERIFY(rows[2].startsWith("deep/1.plf     different"));
    QVERIFY(rows[3].startsWith("deep/er/2.plf  equal"));
    QCOMPARE(Run("--recursive --quiet old new").output,
             QByteArray("Graphs old/deep/1.plf and new/deep/1.plf differ\n"));
}

void TestPlfDiff::folderThatCannotBeRead_isTrouble()
{
    MakeFolders({"old/shut", "new"});
    for (const char* name : {"old/1.plf", "new/1.plf"})
        Write(name, Graph(500));
    QVERIFY(QFile::setPermissions(Path("old/shut"), {}));
    QProcess process;
    process.setChildProcessModifier([] { // which makes root like everybody
        for (const int right : {CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH})
            prctl(PR_CAPBSET_DROP, right, 0, 0, 0);
    });
    Start(&process, {Text("-r"), Text("old"), Text("new")});
    const Call call = Finish(&process);
    QCOMPARE(call.errors, QByteArray("plfdiff: old/shut: Permission denied\n"));
    QCOMPARE(call.code, 2);
    QVERIFY(call.output.contains("1.plf  equal"));
}

void TestPlfDiff::standardInputAndFolder_areCompared()
{
    QCOMPARE(Run("a.plf -", QByteArray::fromStdString(Graph(500))).code, 0);
    QCOMPARE(Run("- a.plf", QByteArray::fromStdString(Graph(510))).code, 1);
    MakeFolders({"old"});
    Write("old/a.plf", Graph(510));
    QCOMPARE(Run("a.plf old").code, 1);
    QCOMPARE(Run("old/ moved.plf").code, 2); // there is none of that name
    QCOMPARE(Run("/dev/null a.plf").code, 1);
    QCOMPARE(Run("/dev/null /dev/null").code, 0);
}

void TestPlfDiff::picture_hasTheColors_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("begin");
    QTest::newRow("PNG") << QByteArray("d.png") << QByteArray("\x89PNG");
    QTest::newRow("SVG") << QByteArray("d.svg") << QByteArray("<?xml");
    QTest::newRow("PDF") << QByteArray("d.PDF") << QByteArray("%PDF-");
}

void TestPlfDiff::picture_hasTheColors()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, begin);
    for (const char* option : {"", "--side-by-side "}) {
        const Call call = Run(option + ("-o " + name) + " a.plf moved.plf");
        QCOMPARE(call.errors, QByteArray());
        QCOMPARE(call.code, 1);
        const QByteArray picture = ReadFile(Path(QString::fromLatin1(name)));
        QVERIFY(picture.startsWith(begin));
        if (name == "d.svg")
            QVERIFY(picture.contains("#d55e00") && picture.contains("#0072b2") &&
                    picture.contains("#b8b8b8"));
        if (name != "d.png")
            continue;
        const QImage image = QImage::fromData(picture);
        for (const QRgb color : {0xFFD55E00U, 0xFF0072B2U, 0xFFB8B8B8U})
            QVERIFY(CountPixels(image, color) > 50);
    }
}

void TestPlfDiff::report_hasAPageForEachPair()
{
    MakeFolders({"old", "new"});
    for (const char* name : {"old/1.plf", "new/1.plf", "old/2.plf", "new/3.plf"})
        Write(name, Graph(500));
    QCOMPARE(Run("-o report.pdf old new").code, 1);
    QCOMPARE(ReadFile(Path(Text("report.pdf"))).count("/Type /Page\n"), 3);
    const Call call = Run("-o report.png old new");
    QCOMPARE(call.code, 2);
    QVERIFY(!Exists(Path(Text("report.png")).toStdString()));
}

void TestPlfDiff::damagedGraph_isWarnedOfAndRefusedWhenStrict()
{
    std::string damaged = Graph(500);
    damaged.insert(damaged.size() - 1, plf::LineIndex(99));
    Write("damaged.plf", damaged);
    const Call call = Run("a.plf damaged.plf");
    QCOMPARE(call.errors, QByteArray("plfdiff: damaged.plf: damaged (index out of range: 1)\n"));
    QCOMPARE(call.code, 0);
    QCOMPARE(Run("--strict a.plf damaged.plf").code, 2);
    QCOMPARE(Run("--strict a.plf same.plf").code, 0);
    Write("cut.plf.gz", Packed(Graph(500)).chopped(8));
    QCOMPARE(Run("a.plf cut.plf.gz").code, 0);
    QCOMPARE(Run("--strict a.plf cut.plf.gz").errors,
             QByteArray("plfdiff: cut.plf.gz: damaged (cut in the packed data: 1)\n"));
}

void TestPlfDiff::hostileNamesAndTexts_areNotObeyed()
{
    const QString name = Text("\x1b[31m\u202e.plf");
    Write(name, Graph(500, "\xc2\x9b"
                           "31m"));
    for (const char* option : {"--json", "--quiet", "--ignore=dots"}) {
        const Call call = Run(QStringList{Text(option), Text("a.plf"), name});
        QCOMPARE(call.code, 1);
        for (const char* hidden : {"\x1b", "\xc2\x9b", "\u202e"})
            QVERIFY(!call.output.contains(hidden) && !call.errors.contains(hidden));
    }
    const Call call = Run(QStringList{Text("a.plf"), name + name});
    QCOMPARE(call.code, 2);
    QVERIFY(!call.errors.contains('\x1b'));
}

void TestPlfDiff::call_trouble_endsWith2_data()
{
    QTest::addColumn<QByteArray>("arguments");
    QTest::addColumn<QByteArray>("error");
    QTest::newRow("nothing") << QByteArray() << QByteArray("expected two graphs");
    QTest::newRow("one") << QByteArray("a.plf") << QByteArray("expected two graphs");
    QTest::newRow("three") << QByteArray("a.plf a.plf a.plf") << QByteArray("expected two graphs");
    QTest::newRow("two inputs") << QByteArray("- -")
                                << QByteArray("only one graph can be the standard input");
    QTest::newRow("missing") << QByteArray("a.plf none.plf")
                             << QByteArray("none.plf: No such file");
    QTest::newRow("option") << QByteArray("--bogus a.plf a.plf")
                            << QByteArray("unknown option 'bogus'");
    for (const char* value : {"x", "-1", "nan", "inf", "1,5", "5000", "101%", "1%%", "mm", "1in"})
        QTest::addRow("tolerance %s", value) << QByteArray("--tolerance=") + value + " a.plf a.plf"
                                             << QByteArray("expected a distance");
    QTest::newRow("page") << QByteArray("--page 0 a.plf a.plf") << QByteArray("expected a width");
    QTest::newRow("ignore") << QByteArray("-i colour a.plf a.plf")
                            << QByteArray("expected a list of color");
    for (const char* value : {"1,2,3", "9,0,1,5", "0,9,5,1", "0,0,5000,1", "a,b,c,d", "1,2,3,4,5"})
        QTest::addRow("area %s", value) << QByteArray("--ignore-area ") + value + " a.plf a.plf"
                                        << QByteArray("expected LEFT,TOP,RIGHT,BOTTOM");
    QTest::newRow("changes") << QByteArray("--max-changes -1 a.plf a.plf")
                             << QByteArray("expected a whole number");
    QTest::newRow("format") << QByteArray("-o d.gif a.plf a.plf")
                            << QByteArray("unknown extension");
    QTest::newRow("quiet JSON") << QByteArray("-j -q a.plf a.plf")
                                << QByteArray("cannot be combined");
    QTest::newRow("no picture") << QByteArray("--side-by-side a.plf a.plf")
                                << QByteArray("needs --output");
    QTest::newRow("no folder") << QByteArray("-o none/d.png a.plf a.plf")
                               << QByteArray("none/d.png: No such file");
}

void TestPlfDiff::call_trouble_endsWith2()
{
    QFETCH(QByteArray, arguments);
    QFETCH(QByteArray, error);
    const Call call = Run(arguments);
    QCOMPARE(call.code, 2);
    QVERIFY2(call.errors.startsWith("plfdiff: ") && call.errors.contains(error),
             call.errors.constData());
    QCOMPARE(call.output, QByteArray());
}

void TestPlfDiff::output_isNeverAGraph()
{
    Write("graph.png", Graph(500));
    const Call call = Run("-o graph.png a.plf moved.plf");
    QCOMPARE(call.code, 2);
    QVERIFY(call.errors.contains("graphs are never overwritten"));
    QCOMPARE(ReadFile(Path(Text("graph.png"))).toStdString(), Graph(500));
}

void TestPlfDiff::call_helpAndVersion_endWith0()
{
    QCOMPARE(Run("--help").code, 0);
    QCOMPARE(Run("--version").output, QByteArray("plfdiff " PLOTVW_VERSION "\n"));
}

void TestPlfDiff::call_outputThatCannotBeWritten_endsWith2()
{
    QCOMPARE(RunWithFullOutput({Text("a.plf"), Text("moved.plf")}).code, 2);
}

QTEST_GUILESS_MAIN(TestPlfDiff)
#include "test_plfdiff.moc"
