// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Many graphs in one call: where they come from, what is said of each, and what a worker costs that
// does not come to its end.
#include "tests/converter.h"
#include "tests/kit/gzip.h"
#include "tests/kit/plf.h"
#include "tests/kit/sanitized.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QtTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <map>

namespace {

// A graph without the end that says it is whole.
QByteArray CutGraph()
{
    return SmallGraph().chopped(1);
}

// The files below a folder, sorted.
QStringList FilesBelow(const QString& folder)
{
    QStringList files;
    QDirIterator at(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (at.hasNext())
        files += at.next().mid(folder.size() + 1);
    files.sort();
    return files;
}

// The lines of a report by their inputs. Fails the test when a line is no object.
std::map<QString, QJsonObject> ReadReport(const QByteArray& report)
{
    std::map<QString, QJsonObject> lines;
    for (const QByteArray& line : report.split('\n')) {
        if (line.isEmpty())
            continue;
        const QJsonDocument document = QJsonDocument::fromJson(line);
        [&] { QVERIFY2(document.isObject(), line.constData()); }();
        lines[document[Text("input")].toString()] = document.object();
    }
    return lines;
}

// Sets the time of a file's last change.
void SetTime(const QString& name, const QDateTime& time)
{
    QFile file(name);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(time, QFileDevice::FileModificationTime));
}

} // namespace

class TestBatches : public QObject, protected ConverterTest
{
    Q_OBJECT

private slots:
    void init() { Begin(); }
    void cleanup() { End(); }

    void damagedGraph_hasAPictureAndAWarning();
    void damagedGraph_isNoErrorToQuiet();
    void strict_damagedGraph_hasNoPicture();
    void unknownCommands_areNoDamage();
    void folder_graphsWithoutExtension_areFound();
    void recursive_keepsTheFolders();
    void recursive_links_areNoCircle();
    void recursive_pattern_hasTheSubfolder();
    void pictures_areNumberedInNaturalOrder();
    void list_ofNames_isRead_data();
    void list_ofNames_isRead();
    void list_thatIsEmpty_isDone();
    void list_problem_isToldSo_data();
    void list_problem_isToldSo();
    void update_convertsWhatChanged();
    void report_hasALineForEachGraph();
    void report_goesToItsFile();
    void report_nameThatIsNoText_hasItsBytes();
    void report_neverReplacesAGraph();
    void report_onAFullDisk_isAFailure();
    void packedGraph_isRead();
    void packedGraph_thatIsDamaged_isToldSo_data();
    void packedGraph_thatIsDamaged_isToldSo();
    void packedGraph_thatIsCut_isDrawnAsFarAsPossible_data();
    void packedGraph_thatIsCut_isDrawnAsFarAsPossible();
    void packedGraph_thatIsCutAnywhere_isReadSoFar();
    void packedGraph_thatIsABomb_isRefused();
    void pipe_byName_isRead();
    void otherData_isRefusedAfterItsFirstBytes();
    void graphLargerThanTheMemory_isToldSo();
    void worker_thatIsKilled_costsItsGraph();
    void worker_thatIsStopped_costsItsGraph();

private:
    // The worker that reads the pipe of that name, once it does.
    qint64 ReaderOf(const QProcess& process, const char* pipe) const;
    void MakePipe(const char* name) const
    {
        QCOMPARE(mkfifo(Path(name).toLocal8Bit().constData(), S_IRWXU), 0);
    }
    void MakeFolders(const char* names) const { QVERIFY(QDir(folder->path()).mkpath(Text(names))); }
};

void TestBatches::damagedGraph_hasAPictureAndAWarning()
{
    Write(Path("a.plf"), CutGraph());
    Write(Path("b.plf"), SmallGraph());
    const Call call = Run("-d . a.plf b.plf");
    QCOMPARE(call.errors, "plfconvert: a.plf: warning: damaged: unfinished address at byte " +
                              QByteArray::number(CutGraph().size() - 5) + ", no end mark at byte " +
                              QByteArray::number(CutGraph().size()) + "\n");
    QCOMPARE(call.output, QByteArray("2 files: 2 converted, 0 failed; 1 damaged\n"));
    QCOMPARE(call.code, 0);
    QVERIFY(QFile::exists(Path("a.png")));
}

void TestBatches::damagedGraph_isNoErrorToQuiet()
{
    Write(Path("a.plf"), CutGraph());
    ConvertWell("-q a.plf a.png");
    QVERIFY(QFile::exists(Path("a.png")));
}

void TestBatches::strict_damagedGraph_hasNoPicture()
{
    Write(Path("a.plf"), CutGraph());
    Write(Path("b.plf"), SmallGraph());
    const Call call = Run("--strict -d . a.plf b.plf");
    QVERIFY2(call.errors.startsWith("plfconvert: a.plf: damaged: "), call.errors.constData());
    QCOMPARE(call.output, QByteArray("2 files: 1 converted, 1 failed; 1 damaged\n"));
    QCOMPARE(call.code, 1);
    QVERIFY(!QFile::exists(Path("a.png")) && QFile::exists(Path("b.png")));
}

void TestBatches::unknownCommands_areNoDamage()
{
    Write(Path("a.plf"), Sample(Text("tour.plf")));
    ConvertWell("--strict a.plf a.png");
}

void TestBatches::folder_graphsWithoutExtension_areFound()
{
    MakeFolders("in");
    Write(Path("in/graph"), SmallGraph());
    Write(Path("in/notes"), "no graph, and much longer than a header");
    Write(Path("in/graph.bak"), SmallGraph());
    Write(Path("in/packed.plf.gz"), Packed(SmallGraph()));
    MakePipe("in/pipe.plf");
    ConvertWell("-d out in");
    QCOMPARE(FilesBelow(Path("out")), QStringList({Text("graph.png"), Text("packed.png")}));
}

void TestBatches::recursive_keepsTheFolders()
{
    MakeFolders("in/a/b");
    MakeFolders("in/c");
    for (const char* name : {"in/x.plf", "in/a/x.plf", "in/a/b/x.plf", "in/c/x", "y.plf"})
        Write(Path(name), SmallGraph());
    const QStringList expected = {Text("a/b/x.png"), Text("a/x.png"), Text("c/x.png"),
                                  Text("x.png"), Text("y.png")};
    for (const char* in : {"in", "in/", "./in", "in//"}) {
        const Call call = Run({Text("-r"), Text("-d"), Text("out"), Text(in), Text("y.plf")});
        QCOMPARE(call.output, QByteArray("5 files: 5 converted, 0 failed\n"));
        QCOMPARE(FilesBelow(Path("out")), expected);
        QVERIFY(QDir(Path("out")).removeRecursively());
    }
    QCOMPARE(Run("-d flat in").code, 0);
    QCOMPARE(FilesBelow(Path("flat")), QStringList(Text("x.png")));
}

void TestBatches::recursive_links_areNoCircle()
{
    MakeFolders("in/a");
    Write(Path("in/a/x.plf"), SmallGraph());
    QVERIFY(QFile::link(Path("in"), Path("in/a/up")));
    QVERIFY(QFile::link(Path("in"), Path("link")));
    ConvertWell("-r -d out link");
    QCOMPARE(FilesBelow(Path("out")), QStringList(Text("a/x.png")));
}

void TestBatches::recursive_pattern_hasTheSubfolder()
{
    MakeFolders("in/a");
    Write(Path("in/a/x.plf"), SmallGraph());
    Write(Path("in/y.plf"), SmallGraph());
    QCOMPARE(Run("-r --pattern out/{sub}{number}.svg in").code, 0);
    QCOMPARE(FilesBelow(Path("out")), QStringList({Text("2.svg"), Text("a/1.svg")}));
}

void TestBatches::pictures_areNumberedInNaturalOrder()
{
    MakeFolders("in");
    for (const char* name : {"in/g10.plf", "in/g2.plf", "in/g1.plf"})
        Write(Path(name), SmallGraph());
    QCOMPARE(Run("--pattern out/{number}-{name}.svg in").code, 0);
    QCOMPARE(FilesBelow(Path("out")),
             QStringList({Text("1-g1.svg"), Text("2-g2.svg"), Text("3-g10.svg")}));
}

void TestBatches::list_ofNames_isRead_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<QByteArray>("list");
    QTest::newRow("lines") << Text("--files-from list") << QByteArray("a.plf\n\ntwo words.plf\n");
    QTest::newRow("no line end") << Text("--files-from list") << QByteArray("a.plf\ntwo words.plf");
    QTest::newRow("zero bytes") << Text("--files-from list -0")
                                << QByteArray("a.plf\0two words.plf\0", 20);
    QTest::newRow("standard input")
        << Text("--files-from -") << QByteArray("a.plf\ntwo words.plf\n");
    QTest::newRow("after others") << Text("a.plf --files-from list")
                                  << QByteArray("two words.plf\n");
}

void TestBatches::list_ofNames_isRead()
{
    QFETCH(QString, options);
    QFETCH(QByteArray, list);
    Write(Path("a.plf"), SmallGraph());
    Write(Path("two words.plf"), SmallGraph());
    Write(Path("list"), list);
    const Call call = Run((Text("-d out ") + options).split(u' '), list);
    QCOMPARE(call.errors, QByteArray());
    QCOMPARE(call.output, QByteArray("2 files: 2 converted, 0 failed\n"));
    QCOMPARE(FilesBelow(Path("out")), QStringList({Text("a.png"), Text("two words.png")}));
}

void TestBatches::list_thatIsEmpty_isDone()
{
    Write(Path("list"), "\n");
    ConvertWell("-d out --files-from list");
}

void TestBatches::list_problem_isToldSo_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<int>("code");
    QTest::addColumn<QByteArray>("message");
    const auto row = [](const char* arguments, int code, const char* message) {
        QTest::newRow(arguments) << Text(arguments) << code
                                 << "plfconvert: " + QByteArray(message) + '\n';
    };
    row("-d . --files-from none", 1, "none: No such file or directory");
    row("-d . --files-from zero", 1, "zero: the names end with zero bytes; add -0");
    row("-d . --files-from missing", 1, "gone.plf: No such file or directory");
}

void TestBatches::list_problem_isToldSo()
{
    QFETCH(QString, arguments);
    Write(Path("zero"), QByteArray("a\0b\nc\0", 6));
    Write(Path("missing"), "gone.plf\n");
    const Call call = Run(arguments.split(u' '));
    QTEST(call.errors, "message");
    QTEST(call.code, "code");
}

void TestBatches::update_convertsWhatChanged()
{
    const QDateTime now = QDateTime::currentDateTime();
    for (const char* name : {"newer", "same", "older", "missing"})
        Write(Path(QStringLiteral("%1.plf").arg(Text(name))), SmallGraph());
    for (const char* name : {"newer", "same", "older"}) {
        Write(Path(QStringLiteral("%1.png").arg(Text(name))), "old");
        SetTime(Path(QStringLiteral("%1.png").arg(Text(name))), now);
    }
    SetTime(Path("newer.plf"), now.addSecs(1));
    SetTime(Path("same.plf"), now);
    SetTime(Path("older.plf"), now.addSecs(-1));
    const Call call = Run("--update -d . .");
    QCOMPARE(call.output, QByteArray("4 files: 3 converted, 1 skipped, 0 failed\n"));
    QCOMPARE(ReadFile(Path("older.png")), QByteArray("old"));
    const Call again = Run("--update --report json newer.plf newer.png");
    QVERIFY(again.output.contains("\"reason\":\"output is newer\"") ||
            again.output.contains("\"status\":\"converted\""));
}

void TestBatches::report_hasALineForEachGraph()
{
    Write(Path("good.plf"), SmallGraph());
    Write(Path("cut.plf"), CutGraph());
    Write(Path("bad.plf"), "no graph at all");
    Write(Path("there.plf"), SmallGraph());
    Write(Path("there.png"), "old");
    const Call call = Run("-n -d . --report json .");
    QVERIFY(call.errors.endsWith("4 files: 2 converted, 1 skipped, 1 failed; 1 damaged\n"));
    const auto lines = ReadReport(call.output);
    QCOMPARE(lines.size(), 4U);
    const auto value = [&lines](const char* input, const char* key) {
        return lines.at(Text(input))[Text(key)];
    };
    QCOMPARE(value("./good.plf", "output"), QJsonValue(Text("./good.png")));
    QCOMPARE(value("./good.plf", "ok"), QJsonValue(true));
    QCOMPARE(value("./good.plf", "status"), QJsonValue(Text("converted")));
    QCOMPARE(value("./good.plf", "reason"), QJsonValue(QString()));
    QCOMPARE(value("./good.plf", "bytes").toInteger(), QFile(Path("good.png")).size());
    QVERIFY(value("./good.plf", "seconds").toDouble(-1) >= 0);
    QCOMPARE(value("./good.plf", "damage"), QJsonValue(QJsonArray()));
    const QJsonArray damage = value("./cut.plf", "damage").toArray();
    QCOMPARE(value("./cut.plf", "ok"), QJsonValue(true));
    QCOMPARE(damage.size(), 2);
    QCOMPARE(damage[1][Text("kind")], QJsonValue(Text("no end mark")));
    QCOMPARE(damage[1][Text("offset")].toInteger(), CutGraph().size());
    QCOMPARE(value("./bad.plf", "ok"), QJsonValue(false));
    QCOMPARE(value("./bad.plf", "status"), QJsonValue(Text("failed")));
    QCOMPARE(value("./bad.plf", "reason"),
             QJsonValue(Text("File is not a recognized PLF graphic format.")));
    QCOMPARE(value("./there.plf", "status"), QJsonValue(Text("skipped")));
    QCOMPARE(value("./there.plf", "reason"), QJsonValue(Text("output exists")));
}

void TestBatches::report_goesToItsFile()
{
    Write(Path("a.plf"), SmallGraph());
    Write(Path("b.plf"), SmallGraph());
    Write(Path("report"), "old and longer than what comes\n");
    const Call call = Run("-d . --report json --report-file report a.plf b.plf");
    QCOMPARE(call.output, QByteArray("2 files: 2 converted, 0 failed\n"));
    QCOMPARE(ReadReport(ReadFile(Path("report"))).size(), 2U);
    const Call wrong = Run("-f png --report json a.plf -");
    QCOMPARE(wrong.code, 2);
    QVERIFY(wrong.errors.contains("use --report-file"));
    QCOMPARE(Run("--report xml a.plf a.png").code, 2);
}

void TestBatches::report_nameThatIsNoText_hasItsBytes()
{
    const std::string name = folder->path().toStdString() + "/Kr\344fte.plf";
    QVERIFY(WriteFile(name, SmallGraph()));
    const auto lines = ReadReport(Run("-d out --report json .").output);
    QCOMPARE(lines.size(), 1U);
    const QByteArray bytes =
        QByteArray::fromBase64(lines.begin()->second[Text("inputBase64")].toString().toLatin1());
    QCOMPARE(bytes, QByteArray("./Kr\344fte.plf"));
}

void TestBatches::report_neverReplacesAGraph()
{
    Write(Path("a.plf"), SmallGraph());
    Write(Path("b.plf"), SmallGraph());
    const Call call = Run("-d out --report-file a.plf b.plf");
    QCOMPARE(call.errors,
             QByteArray("plfconvert: a.plf: is a graph; graphs are never overwritten\n"));
    QCOMPARE(call.code, 1);
    QCOMPARE(ReadFile(Path("a.plf")), SmallGraph());
}

void TestBatches::report_onAFullDisk_isAFailure()
{
    Write(Path("a.plf"), SmallGraph());
    const Call call = Run("--report-file /dev/full a.plf a.png");
    QVERIFY2(call.errors.startsWith("plfconvert: /dev/full: "), call.errors.constData());
    QCOMPARE(call.code, 1);
}

void TestBatches::packedGraph_isRead()
{
    const QByteArray graph = Sample(Text("tour.plf"));
    Write(Path("a.plf"), graph);
    Write(Path("a.plf.gz"), Packed(graph));
    Write(Path("parts.plf.gz"), Packed(graph.left(1000)) + Packed(graph.mid(1000)));
    Write(Path("tail.gz"), Packed(graph) + QByteArray(1000, '\0'));
    ConvertWell("a.plf plain.png");
    for (const char* name : {"a.plf.gz", "parts.plf.gz", "tail.gz"}) {
        ConvertWell((QByteArray(name) + " out.png").constData());
        QCOMPARE(ReadFile(Path("out.png")), ReadFile(Path("plain.png")));
    }
    QCOMPARE(Run("- out2.png", Packed(graph)).code, 0);
    QCOMPARE(ReadFile(Path("out2.png")), ReadFile(Path("plain.png")));
    ConvertWell("-d . a.plf.gz");
    QVERIFY(QFile::exists(Path("a.png")));
}

void TestBatches::packedGraph_thatIsDamaged_isToldSo_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("message");
    const QByteArray packed = Packed(Sample(Text("tour.plf")));
    const QByteArray cut = "is cut off, as gzip data";
    const QByteArray damaged = "is damaged, as gzip data";
    QTest::newRow("magic only") << packed.left(2) << cut;
    QTest::newRow("header only") << packed.left(10) << cut;
    QTest::newRow("start of a graph")
        << Packed(Sample(Text("tour.plf")).left(10)) + packed.left(9) << cut;
    QTest::newRow("another method") << QByteArray("\x1f\x8b\x07\0\0\0\0\0\0\0\0\0", 12) << damaged;
    QTest::newRow("no graph") << Packed("text that is no graph")
                              << QByteArray("File is not a recognized PLF graphic format.");
    QTest::newRow("nothing") << Packed({}) << QByteArray("is empty");
}

void TestBatches::packedGraph_thatIsDamaged_isToldSo()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, message);
    Write(Path("a.plf.gz"), bytes);
    const Call call = Run("a.plf.gz a.png");
    QCOMPARE(call.errors, "plfconvert: a.plf.gz: " + message + '\n');
    QCOMPARE(call.code, 1);
    QVERIFY(!QFile::exists(Path("a.png")));
}

void TestBatches::packedGraph_thatIsCut_isDrawnAsFarAsPossible_data()
{
    QTest::addColumn<QByteArray>("packed");
    QTest::addColumn<QByteArray>("start"); // of the graph
    const QByteArray graph = Sample(Text("tour.plf"));
    const QByteArray packed = Packed(graph);
    QByteArray wrongSum = packed;
    wrongSum[packed.size() - 6] = static_cast<char>(~wrongSum[packed.size() - 6]);
    QTest::newRow("check sum and size") << packed.chopped(8) << graph;
    QTest::newRow("last byte") << packed.chopped(1) << graph;
    QTest::newRow("other check sum") << wrongSum << graph;
    const QByteArray half = graph.left(graph.size() / 2);
    QTest::newRow("second of two") << Packed(half) + packed.left(10) << half;
    QTest::newRow("nonsense behind") << Packed(half) + "\x1f nonsense" << half;
}

void TestBatches::packedGraph_thatIsCut_isDrawnAsFarAsPossible()
{
    QFETCH(QByteArray, packed);
    QFETCH(QByteArray, start);
    Write("start.plf", start);
    Write("a.plf.gz", packed);
    QCOMPARE(Run("start.plf start.png").code, 0);
    const Call call = Run("a.plf.gz a.png");
    QCOMPARE(call.code, 0);
    QVERIFY2(call.errors.endsWith("cut in the packed data at byte " +
                                  QByteArray::number(start.size()) + '\n'),
             call.errors.constData());
    QCOMPARE(ReadFile(Path("a.png")), ReadFile(Path("start.png")));
    QCOMPARE(Run("--strict a.plf.gz strict.png").code, 1);
    QVERIFY(!QFile::exists(Path("strict.png")));
}

// Wherever that is, what is unpacked is drawn.
void TestBatches::packedGraph_thatIsCutAnywhere_isReadSoFar()
{
    const QByteArray packed = Packed(Sample(Text("tour.plf")));
    for (qsizetype size = packed.size() / 10; size < packed.size(); size += packed.size() / 10) {
        Write("a.plf.gz", packed.left(size));
        const Call call = Run("a.plf.gz a.png");
        QCOMPARE(call.code, 0);
        QVERIFY(call.errors.contains("cut in the packed data at byte "));
    }
}

// A graph that begins well, and a gigabyte of zero bytes in a megabyte.
void TestBatches::packedGraph_thatIsABomb_isRefused()
{
    if (kSanitized)
        QSKIP("the sanitizer takes more memory than the limit");
    QProcess shell;
    shell.setWorkingDirectory(folder->path());
    Write(Path("a.plf"), SmallGraph());
    shell.start(
        Text("sh"),
        {Text("-c"), Text("{ cat a.plf; head -c 1100000000 /dev/zero; } | gzip -1 > b.gz")});
    QCOMPARE(Finish(&shell).code, 0);
    const Call call = Run("-d . --memory 4096 b.gz a.plf");
    QCOMPARE(call.errors,
             QByteArray("plfconvert: b.gz: unpacks to more than 1024 MB; unpack it first\n"));
    QCOMPARE(call.output, QByteArray("2 files: 1 converted, 1 failed\n"));
    const Call limited = Run("-d . --memory 256 b.gz a.plf");
    QCOMPARE(limited.errors, QByteArray("plfconvert: b.gz: not enough memory\n"));
}

void TestBatches::pipe_byName_isRead()
{
    Write(Path("a.plf"), Sample(Text("tour.plf")));
    ConvertWell("a.plf a.png");
    QProcess shell;
    shell.setWorkingDirectory(folder->path());
    shell.setProcessEnvironment(environment);
    shell.start(Text("bash"),
                {Text("-c"),
                 Text("\"$0\" <(cat a.plf) b.png && \"$0\" /dev/stdin c.png <a.plf && "
                      "cat a.plf | \"$0\" /dev/stdin d.png"),
                 Text(PLFCONVERT_PROGRAM)});
    const Call call = Finish(&shell);
    QCOMPARE(call.errors, QByteArray());
    QCOMPARE(call.code, 0);
    for (const char* name : {"b.png", "c.png", "d.png"})
        QCOMPARE(ReadFile(Path(name)), ReadFile(Path("a.png")));
}

// With the memory for that file, it would need another message.
void TestBatches::otherData_isRefusedAfterItsFirstBytes()
{
    Write(Path("other"), "what this is nobody knows");
    QVERIFY(QFile::resize(Path("other"), qint64{1} << 40));
    const Call call = Run("other a.png");
    QCOMPARE(call.errors,
             QByteArray("plfconvert: other: File is not a recognized PLF graphic format.\n"));
}

void TestBatches::graphLargerThanTheMemory_isToldSo()
{
    Write(Path("a.plf"), SmallGraph());
    QVERIFY(QFile::resize(Path("a.plf"), qint64{1} << 40));
    const Call call = Run("a.plf a.png");
    // The sanitizers tell of it first.
    QVERIFY2(call.errors.endsWith("plfconvert: a.plf: not enough memory\n"),
             call.errors.constData());
    QVERIFY(kSanitized || call.errors.count('\n') == 1);
    QCOMPARE(call.code, 1);
}

qint64 TestBatches::ReaderOf(const QProcess& process, const char* pipe) const
{
    const QString children = QStringLiteral("/proc/%1/task/%1/children").arg(process.processId());
    for (const QByteArray& child : ReadFile(children).split(' ')) {
        const QDir descriptors(QStringLiteral("/proc/%1/fd").arg(Text(child)));
        for (const QFileInfo& each : descriptors.entryInfoList(QDir::Files | QDir::System)) {
            if (each.symLinkTarget() == Path(pipe))
                return child.toLongLong();
        }
    }
    return 0;
}

// The worker has read a part of the pipe's graph, and waits for the rest.
void TestBatches::worker_thatIsKilled_costsItsGraph()
{
    MakePipe("pipe");
    for (int i = 0; i < 30; ++i)
        Write(Path(QStringLiteral("%1.plf").arg(i)), SmallGraph());
    const int fd = open(Path("pipe").toLocal8Bit().constData(), O_RDWR | O_CLOEXEC);
    QProcess process;
    Start(&process, Text("-j 2 -d out --report-file report 0.plf pipe .").split(u' '));
    QTRY_VERIFY_WITH_TIMEOUT(ReaderOf(process, "pipe") > 0, kTimeout);
    QCOMPARE(kill(static_cast<pid_t>(ReaderOf(process, "pipe")), SIGKILL), 0);
    const Call call = Finish(&process);
    close(fd);
    QVERIFY2(call.errors.contains("plfconvert: pipe: conversion killed by signal 9"),
             call.errors.constData());
    // The first graph is named twice.
    QCOMPARE(call.output, QByteArray("32 files: 30 converted, 2 failed\n"));
    QCOMPARE(FilesBelow(Path("out")).size(), 30);
    QCOMPARE(ReadReport(ReadFile(Path("report"))).at(Text("pipe"))[Text("ok")], QJsonValue(false));
}

void TestBatches::worker_thatIsStopped_costsItsGraph()
{
    MakePipe("pipe");
    for (int i = 0; i < 30; ++i)
        Write(Path(QStringLiteral("%1.plf").arg(i)), SmallGraph());
    const int fd = open(Path("pipe").toLocal8Bit().constData(), O_RDWR | O_CLOEXEC);
    QProcess process;
    Start(&process, Text("-j 2 --timeout 5 -d out pipe .").split(u' '));
    QTRY_VERIFY_WITH_TIMEOUT(ReaderOf(process, "pipe") > 0, kTimeout);
    QCOMPARE(kill(static_cast<pid_t>(ReaderOf(process, "pipe")), SIGSTOP), 0);
    // Without the stop there would be a picture.
    const QByteArray graph = SmallGraph();
    QCOMPARE(write(fd, graph.constData(), static_cast<size_t>(graph.size())), graph.size());
    close(fd);
    const Call call = Finish(&process);
    QCOMPARE(call.errors, QByteArray("plfconvert: pipe: took longer than 5 s\n"));
    QCOMPARE(call.output, QByteArray("31 files: 30 converted, 1 failed\n"));
    QCOMPARE(FilesBelow(Path("out")).size(), 30);
}

QTEST_MAIN(TestBatches)
#include "test_batches.moc"
