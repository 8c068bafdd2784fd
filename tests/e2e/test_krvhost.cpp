// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// krvhost as people use it: what it prints, how it ends, and what becomes of files and viewers.
#include "tests/e2e/viewer.h"
#include "tests/kit/files.h"
#include "tests/kit/plf.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocalSocket>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <sys/stat.h>

#include <optional>

namespace {

// How a run of krvhost ended.
struct HostRun {
    int code = -1; // -1 when it did not end by itself
    QString output;
    QString errors;
};

// What somebody may send to krvhost, byte for byte: a viewer's greeting, and "no".
const QByteArray kGreeting =
    QByteArray::fromHex("002800000024006b00720076002d006100630063006500700074002d0063006f006e006e"
                        "006500630074");
const QByteArray kNo = QByteArray::fromHex("000800000004006e006f");

bool AwaitActiveTitle(const QString& title)
{
    return Await([&title] { return WindowTitle(ActiveWindow()) == title; });
}

// The exit code of a program that ends by itself, else -1.
int AwaitEnd(const QProcess& process)
{
    const bool ended = Await([&process] { return process.state() == QProcess::NotRunning; });
    return ended && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

bool AwaitLine(const QProcess& process)
{
    return Await([&process] { return process.canReadLine(); });
}

QProcessEnvironment EnvironmentIn(const QString& home)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), home);
    environment.insert(QStringLiteral("TMPDIR"), home);
    environment.insert(QStringLiteral("CUPS_SERVER"), home + QStringLiteral("/no_printers"));
    return environment;
}

} // namespace

class TestKrvHost : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void answers_arePrinted();
    void help_namesOptionsAndCodes();
    void exitCode_isThatOfEveryTool_data();
    void exitCode_isThatOfEveryTool();
    void wrongGreeting_isCode1();
    void wrongAnswer_isCode1();
    void viewerThatQuits_isCode1();
    void viewerThatIsKilled_isCode1();
    void nameThatIsTaken_isLeftAlone();
    void socket_isForItsUserAlone();
    void script_isRead_data();
    void script_isRead();
    void hostileNames_areNotObeyed();
    void commandWithoutAnswer_isNotWaitedFor();
    void tmp_handsOverCopiesThatTheViewerDeletes();
    void tmp_removesWhatTheViewerLeft();
    void tmp_withoutAPlaceForCopies_isCode1();
    void tmp_inADirectoryThatNoCommandCanName_isCode1_data();
    void tmp_inADirectoryThatNoCommandCanName_isCode1();
    void quit_thatTheViewerForgets_isSentAgain_data();
    void quit_thatTheViewerForgets_isSentAgain();
    void quit_thatNeverCounts_isCode1();
    void stay_waitsForTheUser();
    void hostThatIsKilled_leavesItsViewer();

private:
    QString Path(const QString& name) const { return home->filePath(name); }
    bool Exists(const QString& name) const { return QFile::exists(Path(name)); }
    void StartHost(QProcess& krvhost, const QString& arguments) const;
    HostRun RunHost(const QString& arguments) const;
    void StartBoth(QProcess& krvhost, const QString& arguments);
    QStringList Copies() const;

    std::optional<QTemporaryDir> home;
    std::optional<Viewer> viewer; // one that krvhost does not start
};

void TestKrvHost::initTestCase()
{
    CheckTools();
}

// Every test has a directory of its own with two graphs. It is the home directory and that for
// temporary files; its name may not hold a '-', which could make an option of the files' names.
void TestKrvHost::init()
{
    TakeFreeWindowIds();
    home.emplace(QDir::tempPath() + QStringLiteral("/krvhosttest_XXXXXX"));
    QVERIFY(home->isValid());
    viewer.emplace(home->path());
    const std::string graph = plf::Diagonal();
    QVERIFY(WriteFile(Path(QStringLiteral("graph.plf")), graph));
    QVERIFY(WriteFile(Path(QStringLiteral("other.plf")), graph));
    QVERIFY(WriteFile(Path(QStringLiteral("text.plf")), "Once upon a time\n"));
}

void TestKrvHost::cleanup()
{
    viewer.reset();
    home.reset();
}

// Starts krvhost in the test's directory.
// @param arguments  separated by bars, with %1 for the directory
void TestKrvHost::StartHost(QProcess& krvhost, const QString& arguments) const
{
    if (krvhost.processEnvironment().isEmpty())
        krvhost.setProcessEnvironment(EnvironmentIn(home->path()));
    krvhost.setWorkingDirectory(home->path());
    krvhost.setProgram(QStringLiteral(KRVHOST_PROGRAM));
    krvhost.setArguments(
        QString(arguments).replace(QStringLiteral("%1"), home->path()).split(u'|'));
    krvhost.start();
    QVERIFY(krvhost.waitForStarted());
}

// Runs it until it ends.
HostRun TestKrvHost::RunHost(const QString& arguments) const
{
    QProcess krvhost;
    StartHost(krvhost, arguments);
    const int code = AwaitEnd(krvhost);
    return {code, QString::fromLocal8Bit(krvhost.readAllStandardOutput()),
            QString::fromLocal8Bit(krvhost.readAllStandardError())};
}

// Starts it without a viewer, and a viewer with a graph for it.
void TestKrvHost::StartBoth(QProcess& krvhost, const QString& arguments)
{
    StartHost(krvhost, QStringLiteral("--no-start|--name|%1/server|") + arguments);
    QVERIFY(AwaitLine(krvhost));
    QCOMPARE(QString::fromLocal8Bit(krvhost.readLine()),
             QStringLiteral("waiting for -svrname=%1\n").arg(Path(QStringLiteral("server"))));
    QVERIFY(viewer->Start({QStringLiteral("-svrname=") + Path(QStringLiteral("server")),
                           QStringLiteral("graph.plf")}));
}

// The temporary copies that there are.
QStringList TestKrvHost::Copies() const
{
    return QDir(home->path()).entryList({QStringLiteral("krvhost_*.plf")}, QDir::Files);
}

void TestKrvHost::answers_arePrinted()
{
    const HostRun run = RunHost(QStringLiteral("--arg|graph.plf|other.plf -c=2 -cf=out|graph.plf"));
    QCOMPARE(run.code, 0);
    const QRegularExpression lines(QStringLiteral("^greeting on krvhost_\\d+_[0-9a-f]+\n"
                                                  "ack +\\d+\\.\\d ms  other\\.plf -c=2 -cf=out\n"
                                                  "ack +\\d+\\.\\d ms  graph\\.plf\n$"));
    QVERIFY2(lines.match(run.output).hasMatch(), qPrintable(run.output));
    QVERIFY(Exists(QStringLiteral("out.eps")));
    // The socket went with it.
    const auto kinds = QDir::AllEntries | QDir::System;
    QCOMPARE(QDir(home->path()).entryList({QStringLiteral("krvhost*")}, kinds), QStringList());
}

void TestKrvHost::help_namesOptionsAndCodes()
{
    const HostRun run = RunHost(QStringLiteral("--help"));
    QCOMPARE(run.code, 0);
    QCOMPARE(run.errors, QString());
    for (const char* text : {"--viewer <PROGRAM>", "--arg <ARGUMENT>", "--name <NAME>",
                             "--script <FILE>", "--timeout <SECONDS>", "--no-start", "--tmp",
                             "--stay", "--leave", "[COMMAND...]", "3 no server"})
        QVERIFY2(run.output.simplified().contains(QString::fromLatin1(text)), text);
}

void TestKrvHost::exitCode_isThatOfEveryTool_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char* name, const char* arguments, int code, const char* reason) {
        QTest::newRow(name) << QString::fromLatin1(arguments) << code
                            << QString::fromLatin1(reason);
    };
    // clang-format off
    row("no command",                   "--arg|graph.plf",                         0, "");
    row("commands that are answered",   "--arg|graph.plf|other.plf|graph.plf -q",  0, "");
    row("an option begins the command", "--arg|graph.plf|--|-po=l other.plf",      0, "");
    row("an unknown option",            "--arg|graph.plf|--color",                 2, "unknown option 'color'");
    row("an option read as krvhost's",  "--arg|graph.plf|-po=l other.plf",         2, "put -- before commands that start with '-'");
    row("no time",                      "--timeout|0|graph.plf",                   2, "--timeout '0': expected a whole number from 1 to 86400");
    row("a time that is no number",     "--timeout|soon|graph.plf",                2, "--timeout 'soon'");
    row("too long a time",              "--timeout|86401|graph.plf",               2, "--timeout '86401'");
    row("two ways to end",              "--stay|--leave|graph.plf",                2, "--stay and --leave cannot be combined\nTry 'krvhost --help'.");
    row("a server in no directory",     "--name|%1/none/socket|graph.plf",         3, "cannot listen on");
    row("a viewer that is not there",   "--viewer|%1/none|graph.plf",              3, "cannot start");
    row("the same, to be left",         "--leave|--viewer|%1/none|graph.plf",      3, "cannot start");
    row("a script that is not there",   "--script|none.txt",                       3, "cannot read none.txt: No such file or directory");
    row("a script that is a directory", "--script|%1",                             3, "cannot read");
    row("no viewer",                    "--no-start|--timeout|1",                  1, "no viewer connected in time");
    row("a viewer without a link",      "--viewer|true|--timeout|1",               1, "no viewer connected in time");
    row("a name that is an option",     "--name|krv-pipe|--arg|graph.plf|--timeout|1", 1, "no viewer connected in time");
    row("a command without a file",     "--arg|graph.plf|--timeout|1|graph.plf  -po=l", 1, "no acknowledgement in time: graph.plf  -po=l");
    row("a box that nobody closes",     "--arg|graph.plf|--timeout|1|missing.plf", 1, "no acknowledgement in time: missing.plf");
    // clang-format on
}

void TestKrvHost::exitCode_isThatOfEveryTool()
{
    QFETCH(QString, arguments);
    QFETCH(int, code);
    QFETCH(QString, reason);
    const HostRun run = RunHost(arguments);
    QVERIFY2(run.errors.contains(reason), qPrintable(run.errors));
    QCOMPARE(run.code, code);
}

// Something else than a viewer connects.
void TestKrvHost::wrongGreeting_isCode1()
{
    QProcess krvhost;
    StartHost(krvhost, QStringLiteral("--no-start|--name|server|graph.plf"));
    QVERIFY(AwaitLine(krvhost));
    QLocalSocket stranger;
    stranger.connectToServer(Path(QStringLiteral("server")));
    QVERIFY(stranger.waitForConnected());
    stranger.write(kNo);
    stranger.flush();
    QCOMPARE(AwaitEnd(krvhost), 1);
    QCOMPARE(krvhost.readAllStandardError(),
             QByteArray("krvhost: the viewer did not send its greeting\n"));
}

// Something that greets like a viewer and does not go on like one.
void TestKrvHost::wrongAnswer_isCode1()
{
    QProcess krvhost;
    StartHost(krvhost, QStringLiteral("--no-start|--name|server|graph.plf|other.plf"));
    QVERIFY(AwaitLine(krvhost));
    QLocalSocket stranger;
    stranger.connectToServer(Path(QStringLiteral("server")));
    QVERIFY(stranger.waitForConnected());
    stranger.write(kGreeting + kNo);
    stranger.flush();
    QCOMPARE(AwaitEnd(krvhost), 1);
    QCOMPARE(krvhost.readAllStandardError(),
             QByteArray("krvhost: the viewer answered \"no\": graph.plf\n"));
}

// The viewer takes no request to quit before it has come to rest.
void TestKrvHost::viewerThatQuits_isCode1()
{
    QProcess krvhost;
    StartBoth(krvhost, QStringLiteral("--script|-"));
    QVERIFY(viewer->AwaitWindow(TitleOf(QStringLiteral("graph.plf"))));
    QVERIFY(viewer->AwaitStillPicture());
    krvhost.write("other.plf -q\ngraph.plf\n");
    QCOMPARE(AwaitEnd(krvhost), 1);
    QCOMPARE(viewer->AwaitEnd(), 0);
    QVERIFY(krvhost.readAllStandardOutput().endsWith(" ms  other.plf -q\n"));
    QVERIFY(
        krvhost.readAllStandardError().endsWith("the viewer closed the connection: graph.plf\n"));
}

// While its error box is open, so that no answer can come.
void TestKrvHost::viewerThatIsKilled_isCode1()
{
    QProcess krvhost;
    StartBoth(krvhost, QStringLiteral("missing.plf"));
    QVERIFY(viewer->AwaitWindow(QStringLiteral("Error")));
    viewer.emplace(home->path()); // the old one kills its program
    QCOMPARE(AwaitEnd(krvhost), 1);
    QVERIFY(
        krvhost.readAllStandardError().endsWith("the viewer closed the connection: missing.plf\n"));
}

void TestKrvHost::nameThatIsTaken_isLeftAlone()
{
    QProcess first;
    StartHost(first, QStringLiteral("--no-start|--name|server|graph.plf"));
    QVERIFY(AwaitLine(first));
    for (const char* name : {"graph.plf", "server", "%1/graph.plf", "%1/server"}) {
        const HostRun run = RunHost(QStringLiteral("--no-start|--name|") + QLatin1String(name));
        QCOMPARE(run.code, 3);
        const QString path = Path(QFileInfo(QLatin1String(name)).fileName());
        QCOMPARE(run.errors, QStringLiteral("krvhost: %1 already exists\n").arg(path));
    }
    QVERIFY(QFileInfo(Path(QStringLiteral("graph.plf"))).isFile());
    QVERIFY(viewer->Start({QStringLiteral("-svrname=") + Path(QStringLiteral("server")),
                           QStringLiteral("other.plf")}));
    QCOMPARE(AwaitEnd(first), 0);
}

void TestKrvHost::socket_isForItsUserAlone()
{
    QProcess krvhost;
    StartHost(krvhost, QStringLiteral("--no-start|--name|server"));
    QVERIFY(AwaitLine(krvhost));
    struct stat status = {};
    QCOMPARE(stat(qPrintable(Path(QStringLiteral("server"))), &status), 0);
    QVERIFY(S_ISSOCK(status.st_mode));
    QCOMPARE(status.st_mode & (S_IRWXG | S_IRWXO), 0U);
    krvhost.kill();
    QVERIFY(krvhost.waitForFinished());
}

void TestKrvHost::script_isRead_data()
{
    QTest::addColumn<QString>("shell"); // $call is the program with its other arguments
    QTest::newRow("file") << QStringLiteral("$call script.txt");
    QTest::newRow("standard input from a file") << QStringLiteral("$call - <script.txt");
    QTest::newRow("standard input from a pipe") << QStringLiteral("cat script.txt | $call -");
    QTest::newRow("pipe") << QStringLiteral("mkfifo pipe; cat script.txt >pipe & $call pipe");
}

// The commands of the command line come first.
void TestKrvHost::script_isRead()
{
    QFETCH(QString, shell);
    QVERIFY(WriteFile(Path(QStringLiteral("script.txt")),
                      "other.plf\n\n# a comment\r\ngraph.plf -c=2 -cf=out\r\nother.plf"));
    QProcessEnvironment environment = EnvironmentIn(home->path());
    environment.insert(QStringLiteral("call"),
                       QStringLiteral("%1 --arg graph.plf graph.plf --script")
                           .arg(QStringLiteral(KRVHOST_PROGRAM)));
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(home->path());
    process.start(QStringLiteral("sh"), {QStringLiteral("-c"), shell}, QIODevice::ReadOnly);
    QCOMPARE(AwaitEnd(process), 0);
    QStringList answered;
    for (const QByteArray& line : process.readAllStandardOutput().split('\n')) {
        if (line.startsWith("ack "))
            answered.append(QString::fromLocal8Bit(line).section(QStringLiteral(" ms  "), 1));
    }
    const QStringList commands = {QStringLiteral("graph.plf"), QStringLiteral("other.plf"),
                                  QStringLiteral("graph.plf -c=2 -cf=out"),
                                  QStringLiteral("other.plf")};
    QCOMPARE(answered, commands);
    QVERIFY(Exists(QStringLiteral("out.eps")));
}

// Everything that it prints could hold a name.
void TestKrvHost::hostileNames_areNotObeyed()
{
    const QString name = QStringLiteral("a\u001b[2J\u009b\u202e\\.plf");
    const QString visible = QStringLiteral("a\\x1b[2J\\xc2\\x9b\\xe2\\x80\\xae\\\\.plf");
    QVERIFY(WriteFile(Path(name), plf::Diagonal()));
    const HostRun run = RunHost(QStringLiteral("--arg|graph.plf|%1|!%1 -po=l").arg(name));
    QCOMPARE(run.code, 0);
    QVERIFY2(run.output.contains(QStringLiteral(" ms  %1\n").arg(visible)), qPrintable(run.output));
    QVERIFY2(run.output.endsWith(QStringLiteral(" %1 -po=l\n").arg(visible)),
             qPrintable(run.output));
    QVERIFY(RunHost(QStringLiteral("--script|no") + name)
                .errors.startsWith(QStringLiteral("krvhost: cannot read no%1: ").arg(visible)));
    const QString server = Path(QStringLiteral("s\u001b"));
    QVERIFY(
        RunHost(QStringLiteral("--name|%1|--arg|graph.plf").arg(server))
            .output.startsWith(QStringLiteral("greeting on ") + Path(QStringLiteral("s\\x1b\n"))));
}

void TestKrvHost::commandWithoutAnswer_isNotWaitedFor()
{
    const HostRun run = RunHost(QStringLiteral("--arg|graph.plf|other.plf|!-po=l"));
    QCOMPARE(run.code, 0);
    QVERIFY2(run.output.endsWith(QStringLiteral("\nsent            -po=l\n")),
             qPrintable(run.output));
}

// The viewer outlives krvhost, so that nobody else can have deleted the first copy.
void TestKrvHost::tmp_handsOverCopiesThatTheViewerDeletes()
{
    const HostRun run =
        RunHost(QStringLiteral("--tmp|--leave|--arg|graph.plf|other.plf -po=l|graph.plf"));
    QCOMPARE(run.code, 0);
    const QRegularExpression handedOver(QStringLiteral(" ms  -tmp \\S+/krvhost_\\w+\\.plf"));
    QCOMPARE(run.output.count(handedOver), 2);
    QCOMPARE(Copies().size(), 1);
    const QString shown = Copies().constFirst();
    QVERIFY(run.output.endsWith(shown + u'\n'));
    QVERIFY(AwaitActiveTitle(TitleOf(shown)));
    PressKeys(QStringLiteral("ctrl+q"));
    QVERIFY(Await([&] { return Copies().isEmpty(); }));
    QVERIFY(Exists(QStringLiteral("graph.plf")));
    QVERIFY(Exists(QStringLiteral("other.plf")));
}

// The last one, and one that did not load.
void TestKrvHost::tmp_removesWhatTheViewerLeft()
{
    QCOMPARE(RunHost(QStringLiteral("--tmp|--arg|graph.plf|other.plf")).code, 0);
    QCOMPARE(Copies(), QStringList());
    QCOMPARE(RunHost(QStringLiteral("--tmp|--arg|graph.plf|--timeout|1|text.plf")).code, 1);
    QCOMPARE(Copies(), QStringList());
    QVERIFY(Exists(QStringLiteral("text.plf")));
}

void TestKrvHost::tmp_withoutAPlaceForCopies_isCode1()
{
    QProcess krvhost;
    QProcessEnvironment environment = EnvironmentIn(home->path());
    environment.insert(QStringLiteral("TMPDIR"), QStringLiteral("/proc")); // also closed to root
    krvhost.setProcessEnvironment(environment);
    StartHost(krvhost, QStringLiteral("--name|%1/server|--tmp|--arg|graph.plf|other.plf"));
    QCOMPARE(AwaitEnd(krvhost), 1);
    QVERIFY(krvhost.readAllStandardError().contains("krvhost: cannot create a temporary copy\n"));
}

void TestKrvHost::tmp_inADirectoryThatNoCommandCanName_isCode1_data()
{
    QTest::addColumn<QString>("directory");
    QTest::newRow("an option in it") << QStringLiteral("run-plots");
    QTest::newRow("another one") << QStringLiteral("the-cwd=x");
    QTest::newRow("a blank in it") << QStringLiteral("my files");
}

void TestKrvHost::tmp_inADirectoryThatNoCommandCanName_isCode1()
{
    QFETCH(QString, directory);
    QVERIFY(QDir(home->path()).mkdir(directory));
    QProcess krvhost;
    QProcessEnvironment environment = EnvironmentIn(home->path());
    environment.insert(QStringLiteral("TMPDIR"), Path(directory));
    krvhost.setProcessEnvironment(environment);
    StartHost(krvhost, QStringLiteral("--tmp|--arg|graph.plf|other.plf"));
    QCOMPARE(AwaitEnd(krvhost), 1);
    QVERIFY(krvhost.readAllStandardError().contains("krvhost: cannot create a temporary copy\n"));
    QCOMPARE(QDir(Path(directory)).entryList(QDir::Files), QStringList());
}

void TestKrvHost::quit_thatTheViewerForgets_isSentAgain_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("again"); // what is sent then
    QTest::addColumn<bool>("otherStays");
    QTest::newRow("a file") << QStringLiteral("other.plf -q") << QStringLiteral("other\\.plf -q")
                            << true;
    QTest::newRow("a job") << QStringLiteral("--|-q other.plf -c=2 -cf=out -p")
                           << QStringLiteral("other\\.plf -q") << true;
    QTest::newRow("copies") << QStringLiteral("--tmp|other.plf -q")
                            << QStringLiteral("-tmp \\S+/krvhost_\\w+\\.plf -q") << true;
    QTest::newRow("a temporary file") << QStringLiteral("other.plf -tmp -q")
                                      << QStringLiteral("-tmp \\S+/krvhost_\\w+\\.plf -q") << false;
}

// The first request arrives before the viewer's event loop runs, thanks to the slow configuration
// file.
void TestKrvHost::quit_thatTheViewerForgets_isSentAgain()
{
    QFETCH(QString, arguments);
    QFETCH(QString, again);
    QFETCH(bool, otherStays);
    QVERIFY(WriteFile(Path(QStringLiteral("plotvw.cfg")), SlowConfiguration()));
    const HostRun run = RunHost(QStringLiteral("--stay|--arg|graph.plf|") + arguments);
    QVERIFY2(!run.errors.contains(QStringLiteral("krvhost: ")), qPrintable(run.errors));
    QCOMPARE(run.code, 0);
    const QRegularExpression lines(
        QStringLiteral("^greeting .*\nack .*\n(again           %1\n)+$").arg(again));
    QVERIFY2(lines.match(run.output).hasMatch(), qPrintable(run.output));
    QCOMPARE(Exists(QStringLiteral("other.plf")), otherStays);
    QCOMPARE(Copies(), QStringList());
}

// The viewer's first file dialog is open and nobody closes it.
void TestKrvHost::quit_thatNeverCounts_isCode1()
{
    const HostRun run = RunHost(QStringLiteral("--timeout|2|other.plf -q"));
    QCOMPARE(run.code, 1);
    QVERIFY2(run.errors.contains(
                 QStringLiteral("krvhost: the viewer did not quit in time: other.plf -q")),
             qPrintable(run.errors));
}

void TestKrvHost::stay_waitsForTheUser()
{
    QProcess krvhost;
    StartHost(krvhost, QStringLiteral("--stay|--arg|graph.plf|other.plf"));
    QVERIFY(AwaitActiveTitle(TitleOf(QStringLiteral("other.plf"))));
    PressKeys(QStringLiteral("F1"));
    QVERIFY(AwaitActiveTitle(QStringLiteral("About Viewer")));
    PressKeys(QStringLiteral("Return"));
    QVERIFY(AwaitActiveTitle(TitleOf(QStringLiteral("other.plf"))));
    QCOMPARE(krvhost.state(), QProcess::Running);
    PressKeys(QStringLiteral("ctrl+q"));
    QCOMPARE(AwaitEnd(krvhost), 0);
}

void TestKrvHost::hostThatIsKilled_leavesItsViewer()
{
    QProcess krvhost;
    StartBoth(krvhost, QStringLiteral("--script|-|--|-tmp other.plf"));
    QVERIFY(viewer->AwaitWindow(TitleOf(QStringLiteral("other.plf"))));
    krvhost.kill();
    QVERIFY(krvhost.waitForFinished());
    PressKeys(QStringLiteral("F1"));
    QVERIFY(viewer->AwaitWindow(QStringLiteral("About Viewer")));
    QVERIFY(Exists(QStringLiteral("other.plf")));
    PressKeys(QStringLiteral("Return"));
    QVERIFY(viewer->AwaitWindow(TitleOf(QStringLiteral("other.plf"))));
    PressKeys(QStringLiteral("ctrl+q"));
    QCOMPARE(viewer->AwaitEnd(), 0);
    QVERIFY(!Exists(QStringLiteral("other.plf")));
}

QTEST_MAIN(TestKrvHost)

#include "test_krvhost.moc"
