// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The tools when one call after the other fails, and when the disk is full: a picture is the older
// one or the whole new one, and the exit code says which.
#include "tests/converter.h"
#include "tests/faults/fulldisk.h"
#include "tests/faults/sharedplan.h"

#include <QDir>
#include <QtTest>

namespace {

// Less would mean that the library does not see the calls.
constexpr long kFewestCalls = 5;

// A PDF has its time in it.
bool IsWhole(const QByteArray& picture, const QByteArray& expected)
{
    if (!expected.startsWith("%PDF"))
        return picture == expected;
    return picture.size() == expected.size() && picture.startsWith("%PDF") &&
           picture.endsWith("%%EOF\n");
}

} // namespace

class TestToolFaults : public QObject, protected ConverterTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { End(); }

    void picture_anyCallFails_isTheOlderOrTheNewOne_data();
    void picture_anyCallFails_isTheOlderOrTheNewOne();
    void picture_workerIsKilledAtAnyCall_isTheOlderOrTheNewOne();
    void picture_fullDisk_isTheOlderOrTheNewOne_data();
    void picture_fullDisk_isTheOlderOrTheNewOne();
    void differences_anyCallFails_areWholeOrAFailure_data();
    void differences_anyCallFails_areWholeOrAFailure();
    void count_thatCannotBeWritten_isAFailure_data();
    void count_thatCannotBeWritten_isAFailure();
    void help_thatCannotBeWritten_isAFailure();
    void information_anyCallFails_isWholeOrAFailure_data();
    void information_anyCallFails_isWholeOrAFailure();

private:
    Call Run(const char* program, const char* arguments);
    void CheckPicture(const Call& call, const QString& name, const QByteArray& expected);

    SharedPlan shared;
    FaultPlan* plan = shared.Get();
};

static void FaultRows(std::initializer_list<const char*> kinds)
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<int>("fault");
    for (const char* kind : kinds) {
        QTest::addRow("%s, disk error", kind) << Text(kind) << static_cast<int>(Fault::kDiskError);
        QTest::addRow("%s, full disk", kind) << Text(kind) << static_cast<int>(Fault::kFullDisk);
    }
}

void TestToolFaults::init()
{
    QVERIFY(plan != nullptr);
    Begin();
    Write(Path("a.plf"), Sample(Text("resonance.plf")));
}

// With the standard output in the file "out".
Call TestToolFaults::Run(const char* program, const char* arguments)
{
    QProcess process;
    process.setWorkingDirectory(folder->path());
    QProcessEnvironment faulty = environment;
    shared.AddTo(&faulty);
    process.setProcessEnvironment(faulty);
    process.setStandardOutputFile(Path("out"));
    process.start(Text(program), Text(arguments).split(u' '));
    return Finish(&process);
}

// Nothing else is left either. The standard output, though nothing is printed, may be what failed.
void TestToolFaults::CheckPicture(const Call& call, const QString& name, const QByteArray& expected)
{
    const QByteArray picture = ReadFile(Path(name));
    QVERIFY2(picture == "old" || IsWhole(picture, expected), call.errors.constData());
    const bool hasFailed = picture == "old" || call.errors.contains(": cannot write output: ");
    QCOMPARE(call.code, hasFailed ? 1 : 0);
    QCOMPARE(call.errors.isEmpty(), !hasFailed);
    QCOMPARE(QDir(folder->path())
                 .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)
                 .size(),
             3);
}

void TestToolFaults::picture_anyCallFails_isTheOlderOrTheNewOne_data()
{
    FaultRows({"png", "jpg", "svg", "pdf", "eps"});
}

void TestToolFaults::picture_anyCallFails_isTheOlderOrTheNewOne()
{
    QFETCH(QString, kind);
    QFETCH(int, fault);
    const QString name = Text("a.") + kind;
    const QByteArray arguments = "a.plf a." + kind.toUtf8();
    QCOMPARE(Run(PLFCONVERT_PROGRAM, arguments.constData()).code, 0);
    const QByteArray expected = ReadFile(Path(name));
    long call = 0;
    do {
        Write(Path(name), "old");
        plan->Arm(static_cast<Fault>(fault), ++call);
        CheckPicture(Run(PLFCONVERT_PROGRAM, arguments.constData()), name, expected);
    } while (plan->Disarm() && !QTest::currentTestFailed());
    QVERIFY(IsWhole(ReadFile(Path(name)), expected));
    QVERIFY2(call > kFewestCalls, qPrintable(QString::number(call)));
}

// The picture is new if the worker was killed after the last step.
void TestToolFaults::picture_workerIsKilledAtAnyCall_isTheOlderOrTheNewOne()
{
    QCOMPARE(Run(PLFCONVERT_PROGRAM, "a.plf a.png").code, 0);
    const QByteArray expected = ReadFile(Path("a.png"));
    long call = 0;
    do {
        Write(Path("a.png"), "old");
        plan->Arm(Fault::kKill, ++call);
        const Call ended = Run(PLFCONVERT_PROGRAM, "a.plf a.png");
        const QByteArray picture = ReadFile(Path("a.png"));
        QVERIFY(picture == "old" || picture == expected);
        QCOMPARE(ended.code != 0, plan->calls >= call);
        QCOMPARE(
            QDir(folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
            QStringList({Text("a.plf"), Text("a.png"), Text("out")}));
    } while (plan->Disarm());
    QVERIFY(call > kFewestCalls);
}

void TestToolFaults::picture_fullDisk_isTheOlderOrTheNewOne_data()
{
    QTest::addColumn<QString>("format");
    for (const char* format : {"png", "jpg", "svg", "pdf", "eps"})
        QTest::newRow(format) << Text(format);
}

// The disk has more and more room, until it is enough.
void TestToolFaults::picture_fullDisk_isTheOlderOrTheNewOne()
{
    QFETCH(QString, format);
    const QByteArray arguments = "a.plf disk/a." + format.toUtf8();
    const QString name = Text("disk/a.") + format;
    QVERIFY(QDir(folder->path()).mkdir(Text("disk")));
    QCOMPARE(Run(PLFCONVERT_PROGRAM, arguments.constData()).code, 0);
    const QByteArray expected = ReadFile(Path(name));
    const FullDisk disk(Path("disk").toStdString());
    if (!disk.IsThere())
        QSKIP("Only root can mount a disk.");
    Write(Path(name), "old");
    unsigned long room = 0;
    do {
        QVERIFY(disk.LeaveFree(room));
        const Call call = Run(PLFCONVERT_PROGRAM, arguments.constData());
        CheckPicture(call, name, expected);
        QCOMPARE(call.errors.isEmpty(), !call.errors.endsWith(": No space left on device\n"));
        QCOMPARE(QDir(Path("disk")).entryList(QDir::Files | QDir::Hidden).size(), 1);
        room = room * 2 + 1;
    } while (ReadFile(Path(name)) == "old" && !QTest::currentTestFailed());
    QVERIFY(room > 1);
}

void TestToolFaults::differences_anyCallFails_areWholeOrAFailure_data()
{
    FaultRows({"png", "svg", "pdf"});
}

// The picture, and what is printed.
void TestToolFaults::differences_anyCallFails_areWholeOrAFailure()
{
    QFETCH(QString, kind);
    QFETCH(int, fault);
    const QString name = Text("d.") + kind;
    const QByteArray arguments = "a.plf /dev/null -o d." + kind.toUtf8();
    constexpr int kDifferent = 1;
    constexpr int kTrouble = 2;
    QCOMPARE(Run(PLFDIFF_PROGRAM, arguments.constData()).code, kDifferent);
    const QByteArray expected = ReadFile(Path(name));
    const QByteArray report = ReadFile(Path("out"));
    long call = 0;
    do {
        Write(Path(name), "old");
        plan->Arm(static_cast<Fault>(fault), ++call);
        const Call ended = Run(PLFDIFF_PROGRAM, arguments.constData());
        const QByteArray picture = ReadFile(Path(name));
        QVERIFY2(picture == "old" || IsWhole(picture, expected), ended.errors.constData());
        const bool isDone = picture != "old" && ReadFile(Path("out")) == report;
        QVERIFY2(isDone || ended.code == kTrouble, ended.errors.constData());
        QCOMPARE(ended.code, ended.errors.isEmpty() ? kDifferent : kTrouble);
        QCOMPARE(QDir(folder->path()).entryList(QDir::Files | QDir::Hidden).size(), 3);
    } while (plan->Disarm() && !QTest::currentTestFailed());
    QVERIFY2(call > kFewestCalls, qPrintable(QString::number(call)));
}

void TestToolFaults::count_thatCannotBeWritten_isAFailure_data()
{
    FaultRows({"count"});
}

void TestToolFaults::count_thatCannotBeWritten_isAFailure()
{
    QFETCH(int, fault);
    Write(Path("b.plf"), SmallGraph());
    const QByteArray expected = "2 files: 2 converted, 0 failed\n";
    int lost = 0;
    long call = 0;
    do {
        plan->Arm(static_cast<Fault>(fault), ++call);
        const Call ended = Run(PLFCONVERT_PROGRAM, "-d pictures --size 8x8 a.plf b.plf");
        const bool isPrinted = ReadFile(Path("out")) == expected;
        if (!isPrinted || !ended.errors.isEmpty())
            QCOMPARE(ended.code, 1);
        else
            QCOMPARE(ended.code, 0);
        lost += ended.errors.contains("plfconvert: cannot write output: ") ? 1 : 0;
    } while (plan->Disarm() && !QTest::currentTestFailed());
    QVERIFY(lost > 0);
}

void TestToolFaults::help_thatCannotBeWritten_isAFailure()
{
    for (const auto& [program, code] :
         {std::pair(PLFCONVERT_PROGRAM, 1), {PLFINFO_PROGRAM, 1}, {PLFDIFF_PROGRAM, 2}}) {
        plan->Arm(Fault::kFullDisk, 1);
        const Call call = Run(program, "--help");
        QVERIFY(plan->Disarm());
        QCOMPARE(call.code, code);
        QVERIFY(call.errors.endsWith(": cannot write output: No space left on device\n"));
    }
}

void TestToolFaults::information_anyCallFails_isWholeOrAFailure_data()
{
    FaultRows({"a.plf", "--json a.plf", "--dump a.plf"});
}

void TestToolFaults::information_anyCallFails_isWholeOrAFailure()
{
    QFETCH(QString, kind);
    QFETCH(int, fault);
    const QByteArray arguments = kind.toUtf8();
    QCOMPARE(Run(PLFINFO_PROGRAM, arguments.constData()).code, 0);
    const QByteArray expected = ReadFile(Path("out"));
    long call = 0;
    do {
        plan->Arm(static_cast<Fault>(fault), ++call);
        const Call ended = Run(PLFINFO_PROGRAM, arguments.constData());
        const bool hasFailed = plan->calls >= call;
        QCOMPARE(ended.code, hasFailed ? 1 : 0);
        QCOMPARE(ended.errors.startsWith("plfinfo: cannot write output: "), hasFailed);
        QVERIFY(hasFailed || ReadFile(Path("out")) == expected);
    } while (plan->Disarm());
    QVERIFY(call > 1);
}

QTEST_GUILESS_MAIN(TestToolFaults)
#include "test_toolfaults.moc"
