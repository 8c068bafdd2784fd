// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The viewer's files when one call after the other fails, and when the disk is full: each is the
// older one or the whole new one. What the user is told is fixed, and not always the truth.
#include "support/settings.h"
#include "tests/faults/faultplan.h"
#include "tests/faults/fulldisk.h"
#include "tests/kit/exporting.h"

using fixture::Box;
using fixture::Dialogs;
using fixture::TypeNewName;
using fixture::Window;

namespace {

// Less would mean that the library does not see the calls.
constexpr long kFewestCalls = 5;

constexpr char kOlder[] = "the older file";

const char* NameOf(Fault fault)
{
    return fault == Fault::kDiskError ? "disk error" : "full disk";
}

} // namespace

class TestViewerFaults : public QObject, protected fixture::ExportTest
{
    Q_OBJECT

private slots:
    void initTestCase() { HidePrinters(); }
    void init();
    void cleanup() { End(); }

    void file_anyCallFails_isTheOlderOrTheNewOne_data();
    void file_anyCallFails_isTheOlderOrTheNewOne();
    void file_fullDisk_isTheOlderOrTheNewOne_data();
    void file_fullDisk_isTheOlderOrTheNewOne();
    void copy_underARefusedName_isReported_data();
    void copy_underARefusedName_isReported();

private:
    // Each writes a file in the folder "disk", with the plan armed, and returns whether the program
    // reported a failure.
    bool Copy();
    bool ExportJob(int job);
    bool SaveSettings();

    struct Saving {
        const char* name;
        const char* file;
        bool (*run)(TestViewerFaults& test);
        // Whether a report is right, for a file that is the older one or not.
        bool (*isRight)(bool isReported, bool isOlder);
    };
    static const Saving kSavings[];
    static void AddRows(std::initializer_list<Fault> faults);

    [[nodiscard]] QByteArray FileOf(const Saving& saving) const
    {
        return ReadFile(Path("disk/") + saving.file);
    }
    // Over the older file; checks what is left.
    void Run(const Saving& saving);

    FaultPlan* plan = CurrentFaultPlan();
    Fault armedFault = Fault::kNone;
    long armedCall = 0;
    Window* window = nullptr;
    QByteArray expected;
};

// A copy is said to be saved, whatever happens once it is opened, and an EPS export says nothing.
const TestViewerFaults::Saving TestViewerFaults::kSavings[] = {
    {"copy", "a.plf", [](TestViewerFaults& test) { return test.Copy(); },
     [](bool isReported, bool isOlder) { return isOlder || !isReported; }},
    {"JPEG", "a.jpg", [](TestViewerFaults& test) { return test.ExportJob(kJobJpeg); },
     [](bool isReported, bool isOlder) { return isReported == isOlder; }},
    {"EPS", "a.eps", [](TestViewerFaults& test) { return test.ExportJob(kJobEps); },
     [](bool isReported, bool /*isOlder*/) { return !isReported; }},
    {"settings", ".plotvwsettings", [](TestViewerFaults& test) { return test.SaveSettings(); },
     [](bool isReported, bool isOlder) { return isReported == isOlder; }},
};

void TestViewerFaults::init()
{
    Begin();
    armedFault = Fault::kNone;
    QVERIFY(QDir().mkpath(Text(Path("disk"))));
    QVERIFY(CopyText(gszHomedir, Path("disk").c_str()));
    QVERIFY(CopyText(gszCvtFilenameBase, Path("disk/a").c_str()));
}

bool TestViewerFaults::Copy()
{
    Box box;
    dialogs->Expect<QFileDialog>([this](QFileDialog& dialog) {
        TypeNewName(dialog, Path("disk/a.plf"));
        plan->Arm(armedFault, armedCall);
    });
    fixture::ExpectBox(*dialogs, box);
    Choose(*window, fixture::kSave.item);
    return box.shown > 0;
}

bool TestViewerFaults::ExportJob(int job)
{
    Box box;
    fixture::ExpectBox(*dialogs, box);
    giCmdArg = job;
    plan->Arm(armedFault, armedCall);
    gpDraw->PostCmdargDone(0);
    return box.shown > 0;
}

bool TestViewerFaults::SaveSettings()
{
    plan->Arm(armedFault, armedCall);
    return WriteSettingsFile() != 0;
}

void TestViewerFaults::Run(const Saving& saving)
{
    dialogs = std::make_unique<Dialogs>();
    const bool isReported = saving.run(*this);
    const bool isOlder = FileOf(saving) == kOlder;
    QVERIFY(isOlder || FileOf(saving) == expected);
    QVERIFY(saving.isRight(isReported, isOlder));
    QCOMPARE(dialogs->Strangers(), QStringList());
    QCOMPARE(fixture::FilesIn(Path("disk")), QStringList(Text(saving.file)));
    dialogs = std::make_unique<Dialogs>();
}

void TestViewerFaults::AddRows(std::initializer_list<Fault> faults)
{
    QTest::addColumn<int>("saving");
    QTest::addColumn<int>("fault");
    for (size_t i = 0; i < std::size(kSavings); ++i) {
        for (const Fault fault : faults)
            QTest::addRow("%s, %s", kSavings[i].name, NameOf(fault))
                << static_cast<int>(i) << static_cast<int>(fault);
    }
}

void TestViewerFaults::file_anyCallFails_isTheOlderOrTheNewOne_data()
{
    AddRows({Fault::kDiskError, Fault::kFullDisk});
}

void TestViewerFaults::file_anyCallFails_isTheOlderOrTheNewOne()
{
    QFETCH(int, saving);
    QFETCH(int, fault);
    const Saving& kind = kSavings[saving];
    Window shown;
    Open(shown);
    window = &shown;
    kind.run(*this);
    expected = FileOf(kind);
    armedFault = static_cast<Fault>(fault);
    armedCall = 0;
    do {
        ++armedCall;
        directories->Write(std::string("disk/") + kind.file, kOlder);
        Run(kind);
    } while (plan->Disarm() && !QTest::currentTestFailed());
    QCOMPARE(FileOf(kind), expected);
    QVERIFY2(armedCall > kFewestCalls, qPrintable(QString::number(armedCall)));
}

void TestViewerFaults::file_fullDisk_isTheOlderOrTheNewOne_data()
{
    AddRows({Fault::kNone});
}

// The disk has more and more room, until it is enough.
void TestViewerFaults::file_fullDisk_isTheOlderOrTheNewOne()
{
    QFETCH(int, saving);
    const Saving& kind = kSavings[saving];
    Window shown;
    window = &shown;
    window->AddViewOf(directories->Write("big.plf", plf::Header() + fixture::Bytes(100000)));
    kind.run(*this);
    expected = FileOf(kind);
    const FullDisk disk(Path("disk"));
    if (!disk.IsThere())
        QSKIP("Only root can mount a disk.");
    directories->Write(std::string("disk/") + kind.file, kOlder);
    unsigned long room = 0;
    do {
        QVERIFY(disk.LeaveFree(room));
        Run(kind);
        room = room * 2 + 1;
    } while (FileOf(kind) == kOlder && !QTest::currentTestFailed());
    QVERIFY(room > 1);
}

void TestViewerFaults::copy_underARefusedName_isReported_data()
{
    QTest::addColumn<bool>("overOlder");
    QTest::newRow("new") << false;
    QTest::newRow("over an older file") << true;
}

// As on a disk that takes fewer letters in names than most.
void TestViewerFaults::copy_underARefusedName_isReported()
{
    QFETCH(bool, overOlder);
    Window shown;
    Open(shown);
    window = &shown;
    if (overOlder)
        directories->Write("disk/a.plf", kOlder);
    armedFault = Fault::kNoName;
    QVERIFY(Copy());
    QVERIFY(plan->calls > 0);
    plan->Disarm();
    QVERIFY(!fixture::Status(shown).contains(QStringLiteral("saved")));
    QCOMPARE(fixture::FilesIn(Path("disk")),
             overOlder ? QStringList(QStringLiteral("a.plf")) : QStringList());
    QVERIFY(!overOlder || ReadFile(Path("disk/a.plf")) == kOlder);
}

QTEST_MAIN(TestViewerFaults)
#include "test_viewerfaults.moc"
