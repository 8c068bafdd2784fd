// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Signals that ask the viewer to end, and the end of the X server that it is shown by: what becomes
// of its settings and of the host's temporary file.
#include "hostlink/frame.h"
#include "tests/e2e/viewer.h"
#include "tests/kit/files.h"
#include "tests/kit/plf.h"

#include <QDir>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTemporaryDir>

#include <csignal>
#include <optional>

namespace {

constexpr int kWidestLine = 800; // takes long to draw

// Whatever the program that runs the tests does with them.
void TakeSignals()
{
    for (const int number : {SIGTERM, SIGINT, SIGHUP})
        signal(number, SIG_DFL);
}

void IgnoreHangUp()
{
    signal(SIGHUP, SIG_IGN);
}

} // namespace

class TestSignals : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void signal_closesTheWindow_data();
    void signal_closesTheWindow();
    void signal_withoutAutosave_leavesTheSettings();
    void signal_closesBoxesAndDialogs_data();
    void signal_closesBoxesAndDialogs();
    void signal_atTheStart_endsTheViewer_data();
    void signal_atTheStart_endsTheViewer();
    void signal_duringAHostsBox_endsTheViewer();
    void signal_whileTheFilesOfTheStartAreRead_endsTheViewer();
    void signalsThatComeTogether_areOne();
    void laterSignal_endsTheViewerAtOnce();
    void ignoredSignal_staysIgnored();
    void killedViewer_leavesWhatThereIs();
    void xServerThatGoes_leavesNothingOfTheHosts();

private:
    QString Path(const QString& name) const { return home->filePath(name); }
    bool Exists(const QString& name) const { return QFile::exists(Path(name)); }
    void Open(const QStringList& arguments);
    void Configure(const char* autosave);
    void CheckOrderlyEnd();

    std::optional<QTemporaryDir> home;
    std::optional<Viewer> viewer;
};

void TestSignals::initTestCase()
{
    CheckTools();
}

// Every test has a directory of its own, whose name may not hold a '-', with a graph and a
// configuration file that asks for the settings to be saved.
void TestSignals::init()
{
    TakeFreeWindowIds();
    home.emplace(QDir::tempPath() + QStringLiteral("/signals_XXXXXX"));
    QVERIFY(home->isValid());
    const std::string graph = plf::Diagonal();
    for (const char* name : {"graph.plf", "other.plf"})
        QVERIFY(WriteFile(Path(QString::fromLatin1(name)), graph));
    Configure("yes");
    viewer.emplace(home->path());
    viewer->SetEnvironment(QStringLiteral("CUPS_SERVER"), Path(QStringLiteral("no_printers")));
    viewer->BeforeStart(TakeSignals);
}

void TestSignals::cleanup()
{
    viewer.reset();
    home.reset();
}

void TestSignals::Configure(const char* autosave)
{
    QVERIFY(
        WriteFile(Path(QStringLiteral("plotvw.cfg")), std::string("autosave=") + autosave + '\n'));
}

// Starts the viewer with a temporary graph and awaits its window.
void TestSignals::Open(const QStringList& arguments)
{
    QVERIFY(viewer->Start(QStringList{QStringLiteral("graph.plf"), QStringLiteral("-tmp")} +
                          arguments));
    QVERIFY(viewer->AwaitWindow(TitleOf(QStringLiteral("graph.plf"))));
}

// Checks the same end as that of File, Quit.
void TestSignals::CheckOrderlyEnd()
{
    QCOMPARE(viewer->AwaitEnd(), 0);
    QVERIFY(!Exists(QStringLiteral("graph.plf")));
    QVERIFY(Exists(QStringLiteral(".plotvwsettings")));
    QCOMPARE(viewer->Errors(), QByteArray());
}

void TestSignals::signal_closesTheWindow_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("TERM") << SIGTERM;
    QTest::newRow("INT") << SIGINT;
    QTest::newRow("HUP") << SIGHUP;
}

// The next viewer opens at the same place.
void TestSignals::signal_closesTheWindow()
{
    QFETCH(int, number);
    Open({QStringLiteral("-wp=300,150,500,400")});
    QVERIFY(Await([&] { return viewer->Frame().topLeft() == QPoint(300, 150); }));
    viewer->Signal(number);
    CheckOrderlyEnd();
    QVERIFY(viewer->Start({QStringLiteral("other.plf")}));
    QVERIFY(viewer->AwaitWindow(TitleOf(QStringLiteral("other.plf"))));
    QVERIFY(Await([&] { return viewer->Frame().topLeft() == QPoint(300, 150); }));
    QCOMPARE(viewer->Content().size(), QSize(500, 400));
}

void TestSignals::signal_withoutAutosave_leavesTheSettings()
{
    Configure("no");
    Open({});
    viewer->Signal(SIGTERM);
    QCOMPARE(viewer->AwaitEnd(), 0);
    QVERIFY(!Exists(QStringLiteral("graph.plf")));
    QVERIFY(!Exists(QStringLiteral(".plotvwsettings")));
}

void TestSignals::signal_closesBoxesAndDialogs_data()
{
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("title");
    QTest::newRow("About") << QStringLiteral("F1") << QStringLiteral("About Viewer");
    QTest::newRow("Open") << QStringLiteral("ctrl+f") << QStringLiteral("Open File");
    QTest::newRow("Save") << QStringLiteral("ctrl+s") << QStringLiteral("Save as");
    QTest::newRow("Print") << QStringLiteral("ctrl+p") << QStringLiteral("Print Graph");
}

void TestSignals::signal_closesBoxesAndDialogs()
{
    QFETCH(QString, keys);
    QFETCH(QString, title);
    Open({});
    PressKeys(keys);
    QVERIFY(viewer->AwaitWindow(title));
    viewer->Signal(SIGTERM);
    CheckOrderlyEnd();
}

void TestSignals::signal_atTheStart_endsTheViewer_data()
{
    QTest::addColumn<QString>("arguments"); // separated by bars
    QTest::addColumn<QString>("title");
    QTest::addColumn<bool>("graphStays");
    const QString tooLong(3000, u'x');
    QTest::newRow("the first file dialog")
        << QStringLiteral("-tmp") << QStringLiteral("Open File") << true;
    QTest::newRow("a file that does not load")
        << QStringLiteral("missing.plf|-tmp") << QStringLiteral("Error") << true;
    QTest::newRow("a job that fails") << QStringLiteral("graph.plf|-tmp|-c=1|-cf=/nowhere/x")
                                      << QStringLiteral("Save failed") << false;
    QTest::newRow("one box after the other")
        << QStringLiteral("-cf=%1|-cwd=%1|missing.plf").arg(tooLong) << QStringLiteral("Error")
        << true;
}

// The event loop does not run yet, and in all but one of these the window has not been shown.
void TestSignals::signal_atTheStart_endsTheViewer()
{
    QFETCH(QString, arguments);
    QFETCH(QString, title);
    QFETCH(bool, graphStays);
    QVERIFY(viewer->Start(arguments.split(u'|')));
    QVERIFY(viewer->AwaitWindow(title));
    viewer->Signal(SIGTERM);
    QCOMPARE(viewer->AwaitEnd(), 0);
    QCOMPARE(Exists(QStringLiteral("graph.plf")), graphStays);
    QVERIFY(Exists(QStringLiteral(".plotvwsettings")));
}

void TestSignals::signal_duringAHostsBox_endsTheViewer()
{
    QLocalServer server;
    QVERIFY(server.listen(Path(QStringLiteral("socket"))));
    Open({QStringLiteral("-svrname=") + Path(QStringLiteral("socket"))});
    QVERIFY(Await([&] { return server.hasPendingConnections(); }));
    server.nextPendingConnection()->write(EncodeFrame(QStringLiteral("missing.plf")));
    QVERIFY(viewer->AwaitWindow(QStringLiteral("Error")));
    viewer->Signal(SIGTERM);
    CheckOrderlyEnd();
}

// As at the end of a session. The viewer is busy and has not begun to close.
void TestSignals::signalsThatComeTogether_areOne()
{
    constexpr int kMany = 100;
    QVERIFY(WriteFile(Path(QStringLiteral("plotvw.cfg")), SlowConfiguration() + "autosave=yes\n"));
    QVERIFY(viewer->Start({QStringLiteral("graph.plf"), QStringLiteral("-tmp")}));
    QVERIFY(viewer->AwaitHandler(SIGHUP));
    for (int i = 0; i < kMany; ++i)
        viewer->Signal(i % 2 == 0 ? SIGTERM : SIGHUP);
    CheckOrderlyEnd();
}

// While the viewer is busy and cannot do anything about the first one.
void TestSignals::laterSignal_endsTheViewerAtOnce()
{
    constexpr int kManyLines = 100'000;
    std::string graph = plf::Start() + plf::Width(kWidestLine);
    for (int i = 0; i < kManyLines; ++i)
        graph += plf::Line(0, 0, 4095, 3119);
    QVERIFY(WriteFile(Path(QStringLiteral("graph.plf")), graph + plf::End()));
    Open({});
    QVERIFY(Await([this] {
        if (!viewer->HasEnded())
            viewer->Signal(SIGINT);
        return viewer->HasEnded();
    }));
    QVERIFY(viewer->AwaitCrash());
    QVERIFY(Exists(QStringLiteral("graph.plf")));
}

// The graph is loaded, and its window never shown.
void TestSignals::signal_whileTheFilesOfTheStartAreRead_endsTheViewer()
{
    QVERIFY(WriteFile(Path(QStringLiteral("plotvw.cfg")), SlowConfiguration() + "autosave=yes\n"));
    QVERIFY(viewer->Start({QStringLiteral("graph.plf"), QStringLiteral("-tmp"),
                           QStringLiteral("-c=2"), QStringLiteral("-cf=out")}));
    QVERIFY(viewer->AwaitHandler(SIGHUP));
    viewer->Signal(SIGTERM);
    CheckOrderlyEnd();
    QVERIFY(!Exists(QStringLiteral("out.eps")));
}

// As "nohup" starts a program.
void TestSignals::ignoredSignal_staysIgnored()
{
    viewer->BeforeStart(IgnoreHangUp);
    Open({});
    viewer->Signal(SIGHUP);
    PressKeys(QStringLiteral("F1"));
    QVERIFY(viewer->AwaitWindow(QStringLiteral("About Viewer")));
    viewer->Signal(SIGTERM);
    CheckOrderlyEnd();
}

void TestSignals::killedViewer_leavesWhatThereIs()
{
    Open({});
    viewer->Signal(SIGKILL);
    QVERIFY(viewer->AwaitCrash());
    QVERIFY(Exists(QStringLiteral("graph.plf")));
    QVERIFY(!Exists(QStringLiteral(".plotvwsettings")));
}

// Qt ends the program then, without closing its windows.
void TestSignals::xServerThatGoes_leavesNothingOfTheHosts()
{
    const QByteArray answer = EncodeFrame(QStringLiteral("krv-accept-connect"));
    QProcess xServer;
    xServer.start(QStringLiteral("Xvfb"),
                  {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                   QStringLiteral("0"), QStringLiteral("800x600x24"), QStringLiteral("-nolisten"),
                   QStringLiteral("tcp"), QStringLiteral("-noreset")});
    QVERIFY(Await([&] { return xServer.canReadLine(); }));
    viewer->SetEnvironment(QStringLiteral("DISPLAY"),
                           u':' + QString::fromLatin1(xServer.readLine().trimmed()));
    QLocalServer server;
    QVERIFY(server.listen(Path(QStringLiteral("socket"))));
    QVERIFY(viewer->Start({QStringLiteral("other.plf"),
                           QStringLiteral("-svrname=") + Path(QStringLiteral("socket"))}));
    QVERIFY(Await([&] { return server.hasPendingConnections(); }));
    QLocalSocket* host = server.nextPendingConnection();
    QVERIFY(Await([&] { return host->bytesAvailable() == answer.size(); }));
    host->write(EncodeFrame(QStringLiteral("graph.plf -tmp")));
    QVERIFY(Await([&] { return host->bytesAvailable() == 2 * answer.size(); }));
    QVERIFY(Exists(QStringLiteral("graph.plf")));
    xServer.kill();
    QVERIFY(Await([&] { return xServer.state() == QProcess::NotRunning; }));
    QVERIFY(viewer->AwaitEnd() > 0);
    QVERIFY(!Exists(QStringLiteral("graph.plf")));
    QVERIFY(Exists(QStringLiteral("other.plf")));
    QVERIFY(Exists(QStringLiteral(".plotvwsettings")));
}

QTEST_MAIN(TestSignals)

#include "test_signals.moc"
