// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// PostCmdargDone: one job after the other, and quitting after the last one.
#include "tests/kit/events.h"
#include "tests/kit/exporting.h"
#include "tests/kit/viewfixture.h"

#include <QPrintDialog>
#include <QPrinter>

#include <vector>

using fixture::QuitCounter;
using fixture::Settle;
using fixture::View;
using fixture::Window;

namespace {

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

} // namespace

class TestJobChain : public QObject, protected fixture::ExportTest
{
    Q_OBJECT

private slots:
    void initTestCase() { HidePrinters(); }
    void init() { Begin(); }
    void cleanup() { End(); }

    void postCmdargDone_clearsTheJobsBit_data();
    void postCmdargDone_clearsTheJobsBit();
    void postCmdargDone_processesEventsFirst();
    void postCmdargDone_quitAndNothingPending_asksToQuit();
    void postCmdargDone_lastJobDone_asksToQuit();
    void postCmdargDone_withoutQuit_staysOpen();
    void postCmdargDone_jobPending_staysOpen();
    void postCmdargDone_beforeTheLoop_changesNothing();
    void postCmdargDone_windowClosedMeanwhile_isSurvived();

    void chain_runsPrintJpegAndEpsOnceEach();
    void chain_quitRequest_followsTheEps();
    void chain_nothingPending_theFirstCallAsksToQuit();
    void chain_withoutTheQuitOption_doesNotAskToQuit();
    void chain_withoutAPrinter_goesOn();
    void chain_jobAddedByAnEvent_isRun();
    void chain_jobDroppedByAnEvent_isNotRun();
    void chain_windowClosedByAnEvent_isSurvived();

    void noPrinter_chainGoesOn();

private:
    std::string Cross() { return directories->Write("cross.plf", fixture::CrossFile()); }
    int QuitRequests(int job);
    void PrintInto(const Window& window, const std::string& pdf);
};

// Jobs run before the event loop as well, where a window that is closed goes at once.
void TestJobChain::postCmdargDone_windowClosedMeanwhile_isSurvived()
{
    Window window;
    window.AddViewOf(Cross());
    QVERIFY(window.Show());
    giCmdArg = kJobPrint | kJobJpeg | kJobEps;
    QTimer::singleShot(0, window.Get(), &AppWindow::close);
    QTimer::singleShot(0, window.Get(), &QObject::deleteLater);
    QTimer::singleShot(0,
                       [] { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); });
    window->view->PostCmdargDone(0);
    QVERIFY(window.IsGone());
}

void TestJobChain::postCmdargDone_clearsTheJobsBit_data()
{
    QTest::addColumn<int>("pending");
    QTest::addColumn<int>("job");
    QTest::addColumn<int>("left");
    QTest::newRow("print") << 1 << 1 << 0;
    QTest::newRow("JPEG") << 2 << 2 << 0;
    QTest::newRow("EPS") << 4 << 3 << 0;
    QTest::newRow("none of them") << 8 << 0 << 8; // a bit that no job has
    QTest::newRow("less than none") << 8 << -1 << 8;
    QTest::newRow("print alone") << 9 << 1 << 8;
    QTest::newRow("JPEG alone") << 10 << 2 << 8;
    QTest::newRow("EPS alone") << 12 << 3 << 8;
    QTest::newRow("one that is not pending") << 8 << 2 << 8;
    QTest::newRow("nothing is pending") << 0 << 1 << 0;
}

void TestJobChain::postCmdargDone_clearsTheJobsBit()
{
    QFETCH(int, pending);
    QFETCH(int, job);
    QFETCH(int, left);
    const View view(Cross());
    giCmdArg = pending;
    view->PostCmdargDone(job);
    QCOMPARE(giCmdArg, left);
}

void TestJobChain::postCmdargDone_processesEventsFirst()
{
    const View view(Cross());
    int seen = -1;
    QTimer::singleShot(0, view.Get(), [&] { seen = giCmdArg; });
    giCmdArg = 1;
    view->PostCmdargDone(1);
    QCOMPARE(seen, 1); // before the bit was cleared
}

// Calls PostCmdargDone within the event loop and says how often it asked to quit.
int TestJobChain::QuitRequests(int job)
{
    View view(Cross());
    QuitCounter quits;
    int requests = -1;
    QTimer::singleShot(0, view.Get(), [&] {
        view->PostCmdargDone(job);
        requests = quits.count;
        QCoreApplication::exit();
    });
    QApplication::exec();
    return requests;
}

void TestJobChain::postCmdargDone_quitAndNothingPending_asksToQuit()
{
    gbCmdQuit = true;
    QCOMPARE(QuitRequests(0), 1);
}

void TestJobChain::postCmdargDone_lastJobDone_asksToQuit()
{
    gbCmdQuit = true;
    giCmdArg = 4;
    QCOMPARE(QuitRequests(3), 1);
}

void TestJobChain::postCmdargDone_withoutQuit_staysOpen()
{
    QCOMPARE(QuitRequests(0), 0);
}

void TestJobChain::postCmdargDone_jobPending_staysOpen()
{
    gbCmdQuit = true;
    giCmdArg = 8; // a bit that no job has
    QCOMPARE(QuitRequests(1), 0);
}

void TestJobChain::postCmdargDone_beforeTheLoop_changesNothing()
{
    View view(Cross());
    gbCmdQuit = true;
    view->PostCmdargDone(0);
    Settle();
    QVERIFY(!view.window.IsGone());
    QVERIFY(view.window->isVisible());
}

// Makes a file the target of the view's printer, which the print dialog gives away.
void TestJobChain::PrintInto(const Window& window, const std::string& pdf)
{
    dialogs->Expect<QPrintDialog>([pdf](QPrintDialog& dialog) {
        dialog.printer()->setOutputFileName(Text(pdf));
        dialog.reject();
    });
    window->view->printIt();
    QCOMPARE(dialogs->Pending(), 0);
}

void TestJobChain::chain_runsPrintJpegAndEpsOnceEach()
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

void TestJobChain::chain_quitRequest_followsTheEps()
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

void TestJobChain::chain_nothingPending_theFirstCallAsksToQuit()
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

void TestJobChain::chain_withoutTheQuitOption_doesNotAskToQuit()
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

void TestJobChain::chain_withoutAPrinter_goesOn()
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
void TestJobChain::chain_jobAddedByAnEvent_isRun()
{
    Window window;
    Open(window);
    giCmdArg = kJobJpeg;
    QTimer::singleShot(0, window.Get(), [] { giCmdArg |= kJobEps; });
    gpDraw->PostCmdargDone(0);
    QVERIFY(Exists(Path("a.jpg")) && Exists(Path("a.eps")));
    QCOMPARE(giCmdArg, 0);
}

void TestJobChain::chain_jobDroppedByAnEvent_isNotRun()
{
    Window window;
    Open(window);
    giCmdArg = kJobJpeg | kJobEps;
    QTimer::singleShot(0, window.Get(), [] { giCmdArg = kJobJpeg; });
    gpDraw->PostCmdargDone(0);
    QVERIFY(Exists(Path("a.jpg")) && !Exists(Path("a.eps")));
    QCOMPARE(giCmdArg, 0);
}

void TestJobChain::chain_windowClosedByAnEvent_isSurvived()
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

void TestJobChain::noPrinter_chainGoesOn()
{
    Window window;
    Open(window);
    giCmdArg = kJobPrint | kJobJpeg | kJobEps;
    gpDraw->PostCmdargDone(0);
    QCOMPARE(giCmdArg, 0);
    QVERIFY(Exists(Path("a.jpg")) && Exists(Path("a.eps")));
}

QTEST_MAIN(TestJobChain)
#include "test_jobchain.moc"
