// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Exports that the command line asks for, and how their files are named.
#include "tests/kit/events.h"
#include "tests/kit/exporting.h"

#include <QDir>

#include <sys/stat.h>

using fixture::Box;
using fixture::CurrentDirectory;
using fixture::ExportGraph;
using fixture::FilesIn;
using fixture::Parse;
using fixture::QuitCounter;
using fixture::Window;

class TestExportJobs : public QObject, protected fixture::ExportTest
{
    Q_OBJECT

private slots:
    void initTestCase() { HidePrinters(); }
    void init() { Begin(); }
    void cleanup() { End(); }

    void job_loadedFile_namesTheExport_data();
    void job_loadedFile_namesTheExport();
    void job_secondFile_keepsTheNameOfTheFirst();
    void job_givenName_isCompleted_data();
    void job_givenName_isCompleted();
    void job_nameThatIsNoText_isUsedByteByByte_data();
    void job_nameThatIsNoText_isUsedByteByByte();
    void job_exportPath_staysUntilTheNext();
    void job_showsNoDialog();
    void job_emptyName_staysPending_data();
    void job_emptyName_staysPending();
    void job_tooLongName_isRefused_data();
    void job_tooLongName_isRefused();
    void job_longestName_isUsed();
    void job_jpegFails_goesOnToEpsAndQuit();
    void job_epsFails_goesOnToQuit();
    void job_jpegFails_quittingMeanwhile_isSurvived();
};

static void JobRows()
{
    QTest::addColumn<QByteArray>("option");
    QTest::addColumn<QByteArray>("extension");
    QTest::newRow("JPEG") << QByteArray("-c=1") << QByteArray(".jpg");
    QTest::newRow("EPS") << QByteArray("-c=2") << QByteArray(".eps");
}

void TestExportJobs::job_loadedFile_namesTheExport_data()
{
    JobRows();
}

// Names are given as options alone, because a path may hold what counts as one.
void TestExportJobs::job_loadedFile_namesTheExport()
{
    QFETCH(QByteArray, option);
    QFETCH(QByteArray, extension);
    const std::string graph = directories->Write("work/run1.plf", ExportGraph());
    Window window;
    Parse({"run1.plf", option.toStdString()});
    window.AddView();
    gpDraw->PostCmdargDone(0);
    const std::string path = Path("work/run1") + extension.toStdString();
    QCOMPARE(FilesIn(Path("work")),
             QStringList({QStringLiteral("run1") + QString::fromLatin1(extension),
                          QStringLiteral("run1.plf")}));
    QCOMPARE(QByteArray(gszCvtFilename), QByteArray::fromStdString(path));
    QVERIFY(ReadFile(path).size() > 100);
    QCOMPARE(giCmdArg, 0);
    QCOMPARE(ReadFile(graph), QByteArray::fromStdString(ExportGraph()));
}

void TestExportJobs::job_secondFile_keepsTheNameOfTheFirst()
{
    Window window;
    Open(window);
    window->load(Text(directories->Write("b.plf", ExportGraph())));
    giCmdArg = kJobJpeg | kJobEps;
    gpDraw->PostCmdargDone(0);
    QVERIFY(Exists(Path("a.jpg")) && Exists(Path("a.eps")));
    QVERIFY(!Exists(Path("b.jpg")) && !Exists(Path("b.eps")));
}

void TestExportJobs::job_givenName_isCompleted_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("folder"); // "-cwd=", below the test's directory
    QTest::addColumn<QByteArray>("path");   // of the JPEG, below the test's directory
    QTest::addColumn<QByteArray>("fullName");
    const auto row = [](const char* what, const char* name, const char* folder, const char* path,
                        const char* fullName = "") {
        QTest::newRow(what) << QByteArray(name) << QByteArray(folder) << QByteArray(path)
                            << QByteArray(fullName);
    };
    row("bare, with a folder", "out", "x", "x/out.jpg");
    row("bare, without one", "out", "", "here/out.jpg");
    row("with an extension", "out.png", "x", "x/out.png");
    row("hidden", ".out", "x", "x/.out");
    row("with a blank", "out put", "x", "x/out put.jpg");
    row("outside ASCII", "Größe", "x", "x/Größe.jpg");
    row("below the current directory", "sub/out", "x", "here/sub/out.jpg", "sub/out.jpg");
    row("below it, explicitly", "./out", "x", "here/out.jpg", "./out.jpg");
    row("with a backslash", "sub\\out", "x", "here/sub\\out.jpg", "sub\\out.jpg");
    row("ending in a backslash", "out\\", "x", "here/out\\.jpg", "out\\.jpg");
    row("folder outside ASCII", "out", "Größe 1", "Größe 1/out.jpg");
    row("folder with a dot", "out", "x.1", "x.1/out.jpg");
}

void TestExportJobs::job_givenName_isCompleted()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, folder);
    QFETCH(QByteArray, path);
    QFETCH(QByteArray, fullName);
    for (const char* made : {"x", "x.1", "Größe 1", "here/sub"})
        QVERIFY(QDir().mkpath(Text(Path(made))));
    Window window;
    Open(window);
    const CurrentDirectory current(Path("here"));
    QVERIFY(CopyText(gszCvtFilenameBase, name.constData()));
    if (!folder.isEmpty())
        QVERIFY(CopyText(gszCurrentWorkingDir, Path(folder.toStdString()).c_str()));
    if (fullName.isEmpty())
        fullName = QByteArray::fromStdString(Path(path.toStdString()));
    giCmdArg = kJobJpeg;
    gpDraw->PostCmdargDone(0);
    QVERIFY2(ReadFile(Path(path.toStdString())).startsWith("\xff\xd8\xff"), path.constData());
    QCOMPARE(QByteArray(gszCvtFilename), fullName);
    giCmdArg = kJobEps;
    gpDraw->PostCmdargDone(0);
    QCOMPARE(QByteArray(gszCvtFilename), fullName.replace(".jpg", ".eps"));
    path.replace(".jpg", ".eps");
    QVERIFY2(ReadFile(Path(path.toStdString())).startsWith("%!PS"), path.constData());
    QCOMPARE(giCmdArg, 0);
}

void TestExportJobs::job_nameThatIsNoText_isUsedByteByByte_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("folder"); // "-cwd=", below the test's directory
    QTest::addColumn<QByteArray>("start");  // the current directory, below it too
    QTest::addColumn<QByteArray>("path");   // of the files, without their extension
    const auto row = [](const char* what, const char* name, const char* folder, const char* start,
                        const char* path) {
        QTest::newRow(what) << QByteArray(name) << QByteArray(folder) << QByteArray(start)
                            << QByteArray(path);
    };
    row("name",
        "gr\xf6\xdf"
        "e",
        "x", "x",
        "x/gr\xf6\xdf"
        "e");
    row("cut in a character", "gr\xc3", "x", "x", "x/gr\xc3");
    row("half a surrogate pair", "\xed\xa0\x80", "x", "x", "x/\xed\xa0\x80");
    row("\"-cwd=\"", "out", "\xff", "x", "\xff/out");
    row("current directory", "out", "", "\xfe", "\xfe/out");
}

// QFile and QDir name files by text, and do not see these.
void TestExportJobs::job_nameThatIsNoText_isUsedByteByByte()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, folder);
    QFETCH(QByteArray, start);
    QFETCH(QByteArray, path);
    for (const char* made : {"x", "\xff", "\xfe"})
        QCOMPARE(mkdir(Path(made).c_str(), 0700), 0);
    Window window;
    Open(window);
    const CurrentDirectory home(Path("x")); // goes back at the end
    QCOMPARE(chdir(Path(start.toStdString()).c_str()), 0);
    QVERIFY(CopyText(gszCvtFilenameBase, name.constData()));
    if (!folder.isEmpty())
        QVERIFY(CopyText(gszCurrentWorkingDir, Path(folder.toStdString()).c_str()));
    giCmdArg = kJobJpeg | kJobEps;
    gpDraw->PostCmdargDone(0);
    QCOMPARE(giCmdArg, 0);
    for (const char* extension : {".jpg", ".eps"}) {
        const std::string file = Path(path.toStdString()) + extension;
        struct stat info = {};
        QVERIFY2(stat(file.c_str(), &info) == 0 && info.st_size > 100, file.c_str());
    }
    QCOMPARE(QByteArray(gszCvtFilename),
             QByteArray::fromStdString(Path(path.toStdString())) + ".eps");
}

void TestExportJobs::job_exportPath_staysUntilTheNext()
{
    Window window;
    Open(window);
    giCmdArg = kJobJpeg;
    gpDraw->PostCmdargDone(0);
    const QByteArray path = QByteArray::fromStdString(Path("a.jpg"));
    QCOMPARE(QByteArray(gszCvtFilename), path);
    SaveAs(window, Path("copy"));
    gpDraw->PostCmdargDone(0);
    QCOMPARE(QByteArray(gszCvtFilename), path);
}

// The test's cleanup tells of any dialog.
void TestExportJobs::job_showsNoDialog()
{
    Window window;
    Open(window);
    giCmdArg = kJobPrint | kJobJpeg | kJobEps;
    gpDraw->PostCmdargDone(0);
    QCOMPARE(giCmdArg, 0);
}

void TestExportJobs::job_emptyName_staysPending_data()
{
    QTest::addColumn<int>("jobs");
    QTest::newRow("JPEG") << int{kJobJpeg};
    QTest::newRow("EPS") << int{kJobEps};
    QTest::newRow("both") << (kJobJpeg | kJobEps);
}

void TestExportJobs::job_emptyName_staysPending()
{
    QFETCH(int, jobs);
    Window window;
    OpenEmpty(window);
    const CurrentDirectory current(Path("here"));
    giCmdArg = jobs;
    gbCmdQuit = true;
    const QuitCounter quits;
    QTimer::singleShot(0, window.Get(), [&] {
        gpDraw->PostCmdargDone(0);
        QCoreApplication::exit(7);
    });
    QCOMPARE(QApplication::exec(), 7);
    QCOMPARE(giCmdArg, jobs);
    QCOMPARE(quits.count, 0);
    QCOMPARE(FilesIn(Path("here")), QStringList());
}

void TestExportJobs::job_tooLongName_isRefused_data()
{
    QTest::addColumn<int>("folder"); // length, 0 = none
    QTest::addColumn<int>("name");
    QTest::addColumn<QByteArray>("length");
    QTest::newRow("name with its extension") << 0 << 1020 << QByteArray();
    QTest::newRow("folder and name") << 1000 << 20 << QByteArray("1025");
    QTest::newRow("longest folder") << 2047 << 1 << QByteArray("2053");
    QTest::newRow("one too many") << 1018 << 1 << QByteArray("1024");
}

void TestExportJobs::job_tooLongName_isRefused()
{
    QFETCH(int, folder);
    QFETCH(int, name);
    QFETCH(QByteArray, length);
    Window window;
    Open(window);
    const CurrentDirectory current(Path("here"));
    QVERIFY(CopyText(gszCvtFilename, "before"));
    QVERIFY(CopyText(gszCurrentWorkingDir, QByteArray(folder, 'f').constData()));
    QVERIFY(CopyText(gszCvtFilenameBase, QByteArray(name, 'n').constData()));
    giCmdArg = kJobJpeg | kJobEps;
    Box jpegBox;
    Box epsBox;
    fixture::ExpectBox(*dialogs, jpegBox);
    fixture::ExpectBox(*dialogs, epsBox);
    gpDraw->PostCmdargDone(0);
    for (const Box& box : {jpegBox, epsBox}) {
        QCOMPARE(box.shown, 1);
        QCOMPARE(box.title, QStringLiteral("Error"));
        QCOMPARE(box.icon, QMessageBox::Critical);
        QVERIFY2(box.text.contains(QString::fromLatin1(length)), qPrintable(box.text));
        QVERIFY2(box.text.contains(QStringLiteral("1023")), qPrintable(box.text));
    }
    QCOMPARE(giCmdArg, 0);
    QCOMPARE(QByteArray(gszCvtFilename), QByteArray("before"));
    QCOMPARE(FilesIn(Path("here")), QStringList());
}

// Long by its dots, so that the folder is one that exists.
void TestExportJobs::job_longestName_isUsed()
{
    Window window;
    Open(window);
    const CurrentDirectory current(Path("here"));
    QByteArray folder = "./";
    while (folder.size() < 1018)
        folder += "./";
    QCOMPARE(folder.size(), 1018);
    const QByteArray name = folder + 'n';
    QVERIFY(CopyText(gszCvtFilenameBase, name.constData()));
    giCmdArg = kJobJpeg | kJobEps;
    gpDraw->PostCmdargDone(0);
    QCOMPARE(QByteArray(gszCvtFilename), name + ".eps");
    QCOMPARE(qstrlen(gszCvtFilename), size_t{kPathSize - 1});
    QCOMPARE(FilesIn(Path("here")),
             QStringList({QStringLiteral("n.eps"), QStringLiteral("n.jpg")}));
}

void TestExportJobs::job_jpegFails_goesOnToEpsAndQuit()
{
    QVERIFY(QDir().mkpath(Text(Path("a.jpg"))));
    Window window;
    Open(window);
    giCmdArg = kJobJpeg | kJobEps;
    gbCmdQuit = true;
    const QuitCounter quits;
    const std::string eps = Path("a.eps");
    int boxes = 0;
    dialogs->Expect<QMessageBox>([&](QMessageBox& box) {
        ++boxes;
        QCOMPARE(box.windowTitle(), QStringLiteral("Save failed"));
        QCOMPARE(box.text(), QStringLiteral("Export failed for file: ") + Text(Path("a.jpg")));
        QCOMPARE(giCmdArg, kJobJpeg | kJobEps);
        QVERIFY(!Exists(eps));
        QCOMPARE(quits.count, 0);
        box.accept();
    });
    QTimer::singleShot(0, window.Get(), [] { gpDraw->PostCmdargDone(0); });
    QCOMPARE(QApplication::exec(), 0);
    QCOMPARE(boxes, 1);
    QVERIFY(ReadFile(eps).startsWith("%!PS"));
    QCOMPARE(giCmdArg, 0);
    QCOMPARE(quits.count, 1);
}

void TestExportJobs::job_epsFails_goesOnToQuit()
{
    QVERIFY(QDir().mkpath(Text(Path("a.eps"))));
    Window window;
    Open(window);
    giCmdArg = kJobEps;
    gbCmdQuit = true;
    const QuitCounter quits;
    QTimer::singleShot(0, window.Get(), [] { gpDraw->PostCmdargDone(0); });
    QCOMPARE(QApplication::exec(), 0);
    QCOMPARE(giCmdArg, 0);
    QCOMPARE(quits.count, 1);
}

void TestExportJobs::job_jpegFails_quittingMeanwhile_isSurvived()
{
    QVERIFY(QDir().mkpath(Text(Path("a.jpg"))));
    Window window;
    Open(window);
    giCmdArg = kJobJpeg | kJobEps;
    dialogs->Expect<QMessageBox>([](QMessageBox&) { QCoreApplication::quit(); });
    QTimer::singleShot(0, window.Get(), [] { gpDraw->PostCmdargDone(0); });
    QCOMPARE(QApplication::exec(), 0);
    QTRY_VERIFY(window.IsGone());
}

QTEST_MAIN(TestExportJobs)
#include "test_exportjobs.moc"
