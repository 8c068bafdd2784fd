// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The converter as people call it: its messages and exit codes, and what is in the folder
// afterwards.
#include "tests/converter.h"
#include "tests/kit/commalocale.h"
#include "tests/kit/plf.h"
#include "tests/kit/sanitized.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QtTest>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

namespace {

// A pipe with a name, and bytes in it. It never comes to its end.
class EndlessInput
{
public:
    explicit EndlessInput(const QByteArray& name)
    {
        if (mkfifo(name.constData(), S_IRWXU) == 0)
            fd = open(name.constData(), O_RDWR | O_CLOEXEC);
        filled = write(fd, "some", 4) == 4;
    }
    ~EndlessInput() { close(fd); }
    EndlessInput(const EndlessInput&) = delete;
    EndlessInput& operator=(const EndlessInput&) = delete;

    // Whether somebody has read all the bytes, and now waits for more.
    [[nodiscard]] bool IsRead() const
    {
        int bytes = 0;
        return filled && ioctl(fd, FIONREAD, &bytes) == 0 && bytes == 0;
    }

private:
    int fd = -1;
    bool filled = false;
};

const QDir::Filters kEverything =
    QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;

} // namespace

class TestConverting : public QObject, protected ConverterTest
{
    Q_OBJECT

private slots:
    void init() { Begin(); }
    void cleanup() { End(); }

    void standardStreams_areReadAndWritten_data();
    void standardStreams_areReadAndWritten();
    void closedOutput_isToldSo();
    void displayAndHome_areNotNeeded();
    void commaLocale_changesNothing();

    void error_namesFileAndReason_data();
    void error_namesFileAndReason();
    void wrongUsage_isCode2();
    void platformOfTheDesktop_isIgnored();
    void graphsThatNoWorkerBegins_haveFailed();
    void help_tellsTheExitCodes();
    void graph_isNeverOverwritten_data();
    void graph_isNeverOverwritten();
    void failure_keepsTheOldPicture();
    void fileSizeLimit_leavesNoHalfPicture_data();
    void fileSizeLimit_leavesNoHalfPicture();
    void folderWithoutPermission_isToldSo();

    void damagedFile_costsOnlyItself();
    void quiet_printsErrorsOnly();
    void folder_isConvertedWhole();
    void strangeNames_areConverted();
    void hostileNames_areNotObeyed();
    void existingPictures_areReplacedOrLeftAlone();
    void workerThatIsKilled_costsItsFileAndIsTold();
    void help_onAFullDisk_isAFailure();
    void count_onAFullDisk_isAFailure();
    void report_onAFullDisk_isToldWhy_data();
    void report_onAFullDisk_isToldWhy();
    void outputThatNobodyReads_endsSilently_data();
    void outputThatNobodyReads_endsSilently();
    void pipeThatNobodyReads_costsOnlyItself();
    void sourceDateThatIsWrong_isCode2_data();
    void sourceDateThatIsWrong_isCode2();
    void fontsThatAreMissing_areToldWhereTextsAre();
    void timeout_inputThatNeverEnds_costsOnlyItself();
    void timeout_graphThatTakesLong_leavesNothing();
    void timeout_notReached_changesNothing();
    void memory_graphThatIsTooLarge_costsOnlyItself();
    void interruptedCall_leavesOnlyWholePictures();
    void terminal_showsAProgressBar_data();
    void terminal_showsAProgressBar();

private:
    [[nodiscard]] QStringList Entries() const
    {
        return QDir(folder->path()).entryList(kEverything);
    }
};

void TestConverting::standardStreams_areReadAndWritten_data()
{
    QTest::addColumn<QString>("format");
    for (const char* format : {"png", "jpeg", "svg", "eps"})
        QTest::newRow(format) << Text(format);
}

void TestConverting::standardStreams_areReadAndWritten()
{
    QFETCH(QString, format);
    const QByteArray graph = Sample(Text("tour.plf"));
    Write(Path("a.plf"), graph);
    const QString file = Text("a.") + format;
    QCOMPARE(Run({Text("a.plf"), file}).code, 0);
    Call call = Run({Text("-f"), format, Text("-"), Text("-")}, graph);
    call.output.replace("<title>KORVEL graph<", "<title>a.plf<"); // no other name is known
    QCOMPARE(call.errors, QByteArray());
    QCOMPARE(call.code, 0);
    QCOMPARE(call.output, ReadFile(Path(file)));
}

void TestConverting::closedOutput_isToldSo()
{
    Write(Path("a.plf"), SmallGraph());
    QProcess shell;
    shell.setWorkingDirectory(folder->path());
    shell.setProcessEnvironment(environment);
    shell.start(Text("bash"),
                {Text("-c"), Text("exec \"$0\" -f png a.plf - >&- <&-"), Text(PLFCONVERT_PROGRAM)});
    const Call call = Finish(&shell);
    QVERIFY2(call.errors.startsWith("plfconvert: a.plf: -: "), call.errors.constData());
    QCOMPARE(call.code, 1);
}

void TestConverting::displayAndHome_areNotNeeded()
{
    Write(Path("a.plf"), Sample(Text("tour.plf")));
    ConvertWell("a.plf a.png");
    QProcessEnvironment bare;
    bare.insert(Text("LC_ALL"), Text("C"));
    for (const char* name : {"ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS"}) {
        if (environment.contains(Text(name)))
            bare.insert(Text(name), environment.value(Text(name)));
    }
    environment = bare;
    ConvertWell("a.plf b.png");
    QCOMPARE(ReadFile(Path("b.png")), ReadFile(Path("a.png")));
}

void TestConverting::commaLocale_changesNothing()
{
    Write(Path("a.plf"), Sample(Text("tour.plf")));
    ConvertWell("--line-scale 1.5 a.plf a.svg");
    ConvertWell("--line-scale 1.5 a.plf a.eps");
    const CommaLocale comma;
    QVERIFY2(comma.IsInForce(), "Is the package locales installed?");
    environment.insert(Text("LOCPATH"), qEnvironmentVariable("LOCPATH"));
    environment.insert(Text("LC_ALL"), Text("de_DE.UTF-8"));
    ConvertWell("--line-scale 1.5 a.plf b.svg");
    ConvertWell("--line-scale 1.5 a.plf b.eps");
    QCOMPARE(ReadFile(Path("b.svg")), ReadFile(Path("a.svg")));
    QCOMPARE(ReadFile(Path("b.eps")), ReadFile(Path("a.eps")));
}

void TestConverting::error_namesFileAndReason_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QByteArray>("message");
    const auto row = [](const char* arguments, const char* message) {
        QTest::newRow(arguments) << Text(arguments) << QByteArray(message);
    };
    row("missing.plf a.png", "plfconvert: missing.plf: No such file or directory\n");
    row("empty.plf a.png", "plfconvert: empty.plf: is empty\n");
    row("text.plf a.png", "plfconvert: text.plf: File is not a recognized PLF graphic format.\n");
    row(". a.png", "plfconvert: .: is a directory\n");
    row("/dev/zero a.png", "plfconvert: /dev/zero: File is not a recognized PLF graphic format.\n");
    row("- a.png", "plfconvert: standard input: is empty\n");
    row("a.plf none/a.png", "plfconvert: a.plf: none/a.png: No such file or directory\n");
    row("a.plf folder.png", "plfconvert: a.plf: folder.png: Is a directory\n");
    row("-f png a.plf /dev/full", "plfconvert: a.plf: /dev/full: No space left on device\n");
    row("-f jpeg a.plf /dev/full", "plfconvert: a.plf: /dev/full: No space left on device\n");
    row("-f svg a.plf /dev/full", "plfconvert: a.plf: /dev/full: No space left on device\n");
    row("-f pdf a.plf /dev/full", "plfconvert: a.plf: /dev/full: No space left on device\n");
    row("-f eps a.plf /dev/full", "plfconvert: a.plf: /dev/full: No space left on device\n");
    row("-d text.plf/out a.plf", "plfconvert: a.plf: text.plf/out/a.png: Not a directory\n");
    row("-d folder.png folder.png", "plfconvert: folder.png: contains no graph\n");
    row("-d out none.plf", "plfconvert: none.plf: No such file or directory\n");
}

void TestConverting::error_namesFileAndReason()
{
    QFETCH(QString, arguments);
    Write(Path("a.plf"), SmallGraph());
    Write(Path("empty.plf"), {});
    Write(Path("text.plf"), "This is no graph at all.\n");
    QVERIFY(QDir(folder->path()).mkdir(Text("folder.png")));
    const QStringList before = Entries();
    const Call call = Run(arguments.split(u' '));
    QTEST(call.errors, "message");
    QCOMPARE(call.code, 1);
    QCOMPARE(Entries(), before);
}

void TestConverting::wrongUsage_isCode2()
{
    Write(Path("a.plf"), SmallGraph());
    const Call call = Run("--size 0x0 a.plf a.png");
    QCOMPARE(call.code, 2);
    QVERIFY2(call.errors.contains("--size '0x0'"), call.errors.constData());
    QVERIFY(!QFile::exists(Path("a.png")));
}

void TestConverting::platformOfTheDesktop_isIgnored()
{
    Write(Path("a.plf"), Sample(Text("tour.plf")));
    ConvertWell("a.plf a.png");
    for (const char* platform : {"xcb", "wayland", "none such"}) {
        environment.insert(Text("QT_QPA_PLATFORM"), Text(platform));
        environment.insert(Text("QT_QPA_PLATFORMTHEME"), Text("gtk3"));
        ConvertWell("a.plf b.png");
        QCOMPARE(ReadFile(Path("b.png")), ReadFile(Path("a.png")));
    }
}

// With as few descriptors there is no pipe to a worker.
void TestConverting::graphsThatNoWorkerBegins_haveFailed()
{
    Write(Path("a.plf"), SmallGraph());
    Write(Path("b.plf"), SmallGraph());
    QProcess shell;
    shell.setWorkingDirectory(folder->path());
    shell.setProcessEnvironment(environment);
    shell.start(Text("bash"),
                {Text("-c"), Text("ulimit -n 6; exec \"$0\" -d . --report-file r a.plf b.plf"),
                 Text(PLFCONVERT_PROGRAM)});
    const Call call = Finish(&shell);
    QCOMPARE(call.errors, QByteArray("plfconvert: cannot start any worker process\n"));
    QCOMPARE(call.output, QByteArray("2 files: 0 converted, 2 failed\n"));
    QCOMPARE(call.code, 3);
    QCOMPARE(ReadFile(Path("r")).count("cannot start any worker process"), 2);
    QVERIFY(!QFile::exists(Path("a.png")));
}

void TestConverting::help_tellsTheExitCodes()
{
    const Call help = Run("--help");
    QCOMPARE(help.code, 0);
    QVERIFY(help.output.contains("Exit codes: 0"));
    const Call version = Run("--version");
    QCOMPARE(version.code, 0);
    QVERIFY(
        QRegularExpression(Text("^plfconvert [0-9.]+\n$")).match(Text(version.output)).hasMatch());
}

void TestConverting::graph_isNeverOverwritten_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<QByteArray>("reason");
    for (const char* output : {"a.plf", "./a.plf", "link", "hard"})
        QTest::newRow(output) << Text(output)
                              << QByteArray("a.plf: input and output are the same file\n");
    QTest::newRow("other.plf") << Text("other.plf")
                               << QByteArray("a.plf: output 'other.plf' is a graph; graphs are "
                                             "never overwritten\n");
}

void TestConverting::graph_isNeverOverwritten()
{
    QFETCH(QString, output);
    QFETCH(QByteArray, reason);
    Write(Path("a.plf"), SmallGraph());
    Write(Path("other.plf"), SmallGraph(5));
    QVERIFY(QFile::link(Path("a.plf"), Path("link")));
    QCOMPARE(link(Path("a.plf").toLocal8Bit().constData(), Path("hard").toLocal8Bit().constData()),
             0);
    const Call call = Run({Text("-f"), Text("png"), Text("a.plf"), output});
    QCOMPARE(call.code, 1);
    QCOMPARE(call.errors, "plfconvert: " + reason);
    QCOMPARE(ReadFile(Path("a.plf")), SmallGraph());
    QCOMPARE(ReadFile(Path("other.plf")), SmallGraph(5));
}

void TestConverting::failure_keepsTheOldPicture()
{
    Write(Path("a.plf"), "damaged");
    Write(Path("a.png"), "old");
    QCOMPARE(Run("a.plf a.png").code, 1);
    QCOMPARE(ReadFile(Path("a.png")), QByteArray("old"));
}

void TestConverting::fileSizeLimit_leavesNoHalfPicture_data()
{
    QTest::addColumn<QString>("format");
    for (const char* format : {"png", "jpg", "svg", "pdf", "eps"})
        QTest::newRow(format) << Text(format);
}

// The limit, of a few kilobytes, stands for a disk that becomes full in the middle.
void TestConverting::fileSizeLimit_leavesNoHalfPicture()
{
    QFETCH(QString, format);
    const QString name = Text("a.") + format;
    Write(Path("a.plf"), Sample(Text("tour.plf")));
    Write(Path(name), "old");
    const QStringList before = Entries();
    QProcess shell;
    shell.setWorkingDirectory(folder->path());
    shell.setProcessEnvironment(environment);
    shell.start(Text("bash"), {Text("-c"), Text("trap '' XFSZ; ulimit -f 8; exec \"$@\""),
                               Text("bash"), Text(PLFCONVERT_PROGRAM), Text("a.plf"), name});
    const Call call = Finish(&shell);
    QCOMPARE(call.errors, "plfconvert: a.plf: " + name.toUtf8() + ": File too large\n");
    QCOMPARE(call.code, 1);
    QCOMPARE(ReadFile(Path(name)), QByteArray("old"));
    QCOMPARE(Entries(), before);
}

void TestConverting::folderWithoutPermission_isToldSo()
{
    if (geteuid() == 0)
        QSKIP("The permissions of files do not hold for root.");
    Write(Path("a.plf"), SmallGraph());
    QVERIFY(QDir(folder->path()).mkdir(Text("closed")));
    QCOMPARE(chmod(Path("closed").toLocal8Bit().constData(), 0500), 0);
    const Call call = Run("a.plf closed/a.png");
    QCOMPARE(call.errors, QByteArray("plfconvert: a.plf: closed/a.png: Permission denied\n"));
    QCOMPARE(call.code, 1);
}

void TestConverting::damagedFile_costsOnlyItself()
{
    constexpr int kFiles = 500;
    constexpr int kDamaged = 321;
    for (int i = 1; i <= kFiles; ++i)
        Write(Path(QStringLiteral("g%1.plf").arg(i)), i == kDamaged ? "damaged" : SmallGraph(i));
    const Call call = Run("--size 32x24 --output-dir out .");
    QCOMPARE(call.output, QByteArray("500 files: 499 converted, 1 failed\n"));
    QCOMPARE(call.errors, QByteArray("plfconvert: ./g321.plf: File is not a recognized PLF "
                                     "graphic format.\n"));
    QCOMPARE(call.code, 1);
    const QStringList pictures = QDir(Path("out")).entryList(kEverything);
    QCOMPARE(pictures.size(), kFiles - 1);
    for (const QString& picture : pictures)
        QCOMPARE(QImage(Path(Text("out/") + picture)).size(), QSize(32, 24));
}

void TestConverting::quiet_printsErrorsOnly()
{
    Write(Path("a.plf"), SmallGraph());
    Write(Path("b.plf"), "damaged");
    const Call call = Run("--quiet --output-dir out a.plf b.plf");
    QCOMPARE(call.output, QByteArray());
    QCOMPARE(call.errors.count('\n'), 1);
    QCOMPARE(call.code, 1);
}

void TestConverting::folder_isConvertedWhole()
{
    QVERIFY(QDir(folder->path()).mkpath(Text("in/deeper")));
    Write(Path("in/a.plf"), SmallGraph());
    Write(Path("in/B.PLF"), SmallGraph());
    Write(Path("in/notes.txt"), "no graph");
    Write(Path("in/deeper/c.plf"), SmallGraph());
    const Call call = Run("--format svg --output-dir new/out --pattern {number}-{name}.{ext} in");
    QCOMPARE(call.output, QByteArray("2 files: 2 converted, 0 failed\n"));
    QCOMPARE(QDir(Path("new/out")).entryList(kEverything, QDir::Name),
             QStringList({Text("1-B.svg"), Text("2-a.svg")}));
}

// Some of them Qt cannot even write down, so that the folder is handed over.
void TestConverting::strangeNames_areConverted()
{
    const QByteArrayList names = {"two words", "Kr\303\244fte \xf0\x9f\x93\x88",
                                  "new\nline", "-dash",
                                  "--width",   "quote'\"",
                                  "Kr\344fte", "percent %1",
                                  "{brace}"};
    for (const QByteArray& name : names)
        QVERIFY(WriteFile(folder->path().toStdString() + "/" + name.toStdString() + ".plf",
                          SmallGraph().toStdString()));
    const Call call = Run("--size 8x8 --output-dir out .");
    QCOMPARE(call.errors, QByteArray());
    QCOMPARE(call.output, QByteArray("9 files: 9 converted, 0 failed\n"));
    for (const QByteArray& name : names)
        QCOMPARE(access((folder->path().toLocal8Bit() + "/out/" + name + ".png").constData(), F_OK),
                 0);
    QCOMPARE(
        Run({Text("--size"), Text("8x8"), Text("--"), Text("-dash.plf"), Text("--x.png")}).code, 0);
    QVERIFY(QFile::exists(Path("--x.png")));
    const Call missing = Run({Text("--"), Text("no\nsuch\x1b.plf"), Text("a.png")});
    QCOMPARE(missing.errors,
             QByteArray("plfconvert: no\\x0asuch\\x1b.plf: No such file or directory\n"));
}

// Names of graphs, of pictures and of options' values.
void TestConverting::hostileNames_areNotObeyed()
{
    const QString name = Text("a\x1b[2J\xc2\x9b\xe2\x80\xae\\");
    const QByteArray visible = "a\\x1b[2J\\xc2\\x9b\\xe2\\x80\\xae\\\\";
    Write(Path("a.plf"), SmallGraph());
    QCOMPARE(Run({name, Text("a.png")}).errors,
             "plfconvert: " + visible + ": No such file or directory\n");
    const QByteArray picture = Run({Text("a.plf"), name + Text("/a.png")}).errors;
    QCOMPARE(picture, "plfconvert: a.plf: " + visible + "/a.png: No such file or directory\n");
    const QByteArray value = Run({Text("--size"), name, Text("a.plf"), Text("a.png")}).errors;
    QVERIFY2(value.startsWith("plfconvert: --size '" + visible + "': "), value.constData());
}

void TestConverting::existingPictures_areReplacedOrLeftAlone()
{
    Write(Path("a.plf"), SmallGraph());
    Write(Path("b.plf"), SmallGraph());
    Write(Path("a.png"), "old");
    const Call kept = Run("--no-clobber --output-dir . a.plf b.plf");
    QCOMPARE(kept.output, QByteArray("2 files: 1 converted, 1 skipped, 0 failed\n"));
    QCOMPARE(kept.code, 0);
    QCOMPARE(ReadFile(Path("a.png")), QByteArray("old"));
    const Call replaced = Run("--output-dir . a.plf b.plf");
    QCOMPARE(replaced.output, QByteArray("2 files: 2 converted, 0 failed\n"));
    QVERIFY(ReadFile(Path("a.png")).startsWith("\x89PNG"));
}

// The worker waits for the standard input when it is killed.
void TestConverting::workerThatIsKilled_costsItsFileAndIsTold()
{
    const EndlessInput input(Path("input").toLocal8Bit());
    QProcess process;
    process.setStandardInputFile(Path("input"));
    Start(&process, {Text("-"), Text("a.png")});
    QTRY_VERIFY_WITH_TIMEOUT(input.IsRead(), kTimeout);
    const QString children = QStringLiteral("/proc/%1/task/%1/children").arg(process.processId());
    const int worker = ReadFile(children).trimmed().toInt();
    QVERIFY(worker > 0);
    QCOMPARE(kill(worker, SIGKILL), 0);
    const Call call = Finish(&process);
    QCOMPARE(call.code, 1);
    QVERIFY2(call.errors.startsWith("plfconvert: standard input: ") &&
                 call.errors.contains("conversion killed by signal 9"),
             call.errors.constData());
    QCOMPARE(Entries(), QStringList(Text("input")));
}

void TestConverting::help_onAFullDisk_isAFailure()
{
    for (const char* option : {"--help", "--version"}) {
        QProcess process;
        process.setStandardOutputFile(Text("/dev/full"));
        Start(&process, {Text(option)});
        QCOMPARE(Finish(&process).code, 1);
    }
}

void TestConverting::count_onAFullDisk_isAFailure()
{
    Write(Path("a.plf"), SmallGraph());
    Write(Path("b.plf"), SmallGraph());
    QProcess process;
    process.setStandardOutputFile(Text("/dev/full"));
    Start(&process, {Text("-d"), Text("out"), Text("a.plf"), Text("b.plf")});
    const Call call = Finish(&process);
    QCOMPARE(call.errors, QByteArray("plfconvert: cannot write output: No space left on device\n"));
    QCOMPARE(call.code, 1);
    QVERIFY(QFile::exists(Path("out/a.png")) && QFile::exists(Path("out/b.png")));
}

void TestConverting::report_onAFullDisk_isToldWhy_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<QByteArray>("message");
    QTest::newRow("the output") << Text("--report json")
                                << QByteArray("cannot write output: No space left on device");
    QTest::newRow("a file") << Text("--report-file /dev/full")
                            << QByteArray("/dev/full: No space left on device");
}

void TestConverting::report_onAFullDisk_isToldWhy()
{
    QFETCH(QString, options);
    QFETCH(QByteArray, message);
    Write(Path("a.plf"), SmallGraph());
    const Call call =
        RunWithFullOutput(options.split(u' ') + QStringList{Text("a.plf"), Text("a.png")});
    QCOMPARE(call.errors, "plfconvert: " + message + '\n');
    QCOMPARE(call.code, 1);
    QVERIFY(QFile::exists(Path("a.png")));
}

void TestConverting::outputThatNobodyReads_endsSilently_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QStringList>("left");
    const QStringList graphs = {Text("a.plf"), Text("b.plf")};
    const QStringList pictures = {Text("a.plf"), Text("a.png"), Text("b.plf"), Text("b.png")};
    for (const char* format : {"png", "jpeg", "svg", "pdf", "eps"})
        QTest::newRow(format) << QStringLiteral("-f %1 a.plf -").arg(Text(format)) << graphs;
    QTest::newRow("count") << Text("-d . a.plf b.plf") << pictures;
    QTest::newRow("report") << Text("-q --report json -d . a.plf b.plf") << pictures;
}

// As every program ends whose reader has seen enough.
void TestConverting::outputThatNobodyReads_endsSilently()
{
    QFETCH(QString, arguments);
    QFETCH(QStringList, left);
    Write(Path("a.plf"), SmallGraph());
    Write(Path("b.plf"), SmallGraph());
    const Call call = RunUnread(arguments);
    QCOMPARE(call.errors, QByteArray());
    QCOMPARE(call.code, kEndedByPipe);
    QCOMPARE(Entries(), left);
}

// It is not the standard output.
void TestConverting::pipeThatNobodyReads_costsOnlyItself()
{
    Write(Path("a.plf"), SmallGraph());
    Write(Path("b.plf"), Sample(Text("walk.plf")));
    Write(Path("c.plf"), SmallGraph());
    QCOMPARE(mkfifo(Path("b.svg").toLocal8Bit().constData(), 0600), 0);
    const int reader =
        open(Path("b.svg").toLocal8Bit().constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    QVERIFY(reader >= 0);
    QProcess process;
    Start(&process, Text("-j 1 -f svg -d . a.plf b.plf c.plf").split(u' '));
    char byte = 0;
    QTRY_VERIFY_WITH_TIMEOUT(read(reader, &byte, 1) == 1, kTimeout);
    close(reader);
    const Call call = Finish(&process);
    QCOMPARE(call.output, QByteArray("3 files: 2 converted, 1 failed\n"));
    QCOMPARE(call.code, 1);
}

void TestConverting::sourceDateThatIsWrong_isCode2_data()
{
    QTest::addColumn<QString>("date");
    for (const char* date :
         {"abc", "-1", "1.5", " 1", "1 ", "253402300800", "99999999999999999999"})
        QTest::newRow(date) << Text(date);
}

void TestConverting::sourceDateThatIsWrong_isCode2()
{
    QFETCH(QString, date);
    Write(Path("a.plf"), SmallGraph());
    environment.insert(Text("SOURCE_DATE_EPOCH"), date);
    const Call call = Run("a.plf a.pdf");
    QCOMPARE(
        call.errors,
        QStringLiteral("plfconvert: SOURCE_DATE_EPOCH '%1': expected a number of seconds since "
                       "1970, at most 253402300799\nTry 'plfconvert --help'.\n")
            .arg(date)
            .toUtf8());
    QCOMPARE(call.code, 2);
    QCOMPARE(Entries(), QStringList(Text("a.plf")));
    QCOMPARE(Run("--help").code, 0);
    for (const char* right : {"0", "253402300799", ""}) {
        environment.insert(Text("SOURCE_DATE_EPOCH"), Text(right));
        ConvertWell("a.plf a.pdf");
    }
}

// The configuration of the fonts' library names no folder.
void TestConverting::fontsThatAreMissing_areToldWhereTextsAre()
{
    Write(Path("fonts.conf"), "<?xml version=\"1.0\"?><!DOCTYPE fontconfig SYSTEM \"fonts.dtd\">"
                              "<fontconfig></fontconfig>");
    environment.insert(Text("FONTCONFIG_FILE"), Path("fonts.conf"));
    Write(Path("lines.plf"), SmallGraph());
    Write(Path("texts.plf"), QByteArray::fromStdString(plf::Start() + plf::Text(9, 9, "a") +
                                                       plf::Text(9, 99, "b") + plf::End()));
    for (const char* format : {"png", "pdf"}) {
        const Call call = Run({Text("-f"), Text(format), Text("-d"), Text("out"), Text("lines.plf"),
                               Text("texts.plf")});
        QCOMPARE(call.errors,
                 QByteArray("plfconvert: texts.plf: no fonts found; texts are drawn as "
                            "boxes\n"));
        QCOMPARE(call.code, 0);
    }
    ConvertWell("texts.plf texts.eps"); // which has no texts
    ConvertWell("texts.plf texts.svg"); // whose texts are there, for readers with fonts
    QVERIFY(ReadFile(Path("texts.svg")).contains(">a</text>"));
}

void TestConverting::timeout_inputThatNeverEnds_costsOnlyItself()
{
    const EndlessInput input(Path("input").toLocal8Bit());
    Write(Path("a.plf"), SmallGraph());
    Write(Path("b.plf"), SmallGraph());
    QProcess process;
    process.setStandardInputFile(Path("input"));
    Start(&process, Text("--timeout 2 -j 1 --output-dir out a.plf - b.plf").split(u' '));
    const Call call = Finish(&process);
    QCOMPARE(call.errors, QByteArray("plfconvert: standard input: took longer than 2 s\n"));
    QCOMPARE(call.output, QByteArray("3 files: 2 converted, 1 failed\n"));
    QCOMPARE(call.code, 1);
    QVERIFY(input.IsRead());
    QCOMPARE(QDir(Path("out")).entryList(kEverything), QStringList({Text("a.png"), Text("b.png")}));
}

// Ten million lines of one byte, each some hundred bytes in the picture.
void TestConverting::timeout_graphThatTakesLong_leavesNothing()
{
    constexpr qsizetype kPairs = 5000000;
    Write(Path("a.plf"), QByteArray::fromStdString(plf::Start() + plf::Move(0, 0)) +
                             QByteArray("AB").repeated(kPairs));
    const Call call = Run("--timeout 1 a.plf a.svg");
    QCOMPARE(call.errors, QByteArray("plfconvert: a.plf: took longer than 1 s\n"));
    QCOMPARE(call.code, 1);
    QCOMPARE(Entries(), QStringList(Text("a.plf")));
}

void TestConverting::timeout_notReached_changesNothing()
{
    Write(Path("a.plf"), Sample(Text("tour.plf")));
    ConvertWell("a.plf a.png");
    // A sanitizer takes more memory than any limit allows.
    ConvertWell(kSanitized ? "--timeout 86400 a.plf b.png"
                           : "--timeout 86400 --memory 1048576 a.plf b.png");
    QCOMPARE(ReadFile(Path("b.png")), ReadFile(Path("a.png")));
}

// Its size is that of the zero bytes after the end, which take no room on the disk.
void TestConverting::memory_graphThatIsTooLarge_costsOnlyItself()
{
    if (kSanitized)
        QSKIP("the sanitizer takes more memory than the limit");
    constexpr qint64 kSize = qint64{400} << 20;
    Write(Path("a.plf"), SmallGraph());
    QFile::copy(Path("a.plf"), Path("large.plf"));
    QVERIFY(QFile::resize(Path("large.plf"), kSize));
    const Call call = Run("--memory 256 --output-dir out large.plf a.plf");
    QVERIFY2(call.errors.startsWith("plfconvert: large.plf: "), call.errors.constData());
    QCOMPARE(call.output, QByteArray("2 files: 1 converted, 1 failed\n"));
    QCOMPARE(QDir(Path("out")).entryList(kEverything), QStringList(Text("a.png")));
}

void TestConverting::interruptedCall_leavesOnlyWholePictures()
{
    const QByteArray graph = Sample(Text("walk.plf"));
    QVERIFY(QDir(folder->path()).mkdir(Text("in")));
    for (int i = 0; i < 1000; ++i)
        Write(Path(QStringLiteral("in/%1.plf").arg(i)), graph);
    QProcess process;
    Start(&process, {Text("--output-dir"), Text("out"), Text("in")});
    QTRY_VERIFY_WITH_TIMEOUT(QDir(Path("out")).count() > 4, kTimeout);
    process.terminate();
    QVERIFY(process.waitForFinished(kTimeout));
    QCOMPARE(process.exitStatus(), QProcess::CrashExit); // by the signal, for a script to see
    const QByteArray count = process.readAllStandardOutput();
    const auto said = QRegularExpression(Text("^interrupted after (\\d+) of 1000 files: "
                                              "\\1 converted, 0 failed\n$"))
                          .match(Text(count));
    QVERIFY2(said.hasMatch(), count.constData());
    const QStringList pictures = QDir(Path("out")).entryList(kEverything);
    QVERIFY(pictures.size() < 1000);
    // A worker may have finished one more that nobody has heard of.
    QVERIFY(pictures.size() >= said.captured(1).toInt());
    for (const QString& picture : pictures) {
        QVERIFY2(!picture.startsWith(u'.'), qPrintable(picture));
        QCOMPARE(QImage(Path(Text("out/") + picture)).size(), kDefaultSize);
    }
}

void TestConverting::terminal_showsAProgressBar_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<int>("columns");
    QTest::addColumn<bool>("isShown");
    QTest::newRow("wide") << Text("xterm") << 120 << true;
    QTest::newRow("narrow") << Text("vt100") << 30 << true;
    QTest::newRow("that cannot take a line back") << Text("dumb") << 80 << false;
    QTest::newRow("unknown") << QString() << 80 << false;
}

// The program "script" gives it a terminal.
void TestConverting::terminal_showsAProgressBar()
{
    QFETCH(QString, kind);
    QFETCH(int, columns);
    for (int i = 0; i < 20; ++i)
        Write(Path(QStringLiteral("%1.plf").arg(i)), SmallGraph());
    environment.insert(Text("TERM"), kind);
    QProcess script;
    script.setWorkingDirectory(folder->path());
    script.setProcessEnvironment(environment);
    const QString command =
        QStringLiteral("stty columns %1; " PLFCONVERT_PROGRAM " -d out .").arg(columns);
    script.start(Text("script"), {Text("-qec"), command, Text("/dev/null")});
    const Call call = Finish(&script);
    QCOMPARE(call.code, 0);
    QTEST(call.output.contains("/20 "), "isShown");
    QTEST(call.output.contains("\033["), "isShown");
    for (const QByteArray& line : call.output.split('\r'))
        QVERIFY2(line.indexOf("\033[K") < columns, line.constData());
    QVERIFY2(call.output.contains("20 files: 20 converted, 0 failed"), call.output.constData());
    QVERIFY(!Run("-d out .").errors.contains('#'));
}

QTEST_MAIN(TestConverting)
#include "test_converting.moc"
