// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Files that cannot be loaded, or change, or vanish: whatever happens, title, status bar,
// properties, picture, copies and exports tell of the same graph, or of none.
#include "app/fileprop.h"
#include "meta/plfbuffer.h"
#include "tests/kit/appfixture.h"
#include "tests/kit/sanitized.h"

#include <QFile>
#include <QLabel>
#include <QStatusBar>

#include <atomic>
#include <thread>

#include <malloc.h>
#include <sys/fsuid.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using fixture::Box;
using fixture::Settle;
using fixture::Status;
using fixture::Window;

namespace {

constexpr uid_t kNobody = 65534;
constexpr int kLines = 5;

std::string Graph()
{
    std::string file = plf::Start() + plf::Width(40);
    for (int i = 0; i < kLines; ++i)
        file += plf::Line(100 + 700 * i, 100, 4000 - 700 * i, 3000);
    return file + plf::End();
}

QImage Picture(const Window& window)
{
    return window->view->grab().toImage();
}

bool IsBlank(const QImage& picture)
{
    QImage blank(picture.size(), picture.format());
    blank.fill(Qt::white);
    return picture == blank;
}

} // namespace

class TestLoading : public QObject, protected fixture::WindowTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void badFile_everythingTellsThatThereIsNone_data();
    void badFile_everythingTellsThatThereIsNone();
    void fileThatDoesNotFitIntoMemory_everythingTellsThatThereIsNone();
    void tooLongName_everythingTellsThatThereIsNone();
    void smallestFile_isAGraphWithoutLines_data();
    void smallestFile_isAGraphWithoutLines();
    void fileThatChangesWhileItIsRead_isTakenAsItWasOrRefused();
    void fileThatVanishes_isStillThereInTheWindow_data();
    void fileThatVanishes_isStillThereInTheWindow();
    void fullDisk_changesNothingInTheWindow();
    void manyLoads_goodAndBad_keepTheMemoryFlat();

private:
    void Open(Window& window);
    void Load(const Window& window, const std::string& path);
    void LoadInVain(const Window& window, const std::string& path);
    QStringList Properties(const Window& window);
    void ExpectName(const std::string& path);
    void Save(const Window& window, const char* slot, const std::string& path);
    void ExpectNothing(const Window& window, const std::string& path);
    void ExpectGraph(const Window& window);

    std::string graph; // the path of a good one
    QImage picture;    // its
};

void TestLoading::init()
{
    Begin();
}

void TestLoading::cleanup()
{
    setfsuid(geteuid());
    End();
}

// Shows the good graph.
void TestLoading::Open(Window& window)
{
    graph = directories->Write("good.plf", Graph());
    window.AddViewOf(graph);
    QVERIFY(window.Show());
    Settle();
    picture = Picture(window);
    QVERIFY(!IsBlank(picture));
}

void TestLoading::Load(const Window& window, const std::string& path)
{
    window->load(Text(path));
    Settle();
}

// The same with a file that must be refused.
void TestLoading::LoadInVain(const Window& window, const std::string& path)
{
    Box box;
    fixture::ExpectBox(*dialogs, box);
    Load(window, path);
    QCOMPARE(box.shown, 1);
    QCOMPARE(box.icon, QMessageBox::Critical);
}

// The four values of the dialog: path, name, size and lines.
QStringList TestLoading::Properties(const Window& window)
{
    QStringList values;
    dialogs->Expect<FileProp>([&values](FileProp& dialog) {
        values = {dialog.textFilenameOrig->text(), dialog.textFilename->text(),
                  dialog.textFilesize->text(), dialog.textVectorcnt->text()};
    });
    QMetaObject::invokeMethod(window.Get(), "fileProperties");
    return values;
}

void TestLoading::ExpectName(const std::string& path)
{
    dialogs->Expect<QFileDialog>([path](QFileDialog& dialog) {
        auto* edit = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        edit->setText(Text(path)); // typed, it would open a list of completions on top
        QTimer::singleShot(0, &dialog, fixture::AgreeToReplace);
        QTest::keyClick(edit, Qt::Key_Enter);
    });
}

// Chooses one of the items that ask for a name, and gives one.
void TestLoading::Save(const Window& window, const char* slot, const std::string& path)
{
    ExpectName(path);
    QMetaObject::invokeMethod(window.Get(), slot);
    QCOMPARE(dialogs->Pending(), 0);
}

void TestLoading::ExpectNothing(const Window& window, const std::string& path)
{
    if (QTest::currentTestFailed())
        return;
    QCOMPARE(window->windowTitle(), QStringLiteral("KORVEL Viewer"));
    QCOMPARE(Status(window), QStringLiteral("Error reading ") + Text(path));
    // The other values are those of the last graph: see AppWindow::ForgetDocument.
    QCOMPARE(Properties(window).constFirst(), QString());
    QVERIFY(IsBlank(Picture(window)));
    QMetaObject::invokeMethod(window.Get(), "saveAs");
    QCOMPARE(Status(window), QStringLiteral("Nothing to save"));
    Save(window, "ExportJpeg", Path("none.jpg"));
    QVERIFY(IsBlank(QImage(Text(Path("none.jpg"))).convertToFormat(QImage::Format_RGB32)));
    Save(window, "ExportEPS", Path("none.eps"));
    QVERIFY(!QFile::exists(Text(Path("none.eps"))));
    QCOMPARE(Properties(window).constFirst(), QString());
    QVERIFY(window->isVisible());
}

void TestLoading::ExpectGraph(const Window& window)
{
    if (QTest::currentTestFailed())
        return;
    QCOMPARE(window->windowTitle(), QStringLiteral("KORVEL Viewer - good.plf"));
    const QStringList properties = {Text(graph), QStringLiteral("good.plf"),
                                    QStringLiteral("%1 bytes").arg(Graph().size()),
                                    QStringLiteral("%1 line segments").arg(kLines)};
    QCOMPARE(Properties(window), properties);
    QCOMPARE(Picture(window), picture);
    Save(window, "saveAs", Path("copy.plf"));
    QCOMPARE(ReadFile(Path("copy.plf")), QByteArray::fromStdString(Graph()));
    Save(window, "ExportJpeg", Path("picture.jpg"));
    const QImage jpeg(Text(Path("picture.jpg")));
    QVERIFY(jpeg.size() == picture.size() && !IsBlank(jpeg.convertToFormat(QImage::Format_RGB32)));
    Save(window, "ExportEPS", Path("picture.eps"));
    QVERIFY(ReadFile(Path("picture.eps")).startsWith("%!PS"));
    QCOMPARE(Properties(window), properties);
    for (const char* name : {"copy.plf", "picture.jpg", "picture.eps"})
        QVERIFY(QFile::remove(Text(Path(name))));
}

void TestLoading::badFile_everythingTellsThatThereIsNone_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QByteArray>("content"); // null = the path is made otherwise
    const auto row = [](const char* name, const char* path, const QByteArray& content = {}) {
        QTest::newRow(name) << QByteArray(path) << content;
    };
    const QByteArray header = QByteArray::fromStdString(plf::Header());
    const QByteArray other = QByteArray(header).replace("TG14", "TG15");
    row("missing", "missing.plf");
    row("that nobody may read", "locked.plf", header);
    row("directory", "work");
    row("pipe", "pipe.plf");
    row("device that ends", "/dev/null");
    row("device without an end", "/dev/zero");
    row("terminal of nobody", "/dev/tty");
    row("empty", "empty.plf", "");
    row("15 bytes", "15.plf", header.left(15));
    row("16 bytes of another kind", "16.plf", other);
    row("17 bytes of another kind", "17.plf", other + "0");
    row("larger than all memory", "huge.plf", header);
    row("shorter than it says", "/sys/devices/system/cpu/online");
    row("longer than it says", "/proc/self/status");
}

void TestLoading::badFile_everythingTellsThatThereIsNone()
{
    QFETCH(QByteArray, path);
    QFETCH(QByteArray, content);
    Window window;
    Open(window);
    std::string file = path.startsWith('/') ? path.toStdString() : Path(path.toStdString());
    if (!content.isNull())
        file = directories->Write(path.toStdString(), content.toStdString());
    if (path == "pipe.plf")
        QCOMPARE(mkfifo(file.c_str(), 0600), 0);
    // A file with a hole: larger than any address space, no block on the disk.
    if (path == "huge.plf" && truncate(file.c_str(), off_t{1} << 43) != 0)
        QSKIP("the file system takes no file of 8 TiB");
    if (path == "locked.plf") {
        QCOMPARE(chmod(Path("").c_str(), 0711), 0);
        QCOMPARE(chmod(file.c_str(), 0), 0);
        setfsuid(kNobody); // the superuser may read everything
    }
    LoadInVain(window, file);
    setfsuid(geteuid());
    ExpectNothing(window, file);
    Load(window, graph);
    ExpectGraph(window);
}

// As much as the process may have, with the sanitizer's own reservations in the way.
void TestLoading::fileThatDoesNotFitIntoMemory_everythingTellsThatThereIsNone()
{
    if (kSanitized)
        QSKIP("the sanitizer takes more address space than any limit");
    constexpr rlim_t kLimit = rlim_t{3} << 30;
    constexpr off_t kSize = off_t{4} << 30;
    Window window;
    Open(window);
    const std::string file = directories->Write("large.plf", plf::Header());
    QCOMPARE(truncate(file.c_str(), kSize), 0);
    rlimit before = {};
    QCOMPARE(getrlimit(RLIMIT_AS, &before), 0);
    const rlimit tight = {kLimit, before.rlim_max};
    QCOMPARE(setrlimit(RLIMIT_AS, &tight), 0);
    LoadInVain(window, file);
    ExpectNothing(window, file);
    QCOMPARE(setrlimit(RLIMIT_AS, &before), 0);
    Load(window, graph);
    ExpectGraph(window);
}

void TestLoading::tooLongName_everythingTellsThatThereIsNone()
{
    Window window;
    Open(window);
    const std::string name = '/' + std::string(kPathSize, 'n');
    LoadInVain(window, name);
    ExpectNothing(window, name);
    Load(window, graph);
    ExpectGraph(window);
}

void TestLoading::smallestFile_isAGraphWithoutLines_data()
{
    QTest::addColumn<int>("size");
    QTest::newRow("the header alone") << 16;
    QTest::newRow("one byte more") << 17;
}

void TestLoading::smallestFile_isAGraphWithoutLines()
{
    QFETCH(int, size);
    Window window;
    Open(window);
    const std::string bytes = plf::Start().substr(0, static_cast<size_t>(size));
    const std::string file = directories->Write("small.plf", bytes);
    Load(window, file);
    QCOMPARE(window->windowTitle(), QStringLiteral("KORVEL Viewer - small.plf"));
    const QStringList properties = {Text(file), QStringLiteral("small.plf"),
                                    QStringLiteral("%1 bytes").arg(size),
                                    QStringLiteral("0 line segments")};
    QCOMPARE(Properties(window), properties);
    QVERIFY(IsBlank(Picture(window)));
    Save(window, "saveAs", Path("small copy.plf"));
    QCOMPARE(ReadFile(Path("small copy.plf")), QByteArray::fromStdString(bytes));
    Save(window, "ExportEPS", Path("small.eps"));
    QVERIFY(ReadFile(Path("small.eps")).startsWith("%!PS"));
    Load(window, graph);
    ExpectGraph(window);
}

// Two sizes in turn, as fast as a thread can, under the reader: it gets one of them whole, with
// zeros where the file was cut and grew again, or says that it could not read.
void TestLoading::fileThatChangesWhileItIsRead_isTakenAsItWasOrRefused()
{
    constexpr size_t kLong = 3'000'000;
    constexpr size_t kShort = 1000;
    constexpr int kLoads = 300;
    std::string file = directories->Write("changing.plf",
                                          plf::Header() + std::string(kLong - kPlfHeaderSize, ' '));
    std::atomic<bool> isDone = false;
    std::atomic<bool> isChanged = true;
    std::thread other([&] {
        while (!isDone && isChanged)
            isChanged = truncate(file.c_str(), kShort) == 0 && truncate(file.c_str(), kLong) == 0;
    });
    bool isRight = true;
    for (int i = 0; i < kLoads && isRight; ++i) {
        char message[kLoadMessageSize];
        const bool isLoaded = LoadPlfFile(file.data(), message) == 0;
        isRight = isLoaded == (gpPlfmembuf != nullptr);
        if (isLoaded) {
            const char* tail = gpPlfmembuf + gdwFilesize;
            isRight = (gdwFilesize == kLong || gdwFilesize == kShort) &&
                      std::all_of(tail, tail + kPlfTailSize, [](char c) { return c == 0; });
        }
    }
    isDone = true;
    other.join();
    QVERIFY(isChanged);
    QVERIFY(isRight);
}

void TestLoading::fileThatVanishes_isStillThereInTheWindow_data()
{
    QTest::addColumn<int>("how");
    QTest::newRow("deleted") << 0;
    QTest::newRow("cut to nothing") << 1;
    QTest::newRow("replaced by another") << 2;
    QTest::newRow("its directory is gone") << 3;
}

void TestLoading::fileThatVanishes_isStillThereInTheWindow()
{
    QFETCH(int, how);
    Window window;
    Open(window);
    QVERIFY(QDir().mkdir(Text(Path("place"))));
    graph = directories->Write("place/good.plf", Graph());
    Load(window, graph);
    if (how == 0)
        QCOMPARE(unlink(graph.c_str()), 0);
    else if (how == 1)
        QCOMPARE(truncate(graph.c_str(), 0), 0);
    else if (how == 2)
        QCOMPARE(directories->Write("place/good.plf", "no graph"), graph);
    else
        QVERIFY(QDir(Text(Path("place"))).removeRecursively());
    window->view->repaint();
    ExpectGraph(window);
}

// What an image's message says is tested with the exports.
void TestLoading::fullDisk_changesNothingInTheWindow()
{
    Window window;
    Open(window);
    for (const char* name : {"full.plf", "full.jpg", "full.eps"})
        QCOMPARE(symlink("/dev/full", Path(name).c_str()), 0);
    Save(window, "saveAs", Path("full"));
    ExpectName(Path("full"));
    Box box;
    fixture::ExpectBox(*dialogs, box);
    QMetaObject::invokeMethod(window.Get(), "ExportJpeg");
    QCOMPARE(box.title, QStringLiteral("Save failed"));
    Save(window, "ExportEPS", Path("full"));
    ExpectGraph(window);
}

// After a warm-up the heap keeps less than a graph has.
void TestLoading::manyLoads_goodAndBad_keepTheMemoryFlat()
{
    constexpr int kWarmUp = 50;
    constexpr int kLoads = 600;
    constexpr size_t kGraphSize = 200'000;
    const auto fill = [](std::string bytes) { return bytes.append(kGraphSize, ' '); };
    Window window;
    Open(window);
    const std::string files[] = {directories->Write("a.plf", fill(Graph())), Path("missing.plf"),
                                 directories->Write("b.plf", fill("no graph"))};
    size_t before = 0;
    for (int i = 0; i < kWarmUp + kLoads; ++i) {
        if (i == kWarmUp)
            before = mallinfo2().uordblks;
        if (i % 3 == 0)
            Load(window, files[0]);
        else
            LoadInVain(window, files[i % 3]);
    }
    const size_t after = mallinfo2().uordblks;
    if (!kSanitized) // its heap is another one, whose leaks are looked for at the end
        QVERIFY2(after < before + kGraphSize, qPrintable(QString::number(after - before)));
    Load(window, graph);
    ExpectGraph(window);
}

QTEST_MAIN(TestLoading)

#include "test_loading.moc"
