// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Saving a copy and exporting pictures, by the user and as jobs of the command line.
#include "app/export.h"

#include "app/cmdline.h"
#include "meta/plfbuffer.h"
#include "tests/kit/appfixture.h"
#include "tests/kit/epsfile.h"
#include "tests/kit/sanitized.h"

#include <QAction>
#include <QBuffer>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QPrintDialog>
#include <QPrinter>
#include <QStatusBar>
#include <QTranslator>

#include <fcntl.h>
#include <sys/fsuid.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <limits>
#include <vector>

using fixture::Box;
using fixture::Settle;
using fixture::ShownArea;
using fixture::Window;

namespace {

constexpr int kSaveStatusTime = 5000; // milliseconds that the status bar tells of a copy
constexpr int kPatience = 20000;      // milliseconds until a test gives up
constexpr QSize kViewSize(640, 480);

// Black lines in all directions: a picture without colours survives JPEG best.
std::string Graph()
{
    std::string file = plf::Start() + plf::Width(40);
    for (int x = 200; x < 4096; x += 900)
        file += plf::Line(x, 100, 4000 - x, 3000);
    return file + plf::Width(12) + plf::Line(0, 700, 4095, 800) + plf::End();
}

QStringList FilesIn(const std::string& folder)
{
    return QDir(Text(folder)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

// The bytes that the toolkit writes for an image.
QByteArray Jpeg(const QImage& image, int quality)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    return image.save(&buffer, "JPEG", quality) ? bytes : QByteArray("(not saved)");
}

int Difference(const QImage& a, const QImage& b)
{
    int most = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            most = std::max({most, std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                             std::abs(qBlue(p) - qBlue(q))});
        }
    }
    return most;
}

// Parses arguments behind a program name, as main does.
void Parse(const std::vector<std::string>& arguments)
{
    std::vector<std::string> texts = {"plotvw"};
    texts.insert(texts.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv(texts.size() + 1, nullptr);
    std::transform(texts.begin(), texts.end(), argv.begin(),
                   [](std::string& text) { return text.data(); });
    QCOMPARE(ProcessCmdline(static_cast<int>(texts.size()), argv.data(), 1), 0);
}

// The current directory of the process, for as long as the object lives.
class CurrentDirectory
{
public:
    explicit CurrentDirectory(const std::string& path)
    {
        QVERIFY(QDir().mkpath(Text(path)));
        QVERIFY(QDir::setCurrent(Text(path)));
    }
    ~CurrentDirectory() { QDir::setCurrent(before); }
    Q_DISABLE_COPY_MOVE(CurrentDirectory)

private:
    QString before = QDir::currentPath();
};

// Marks what it is asked to translate with its context.
class Marker : public QTranslator
{
public:
    Marker() { QCoreApplication::installTranslator(this); }
    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char* context, const char* text, const char* /*hint*/,
                                    int /*n*/) const override
    {
        return QLatin1String(context) == QStringLiteral("AppWindow")
                   ? QStringLiteral("~") + QLatin1String(text)
                   : QString();
    }
};

// Counts the quit requests that the application gets.
class QuitCounter : public QObject
{
public:
    QuitCounter() { qApp->installEventFilter(this); }
    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (object == qApp && event->type() == QEvent::Quit)
            ++count;
        return false;
    }
    int count = 0;
};

// Writes down when a job's file appears and when the application is asked to quit, each with the
// jobs that are pending then. Every file is taken away, so that one that is written twice is seen
// twice.
class JobLog : public QObject
{
public:
    JobLog(std::string pdf, std::string jpeg, std::string eps)
        : files({{"print", std::move(pdf)}, {"JPEG", std::move(jpeg)}, {"EPS", std::move(eps)}})
    {
        qApp->installEventFilter(this);
        connect(&timer, &QTimer::timeout, this, &JobLog::Look);
        timer.start(0);
    }

    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (object == qApp && event->type() == QEvent::Quit)
            Add("quit");
        return false;
    }

    QStringList log;

private:
    void Look()
    {
        for (const auto& [name, path] : files) {
            if (Exists(path) && QFile::remove(Text(path)))
                Add(name);
        }
    }

    void Add(const char* what)
    {
        log.append(QStringLiteral("%1 while %2").arg(QLatin1String(what)).arg(giCmdArg));
    }

    std::vector<std::pair<const char*, std::string>> files;
    QTimer timer;
};

// Puts a name into the file dialog and confirms it.
void TypeName(QFileDialog& dialog, const std::string& name)
{
    auto* edit = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    QVERIFY(edit != nullptr);
    edit->setText(Text(name)); // typed, it would open a list of completions on top
    QTimer::singleShot(0, &dialog, fixture::AgreeToReplace);
    QTest::keyClick(edit, Qt::Key_Enter);
}

// A dialog that asks for a name.
struct Asking {
    const char* item;
    const char* objectName;
    const char* caption;
    const char* filter;
    const char* extension;
};

constexpr Asking kSave = {"&Save File As", "Save Graphic File", "Save as",
                          "KORVEL Graphics (*.plf)", ".plf"};
constexpr Asking kJpeg = {"&JPEG Compressed Bitmap", "Export Graphic File", "Export JPEG image",
                          "JPEG image (*.jpg)", ".jpg"};
constexpr Asking kEps = {"&Encapsulated Postscript", "Export Graphic File", "Export EPS file",
                         "EPS file (*.eps)", ".eps"};

void AskingRows()
{
    QTest::addColumn<Asking>("asking");
    QTest::newRow("save") << kSave;
    QTest::newRow("JPEG") << kJpeg;
    QTest::newRow("EPS") << kEps;
}

} // namespace

Q_DECLARE_METATYPE(Asking)

class TestExport : public QObject, protected fixture::WindowTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void appendFileExt_addsTheMissingExtension_data();
    void appendFileExt_addsTheMissingExtension();
    void copyFile_copiesEveryByte_data();
    void copyFile_copiesEveryByte();
    void copyFile_replacesALongerFile();
    void copyFile_withoutASource_copiesNothing_data();
    void copyFile_withoutASource_copiesNothing();
    void copyFile_withoutADestination_copiesNothing();
    void copyFile_withoutMemory_returnsOne();
    void makeCvtSavePath_cutsAtTheMarker_data();
    void makeCvtSavePath_cutsAtTheMarker();
    void makeCvtSavePath_withoutTheMarker_isNull();
    void makeCvtSavePath_tooLongPath_isRefused();

    void dialogs_haveTheirNamesCaptionsAndFilters_data();
    void dialogs_haveTheirNamesCaptionsAndFilters();
    void dialogs_translatedTexts_data();
    void dialogs_translatedTexts();
    void dialogs_cancelled_changeNothing_data();
    void dialogs_cancelled_changeNothing();
    void dialogs_existingFile_isKeptUnlessTheUserAgrees_data();
    void dialogs_existingFile_isKeptUnlessTheUserAgrees();
    void dialogs_nameOutsideAscii_isUsed_data();
    void dialogs_nameOutsideAscii_isUsed();
    void dialogs_quittingWhileOpen_isSurvived_data();
    void dialogs_quittingWhileOpen_isSurvived();
    void userExports_doNotAskToQuit_data();
    void userExports_doNotAskToQuit();
    void userExports_whileAnotherJobIsPending_ask_data();
    void userExports_whileAnotherJobIsPending_ask();
    void graphAndView_areLeftAsTheyWere_data();
    void graphAndView_areLeftAsTheyWere();

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

    void jpeg_hasTheSizeOfTheView_data();
    void jpeg_hasTheSizeOfTheView();
    void jpeg_showsWhatTheViewShows_data();
    void jpeg_showsWhatTheViewShows();
    void jpeg_quality_isTenTimesTheSetting_data();
    void jpeg_quality_isTenTimesTheSetting();
    void jpeg_quality_fromTheConfigurationFile();
    void jpeg_absurdQuality_isSurvived_data();
    void jpeg_absurdQuality_isSurvived();
    void jpeg_name_getsTheExtension_data();
    void jpeg_name_getsTheExtension();
    void jpeg_withoutAGraph_isThePictureOfTheEmptyView();
    void jpeg_failure_isReportedWithoutAParent_data();
    void jpeg_failure_isReportedWithoutAParent();

    void jpeg_smallPictureOnAFullDisk_isReported();
    void jpeg_intoAPipeThatIsRead_isWritten();

    void eps_isWhatTheInterpreterWrites_data();
    void eps_isWhatTheInterpreterWrites();
    void eps_zoomed_isWhatTheInterpreterWrites();
    void eps_name_getsTheExtension_data();
    void eps_name_getsTheExtension();
    void eps_withoutAGraph_writesNothing();
    void eps_failure_isNotReported_data();
    void eps_failure_isNotReported();

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

    void chain_runsPrintJpegAndEpsOnceEach();
    void chain_quitRequest_followsTheEps();
    void chain_nothingPending_theFirstCallAsksToQuit();
    void chain_withoutTheQuitOption_doesNotAskToQuit();
    void chain_withoutAPrinter_goesOn();
    void chain_jobAddedByAnEvent_isRun();
    void chain_jobDroppedByAnEvent_isNotRun();
    void chain_windowClosedByAnEvent_isSurvived();

private:
    std::string GraphFile() { return directories->Write("a.plf", Graph()); }
    void Open(Window& window, QSize size = kViewSize);
    void OpenEmpty(Window& window);
    void Choose(const Window& window, const char* item);
    void ChooseAndType(const Window& window, const Asking& asking, const std::string& name);
    void SaveAs(const Window& window, const std::string& name);
    void Zoom(const Window& window);
    void PrintInto(const Window& window, const std::string& pdf);
    void ExpectUnwritableName(const std::string& name);
    void MakeUnwritable(const char* extension);
    void LockFolder();
    void CheckSaveError(const Window& window, const std::string& name, const std::string& told);
};

void TestExport::initTestCase()
{
    qputenv("CUPS_SERVER", "/nonexistent"); // the system's printers are none of these tests
}

void TestExport::init()
{
    Begin();
}

void TestExport::cleanup()
{
    End();
}

// Shows the test graph in a view of a size.
void TestExport::Open(Window& window, QSize size)
{
    window.AddViewOf(GraphFile());
    QVERIFY(window.Show());
    window->resize(window->size() + size - gpDraw->size());
    QTRY_COMPARE(gpDraw->size(), size);
    Settle();
}

// Shows a window whose user did not choose a file.
void TestExport::OpenEmpty(Window& window)
{
    dialogs->Expect<QFileDialog>([](QFileDialog& dialog) { dialog.reject(); });
    window.AddView();
    QVERIFY(window.Show());
}

void TestExport::Choose(const Window& window, const char* item)
{
    const QList<QAction*> actions = window->findChildren<QAction*>();
    const auto found = std::find_if(actions.begin(), actions.end(), [item](const QAction* action) {
        return action->text() == QString::fromLatin1(item);
    });
    QVERIFY2(found != actions.end(), item);
    (*found)->trigger();
}

void TestExport::ChooseAndType(const Window& window, const Asking& asking, const std::string& name)
{
    dialogs->Expect<QFileDialog>([name](QFileDialog& dialog) { TypeName(dialog, name); });
    Choose(window, asking.item);
}

void TestExport::SaveAs(const Window& window, const std::string& name)
{
    ChooseAndType(window, kSave, name);
}

constexpr QPoint kZoomFrom(160, 120);
constexpr QPoint kZoomTo(480, 340);
// What the drag between them shows in a view of the usual size, drawing units.
constexpr Rect kZoomArea = {1024, 780, 3072, 2210, 2048, 1430};

void TestExport::Zoom(const Window& window)
{
    QCOMPARE(gpDraw->size(), kViewSize);
    QTest::mousePress(window->view, Qt::LeftButton, {}, kZoomFrom);
    QTest::mouseMove(window->view, kZoomTo);
    QTest::mouseRelease(window->view, Qt::LeftButton, {}, kZoomTo);
    Settle();
    QCOMPARE(ShownArea(*gpDraw), QRect(1024, 780, 2048, 1430));
}

// Makes a file the target of the view's printer, which the print dialog gives away.
void TestExport::PrintInto(const Window& window, const std::string& pdf)
{
    dialogs->Expect<QPrintDialog>([pdf](QPrintDialog& dialog) {
        dialog.printer()->setOutputFileName(Text(pdf));
        dialog.reject();
    });
    window->view->printIt();
    QCOMPARE(dialogs->Pending(), 0);
}

void TestExport::appendFileExt_addsTheMissingExtension_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("extension");
    QTest::addColumn<QString>("result");
    const auto row = [](const char* name, const char* result, const char* extension = ".jpg") {
        QTest::addRow("%s + %s", name, extension)
            << QString::fromUtf8(name) << QByteArray(extension) << QString::fromUtf8(result);
    };
    row("graph", "graph.jpg");
    row("graph", "graph.plf", ".plf");
    row("graph", "graph.eps", ".eps");
    row("graph.jpg", "graph.jpg");
    row("graph.JPG", "graph.JPG");
    row("graph.Jpg", "graph.Jpg");
    row("graph.png", "graph.png");
    row("graph.bak", "graph.bak", ".plf");
    row("graph.jpg.old", "graph.jpg.old");
    row("graph.", "graph.");
    row("graphjpg", "graphjpg.jpg");
    row("/data/set.2/graph", "/data/set.2/graph.jpg");
    row("/data/set.2/graph.jpg", "/data/set.2/graph.jpg");
    row("/data/set.2/graph.3", "/data/set.2/graph.3");
    row("/data/set.jpg/graph", "/data/set.jpg/graph.jpg");
    row(".hidden", ".hidden");
    row("/data/.hidden", "/data/.hidden");
    row("./graph", "./graph.jpg");
    row("../graph", "../graph.jpg");
    row("..", "..");
    row(".jpg", ".jpg");
    row("/graph", "/graph.jpg");
    row("C:\\set.2\\graph", "C:\\set.2\\graph.jpg");
    row("C:\\set.2\\graph.png", "C:\\set.2\\graph.png");
    row("\\graph", "\\graph.jpg");
    // The last '/' counts whenever there is one, wherever the '\' stands.
    row("set.2\\new/graph", "set.2\\new/graph.jpg");
    row("data/set.2\\graph", "data/set.2\\graph");
    row("data.1/set\\graph", "data.1/set\\graph.jpg");
    row("graph name", "graph name.jpg");
    row("Größe", "Größe.jpg");
    row("Größe.Ä", "Größe.Ä");
    row("", ".jpg");
    row("/data.1/", "/data.1/.jpg");
}

void TestExport::appendFileExt_addsTheMissingExtension()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, extension);
    QFETCH(QString, result);
    AppendFileExt(name, extension.constData());
    QCOMPARE(name, result);
    AppendFileExt(name, extension.constData());
    QCOMPARE(name, result);
}

// Bytes of every value, in no order that would hide a lost block.
static std::string Bytes(size_t count)
{
    std::string bytes(count, '\0');
    unsigned value = 1;
    for (char& byte : bytes) {
        value = value * 1103515245U + 12345U;
        byte = static_cast<char>(value >> 16);
    }
    return bytes;
}

void TestExport::copyFile_copiesEveryByte_data()
{
    QTest::addColumn<int>("size");
    for (const int size : {0, 1, 2, 4095, 4096, 4097, 65536, 3'000'001})
        QTest::addRow("%d bytes", size) << size;
}

void TestExport::copyFile_copiesEveryByte()
{
    QFETCH(int, size);
    const std::string bytes = Bytes(static_cast<size_t>(size));
    const std::string from = directories->Write("from", bytes);
    QCOMPARE(copyFile(Path("to").c_str(), from.c_str()), long{size});
    QVERIFY(Exists(Path("to")));
    QVERIFY(ReadFile(Path("to")) == QByteArray::fromStdString(bytes));
    QVERIFY(ReadFile(from) == QByteArray::fromStdString(bytes));
}

void TestExport::copyFile_replacesALongerFile()
{
    const std::string from = directories->Write("from", "short");
    const std::string to = directories->Write("to", "much longer than the other");
    QCOMPARE(copyFile(to.c_str(), from.c_str()), 5L);
    QCOMPARE(ReadFile(to), QByteArray("short"));
}

void TestExport::copyFile_withoutASource_copiesNothing_data()
{
    QTest::addColumn<QByteArray>("source");
    QTest::newRow("missing file") << QByteArray("none");
    QTest::newRow("missing folder") << QByteArray("none/none");
    QTest::newRow("no name") << QByteArray("");
}

void TestExport::copyFile_withoutASource_copiesNothing()
{
    QFETCH(QByteArray, source);
    const CurrentDirectory current(Path("here"));
    QCOMPARE(copyFile(Path("to").c_str(), source.constData()), 0L);
    QVERIFY(QFileInfo(Text(Path("to"))).size() == 0);
}

void TestExport::copyFile_withoutADestination_copiesNothing()
{
    const std::string from = directories->Write("from", "text");
    QCOMPARE(copyFile(Path("none/to").c_str(), from.c_str()), 0L);
    QVERIFY(!Exists(Path("none")));
    QCOMPARE(ReadFile(from), QByteArray("text"));
}

// A file without content can be larger than the memory that the process may have.
void TestExport::copyFile_withoutMemory_returnsOne()
{
    constexpr off_t kTerabyte = off_t{1} << 40;
    const std::string from = directories->Write("from", "");
    QCOMPARE(truncate(from.c_str(), 2 * kTerabyte), 0);
    constexpr bool limited = kSanitized; // the sanitizer has terabytes of its own
    rlimit before = {};
    QCOMPARE(getrlimit(RLIMIT_AS, &before), 0);
    const rlimit tight = {kTerabyte, before.rlim_max};
    if (!limited)
        QCOMPARE(setrlimit(RLIMIT_AS, &tight), 0);
    const long result = copyFile(Path("to").c_str(), from.c_str());
    QCOMPARE(setrlimit(RLIMIT_AS, &before), 0);
    QCOMPARE(result, 1L);
}

void TestExport::makeCvtSavePath_cutsAtTheMarker_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QByteArray>("marker");
    QTest::addColumn<QByteArray>("kept");
    QTest::newRow("extension") << QByteArray("/data/graph.plf") << QByteArray(".plf")
                               << QByteArray("/data/graph");
    QTest::newRow("first of several")
        << QByteArray("/data/data/data") << QByteArray("data") << QByteArray("/");
    QTest::newRow("at the start") << QByteArray("/data") << QByteArray("/da") << QByteArray("");
    QTest::newRow("the whole path") << QByteArray("/data") << QByteArray("/data") << QByteArray("");
    QTest::newRow("the last character")
        << QByteArray("/data#") << QByteArray("#") << QByteArray("/data");
    QTest::newRow("longest path") << QByteArray(kPathSize - 2, 'x') + '#' << QByteArray("#")
                                  << QByteArray(kPathSize - 2, 'x');
}

void TestExport::makeCvtSavePath_cutsAtTheMarker()
{
    QFETCH(QByteArray, path);
    QFETCH(QByteArray, marker);
    QFETCH(QByteArray, kept);
    const char* cut = MakeCvtSavePath(path.constData(), marker.constData());
    QCOMPARE(cut - gszCvtSavePath, kept.size());
    QCOMPARE(QByteArray(gszCvtSavePath), kept);
}

void TestExport::makeCvtSavePath_withoutTheMarker_isNull()
{
    QCOMPARE(MakeCvtSavePath("/data/graph", "#"), nullptr);
    QCOMPARE(QByteArray(gszCvtSavePath), QByteArray("/data/graph"));
}

void TestExport::makeCvtSavePath_tooLongPath_isRefused()
{
    QVERIFY(CopyText(gszCvtSavePath, "before"));
    const QByteArray path = QByteArray(kPathSize - 1, 'x') + '#';
    QCOMPARE(MakeCvtSavePath(path.constData(), "#"), nullptr);
    QCOMPARE(QByteArray(gszCvtSavePath), QByteArray("before"));
}

void TestExport::dialogs_haveTheirNamesCaptionsAndFilters_data()
{
    AskingRows();
}

void TestExport::dialogs_haveTheirNamesCaptionsAndFilters()
{
    QFETCH(Asking, asking);
    Window window;
    Open(window);
    const QDir toolkitsChoice = QFileDialog().directory(); // the dialog itself may change it
    int shown = 0;
    dialogs->Expect<QFileDialog>([&](QFileDialog& dialog) {
        ++shown;
        QCOMPARE(dialog.objectName(), QString::fromLatin1(asking.objectName));
        QCOMPARE(dialog.windowTitle(), QString::fromLatin1(asking.caption));
        QCOMPARE(dialog.nameFilters(), QStringList({QString::fromLatin1(asking.filter),
                                                    QStringLiteral("All Files (*)")}));
        QCOMPARE(dialog.selectedNameFilter(), QString::fromLatin1(asking.filter));
        QCOMPARE(dialog.acceptMode(), QFileDialog::AcceptSave);
        QCOMPARE(dialog.fileMode(), QFileDialog::AnyFile);
        QVERIFY(!dialog.testOption(QFileDialog::DontResolveSymlinks));
        QCOMPARE(dialog.defaultSuffix(), QString());
        QCOMPARE(dialog.directory(), toolkitsChoice);
        QCOMPARE(dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->text(), QString());
        QCOMPARE(dialog.parentWidget(), window.Get());
        QVERIFY(dialog.isModal());
    });
    Choose(window, asking.item);
    QCOMPARE(shown, 1);
}

void TestExport::dialogs_translatedTexts_data()
{
    AskingRows();
}

void TestExport::dialogs_translatedTexts()
{
    QFETCH(Asking, asking);
    Window window;
    Open(window);
    const Marker marker;
    dialogs->Expect<QFileDialog>([&](QFileDialog& dialog) {
        QCOMPARE(dialog.nameFilters().constFirst(), u'~' + QString::fromLatin1(asking.filter));
    });
    Choose(window, asking.item);
}

void TestExport::dialogs_cancelled_changeNothing_data()
{
    AskingRows();
}

void TestExport::dialogs_cancelled_changeNothing()
{
    QFETCH(Asking, asking);
    Window window;
    Open(window);
    const CurrentDirectory current(Path("here"));
    const QString status = window->statusBar()->currentMessage();
    QVERIFY(CopyText(gszCvtFilename, "before"));
    dialogs->Expect<QFileDialog>([&](QFileDialog& dialog) {
        auto* edit = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        edit->setText(Text(Path("here/cancelled")));
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    Choose(window, asking.item);
    QCOMPARE(FilesIn(Path("here")), QStringList());
    QCOMPARE(window->statusBar()->currentMessage(), status);
    QCOMPARE(QByteArray(gszCvtFilename), QByteArray("before"));
}

void TestExport::dialogs_existingFile_isKeptUnlessTheUserAgrees_data()
{
    QTest::addColumn<Asking>("asking");
    QTest::addColumn<bool>("isWhole"); // the name is typed with its extension
    for (const Asking& asking : {kSave, kJpeg, kEps}) {
        QTest::addRow("%s, whole name", asking.caption) << asking << true;
        QTest::addRow("%s, without extension", asking.caption) << asking << false;
    }
}

// The dialog asks about the file that will be written; the program itself does not.
void TestExport::dialogs_existingFile_isKeptUnlessTheUserAgrees()
{
    QFETCH(Asking, asking);
    QFETCH(bool, isWhole);
    Window window;
    Open(window);
    const std::string name = std::string("old") + asking.extension;
    const std::string old = directories->Write(name, "content");
    for (const auto answer : {QMessageBox::No, QMessageBox::Yes}) {
        QStringList asked;
        dialogs->Expect<QFileDialog>([&](QFileDialog& dialog) {
            QTimer::singleShot(0, &dialog, [&] {
                auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
                QVERIFY(box != nullptr);
                asked.append(box->text());
                box->button(answer)->click();
            });
            TypeName(dialog, isWhole ? old : Path("old"));
        });
        Choose(window, asking.item);
        QCOMPARE(asked, QStringList(Text(name) + QStringLiteral(" already exists.\n"
                                                                "Do you want to replace it?")));
        QCOMPARE(ReadFile(old) == QByteArray("content"), answer == QMessageBox::No);
    }
}

void TestExport::dialogs_nameOutsideAscii_isUsed_data()
{
    AskingRows();
}

void TestExport::dialogs_nameOutsideAscii_isUsed()
{
    QFETCH(Asking, asking);
    Window window;
    Open(window);
    ChooseAndType(window, asking, Path("work/Größe der Lücke 漢"));
    QCOMPARE(FilesIn(Path("work")), QStringList(QString::fromUtf8("Größe der Lücke 漢") +
                                                QLatin1String(asking.extension)));
}

void TestExport::dialogs_quittingWhileOpen_isSurvived_data()
{
    AskingRows();
}

void TestExport::dialogs_quittingWhileOpen_isSurvived()
{
    QFETCH(Asking, asking);
    Window window;
    Open(window);
    dialogs->Expect<QFileDialog>([](QFileDialog&) { QCoreApplication::quit(); });
    QTimer::singleShot(0, window.Get(), [&] { Choose(window, asking.item); });
    QCOMPARE(QApplication::exec(), 0);
    QTRY_VERIFY(window.IsGone());
}

void TestExport::userExports_doNotAskToQuit_data()
{
    AskingRows();
}

void TestExport::userExports_doNotAskToQuit()
{
    QFETCH(Asking, asking);
    Window window;
    Open(window);
    gbCmdQuit = true;
    const QuitCounter quits;
    QTimer::singleShot(0, window.Get(), [&] {
        ChooseAndType(window, asking, Path("out"));
        QCoreApplication::exit(7);
    });
    QCOMPARE(QApplication::exec(), 7);
    QCOMPARE(quits.count, 0);
    QVERIFY(Exists(Path("out") + asking.extension));
}

void TestExport::userExports_whileAnotherJobIsPending_ask_data()
{
    QTest::addColumn<Asking>("asking");
    QTest::addColumn<int>("jobs");
    QTest::newRow("JPEG") << kJpeg << (kJobPrint | kJobEps);
    QTest::newRow("EPS") << kEps << (kJobPrint | kJobJpeg);
}

void TestExport::userExports_whileAnotherJobIsPending_ask()
{
    QFETCH(Asking, asking);
    QFETCH(int, jobs);
    Window window;
    Open(window);
    giCmdArg = jobs;
    ChooseAndType(window, asking, Path("out"));
    QVERIFY(Exists(Path("out") + asking.extension));
    QCOMPARE(giCmdArg, jobs);
}

void TestExport::graphAndView_areLeftAsTheyWere_data()
{
    AskingRows();
}

void TestExport::graphAndView_areLeftAsTheyWere()
{
    QFETCH(Asking, asking);
    Window window;
    Open(window);
    Zoom(window);
    const QImage picture = gpDraw->grab().toImage();
    const char* buffer = gpPlfmembuf;
    ChooseAndType(window, asking, Path("out"));
    QCOMPARE(gpPlfmembuf, buffer);
    QCOMPARE(QByteArray(gpPlfmembuf, static_cast<qsizetype>(gdwFilesize)),
             QByteArray::fromStdString(Graph()));
    QCOMPARE(ShownArea(*gpDraw), QRect(1024, 780, 2048, 1430));
    QCOMPARE(gpDraw->grab().toImage(), picture);
    QCOMPARE(QByteArray(gszPlffileOrig), QByteArray::fromStdString(Path("a.plf")));
    QCOMPARE(window->windowTitle(), QStringLiteral("KORVEL Viewer - a.plf"));
}

void TestExport::saveAs_name_getsTheExtension_data()
{
    QTest::addColumn<QByteArray>("typed");
    QTest::addColumn<QByteArray>("written");
    QTest::newRow("none") << QByteArray("copy") << QByteArray("copy.plf");
    QTest::newRow("its own") << QByteArray("copy.plf") << QByteArray("copy.plf");
    QTest::newRow("another") << QByteArray("copy.bak") << QByteArray("copy.bak");
    QTest::newRow("capitals") << QByteArray("copy.PLF") << QByteArray("copy.PLF");
    QTest::newRow("hidden") << QByteArray(".copy") << QByteArray(".copy");
}

void TestExport::saveAs_name_getsTheExtension()
{
    QFETCH(QByteArray, typed);
    QFETCH(QByteArray, written);
    Window window;
    Open(window);
    SaveAs(window, Path("work/") + typed.toStdString());
    QCOMPARE(FilesIn(Path("work")), QStringList(QString::fromLatin1(written)));
    QCOMPARE(ReadFile(Path("work/") + written.toStdString()), QByteArray::fromStdString(Graph()));
}

void TestExport::saveAs_copy_hasTheBytesOfTheFile_data()
{
    QTest::addColumn<int>("size");
    QTest::newRow("the header alone") << 0;
    QTest::newRow("small") << 1000;
    QTest::newRow("large") << 5'000'000;
}

void TestExport::saveAs_copy_hasTheBytesOfTheFile()
{
    QFETCH(int, size);
    const std::string bytes = plf::Header() + Bytes(static_cast<size_t>(size));
    Window window;
    window.AddViewOf(directories->Write("bytes.plf", bytes));
    SaveAs(window, Path("copy"));
    QVERIFY(ReadFile(Path("copy.plf")) == QByteArray::fromStdString(bytes));
}

void TestExport::saveAs_changedFileOnDisk_copiesWhatWasRead()
{
    Window window;
    Open(window);
    static_cast<void>(directories->Write("a.plf", "something else"));
    SaveAs(window, Path("copy"));
    QCOMPARE(ReadFile(Path("copy.plf")), QByteArray::fromStdString(Graph()));
}

void TestExport::saveAs_overTheLoadedFile_keepsIt()
{
    Window window;
    Open(window);
    SaveAs(window, Path("a")); // a.plf is the loaded file
    QCOMPARE(ReadFile(Path("a.plf")), QByteArray::fromStdString(Graph()));
}

void TestExport::saveAs_ctrlS_asks()
{
    Window window;
    Open(window);
    const std::string copy = Path("copy");
    dialogs->Expect<QFileDialog>([copy](QFileDialog& dialog) { TypeName(dialog, copy); });
    QTest::keyClick(window.Get(), Qt::Key_S, Qt::ControlModifier);
    QTRY_VERIFY_WITH_TIMEOUT(Exists(Path("copy.plf")), kPatience);
}

void TestExport::saveAs_saysSavedForFiveSeconds()
{
    Window window;
    Open(window);
    SaveAs(window, Path("copy"));
    QCOMPARE(window->statusBar()->currentMessage(),
             Text(Path("copy.plf")) + QStringLiteral(" saved."));
    QCOMPARE(fixture::StatusTime(window), kSaveStatusTime);
    fixture::EndStatusTime(window);
    QCOMPARE(window->statusBar()->currentMessage(), QString());
}

void TestExport::saveAs_nothingLoaded_saysSoForFiveSeconds()
{
    Window window;
    OpenEmpty(window);
    Choose(window, kSave.item);
    QCOMPARE(window->statusBar()->currentMessage(), QStringLiteral("Nothing to save"));
    QCOMPARE(fixture::StatusTime(window), kSaveStatusTime);
    fixture::EndStatusTime(window);
    QCOMPARE(window->statusBar()->currentMessage(), QString());
}

void TestExport::saveAs_afterAFailedLoad_hasNothingToSave()
{
    Window window;
    Open(window);
    Box box;
    fixture::ExpectBox(*dialogs, box);
    window->load(Text(Path("none.plf")));
    Choose(window, kSave.item);
    QCOMPARE(window->statusBar()->currentMessage(), QStringLiteral("Nothing to save"));
}

// Gives the file dialog a name below the test's directory. The caller calls setfsuid(geteuid())
// afterwards: in the locked folder nobody shall write, and root could.
void TestExport::ExpectUnwritableName(const std::string& name)
{
    constexpr uid_t kNobody = 65534;
    const bool locked = name.rfind("locked/", 0) == 0;
    dialogs->Expect<QFileDialog>([locked, path = Path(name)](QFileDialog& dialog) {
        TypeName(dialog, path);
        if (locked)
            setfsuid(kNobody);
    });
}

// Makes what cannot be written, under names with an extension.
void TestExport::MakeUnwritable(const char* extension)
{
    QVERIFY(QDir().mkpath(Text(Path("folder") + extension)));
    QCOMPARE(symlink("/dev/full", (Path("full") + extension).c_str()), 0);
    QCOMPARE(mkfifo((Path("pipe") + extension).c_str(), 0666), 0);
    LockFolder();
}

// Others may come as far as to this folder, but not write into it.
void TestExport::LockFolder()
{
    QVERIFY(QDir().mkpath(Text(Path("locked"))));
    QCOMPARE(chmod(Path("").c_str(), 0711), 0);
    QCOMPARE(chmod(Path("locked").c_str(), 0555), 0);
}

// Saves under a name that cannot be written.
void TestExport::CheckSaveError(const Window& window, const std::string& name,
                                const std::string& told)
{
    const QString status = window->statusBar()->currentMessage();
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
    QCOMPARE(window->statusBar()->currentMessage(), status);
    QVERIFY(gpPlfmembuf != nullptr);
}

void TestExport::saveAs_unwritableTarget_isReported_data()
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

void TestExport::saveAs_unwritableTarget_isReported()
{
    QFETCH(QByteArray, typed);
    QFETCH(QByteArray, told);
    MakeUnwritable(".plf");
    Window window;
    Open(window);
    CheckSaveError(window, typed.toStdString(), Path(told.toStdString()));
}

void TestExport::saveAs_nameWithMarkup_isShownAsItIs()
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

void TestExport::saveAs_folderWithoutPermission_isReported()
{
    Window window;
    Open(window);
    LockFolder();
    CheckSaveError(window, "locked/copy", Path("locked/copy.plf"));
    QCOMPARE(chmod(Path("locked").c_str(), 0700), 0);
    QCOMPARE(FilesIn(Path("locked")), QStringList());
}

// Neither the writing nor the closing is watched.
void TestExport::saveAs_fullDisk_isNotReported()
{
    Window window;
    Open(window);
    QCOMPARE(symlink("/dev/full", Path("full.plf").c_str()), 0);
    SaveAs(window, Path("full"));
    QCOMPARE(window->statusBar()->currentMessage(),
             Text(Path("full.plf")) + QStringLiteral(" saved."));
}

void TestExport::saveAs_linkedFile_writesItsTarget()
{
    Window window;
    Open(window);
    const std::string target = directories->Write("target", "old");
    QCOMPARE(symlink(target.c_str(), Path("link.plf").c_str()), 0);
    SaveAs(window, Path("link"));
    QCOMPARE(ReadFile(target), QByteArray::fromStdString(Graph()));
    QVERIFY(QFileInfo(Text(Path("link.plf"))).isSymLink());
}

void TestExport::saveAs_graphReplacedMeanwhile_copiesTheNewOne()
{
    const std::string other = plf::Start() + plf::Line(1, 2, 3, 4) + plf::End();
    const std::string path = directories->Write("b.plf", other);
    const std::string copy = Path("copy");
    Window window;
    Open(window);
    dialogs->Expect<QFileDialog>([&](QFileDialog& dialog) {
        window->load(Text(path));
        TypeName(dialog, copy);
    });
    Choose(window, kSave.item);
    QCOMPARE(ReadFile(Path("copy.plf")), QByteArray::fromStdString(other));
}

void TestExport::saveAs_graphDroppedMeanwhile_writesNothing()
{
    const std::string copy = Path("copy");
    Window window;
    Open(window);
    dialogs->Expect<QFileDialog>([&](QFileDialog& dialog) {
        FreePlfBuffer();
        TypeName(dialog, copy);
    });
    Choose(window, kSave.item);
    QVERIFY(!Exists(Path("copy.plf")));
}

void TestExport::jpeg_hasTheSizeOfTheView_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("usual") << kViewSize;
    QTest::newRow("wide") << QSize(900, 200);
    QTest::newRow("high") << QSize(300, 700);
}

void TestExport::jpeg_hasTheSizeOfTheView()
{
    QFETCH(QSize, size);
    Window window;
    Open(window, size);
    ChooseAndType(window, kJpeg, Path("out"));
    const QImage image(Text(Path("out.jpg")), "JPEG");
    QCOMPARE(image.size(), size);
}

void TestExport::jpeg_showsWhatTheViewShows_data()
{
    QTest::addColumn<bool>("zoomed");
    QTest::newRow("whole") << false;
    QTest::newRow("zoomed") << true;
}

void TestExport::jpeg_showsWhatTheViewShows()
{
    constexpr int kJpegError = 12; // levels of 255, at the best quality
    QFETCH(bool, zoomed);
    Window window;
    Open(window);
    if (zoomed)
        Zoom(window);
    ChooseAndType(window, kJpeg, Path("out"));
    const QImage view = gpDraw->grab().toImage();
    const QImage image(Text(Path("out.jpg")), "JPEG");
    QCOMPARE(image.size(), view.size());
    const int difference = Difference(image, view);
    QVERIFY2(difference <= kJpegError, qPrintable(QString::number(difference)));
    QImage blank(view.size(), QImage::Format_RGB32);
    blank.fill(Qt::white);
    QVERIFY(Difference(view, blank) == 255);
}

void TestExport::jpeg_quality_isTenTimesTheSetting_data()
{
    QTest::addColumn<int>("setting");
    QTest::addColumn<int>("quality");
    QTest::newRow("best, the default") << 10 << 100;
    QTest::newRow("7") << 7 << 70;
    QTest::newRow("5") << 5 << 50;
    QTest::newRow("1") << 1 << 10;
    QTest::newRow("worst") << 0 << 0;
}

void TestExport::jpeg_quality_isTenTimesTheSetting()
{
    QFETCH(int, setting);
    QFETCH(int, quality);
    Window window;
    Open(window);
    QCOMPARE(giExportQuality, 10);
    giExportQuality = setting;
    ChooseAndType(window, kJpeg, Path("out"));
    const QImage view = gpDraw->grab().toImage();
    const QByteArray bytes = ReadFile(Path("out.jpg"));
    QVERIFY(bytes == Jpeg(view, quality));
    QVERIFY(quality == 100 || bytes.size() < Jpeg(view, quality + 10).size());
}

void TestExport::jpeg_quality_fromTheConfigurationFile()
{
    static_cast<void>(directories->Write("home/plotvw.cfg", "export_quality=7\n"));
    Window window;
    Open(window);
    ChooseAndType(window, kJpeg, Path("out"));
    QVERIFY(ReadFile(Path("out.jpg")) == Jpeg(gpDraw->grab().toImage(), 70));
}

void TestExport::jpeg_absurdQuality_isSurvived_data()
{
    QTest::addColumn<int>("setting");
    for (const int setting : {-1, 11, 1000, std::numeric_limits<int>::max(),
                              std::numeric_limits<int>::min(), 429496730})
        QTest::addRow("%d", setting) << setting;
}

// The toolkit takes too much for the best, and less than nothing for its own choice.
void TestExport::jpeg_absurdQuality_isSurvived()
{
    constexpr int kToolkitsChoice = -1;
    QFETCH(int, setting);
    Window window;
    Open(window);
    giExportQuality = setting;
    ChooseAndType(window, kJpeg, Path("out"));
    const QByteArray expected = Jpeg(gpDraw->grab().toImage(), setting > 0 ? 100 : kToolkitsChoice);
    QVERIFY(ReadFile(Path("out.jpg")) == expected);
}

static void ExportNameRows(const char* extension)
{
    QTest::addColumn<QByteArray>("typed");
    QTest::addColumn<QByteArray>("written");
    const QByteArray ext = extension;
    QTest::newRow("none") << QByteArray("out") << "out" + ext;
    QTest::newRow("its own") << "out" + ext << "out" + ext;
    QTest::newRow("capitals") << "out" + ext.toUpper() << "out" + ext.toUpper();
    QTest::newRow("another") << QByteArray("out.png") << QByteArray("out.png");
    QTest::newRow("hidden") << QByteArray(".out") << QByteArray(".out");
}

void TestExport::jpeg_name_getsTheExtension_data()
{
    ExportNameRows(".jpg");
}

// Whatever the name says, the file is a JPEG.
void TestExport::jpeg_name_getsTheExtension()
{
    QFETCH(QByteArray, typed);
    QFETCH(QByteArray, written);
    Window window;
    Open(window);
    const std::string path = Path("work/") + written.toStdString();
    ChooseAndType(window, kJpeg, Path("work/") + typed.toStdString());
    QCOMPARE(FilesIn(Path("work")), QStringList(QString::fromLatin1(written)));
    QVERIFY(ReadFile(path).startsWith("\xff\xd8\xff"));
    QCOMPARE(QByteArray(gszCvtFilename), QByteArray::fromStdString(path));
}

void TestExport::jpeg_withoutAGraph_isThePictureOfTheEmptyView()
{
    Window window;
    OpenEmpty(window);
    ChooseAndType(window, kJpeg, Path("out"));
    QVERIFY(ReadFile(Path("out.jpg")) == Jpeg(gpDraw->grab().toImage(), 100));
}

void TestExport::jpeg_failure_isReportedWithoutAParent_data()
{
    QTest::addColumn<QByteArray>("typed");
    QTest::addColumn<QByteArray>("told");
    QTest::newRow("missing folder") << QByteArray("none/out") << QByteArray("none/out.jpg");
    QTest::newRow("below a file") << QByteArray("a.plf/out.png") << QByteArray("a.plf/out.png");
    QTest::newRow("a folder's name") << QByteArray("folder") << QByteArray("folder.jpg");
    QTest::newRow("full disk") << QByteArray("full") << QByteArray("full.jpg");
    QTest::newRow("pipe that nobody reads") << QByteArray("pipe") << QByteArray("pipe.jpg");
    QTest::newRow("folder without permission")
        << QByteArray("locked/out") << QByteArray("locked/out.jpg");
}

void TestExport::jpeg_failure_isReportedWithoutAParent()
{
    QFETCH(QByteArray, typed);
    QFETCH(QByteArray, told);
    MakeUnwritable(".jpg");
    Window window;
    Open(window);
    Box box;
    ExpectUnwritableName(typed.toStdString());
    fixture::ExpectBox(*dialogs, box);
    Choose(window, kJpeg.item);
    setfsuid(geteuid());
    QCOMPARE(box.shown, 1);
    QCOMPARE(box.title, QStringLiteral("Save failed"));
    QCOMPARE(box.text, QStringLiteral("Export failed for file: ") + Text(Path(told.toStdString())));
    QCOMPARE(box.icon, QMessageBox::Critical);
    QCOMPARE(box.buttons, QMessageBox::Ok);
    QCOMPARE(box.parent, nullptr);
    QVERIFY(box.isModal);
}

// So small that its bytes are written only when the file is closed.
void TestExport::jpeg_smallPictureOnAFullDisk_isReported()
{
    QCOMPARE(symlink("/dev/full", Path("full.jpg").c_str()), 0);
    Window window;
    Open(window, QSize(300, 200));
    giExportQuality = 0;
    QVERIFY(Jpeg(gpDraw->grab().toImage(), 0).size() < BUFSIZ / 2);
    Box box;
    ExpectUnwritableName("full");
    fixture::ExpectBox(*dialogs, box);
    Choose(window, kJpeg.item);
    QCOMPARE(box.title, QStringLiteral("Save failed"));
}

// The picture is smaller than what a pipe holds.
void TestExport::jpeg_intoAPipeThatIsRead_isWritten()
{
    Window window;
    Open(window, QSize(300, 200));
    QCOMPARE(mkfifo(Path("pipe.jpg").c_str(), 0600), 0);
    const int reader = open(Path("pipe.jpg").c_str(), O_RDONLY | O_NONBLOCK);
    QVERIFY(reader >= 0);
    ChooseAndType(window, kJpeg, Path("pipe"));
    char piped[65536];
    const QByteArray bytes(piped, std::max<ssize_t>(read(reader, piped, sizeof piped), 0));
    close(reader);
    QVERIFY(bytes == Jpeg(gpDraw->grab().toImage(), 100));
}

void TestExport::eps_isWhatTheInterpreterWrites_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("usual") << kViewSize;
    QTest::newRow("twice as wide") << QSize(1280, 480);
    QTest::newRow("half as wide") << QSize(320, 480);
}

void TestExport::eps_isWhatTheInterpreterWrites()
{
    QFETCH(QSize, size);
    Window window;
    Open(window, size);
    ChooseAndType(window, kEps, Path("out"));
    QCOMPARE(QByteArray(gszCvtFilename), QByteArray::fromStdString(Path("out.eps")));
    QCOMPARE(ReadFile(Path("out.eps")), Eps({.widthScale = size.width() / 640.0}));
}

void TestExport::eps_zoomed_isWhatTheInterpreterWrites()
{
    Window window;
    Open(window);
    Zoom(window);
    ChooseAndType(window, kEps, Path("out"));
    const QByteArray eps = ReadFile(Path("out.eps"));
    QCOMPARE(eps, Eps({.widthScale = 2.0, .zoom = kZoomArea}));
    QVERIFY(eps != Eps());
}

void TestExport::eps_name_getsTheExtension_data()
{
    ExportNameRows(".eps");
}

void TestExport::eps_name_getsTheExtension()
{
    QFETCH(QByteArray, typed);
    QFETCH(QByteArray, written);
    Window window;
    Open(window);
    ChooseAndType(window, kEps, Path("work/") + typed.toStdString());
    QCOMPARE(FilesIn(Path("work")), QStringList(QString::fromLatin1(written)));
    QVERIFY(ReadFile(Path("work/") + written.toStdString()).startsWith("%!PS-Adobe-3.0 EPSF-3.0"));
}

void TestExport::eps_withoutAGraph_writesNothing()
{
    const std::string old = directories->Write("old.eps", "content");
    Window window;
    OpenEmpty(window);
    ChooseAndType(window, kEps, Path("out"));
    QVERIFY(!Exists(Path("out.eps")));
    ChooseAndType(window, kEps, Path("old"));
    QCOMPARE(ReadFile(old), QByteArray("content"));
}

void TestExport::eps_failure_isNotReported_data()
{
    QTest::addColumn<QByteArray>("typed");
    QTest::newRow("missing folder") << QByteArray("none/out");
    QTest::newRow("below a file") << QByteArray("a.plf/out");
    QTest::newRow("a folder's name") << QByteArray("folder");
    QTest::newRow("full disk") << QByteArray("full");
    QTest::newRow("pipe that nobody reads") << QByteArray("pipe");
    QTest::newRow("folder without permission") << QByteArray("locked/out");
}

void TestExport::eps_failure_isNotReported()
{
    QFETCH(QByteArray, typed);
    MakeUnwritable(".eps");
    Window window;
    Open(window);
    const QString status = window->statusBar()->currentMessage();
    ExpectUnwritableName(typed.toStdString());
    Choose(window, kEps.item);
    setfsuid(geteuid());
    QCOMPARE(window->statusBar()->currentMessage(), status);
    QCOMPARE(FilesIn(Path("locked")), QStringList());
}

static void JobRows()
{
    QTest::addColumn<QByteArray>("option");
    QTest::addColumn<QByteArray>("extension");
    QTest::newRow("JPEG") << QByteArray("-c=1") << QByteArray(".jpg");
    QTest::newRow("EPS") << QByteArray("-c=2") << QByteArray(".eps");
}

void TestExport::job_loadedFile_namesTheExport_data()
{
    JobRows();
}

// Names are given as options alone, because a path may hold what counts as one.
void TestExport::job_loadedFile_namesTheExport()
{
    QFETCH(QByteArray, option);
    QFETCH(QByteArray, extension);
    const std::string graph = directories->Write("work/run1.plf", Graph());
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
    QCOMPARE(ReadFile(graph), QByteArray::fromStdString(Graph()));
}

void TestExport::job_secondFile_keepsTheNameOfTheFirst()
{
    Window window;
    Open(window);
    window->load(Text(directories->Write("b.plf", Graph())));
    giCmdArg = kJobJpeg | kJobEps;
    gpDraw->PostCmdargDone(0);
    QVERIFY(Exists(Path("a.jpg")) && Exists(Path("a.eps")));
    QVERIFY(!Exists(Path("b.jpg")) && !Exists(Path("b.eps")));
}

void TestExport::job_givenName_isCompleted_data()
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

void TestExport::job_givenName_isCompleted()
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

void TestExport::job_nameThatIsNoText_isUsedByteByByte_data()
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
void TestExport::job_nameThatIsNoText_isUsedByteByByte()
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

void TestExport::job_exportPath_staysUntilTheNext()
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
void TestExport::job_showsNoDialog()
{
    Window window;
    Open(window);
    giCmdArg = kJobPrint | kJobJpeg | kJobEps;
    gpDraw->PostCmdargDone(0);
    QCOMPARE(giCmdArg, 0);
}

void TestExport::job_emptyName_staysPending_data()
{
    QTest::addColumn<int>("jobs");
    QTest::newRow("JPEG") << int{kJobJpeg};
    QTest::newRow("EPS") << int{kJobEps};
    QTest::newRow("both") << (kJobJpeg | kJobEps);
}

void TestExport::job_emptyName_staysPending()
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

void TestExport::job_tooLongName_isRefused_data()
{
    QTest::addColumn<int>("folder"); // length, 0 = none
    QTest::addColumn<int>("name");
    QTest::addColumn<QByteArray>("length");
    QTest::newRow("name with its extension") << 0 << 1020 << QByteArray();
    QTest::newRow("folder and name") << 1000 << 20 << QByteArray("1025");
    QTest::newRow("longest folder") << 2047 << 1 << QByteArray("2053");
    QTest::newRow("one too many") << 1018 << 1 << QByteArray("1024");
}

void TestExport::job_tooLongName_isRefused()
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
void TestExport::job_longestName_isUsed()
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

void TestExport::job_jpegFails_goesOnToEpsAndQuit()
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

void TestExport::job_epsFails_goesOnToQuit()
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

void TestExport::job_jpegFails_quittingMeanwhile_isSurvived()
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

void TestExport::chain_runsPrintJpegAndEpsOnceEach()
{
    Window window;
    Open(window);
    PrintInto(window, Path("a.pdf"));
    giCmdArg = kJobPrint | kJobJpeg | kJobEps;
    QCOMPARE(giCmdArg, 7);
    const JobLog jobs(Path("a.pdf"), Path("a.jpg"), Path("a.eps"));
    gpDraw->PostCmdargDone(0);
    Settle();
    QCOMPARE(jobs.log, QStringList({QStringLiteral("print while 7"), QStringLiteral("JPEG while 6"),
                                    QStringLiteral("EPS while 4")}));
    QCOMPARE(giCmdArg, 0);
}

void TestExport::chain_quitRequest_followsTheEps()
{
    Window window;
    Open(window);
    PrintInto(window, Path("a.pdf"));
    giCmdArg = 7;
    gbCmdQuit = true;
    const JobLog jobs(Path("a.pdf"), Path("a.jpg"), Path("a.eps"));
    QTimer::singleShot(0, window.Get(), [] { gpDraw->PostCmdargDone(0); });
    QCOMPARE(QApplication::exec(), 0);
    QCOMPARE(jobs.log,
             QStringList({QStringLiteral("print while 7"), QStringLiteral("JPEG while 6"),
                          QStringLiteral("EPS while 4"), QStringLiteral("quit while 0")}));
    QCOMPARE(giCmdArg, 0);
    QTRY_VERIFY(window.IsGone());
}

void TestExport::chain_nothingPending_theFirstCallAsksToQuit()
{
    Window window;
    Open(window);
    gbCmdQuit = true;
    QCOMPARE(giCmdArg, 0);
    const QuitCounter quits;
    int inTheCall = 0;
    QTimer::singleShot(0, window.Get(), [&] {
        gpDraw->PostCmdargDone(0);
        inTheCall = quits.count;
    });
    QCOMPARE(QApplication::exec(), 0);
    QCOMPARE(inTheCall, 1);
    QCOMPARE(quits.count, 1);
}

void TestExport::chain_withoutTheQuitOption_doesNotAskToQuit()
{
    Window window;
    Open(window);
    giCmdArg = kJobJpeg;
    const QuitCounter quits;
    QTimer::singleShot(0, window.Get(), [] {
        gpDraw->PostCmdargDone(0);
        gpDraw->PostCmdargDone(0);
        QCoreApplication::exit(7);
    });
    QCOMPARE(QApplication::exec(), 7);
    QCOMPARE(giCmdArg, 0);
    QCOMPARE(quits.count, 0);
}

void TestExport::chain_withoutAPrinter_goesOn()
{
    Window window;
    Open(window);
    giCmdArg = 7;
    gbCmdQuit = true;
    const JobLog jobs(Path("a.pdf"), Path("a.jpg"), Path("a.eps"));
    QTimer::singleShot(0, window.Get(), [] { gpDraw->PostCmdargDone(0); });
    QCOMPARE(QApplication::exec(), 0);
    QCOMPARE(jobs.log, QStringList({QStringLiteral("JPEG while 6"), QStringLiteral("EPS while 4"),
                                    QStringLiteral("quit while 0")}));
}

// The chain lets events happen before every job.
void TestExport::chain_jobAddedByAnEvent_isRun()
{
    Window window;
    Open(window);
    giCmdArg = kJobJpeg;
    QTimer::singleShot(0, window.Get(), [] { giCmdArg |= kJobEps; });
    gpDraw->PostCmdargDone(0);
    QVERIFY(Exists(Path("a.jpg")) && Exists(Path("a.eps")));
    QCOMPARE(giCmdArg, 0);
}

void TestExport::chain_jobDroppedByAnEvent_isNotRun()
{
    Window window;
    Open(window);
    giCmdArg = kJobJpeg | kJobEps;
    QTimer::singleShot(0, window.Get(), [] { giCmdArg = kJobJpeg; });
    gpDraw->PostCmdargDone(0);
    QVERIFY(Exists(Path("a.jpg")) && !Exists(Path("a.eps")));
    QCOMPARE(giCmdArg, 0);
}

void TestExport::chain_windowClosedByAnEvent_isSurvived()
{
    Window window;
    Open(window);
    giCmdArg = 7;
    QTimer::singleShot(0, window.Get(), [&] {
        QTimer::singleShot(0, window.Get(), [&] { window->close(); });
        gpDraw->PostCmdargDone(0);
    });
    QCOMPARE(QApplication::exec(), 0);
    QTRY_VERIFY(window.IsGone());
}

QTEST_MAIN(TestExport)
#include "test_export.moc"
