// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The programs as a caller starts them that has closed standard input, output or error, or has no
// room for what they print.
#include "tests/kit/files.h"
#include "tests/kit/plf.h"

#include <QFile>
#include <QList>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

#include <optional>

namespace {

constexpr int kTimeout = 20'000; // milliseconds; sanitizers on a busy machine are slow

const QList<QList<int>> kClosedSets = {
    {STDIN_FILENO}, {STDOUT_FILENO}, {STDERR_FILENO}, {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}};

QByteArray NameOf(const QList<int>& streams)
{
    QByteArray name;
    for (const int stream : streams)
        name += QByteArray::number(stream);
    return name;
}

} // namespace

class TestStreams : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void closedStream_isNoDescriptorOfTheProgram_data();
    void closedStream_isNoDescriptorOfTheProgram();
    void closedInput_cannotBeRead_data();
    void closedInput_cannotBeRead();
    void closedStreams_changeNoPicture_data();
    void closedStreams_changeNoPicture();
    void closedOutput_isAFailure_data();
    void closedOutput_isAFailure();
    void fullOutput_isAFailure_data();
    void fullOutput_isAFailure();

private:
    void Start(const QString& program, const QStringList& arguments, const QList<int>& closed);
    [[nodiscard]] int AwaitEnd();
    [[nodiscard]] QString Target(int stream) const;

    std::optional<QTemporaryDir> folder;
    std::optional<QProcess> process;
};

void TestStreams::init()
{
    folder.emplace();
    QVERIFY(folder->isValid());
    QVERIFY(WriteFile(folder->filePath(Text("graph.plf")), plf::Diagonal()));
    process.emplace();
}

void TestStreams::cleanup()
{
    if (process->state() != QProcess::NotRunning) {
        process->kill();
        process->waitForFinished();
    }
}

void TestStreams::Start(const QString& program, const QStringList& arguments,
                        const QList<int>& closed)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(Text("HOME"), folder->path());
    environment.insert(Text("TMPDIR"), folder->path());
    process->setProcessEnvironment(environment);
    process->setWorkingDirectory(folder->path());
    process->setChildProcessModifier([closed] {
        for (const int stream : closed)
            close(stream);
    });
    process->start(program, arguments);
    QVERIFY(process->waitForStarted());
}

// The exit code, or -1 if it did not end by itself.
int TestStreams::AwaitEnd()
{
    const bool ended = process->waitForFinished(kTimeout);
    return ended && process->exitStatus() == QProcess::NormalExit ? process->exitCode() : -1;
}

// What a stream of the process leads to; empty if it is closed.
QString TestStreams::Target(int stream) const
{
    return QFile::symLinkTarget(
        QStringLiteral("/proc/%1/fd/%2").arg(process->processId()).arg(stream));
}

void TestStreams::closedStream_isNoDescriptorOfTheProgram_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QList<int>>("closed");
    for (const QList<int>& closed : kClosedSets) {
        const QByteArray name = NameOf(closed);
        QTest::newRow("plotvw " + name)
            << Text(PLOTVW_PROGRAM) << QStringList{Text("graph.plf")} << closed;
        QTest::newRow("krvhost " + name)
            << Text(KRVHOST_PROGRAM) << QStringList{Text("--no-start")} << closed;
        if (closed.contains(STDIN_FILENO))
            continue; // these wait for nothing else
        QTest::newRow("plfconvert " + name)
            << Text(PLFCONVERT_PROGRAM) << QStringList{Text("-"), Text("a.png")} << closed;
        QTest::newRow("plfinfo " + name)
            << Text(PLFINFO_PROGRAM) << QStringList{Text("-")} << closed;
        QTest::newRow("plfdiff " + name)
            << Text(PLFDIFF_PROGRAM) << QStringList{Text("graph.plf"), Text("-")} << closed;
    }
}

// While the program waits: for its user, a viewer or its input.
void TestStreams::closedStream_isNoDescriptorOfTheProgram()
{
    QFETCH(QString, program);
    QFETCH(QStringList, arguments);
    QFETCH(QList<int>, closed);
    Start(program, arguments, closed);
    for (const int stream : closed)
        QTRY_COMPARE_WITH_TIMEOUT(Target(stream), Text("/dev/null"), kTimeout);
    QCOMPARE(process->state(), QProcess::Running);
}

void TestStreams::closedInput_cannotBeRead_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("message");
    QTest::addColumn<int>("code");
    QTest::newRow("plfconvert") << Text(PLFCONVERT_PROGRAM) << QStringList{Text("-"), Text("a.png")}
                                << QByteArray("plfconvert: standard input: ") << 1;
    QTest::newRow("plfinfo") << Text(PLFINFO_PROGRAM) << QStringList{Text("-")}
                             << QByteArray("plfinfo: -: ") << 1;
    QTest::newRow("plfdiff") << Text(PLFDIFF_PROGRAM) << QStringList{Text("graph.plf"), Text("-")}
                             << QByteArray("plfdiff: -: ") << 2;
}

// What a program opens itself is not taken for its input.
void TestStreams::closedInput_cannotBeRead()
{
    QFETCH(QString, program);
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, message);
    Start(program, arguments, {STDIN_FILENO});
    QTEST(AwaitEnd(), "code");
    const QByteArray errors = process->readAllStandardError();
    QVERIFY2(errors.startsWith(message), errors.constData());
}

void TestStreams::closedStreams_changeNoPicture_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QList<int>>("closed");
    for (const QList<int>& closed : kClosedSets) {
        QTest::newRow("plfconvert " + NameOf(closed))
            << Text(PLFCONVERT_PROGRAM) << QStringList{Text("graph.plf"), Text("a.png")} << closed;
        QTest::newRow("plfdiff " + NameOf(closed))
            << Text(PLFDIFF_PROGRAM)
            << QStringList{Text("graph.plf"), Text("graph.plf"), Text("-o"), Text("a.png")}
            << closed;
    }
}

void TestStreams::closedStreams_changeNoPicture()
{
    QFETCH(QString, program);
    QFETCH(QStringList, arguments);
    QFETCH(QList<int>, closed);
    Start(program, arguments, {});
    QCOMPARE(AwaitEnd(), 0);
    const QByteArray expected = ReadFile(folder->filePath(Text("a.png")));
    QVERIFY(expected.startsWith("\x89PNG"));
    QVERIFY(QFile::remove(folder->filePath(Text("a.png"))));
    process.emplace();
    Start(program, arguments, closed);
    QCOMPARE(AwaitEnd(), 0);
    QCOMPARE(ReadFile(folder->filePath(Text("a.png"))), expected);
}

void TestStreams::closedOutput_isAFailure_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("message");
    QTest::addColumn<int>("code");
    QTest::newRow("plfinfo") << Text(PLFINFO_PROGRAM) << QStringList{Text("graph.plf")}
                             << QByteArray("plfinfo: cannot write output: ") << 1;
    QTest::newRow("plfdiff") << Text(PLFDIFF_PROGRAM)
                             << QStringList{Text("graph.plf"), Text("/dev/null")}
                             << QByteArray("plfdiff: cannot write output: ") << 2;
}

void TestStreams::closedOutput_isAFailure()
{
    QFETCH(QString, program);
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, message);
    Start(program, arguments, {STDOUT_FILENO});
    QTEST(AwaitEnd(), "code");
    const QByteArray errors = process->readAllStandardError();
    QVERIFY2(errors.startsWith(message), errors.constData());
}

void TestStreams::fullOutput_isAFailure_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<int>("code");
    const auto row = [](const char* name, const char* program, const QStringList& arguments,
                        int code = 1) {
        QTest::addRow("%s %s", name, qPrintable(arguments.first()))
            << Text(program) << arguments << QByteArray(name) << code;
    };
    for (const char* option : {"--help", "--version"}) {
        row("plfconvert", PLFCONVERT_PROGRAM, {Text(option)});
        row("plfinfo", PLFINFO_PROGRAM, {Text(option)});
        row("krvhost", KRVHOST_PROGRAM, {Text(option)});
        row("plfdiff", PLFDIFF_PROGRAM, {Text(option)}, 2); // whose 1 is a difference
    }
    row("plfinfo", PLFINFO_PROGRAM, {Text("graph.plf")});
    row("krvhost", KRVHOST_PROGRAM, {Text("--viewer"), Text(PLOTVW_PROGRAM), Text("graph.plf")});
}

void TestStreams::fullOutput_isAFailure()
{
    QFETCH(QString, program);
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, name);
    QFETCH(int, code);
    process->setStandardOutputFile(Text("/dev/full"));
    Start(program, arguments, {});
    QCOMPARE(AwaitEnd(), code);
    const QByteArray errors = process->readAllStandardError();
    QVERIFY2(errors.contains(name + ": cannot write output: "), errors.constData());
}

QTEST_MAIN(TestStreams)

#include "test_streams.moc"
