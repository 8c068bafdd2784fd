// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Choosing and loading a graph, and what is said when that fails.
#include "meta/plfbuffer.h"
#include "tests/kit/appfixture.h"

#include <QFileDialog>
#include <QWindow>

#include <sys/fsuid.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using fixture::Box;
using fixture::Settle;
using fixture::Status;
using fixture::TypeName;
using fixture::Window;

namespace {

constexpr int kStatusTime = 2000; // milliseconds that a good text stands

constexpr char kCannotOpen[] = "Error opening file.";
constexpr char kNotPlf[] = "File is not a recognized PLF graphic format.";

} // namespace

class TestOpening : public QObject, protected fixture::WindowTest
{
    Q_OBJECT

private slots:
    void init() { Begin(); }
    void cleanup() { End(); }

    void choose_dialog_asksForGraphs();
    void choose_cancelled_changesNothing();
    void choose_cancelled_keepsTheTemporaryFlag();
    void choose_file_loadsIt();
    void choose_file_isNeverTemporary();
    void choose_badFile_isNeverTemporaryEither();
    void choose_secondFile_keepsTheExportNameOfTheFirst();

    void load_graph_showsIt();
    void load_graph_saysSoForTwoSeconds();
    void load_graph_repaintsTheView();
    void load_beforeThereIsAView_works();
    void load_headerOnly_isAGraph();
    void load_badFile_isReported_data();
    void load_badFile_isReported();
    void load_unreadableFile_isReported();
    void load_pipe_isReportedAtOnce();
    void load_socket_isReported();
    void load_badFile_statusTextStays();
    void load_badFile_titleChangesBeforeTheBox_statusTextAfterIt();
    void load_badFile_afterAGraph_leavesNoFile();
    void load_badFile_repaintsTheView();
    void load_badFile_keepsTheLastShortName();
    void load_goodFile_afterABadOne_isShown();
    void load_tooLongPath_isRefused();
    void load_tooLongRelativeName_isRefused();
    void load_longestPath_isTried();
    void load_tooLongPath_doesNotNameExports();
    void load_name_becomesAPath_data();
    void load_name_becomesAPath();
    void load_relativeName_isFoundInTheStartDirectory();
    void load_relativeName_ignoresTheExportDirectory();
    void load_relativeName_statusSaysTheNameAsGiven();
    void load_firstFile_namesExports_data();
    void load_firstFile_namesExports();
    void load_firstFile_namesExportsEvenIfItIsMissing();
    void load_givenExportName_isKept();
    void load_secondFile_keepsTheExportName();
    void load_nameOutsideAscii_isShown();
    void load_nameWithMarkup_isShownAsItIs();
    void load_nameWithPlaceholder_isWholeInTheTitleBar();

private:
    void CheckNoFile(const Window& window);
    void CheckFailure(const std::string& name, const char* message);
};

void TestOpening::choose_dialog_asksForGraphs()
{
    const Window window;
    int shown = 0;
    dialogs->Expect<QFileDialog>([&](QFileDialog& dialog) {
        ++shown;
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Open File"));
        QCOMPARE(dialog.nameFilters(), QStringList({QStringLiteral("KORVEL Graphics (*.plf)"),
                                                    QStringLiteral("All Files (*)")}));
        QCOMPARE(dialog.selectedNameFilter(), QStringLiteral("KORVEL Graphics (*.plf)"));
        QCOMPARE(dialog.acceptMode(), QFileDialog::AcceptOpen);
        QCOMPARE(dialog.fileMode(), QFileDialog::ExistingFile);
        QCOMPARE(dialog.parentWidget(), window.Get());
        QVERIFY(dialog.isModal());
    });
    window->choose();
    QCOMPARE(shown, 1);
}

void TestOpening::choose_cancelled_changesNothing()
{
    Window window;
    window.AddViewOf(directories->Write("a.plf", plf::Diagonal()));
    const QString title = window->windowTitle();
    const QString status = Status(window);
    const std::string name = gszPlffileOrig;
    const char* buffer = gpPlfmembuf;
    dialogs->Expect<QFileDialog>(
        [](QFileDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    window->choose();
    QCOMPARE(dialogs->Pending(), 0);
    QCOMPARE(window->windowTitle(), title);
    QCOMPARE(Status(window), status);
    QCOMPARE(Text(gszPlffileOrig), Text(name));
    QCOMPARE(gpPlfmembuf, buffer);
}

void TestOpening::choose_cancelled_keepsTheTemporaryFlag()
{
    const Window window;
    gbIsTempFile = true;
    dialogs->Expect<QFileDialog>(
        [](QFileDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    window->choose();
    QVERIFY(gbIsTempFile);
    gbIsTempFile = false;
}

void TestOpening::choose_file_loadsIt()
{
    const std::string path = directories->Write("a.plf", plf::Diagonal());
    const Window window;
    dialogs->Expect<QFileDialog>([&](QFileDialog& dialog) { TypeName(dialog, Text(path)); });
    window->choose();
    QCOMPARE(Text(gszPlffileOrig), Text(path));
    QCOMPARE(window->windowTitle(), QStringLiteral("KORVEL Viewer - a.plf"));
    QCOMPARE(Status(window), QStringLiteral("Loaded document ") + Text(path));
}

void TestOpening::choose_file_isNeverTemporary()
{
    const std::string path = directories->Write("a.plf", plf::Diagonal());
    const Window window;
    gbIsTempFile = true;
    dialogs->Expect<QFileDialog>([&](QFileDialog& dialog) { TypeName(dialog, Text(path)); });
    window->choose();
    QVERIFY(!gbIsTempFile);
}

void TestOpening::choose_badFile_isNeverTemporaryEither()
{
    const std::string path = directories->Write("a.plf", "no graph");
    const Window window;
    gbIsTempFile = true;
    Box box;
    dialogs->Expect<QFileDialog>([&](QFileDialog& dialog) { TypeName(dialog, Text(path)); });
    fixture::ExpectBox(*dialogs, box);
    window->choose();
    QCOMPARE(box.text, QString::fromLatin1(kNotPlf));
    QVERIFY(!gbIsTempFile);
}

void TestOpening::choose_secondFile_keepsTheExportNameOfTheFirst()
{
    const std::string second = directories->Write("b.plf", plf::Diagonal());
    Window window;
    window.AddViewOf(directories->Write("a.plf", plf::Diagonal()));
    dialogs->Expect<QFileDialog>([&](QFileDialog& dialog) { TypeName(dialog, Text(second)); });
    window->choose();
    QCOMPARE(window->windowTitle(), QStringLiteral("KORVEL Viewer - b.plf"));
    QCOMPARE(Text(gszCvtFilenameBase), Text(directories->Path("a")));
}

void TestOpening::load_graph_showsIt()
{
    const std::string path = directories->Write("a.plf", plf::Diagonal());
    const Window window;
    window->load(Text(path));
    QCOMPARE(Text(gszPlffileOrig), Text(path));
    QCOMPARE(Text(gszPlffileName), QStringLiteral("a.plf"));
    QCOMPARE(window->windowTitle(), QStringLiteral("KORVEL Viewer - a.plf"));
    QCOMPARE(gdwFilesize, plf::Diagonal().size());
    QCOMPARE(QByteArray(gpPlfmembuf), QByteArray::fromStdString(plf::Diagonal()));
}

void TestOpening::load_graph_saysSoForTwoSeconds()
{
    const std::string path = directories->Write("a.plf", plf::Diagonal());
    Window window;
    QVERIFY(window.Show());
    fixture::EndStatusTime(window); // that of the text which was there before
    window->load(Text(path));
    QCOMPARE(Status(window), QStringLiteral("Loaded document ") + Text(path));
    QCOMPARE(fixture::StatusTime(window), kStatusTime);
    fixture::EndStatusTime(window);
    QCOMPARE(Status(window), QString());
}

void TestOpening::load_graph_repaintsTheView()
{
    Window window;
    window.AddViewOf(directories->Write("a.plf", plf::Diagonal()));
    QVERIFY(window.Show());
    Settle();
    fixture::PaintLog paints(window->view);
    window->load(Text(directories->Write("b.plf", plf::Diagonal())));
    Settle();
    QVERIFY(paints.Covers(window->view->rect()));
}

void TestOpening::load_beforeThereIsAView_works()
{
    const Window window;
    QCOMPARE(window->view, nullptr);
    window->load(Text(directories->Write("a.plf", plf::Diagonal())));
    QVERIFY(gpPlfmembuf != nullptr);
}

void TestOpening::load_headerOnly_isAGraph()
{
    const Window window;
    window->load(Text(directories->Write("a.plf", plf::Header())));
    QCOMPARE(window->windowTitle(), QStringLiteral("KORVEL Viewer - a.plf"));
    QCOMPARE(gdwFilesize, 16UL);
}

void TestOpening::CheckNoFile(const Window& window)
{
    QCOMPARE(QByteArray(gszPlffileOrig), QByteArray());
    QCOMPARE(gpPlfmembuf, nullptr);
    QCOMPARE(window->windowTitle(), QStringLiteral("KORVEL Viewer"));
}

// Loads a path that has a directory and must fail.
void TestOpening::CheckFailure(const std::string& path, const char* message)
{
    const Window window;
    Box box;
    fixture::ExpectBox(*dialogs, box);
    window->load(Text(path));
    QCOMPARE(box.shown, 1);
    QCOMPARE(box.title, QStringLiteral("Error"));
    QCOMPARE(box.text, QString::fromLatin1(message));
    QCOMPARE(box.icon, QMessageBox::Critical);
    QCOMPARE(box.buttons, QMessageBox::Ok);
    QCOMPARE(box.parent, window.Get());
    QCOMPARE(Status(window), QStringLiteral("Error reading ") + Text(path));
    CheckNoFile(window);
}

void TestOpening::load_badFile_isReported_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QByteArray>("message");
    const auto row = [](const char* name, const QByteArray& path, const char* message) {
        QTest::newRow(name) << path << QByteArray(message);
    };
    row("missing", "none.plf", kCannotOpen);
    row("missing directory", "none/none.plf", kCannotOpen);
    row("directory", "directory", kCannotOpen);
    row("directory with its separator", "directory/", kCannotOpen);
    row("empty", "empty.plf", kCannotOpen);
    row("shorter than the header", "short.plf", kNotPlf);
    row("another header", "other.plf", kNotPlf);
    row("another last byte in the header", "last.plf", kNotPlf);
    row("a header in capitals only", "text.plf", kNotPlf);
    row("below a file", "text.plf/a.plf", kCannotOpen);
    row("link to nothing", "broken.plf", kCannotOpen);
    row("link to itself", "loop.plf", kCannotOpen);
    row("name too long for the system", QByteArray(300, 'n'), kCannotOpen);
    row("null device", "/dev/null", kCannotOpen);
    row("endless device", "/dev/zero", kCannotOpen);
    row("file that cannot be measured", "/proc/self/mem", kCannotOpen);
    row("file without a size", "/proc/self/status", kCannotOpen);
}

void TestOpening::load_badFile_isReported()
{
    QFETCH(QByteArray, path);
    QFETCH(QByteArray, message);
    QVERIFY(QDir().mkpath(Text(directories->Path("directory"))));
    directories->Write("empty.plf", "");
    directories->Write("short.plf", plf::Header().substr(0, 15));
    directories->Write("other.plf", "X" + plf::Diagonal());
    directories->Write("last.plf", plf::Header().substr(0, 15) + "1" + plf::Diagonal());
    directories->Write("text.plf", "TG140000TG1410 and some more text\n");
    QCOMPARE(symlink("none.plf", directories->Path("broken.plf").c_str()), 0);
    QCOMPARE(symlink("loop.plf", directories->Path("loop.plf").c_str()), 0);
    const std::string name = path.toStdString();
    CheckFailure(name.front() == '/' ? name : directories->Path(name), message.constData());
}

// Also where the tests run as the superuser, who may read everything.
void TestOpening::load_unreadableFile_isReported()
{
    constexpr uid_t kNobody = 65534;
    const std::string path = directories->Write("a.plf", plf::Diagonal());
    QCOMPARE(chmod(directories->Path("").c_str(), 0711), 0);
    QCOMPARE(chmod(path.c_str(), 0), 0);
    if (geteuid() == 0)
        setfsuid(kNobody);
    CheckFailure(path, kCannotOpen);
    if (geteuid() == 0)
        setfsuid(0);
}

void TestOpening::load_pipe_isReportedAtOnce()
{
    const std::string path = directories->Path("pipe.plf");
    QCOMPARE(mkfifo(path.c_str(), 0600), 0);
    CheckFailure(path, kCannotOpen);
}

void TestOpening::load_socket_isReported()
{
    const std::string path = directories->Path("s");
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    QVERIFY(CopyText(address.sun_path, path.c_str()));
    const int server = socket(AF_UNIX, SOCK_STREAM, 0);
    QCOMPARE(bind(server, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    CheckFailure(path, kCannotOpen);
    close(server);
}

void TestOpening::load_badFile_statusTextStays()
{
    Window window;
    QVERIFY(window.Show());
    Box box;
    fixture::ExpectBox(*dialogs, box);
    const std::string path = directories->Path("none.plf");
    window->load(Text(path));
    QCOMPARE(Status(window), QStringLiteral("Error reading ") + Text(path));
    QCOMPARE(fixture::StatusTime(window), 0);
}

void TestOpening::load_badFile_titleChangesBeforeTheBox_statusTextAfterIt()
{
    Window window;
    QVERIFY(window.Show());
    window->load(Text(directories->Write("a.plf", plf::Diagonal())));
    fixture::EndStatusTime(window);
    QString title = QStringLiteral("no box");
    QString status = title;
    dialogs->Expect<QMessageBox>([&](QMessageBox& box) {
        title = window->windowTitle();
        status = Status(window);
        box.accept();
    });
    const std::string path = directories->Path("none.plf");
    window->load(Text(path));
    QCOMPARE(title, QStringLiteral("KORVEL Viewer"));
    QCOMPARE(status, QString());
    QCOMPARE(Status(window), QStringLiteral("Error reading ") + Text(path));
}

void TestOpening::load_badFile_afterAGraph_leavesNoFile()
{
    Window window;
    window.AddViewOf(directories->Write("a.plf", plf::Diagonal()));
    Box box;
    fixture::ExpectBox(*dialogs, box);
    window->load(Text(directories->Write("b.plf", "no graph")));
    CheckNoFile(window);
}

void TestOpening::load_badFile_repaintsTheView()
{
    Window window;
    window.AddViewOf(directories->Write("a.plf", plf::Diagonal()));
    QVERIFY(window.Show());
    Settle();
    Box box;
    fixture::ExpectBox(*dialogs, box);
    fixture::PaintLog paints(window->view);
    window->load(Text(directories->Write("b.plf", "no graph")));
    Settle();
    QVERIFY(paints.Covers(window->view->rect()));
}

void TestOpening::load_badFile_keepsTheLastShortName()
{
    const Window window;
    window->load(Text(directories->Write("a.plf", plf::Diagonal())));
    Box box;
    fixture::ExpectBox(*dialogs, box);
    window->load(Text(directories->Path("none.plf")));
    QCOMPARE(Text(gszPlffileName), QStringLiteral("a.plf"));
}

void TestOpening::load_goodFile_afterABadOne_isShown()
{
    const std::string path = directories->Write("a.plf", plf::Diagonal());
    const Window window;
    Box box;
    fixture::ExpectBox(*dialogs, box);
    window->load(Text(directories->Path("none.plf")));
    window->load(Text(path));
    QCOMPARE(box.shown, 1);
    QCOMPARE(window->windowTitle(), QStringLiteral("KORVEL Viewer - a.plf"));
    QCOMPARE(Status(window), QStringLiteral("Loaded document ") + Text(path));
    QCOMPARE(Text(gszPlffileOrig), Text(path));
}

void TestOpening::load_tooLongPath_isRefused()
{
    const std::string path = "/d" + std::string(1022, '/');
    QCOMPARE(path.size(), size_t{1024});
    const Window window;
    window->load(Text(directories->Write("a.plf", plf::Diagonal())));
    Box box;
    fixture::ExpectBox(*dialogs, box);
    window->load(Text(path));
    QCOMPARE(box.shown, 1);
    QCOMPARE(box.title, QStringLiteral("Error"));
    QCOMPARE(box.text,
             QStringLiteral("The file name is too long (1024 bytes, limit 1023) and was ignored."));
    QCOMPARE(box.icon, QMessageBox::Critical);
    QCOMPARE(box.buttons, QMessageBox::Ok);
    QCOMPARE(box.parent, window.Get());
    QCOMPARE(Status(window), QStringLiteral("Error reading ") + Text(path));
    CheckNoFile(window);
}

void TestOpening::load_tooLongRelativeName_isRefused()
{
    const std::string name(1000, 'n');
    const Window window;
    Box box;
    fixture::ExpectBox(*dialogs, box);
    window->load(Text(name));
    QCOMPARE(box.text,
             QStringLiteral("The file name is too long (%1 bytes, limit 1023) and was ignored.")
                 .arg(strlen(gszCurdir) + 1 + name.size()));
    CheckNoFile(window);
}

void TestOpening::load_longestPath_isTried()
{
    std::string path;
    while (path.size() < 1020)
        path += "/d";
    path += "/no";
    QCOMPARE(path.size(), size_t{1023});
    CheckFailure(path, kCannotOpen);
    QCOMPARE(Text(gszCvtFilenameBase), Text(path));
}

void TestOpening::load_tooLongPath_doesNotNameExports()
{
    const Window window;
    Box box;
    fixture::ExpectBox(*dialogs, box);
    window->load(Text("/d" + std::string(2000, '/')));
    QCOMPARE(QByteArray(gszCvtFilenameBase), QByteArray());
}

void TestOpening::load_name_becomesAPath_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<bool>("hasDirectory");
    QTest::newRow("name alone") << QByteArray("none.plf") << false;
    QTest::newRow("option that nobody knows") << QByteArray("-h") << false;
    QTest::newRow("separator in front only") << QByteArray("/none.plf") << false;
    QTest::newRow("colon in front only") << QByteArray(":none.plf") << false;
    QTest::newRow("empty") << QByteArray("") << false;
    QTest::newRow("directory") << QByteArray("none/none.plf") << true;
    QTest::newRow("this directory") << QByteArray("./none.plf") << true;
    QTest::newRow("full path") << QByteArray("/none/none.plf") << true;
    QTest::newRow("backslash") << QByteArray("none\\none.plf") << true;
    QTest::newRow("drive") << QByteArray("C:none.plf") << true;
}

void TestOpening::load_name_becomesAPath()
{
    QFETCH(QByteArray, name);
    QFETCH(bool, hasDirectory);
    const Window window;
    Box box;
    fixture::ExpectBox(*dialogs, box);
    window->load(QString::fromLocal8Bit(name));
    const QByteArray path = hasDirectory ? name : QByteArray(gszCurdir) + '/' + name;
    QCOMPARE(Status(window), QStringLiteral("Error reading ") + QString::fromLocal8Bit(path));
}

void TestOpening::load_relativeName_isFoundInTheStartDirectory()
{
    const std::string path = directories->Write("work/a.plf", plf::Diagonal());
    QVERIFY(QDir::setCurrent(Text(directories->Path("tmp"))));
    const Window window;
    window->load(QStringLiteral("a.plf"));
    QVERIFY(QDir::setCurrent(QStringLiteral("/")));
    QCOMPARE(Text(gszPlffileOrig), Text(path));
    QCOMPARE(Text(gszPlffileName), QStringLiteral("a.plf"));
}

void TestOpening::load_relativeName_ignoresTheExportDirectory()
{
    directories->Write("tmp/a.plf", plf::Diagonal());
    QVERIFY(CopyText(gszCurrentWorkingDir, directories->Path("tmp").c_str()));
    const Window window;
    Box box;
    fixture::ExpectBox(*dialogs, box);
    window->load(QStringLiteral("a.plf"));
    QCOMPARE(Status(window),
             QStringLiteral("Error reading ") + Text(directories->Path("work/a.plf")));
}

void TestOpening::load_relativeName_statusSaysTheNameAsGiven()
{
    directories->Write("work/a.plf", plf::Diagonal());
    const Window window;
    window->load(QStringLiteral("a.plf"));
    QCOMPARE(Status(window), QStringLiteral("Loaded document a.plf"));
}

void TestOpening::load_firstFile_namesExports_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("base");
    QTest::newRow("the usual extension") << QByteArray("a.plf") << QByteArray("a");
    QTest::newRow("in capitals") << QByteArray("a.PLF") << QByteArray("a.PLF");
    QTest::newRow("another") << QByteArray("a.dat") << QByteArray("a.dat");
    QTest::newRow("twice") << QByteArray("a.plf.plf") << QByteArray("a.plf");
    QTest::newRow("none") << QByteArray("a") << QByteArray("a");
    QTest::newRow("the extension alone") << QByteArray(".plf") << QByteArray("");
}

void TestOpening::load_firstFile_namesExports()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, base);
    const Window window;
    window->load(Text(directories->Write(name.toStdString(), plf::Diagonal())));
    QCOMPARE(Text(gszCvtFilenameBase), Text(directories->Path(base.toStdString())));
}

void TestOpening::load_firstFile_namesExportsEvenIfItIsMissing()
{
    const Window window;
    Box box;
    fixture::ExpectBox(*dialogs, box);
    window->load(Text(directories->Path("none.plf")));
    window->load(Text(directories->Write("a.plf", plf::Diagonal())));
    QCOMPARE(Text(gszCvtFilenameBase), Text(directories->Path("none")));
}

void TestOpening::load_givenExportName_isKept()
{
    QVERIFY(CopyText(gszCvtFilenameBase, "given"));
    const Window window;
    window->load(Text(directories->Write("a.plf", plf::Diagonal())));
    QCOMPARE(Text(gszCvtFilenameBase), QStringLiteral("given"));
}

void TestOpening::load_secondFile_keepsTheExportName()
{
    const Window window;
    window->load(Text(directories->Write("a.plf", plf::Diagonal())));
    window->load(Text(directories->Write("b.plf", plf::Diagonal())));
    QCOMPARE(window->windowTitle(), QStringLiteral("KORVEL Viewer - b.plf"));
    QCOMPARE(Text(gszPlffileName), QStringLiteral("b.plf"));
    QCOMPARE(Text(gszCvtFilenameBase), Text(directories->Path("a")));
}

void TestOpening::load_nameOutsideAscii_isShown()
{
    const std::string path =
        directories->Write("gr\xc3\xbc\xc3\x9f \xe2\x82\xac.plf", plf::Diagonal());
    const Window window;
    window->load(Text(path));
    QCOMPARE(window->windowTitle(), QStringLiteral("KORVEL Viewer - gr\u00fc\u00df \u20ac.plf"));
    QCOMPARE(Text(gszPlffileOrig), Text(path));
}

void TestOpening::load_nameWithMarkup_isShownAsItIs()
{
    const std::string path = directories->Write("<b>&a %1 %s.plf", plf::Diagonal());
    const Window window;
    window->load(Text(path));
    QCOMPARE(window->windowTitle(), QStringLiteral("KORVEL Viewer - <b>&a %1 %s.plf"));
    QCOMPARE(Status(window), QStringLiteral("Loaded document ") + Text(path));
}

// Qt takes "[*]" in a title for the mark of a changed document.
void TestOpening::load_nameWithPlaceholder_isWholeInTheTitleBar()
{
    Window window;
    window->load(Text(directories->Write("a[*].plf", plf::Diagonal())));
    QVERIFY(window.Show());
    QCOMPARE(window->windowHandle()->title(), QStringLiteral("KORVEL Viewer - a[*].plf"));
}

QTEST_MAIN(TestOpening)
#include "test_opening.moc"
