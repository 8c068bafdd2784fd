// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Saving a copy of the graph.
#include "meta/plfbuffer.h"
#include "tests/kit/exporting.h"

#include <QFileDialog>

#include <sys/fsuid.h>
#include <sys/stat.h>
#include <unistd.h>

using fixture::Box;
using fixture::Bytes;
using fixture::ExportGraph;
using fixture::FilesIn;
using fixture::kSave;
using fixture::Status;
using fixture::TypeNewName;
using fixture::Window;

namespace {

constexpr int kSaveStatusTime = 5000; // milliseconds that the status bar tells of a copy
constexpr int kPatience = 20000;      // milliseconds until a test gives up

} // namespace

class TestSaveAs : public QObject, protected fixture::ExportTest
{
    Q_OBJECT

private slots:
    void initTestCase() { HidePrinters(); }
    void init() { Begin(); }
    void cleanup() { End(); }

    void saveAs_name_getsTheExtension_data();
    void saveAs_name_getsTheExtension();
    void saveAs_copy_hasTheBytesOfTheFile_data();
    void saveAs_copy_hasTheBytesOfTheFile();
    void saveAs_changedFileOnDisk_copiesWhatWasRead();
    void saveAs_overTheLoadedFile_keepsIt();
    void saveAs_ctrlS_asks();
    void saveAs_saysSavedForFiveSeconds();
    void saveAs_nothingLoaded_saysSoForFiveSeconds();
    void saveAs_afterAFailedLoad_hasNothingToSave();
    void saveAs_unwritableTarget_isReported_data();
    void saveAs_unwritableTarget_isReported();
    void saveAs_nameWithMarkup_isShownAsItIs();
    void saveAs_folderWithoutPermission_isReported();
    void saveAs_fullDisk_isNotReported();
    void saveAs_linkedFile_writesItsTarget();
    void saveAs_graphReplacedMeanwhile_copiesTheNewOne();
    void saveAs_graphDroppedMeanwhile_writesNothing();

private:
    void CheckSaveError(const Window& window, const std::string& name, const std::string& told);
};

void TestSaveAs::saveAs_name_getsTheExtension_data()
{
    QTest::addColumn<QByteArray>("typed");
    QTest::addColumn<QByteArray>("written");
    QTest::newRow("none") << QByteArray("copy") << QByteArray("copy.plf");
    QTest::newRow("its own") << QByteArray("copy.plf") << QByteArray("copy.plf");
    QTest::newRow("another") << QByteArray("copy.bak") << QByteArray("copy.bak");
    QTest::newRow("capitals") << QByteArray("copy.PLF") << QByteArray("copy.PLF");
    QTest::newRow("hidden") << QByteArray(".copy") << QByteArray(".copy");
}

void TestSaveAs::saveAs_name_getsTheExtension()
{
    QFETCH(QByteArray, typed);
    QFETCH(QByteArray, written);
    Window window;
    Open(window);
    SaveAs(window, Path("work/") + typed.toStdString());
    QCOMPARE(FilesIn(Path("work")), QStringList(QString::fromLatin1(written)));
    QCOMPARE(ReadFile(Path("work/") + written.toStdString()),
             QByteArray::fromStdString(ExportGraph()));
}

void TestSaveAs::saveAs_copy_hasTheBytesOfTheFile_data()
{
    QTest::addColumn<int>("size");
    QTest::newRow("the header alone") << 0;
    QTest::newRow("small") << 1000;
    QTest::newRow("large") << 5'000'000;
}

void TestSaveAs::saveAs_copy_hasTheBytesOfTheFile()
{
    QFETCH(int, size);
    const std::string bytes = plf::Header() + Bytes(static_cast<size_t>(size));
    Window window;
    window.AddViewOf(directories->Write("bytes.plf", bytes));
    SaveAs(window, Path("copy"));
    QVERIFY(ReadFile(Path("copy.plf")) == QByteArray::fromStdString(bytes));
}

void TestSaveAs::saveAs_changedFileOnDisk_copiesWhatWasRead()
{
    Window window;
    Open(window);
    directories->Write("a.plf", "something else");
    SaveAs(window, Path("copy"));
    QCOMPARE(ReadFile(Path("copy.plf")), QByteArray::fromStdString(ExportGraph()));
}

void TestSaveAs::saveAs_overTheLoadedFile_keepsIt()
{
    Window window;
    Open(window);
    SaveAs(window, Path("a")); // a.plf is the loaded file
    QCOMPARE(ReadFile(Path("a.plf")), QByteArray::fromStdString(ExportGraph()));
}

void TestSaveAs::saveAs_ctrlS_asks()
{
    Window window;
    Open(window);
    const std::string copy = Path("copy");
    dialogs->Expect<QFileDialog>([copy](QFileDialog& dialog) { TypeNewName(dialog, copy); });
    QTest::keyClick(window.Get(), Qt::Key_S, Qt::ControlModifier);
    QTRY_VERIFY_WITH_TIMEOUT(Exists(Path("copy.plf")), kPatience);
}

void TestSaveAs::saveAs_saysSavedForFiveSeconds()
{
    Window window;
    Open(window);
    SaveAs(window, Path("copy"));
    QCOMPARE(Status(window), Text(Path("copy.plf")) + QStringLiteral(" saved."));
    QCOMPARE(fixture::StatusTime(window), kSaveStatusTime);
    fixture::EndStatusTime(window);
    QCOMPARE(Status(window), QString());
}

void TestSaveAs::saveAs_nothingLoaded_saysSoForFiveSeconds()
{
    Window window;
    OpenEmpty(window);
    Choose(window, kSave.item);
    QCOMPARE(Status(window), QStringLiteral("Nothing to save"));
    QCOMPARE(fixture::StatusTime(window), kSaveStatusTime);
    fixture::EndStatusTime(window);
    QCOMPARE(Status(window), QString());
}

void TestSaveAs::saveAs_afterAFailedLoad_hasNothingToSave()
{
    Window window;
    Open(window);
    Box box;
    fixture::ExpectBox(*dialogs, box);
    window->load(Text(Path("none.plf")));
    Choose(window, kSave.item);
    QCOMPARE(Status(window), QStringLiteral("Nothing to save"));
}

// Saves under a name that cannot be written.
void TestSaveAs::CheckSaveError(const Window& window, const std::string& name,
                                const std::string& told)
{
    const QString status = Status(window);
    Box box;
    ExpectUnwritableName(name);
    fixture::ExpectBox(*dialogs, box);
    Choose(window, kSave.item);
    setfsuid(geteuid());
    QCOMPARE(box.shown, 1);
    QCOMPARE(box.title, QStringLiteral("Error"));
    QCOMPARE(box.text, QStringLiteral("Error opening") + Text(told));
    QCOMPARE(box.icon, QMessageBox::Critical);
    QCOMPARE(box.buttons, QMessageBox::Ok);
    QCOMPARE(box.parent, window.Get());
    QVERIFY(box.isModal);
    QCOMPARE(Status(window), status);
    QVERIFY(gpPlfmembuf != nullptr);
}

void TestSaveAs::saveAs_unwritableTarget_isReported_data()
{
    QTest::addColumn<QByteArray>("typed");
    QTest::addColumn<QByteArray>("told");
    QTest::newRow("missing folder") << QByteArray("none/copy") << QByteArray("none/copy.plf");
    QTest::newRow("missing folder, with extension")
        << QByteArray("none/copy.bak") << QByteArray("none/copy.bak");
    QTest::newRow("below a file") << QByteArray("a.plf/copy") << QByteArray("a.plf/copy.plf");
    QTest::newRow("a folder's name") << QByteArray("folder") << QByteArray("folder.plf");
    QTest::newRow("with markup") << QByteArray("none/<b>copy") << QByteArray("none/<b>copy.plf");
    QTest::newRow("too long with the extension")
        << QByteArray(252, 'n') << QByteArray(252, 'n') + ".plf";
    QTest::newRow("pipe that nobody reads") << QByteArray("pipe") << QByteArray("pipe.plf");
}

void TestSaveAs::saveAs_unwritableTarget_isReported()
{
    QFETCH(QByteArray, typed);
    QFETCH(QByteArray, told);
    MakeUnwritable(".plf");
    Window window;
    Open(window);
    CheckSaveError(window, typed.toStdString(), Path(told.toStdString()));
}

void TestSaveAs::saveAs_nameWithMarkup_isShownAsItIs()
{
    Window window;
    Open(window);
    ExpectUnwritableName("none/<b>copy");
    int shown = 0;
    dialogs->Expect<QMessageBox>([&](QMessageBox& box) {
        ++shown;
        QCOMPARE(box.textFormat(), Qt::PlainText);
    });
    Choose(window, kSave.item);
    QCOMPARE(shown, 1);
}

void TestSaveAs::saveAs_folderWithoutPermission_isReported()
{
    Window window;
    Open(window);
    LockFolder();
    CheckSaveError(window, "locked/copy", Path("locked/copy.plf"));
    QCOMPARE(chmod(Path("locked").c_str(), 0700), 0);
    QCOMPARE(FilesIn(Path("locked")), QStringList());
}

// Neither the writing nor the closing is watched.
void TestSaveAs::saveAs_fullDisk_isNotReported()
{
    Window window;
    Open(window);
    QCOMPARE(symlink("/dev/full", Path("full.plf").c_str()), 0);
    SaveAs(window, Path("full"));
    QCOMPARE(Status(window), Text(Path("full.plf")) + QStringLiteral(" saved."));
}

void TestSaveAs::saveAs_linkedFile_writesItsTarget()
{
    Window window;
    Open(window);
    const std::string target = directories->Write("target", "old");
    QCOMPARE(symlink(target.c_str(), Path("link.plf").c_str()), 0);
    SaveAs(window, Path("link"));
    QCOMPARE(ReadFile(target), QByteArray::fromStdString(ExportGraph()));
    QVERIFY(QFileInfo(Text(Path("link.plf"))).isSymLink());
}

void TestSaveAs::saveAs_graphReplacedMeanwhile_copiesTheNewOne()
{
    const std::string other = plf::Start() + plf::Line(1, 2, 3, 4) + plf::End();
    const std::string path = directories->Write("b.plf", other);
    const std::string copy = Path("copy");
    Window window;
    Open(window);
    dialogs->Expect<QFileDialog>([&](QFileDialog& dialog) {
        window->load(Text(path));
        TypeNewName(dialog, copy);
    });
    Choose(window, kSave.item);
    QCOMPARE(ReadFile(Path("copy.plf")), QByteArray::fromStdString(other));
}

void TestSaveAs::saveAs_graphDroppedMeanwhile_writesNothing()
{
    const std::string copy = Path("copy");
    Window window;
    Open(window);
    dialogs->Expect<QFileDialog>([&](QFileDialog& dialog) {
        FreePlfBuffer();
        TypeNewName(dialog, copy);
    });
    Choose(window, kSave.item);
    QVERIFY(!Exists(Path("copy.plf")));
}

QTEST_MAIN(TestSaveAs)
#include "test_saveas.moc"
