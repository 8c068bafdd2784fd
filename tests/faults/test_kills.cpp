// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The converter and the viewer are killed, at each of the calls that write and at random: a file is
// the older one or the whole new one.
#include "tests/faults/sharedplan.h"
#include "tests/kit/plf.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QRandomGenerator>
#include <QtTest>

#include <unistd.h>

#include <csignal>
#include <optional>

namespace {

constexpr int kTimeout = 120000; // milliseconds; sanitizers on a busy machine are slow
constexpr quint32 kSeed = 1;
constexpr int kKills = 100;      // of each program
constexpr long kFewestCalls = 5; // less would mean that the library does not see them
constexpr char kOlder[] = "the older file";

// Takes the viewer some milliseconds to write.
QByteArray LargeGraph()
{
    constexpr int kLines = 20000;
    std::string graph = plf::Start();
    for (int i = 0; i < kLines; ++i)
        graph += plf::Line(i % 4096, 0, 4095 - i % 4096, 3119);
    return QByteArray::fromStdString(graph + plf::End());
}

// A program and its children, which are all killed together.
class Group
{
public:
    Group(const QString& folder, const QProcessEnvironment& environment)
    {
        process.setWorkingDirectory(folder);
        process.setProcessEnvironment(environment);
        process.setChildProcessModifier([] { setsid(); });
    }
    ~Group() { Kill(); }
    Group(const Group&) = delete;
    Group& operator=(const Group&) = delete;

    void Start(const char* program, const QStringList& arguments)
    {
        process.start(Text(program), arguments);
        QVERIFY(process.waitForStarted());
        group = static_cast<pid_t>(process.processId());
    }
    /// @return whether it has ended by then
    bool WaitFor(int milliseconds) { return process.waitForFinished(milliseconds); }
    void Kill()
    {
        if (group > 0)
            kill(-group, SIGKILL);
        group = 0;
        process.waitForFinished(kTimeout);
    }

private:
    QProcess process;
    pid_t group = 0;
};

} // namespace

class TestKills : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void converter_killedAtAnyCall_leavesWholeFiles();
    void converter_killedAtRandom_leavesWholeFiles();
    void viewer_killedAtAnyCall_leavesWholeFiles();
    void viewer_killedAtRandom_leavesWholeFiles();

private:
    [[nodiscard]] QString Path(const QString& name) const { return folder->filePath(name); }
    [[nodiscard]] QStringList Pictures() const
    {
        return QDir(Path(Text("out"))).entryList(QDir::Files);
    }
    // Writes an older file under the name of each picture.
    void MakeOlder();
    void CheckPictures();
    // Counts the hidden files that are left, and removes them.
    int TakeLeftovers();
    [[nodiscard]] bool IsNew(const QString& picture) const
    {
        return ReadFile(Path(Text("out/") + picture)) == expected[picture];
    }
    void KeepAsExpected();
    struct Program {
        const char* name;
        QStringList arguments;
    };
    void KillAtEachCall(const Program& program, const QString& picture);
    void KillAtRandom(const Program& program, int first, int last);
    // Keeps the pictures as the expected ones. Returns the milliseconds.
    int RunUntilAllIsThere(const Program& program, const QStringList& pictures);

    SharedPlan shared;
    FaultPlan* plan = shared.Get();
    std::optional<QTemporaryDir> folder;
    QProcessEnvironment environment;
    QMap<QString, QByteArray> expected; // the pictures
    const Program viewer = {PLOTVW_PROGRAM, {Text("-c=2"), Text("-cf=out/large"), Text("large")}};
};

void TestKills::init()
{
    QVERIFY(plan != nullptr);
    plan->Disarm();
    folder.emplace();
    QVERIFY(folder->isValid() && QDir(folder->path()).mkdir(Text("out")));
    QVERIFY(WriteFile(Path(Text("large")), LargeGraph()));
    environment = QProcessEnvironment::systemEnvironment();
    environment.insert(Text("HOME"), folder->path());
    environment.insert(Text("CUPS_SERVER"), Text("/nonexistent"));
    shared.AddTo(&environment);
}

void TestKills::KeepAsExpected()
{
    expected.clear();
    for (const QString& picture : Pictures())
        expected[picture] = ReadFile(Path(Text("out/") + picture));
    QVERIFY(!expected.isEmpty());
}

void TestKills::MakeOlder()
{
    for (const QString& picture : expected.keys())
        QVERIFY(WriteFile(Path(Text("out/") + picture), kOlder));
}

void TestKills::CheckPictures()
{
    QCOMPARE(Pictures(), QStringList(expected.keys()));
    for (const QString& picture : expected.keys())
        QVERIFY2(IsNew(picture) || ReadFile(Path(Text("out/") + picture)) == kOlder,
                 qPrintable(picture));
}

int TestKills::TakeLeftovers()
{
    QDir out(Path(Text("out")));
    int count = 0;
    for (const QString& name : out.entryList({Text(".*")}, QDir::Files | QDir::Hidden))
        count += out.remove(name) ? 1 : 0;
    return count;
}

// Only between two of the calls is the new file there under its hidden name.
void TestKills::KillAtEachCall(const Program& program, const QString& picture)
{
    RunUntilAllIsThere(program, {picture});
    int leftovers = 0;
    long call = 0;
    do {
        MakeOlder();
        plan->Arm(Fault::kKillGroup, ++call);
        Group group(folder->path(), environment);
        group.Start(program.name, program.arguments);
        const QDeadlineTimer deadline(kTimeout);
        while (!group.WaitFor(1) && !IsNew(picture) && !deadline.hasExpired()) {
        }
        CheckPictures();
        leftovers += TakeLeftovers();
    } while (plan->Disarm() && !QTest::currentTestFailed());
    QVERIFY(IsNew(picture));
    QVERIFY(call > kFewestCalls);
    QVERIFY2(leftovers <= 1, qPrintable(QString::number(leftovers)));
}

// Between two moments, in milliseconds since the start.
void TestKills::KillAtRandom(const Program& program, int first, int last)
{
    QRandomGenerator random(kSeed);
    int leftovers = 0;
    for (int i = 0; i < kKills && !QTest::currentTestFailed(); ++i) {
        MakeOlder();
        Group group(folder->path(), environment);
        group.Start(program.name, program.arguments);
        group.WaitFor(random.bounded(first, last + 1));
        group.Kill();
        CheckPictures();
        leftovers += TakeLeftovers();
    }
    qInfo("%d hidden files were left", leftovers);
}

int TestKills::RunUntilAllIsThere(const Program& program, const QStringList& pictures)
{
    QElapsedTimer time;
    time.start();
    Group group(folder->path(), environment);
    group.Start(program.name, program.arguments);
    while (Pictures() != pictures && time.elapsed() < kTimeout)
        group.WaitFor(1);
    KeepAsExpected();
    return static_cast<int>(time.elapsed());
}

void TestKills::converter_killedAtAnyCall_leavesWholeFiles()
{
    KillAtEachCall({PLFCONVERT_PROGRAM, {Text("large"), Text("out/large.png")}}, Text("large.png"));
}

void TestKills::converter_killedAtRandom_leavesWholeFiles()
{
    QStringList pictures = QDir(Text(PLOTVW_SAMPLES)).entryList({Text("*.plf")});
    pictures.replaceInStrings(Text(".plf"), Text(".png"));
    const Program program = {PLFCONVERT_PROGRAM,
                             {Text("-q"), Text("-d"), Text("out"), Text(PLOTVW_SAMPLES)}};
    KillAtRandom(program, 0, RunUntilAllIsThere(program, pictures));
}

void TestKills::viewer_killedAtAnyCall_leavesWholeFiles()
{
    KillAtEachCall(viewer, Text("large.eps"));
}

// In the second half, when the window is there and the file is written.
void TestKills::viewer_killedAtRandom_leavesWholeFiles()
{
    const int duration = RunUntilAllIsThere(viewer, {Text("large.eps")});
    KillAtRandom(viewer, duration / 2, duration);
}

QTEST_GUILESS_MAIN(TestKills)
#include "test_kills.moc"
