// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The host sends the next command while a message box is still open: closing the box must not undo
// that command.
#include "tests/kit/appfixture.h"
#include "tests/kit/hostend.h"

#include <QStatusBar>

#include <optional>

using fixture::Host;
using fixture::Settle;
using fixture::Window;

namespace {

constexpr int kPenWidth = 800; // makes a different picture

std::string Graph(int width = 0)
{
    return plf::Start() + plf::Width(width) + plf::Line(0, 1560, 4095, 1560) + plf::End();
}

// Does something once, when a widget is painted.
class OnPaint : public QObject
{
public:
    OnPaint(QWidget* painted, std::function<void()> toDo) : action(std::move(toDo))
    {
        painted->installEventFilter(this);
    }
    bool eventFilter(QObject* /*object*/, QEvent* event) override
    {
        if (event->type() == QEvent::Paint && action != nullptr)
            std::exchange(action, nullptr)();
        return false;
    }

private:
    std::function<void()> action;
};

} // namespace

class TestBoxes : public QObject, protected fixture::WindowTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void loadError_whileAGraphComes_leavesThatGraph_data();
    void loadError_whileAGraphComes_leavesThatGraph();
    void loadError_atStart_whileAGraphComes_leavesThatGraph();
    void loadError_whileAnotherLoadFails_namesOnlyThatOne();
    void loadError_whileACommandIsRefused_isFollowedByWhatFollowsIt();

    void jobsBox_whileAGraphComes_leavesThatGraph_data();
    void jobsBox_whileAGraphComes_leavesThatGraph();
    void jobsBox_whileAGraphComes_doesTheOtherJobsOnce();
    void jobsBox_whileTheSameJobIsAskedFor_leavesItToTheNextFile();
    void jobsBox_whileAnotherJobIsAskedFor_leavesItToTheNextFile();
    void job_beforeAGraphArrives_isNotRunAgain();
    void job_requestedAgainDuringIt_waitsForTheNextFile();

    void startUpJob_whenAGraphComesFirst_isDoneWithThatGraph();
    void startUpJob_whenACommandWithoutAFileComesFirst_waitsForTheNextFile();

    void closing_dropsPendingJobs();

private:
    void Open(const std::string& path);
    void AwaitAnswer();
    void Send(const QString& command);
    void SendBehindNoFile(const QString& command);
    void ExpectBox(const QString& text, std::function<void()> meanwhile = nullptr);
    void CheckOtherIsShown();

    [[nodiscard]] QString Path(const char* name) const { return Text(directories->Path(name)); }

    std::optional<Host> host;
    std::optional<Window> window;
    std::string graph;
    QString other;
    QString bad;    // no graph
    QString before; // the working directory
    qsizetype answers = 0;
};

// What is to be printed goes nowhere, whatever printers there are.
void TestBoxes::initTestCase()
{
    qputenv("CUPS_SERVER", "/nowhere/printers");
}

void TestBoxes::init()
{
    Begin();
    dialogs->AnswerNested();
    graph = directories->Write("work/graph.plf", Graph());
    other = Text(directories->Write("work/other.plf", Graph(kPenWidth)));
    bad = Text(directories->Write("work/bad.plf", "no graph"));
    // Commands name files in it: the full path may hold an option.
    before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(Path("work")));
    host.emplace(*directories);
    window.emplace();
    answers = 1;
    QVERIFY(host->AwaitViewer());
}

void TestBoxes::cleanup()
{
    window.reset();
    host.reset();
    QVERIFY(QDir::setCurrent(before));
    QCOMPARE(giCmdArg, 0);
    End();
}

void TestBoxes::Open(const std::string& path)
{
    window->AddViewOf(path);
    QVERIFY(window->Show());
    Settle();
}

void TestBoxes::AwaitAnswer()
{
    ++answers;
    QTRY_COMPARE(host->Answers(), answers);
}

// Sends a command that is answered.
void TestBoxes::Send(const QString& command)
{
    host->Send(command);
    AwaitAnswer();
}

// The same after a command without a file: the viewer expects no length.
void TestBoxes::SendBehindNoFile(const QString& command)
{
    host->SendBytes(EncodeFrame(command).sliced(kFrameLengthSize));
    AwaitAnswer();
}

// Expects a box whose text contains text, and calls meanwhile while it is open.
void TestBoxes::ExpectBox(const QString& text, std::function<void()> meanwhile)
{
    dialogs->Expect<QMessageBox>([text, meanwhile = std::move(meanwhile)](QMessageBox& box) {
        QVERIFY2(box.text().contains(text), qPrintable(box.text()));
        if (meanwhile)
            meanwhile();
        box.accept();
    });
}

// "-tmp other.plf" is the current graph in every way.
void TestBoxes::CheckOtherIsShown()
{
    Settle();
    QCOMPARE((*window)->windowTitle(), QStringLiteral("KORVEL Viewer - other.plf"));
    QCOMPARE((*window)->statusBar()->currentMessage(), QStringLiteral("Loaded document other.plf"));
    QCOMPARE(Text(gszPlffileOrig), other);
    QCOMPARE(Text(gszPlffileName), QStringLiteral("other.plf"));
    QCOMPARE(gdwFilesize, Graph(kPenWidth).size());
    QVERIFY(gpPlfmembuf != nullptr);
    QCOMPARE(QByteArray(gpPlfmembuf), QByteArray::fromStdString(Graph(kPenWidth)));
    QVERIFY(QFile::exists(other));
    window.reset();
    QVERIFY(!QFile::exists(other));
}

void TestBoxes::loadError_whileAGraphComes_leavesThatGraph_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::newRow("no graph") << QStringLiteral("bad.plf")
                              << QStringLiteral("not a recognized PLF");
    QTest::newRow("no file") << QStringLiteral("missing.plf") << QStringLiteral("Error opening");
    QTest::newRow("too long a name") << QString(2000, u'x') << QStringLiteral("limit 1023");
}

void TestBoxes::loadError_whileAGraphComes_leavesThatGraph()
{
    QFETCH(QString, name);
    QFETCH(QString, text);
    Open(graph);
    ExpectBox(text, [this] { Send(QStringLiteral("-tmp other.plf")); });
    (*window)->load(name);
    CheckOtherIsShown();
}

void TestBoxes::loadError_atStart_whileAGraphComes_leavesThatGraph()
{
    ExpectBox(QStringLiteral("not a recognized PLF"),
              [this] { Send(QStringLiteral("-tmp other.plf")); });
    Open(bad.toStdString());
    CheckOtherIsShown();
}

// The host's box is on top of the user's and is closed first.
void TestBoxes::loadError_whileAnotherLoadFails_namesOnlyThatOne()
{
    Open(graph);
    ExpectBox(QStringLiteral("not a recognized PLF"),
              [this] { Send(QStringLiteral("missing.plf")); });
    ExpectBox(QStringLiteral("Error opening"));
    (*window)->load(bad);
    QCOMPARE((*window)->statusBar()->currentMessage(),
             QStringLiteral("Error reading ") + Path("work/missing.plf"));
    QCOMPARE(gszPlffileOrig[0], '\0');
    QCOMPARE((*window)->windowTitle(), QStringLiteral("KORVEL Viewer"));
}

// A refused command changes nothing.
void TestBoxes::loadError_whileACommandIsRefused_isFollowedByWhatFollowsIt()
{
    Open(graph);
    ExpectBox(QStringLiteral("not a recognized PLF"),
              [this] { Send(QStringLiteral("other.plf") + QChar(u'\0')); });
    ExpectBox(QStringLiteral("invalid characters"));
    (*window)->load(bad);
    QCOMPARE((*window)->statusBar()->currentMessage(), QStringLiteral("Error reading ") + bad);
    QCOMPARE(gszPlffileOrig[0], '\0');
}

void TestBoxes::jobsBox_whileAGraphComes_leavesThatGraph_data()
{
    QTest::addColumn<int>("job");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QString>("text");
    QTest::newRow("JPEG") << int{kJobJpeg} << QByteArray("/nowhere/first")
                          << QStringLiteral("Export failed for file: /nowhere/first.jpg");
    QTest::newRow("JPEG, too long a name")
        << int{kJobJpeg} << QByteArray(1022, 'x') << QStringLiteral("limit 1023");
    QTest::newRow("EPS, too long a name")
        << int{kJobEps} << QByteArray(1022, 'x') << QStringLiteral("limit 1023");
}

// The failed job is not repeated with the new graph: one box, not two.
void TestBoxes::jobsBox_whileAGraphComes_leavesThatGraph()
{
    QFETCH(int, job);
    QFETCH(QByteArray, name);
    QFETCH(QString, text);
    Open(graph);
    giCmdArg = job;
    QVERIFY(CopyText(gszCvtFilenameBase, name.constData()));
    ExpectBox(text, [this] {
        Send(QStringLiteral("-tmp other.plf"));
        QCOMPARE(giCmdArg, 0);
    });
    (*window)->view->PostCmdargDone(0);
    CheckOtherIsShown();
}

void TestBoxes::jobsBox_whileAGraphComes_doesTheOtherJobsOnce()
{
    const QString eps = Path("work/first.eps");
    QVERIFY(QDir().mkpath(Path("work/first.jpg"))); // cannot be written
    Open(graph);
    giCmdArg = kJobJpeg | kJobEps;
    QVERIFY(CopyText(gszCvtFilenameBase, directories->Path("work/first").c_str()));
    ExpectBox(QStringLiteral("Export failed"), [&] {
        Send(QStringLiteral("other.plf"));
        QVERIFY(QFile::remove(eps));
    });
    (*window)->view->PostCmdargDone(0);
    QVERIFY(!QFile::exists(eps));
}

// The command names no file: its job must not be lost, and not run without a file.
void TestBoxes::jobsBox_whileTheSameJobIsAskedFor_leavesItToTheNextFile()
{
    Open(graph);
    giCmdArg = kJobJpeg;
    QVERIFY(CopyText(gszCvtFilenameBase, "/nowhere/first"));
    const QString jpeg = Path("work/second.jpg");
    ExpectBox(QStringLiteral("Export failed"), [&] {
        host->Send(QStringLiteral("-c=1 -cf=second"));
        QTRY_COMPARE(gszPlffileOrig[0], '\0');
    });
    (*window)->view->PostCmdargDone(0);
    QCOMPARE(giCmdArg, int{kJobJpeg});
    QVERIFY(!QFile::exists(jpeg));
    SendBehindNoFile(QStringLiteral("other.plf"));
    QVERIFY(QFile::exists(jpeg));
}

void TestBoxes::jobsBox_whileAnotherJobIsAskedFor_leavesItToTheNextFile()
{
    Open(graph);
    giCmdArg = kJobJpeg;
    QVERIFY(CopyText(gszCvtFilenameBase, "/nowhere/first"));
    const QString eps = Path("work/second.eps");
    ExpectBox(QStringLiteral("Export failed"), [&] {
        host->Send(QStringLiteral("-c=2 -cf=second"));
        QTRY_COMPARE(gszPlffileOrig[0], '\0');
    });
    (*window)->view->PostCmdargDone(0);
    QCOMPARE(giCmdArg, int{kJobEps});
    SendBehindNoFile(QStringLiteral("other.plf"));
    QVERIFY(QFile::exists(eps));
}

// The command arrives during the job and is read right after it.
void TestBoxes::job_beforeAGraphArrives_isNotRunAgain()
{
    Open(graph);
    const QString jpeg = Path("work/first.jpg");
    const auto exportFirst = [&] {
        giCmdArg = kJobJpeg;
        QVERIFY(CopyText(gszCvtFilenameBase, directories->Path("work/first").c_str()));
        (*window)->view->PostCmdargDone(0);
    };
    exportFirst();
    const QByteArray picture = ReadFile(jpeg);
    QVERIFY(picture.startsWith("\xff\xd8\xff"));
    const OnPaint sending((*window)->view, [this] { host->Send(QStringLiteral("other.plf")); });
    exportFirst();
    AwaitAnswer();
    QCOMPARE(Text(gszPlffileOrig), other);
    QCOMPARE(ReadFile(jpeg), picture);
}

void TestBoxes::job_requestedAgainDuringIt_waitsForTheNextFile()
{
    Open(graph);
    giCmdArg = kJobJpeg;
    const QString jpeg = Path("work/second.jpg");
    const OnPaint sending((*window)->view, [&] { host->Send(QStringLiteral("-c=1 -cf=second")); });
    (*window)->view->PostCmdargDone(0);
    QTRY_COMPARE(gszPlffileOrig[0], '\0');
    QCOMPARE(giCmdArg, int{kJobJpeg});
    QVERIFY(QFile::exists(Path("work/graph.jpg")) && !QFile::exists(jpeg));
    SendBehindNoFile(QStringLiteral("other.plf"));
    QVERIFY(QFile::exists(jpeg));
}

// Neither its jobs nor those of the start have a file.
void TestBoxes::startUpJob_whenACommandWithoutAFileComesFirst_waitsForTheNextFile()
{
    Open(graph);
    giCmdArg = kJobEps;
    host->Send(QStringLiteral("-c=1 -cf=second"));
    (*window)->view->PostCmdargDone(0);
    QTRY_COMPARE(gszPlffileOrig[0], '\0');
    QCOMPARE(giCmdArg, int{kJobJpeg}); // replaces the other job
    QVERIFY(!QFile::exists(Path("work/second.jpg")));
    SendBehindNoFile(QStringLiteral("other.plf"));
    QVERIFY(QFile::exists(Path("work/second.jpg")));
}

// A command that has arrived is run before the first job.
void TestBoxes::startUpJob_whenAGraphComesFirst_isDoneWithThatGraph()
{
    const QString eps = Path("work/first.eps");
    Open(graph);
    Send(QStringLiteral("other.plf -c=2 -cf=first"));
    const QByteArray ofOther = ReadFile(eps);
    (*window)->load(Text(graph));
    Settle();
    giCmdArg = kJobEps;
    host->Send(QStringLiteral("other.plf"));
    (*window)->view->PostCmdargDone(0);
    AwaitAnswer();
    QCOMPARE(ReadFile(eps), ofOther);
}

// They would overwrite files with empty pictures.
void TestBoxes::closing_dropsPendingJobs()
{
    const QString jpeg = Path("work/graph.jpg");
    const QByteArray older("a picture of before");
    QVERIFY(WriteFile(jpeg, older));
    Open(graph);
    giCmdArg = kJobJpeg;
    QMetaObject::invokeMethod(window->Get(), "close", Qt::QueuedConnection);
    (*window)->view->PostCmdargDone(0);
    QVERIFY(!(*window)->isVisible());
    QCOMPARE(ReadFile(jpeg), older);
}

QTEST_MAIN(TestBoxes)

#include "test_boxes.moc"
