// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The viewer and the host process that sends it command lines, which is this program: it sees every
// byte.
#include "tests/e2e/viewer.h"
#include "tests/kit/files.h"
#include "tests/kit/plf.h"
#include "tests/kit/sanitized.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTemporaryDir>

#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <optional>

namespace {

// Hues of the colour map, and a line as wide as an eighth of the window.
constexpr int kRedHue = 120;
constexpr int kGreenHue = 240;
constexpr int kWide = 800;

// What the viewer sends, byte for byte: the length, the byte count, the characters.
const QByteArray kAnswer =
    QByteArray::fromHex("002800000024006b00720076002d006100630063006500700074002d0063006f006e006e"
                        "006500630074");

// What the viewer writes to its standard error output when it is done with a file, and when that
// cannot be deleted. The tests have the kind of a message put in front of it.
const QByteArray kDoneWith = "[debug] Existing file name:  ";
const QByteArray kNotDeleted = "[debug] Could not delete file\n";
// What the toolkit writes for each graph that is to be printed: the tests have no printer.
const QByteArray kNotPrinted = "[warning] plotvw: no printer found\n";

// What the viewer may take, also for its About box, when a count promises more than there is,
// kilobytes.
constexpr qint64 kMostForNothing = 256 * 1024;

QString TitleOf(const QString& name)
{
    return QStringLiteral("KORVEL Viewer - ") + name;
}

// A graph that is a thick line across the middle.
std::string Graph(int hue)
{
    return plf::Start() + plf::ColorMapEntry(2, hue, 50, 100) + plf::LineIndex(2) +
           plf::Width(kWide) + plf::Line(0, 1560, 4095, 1560) + plf::End();
}

// A big-endian number of so many bytes.
QByteArray Number(qint64 value, int size)
{
    QByteArray bytes;
    for (int shift = 8 * (size - 1); shift >= 0; shift -= 8)
        bytes += static_cast<char>(value >> shift);
    return bytes;
}

// A message without the length in front.
QByteArray StringBytes(const QString& message)
{
    QByteArray bytes = Number(2 * message.size(), 4);
    for (const QChar character : message)
        bytes += Number(character.unicode(), 2);
    return bytes;
}

QByteArray FrameBytes(const QString& message)
{
    const QByteArray string = StringBytes(message);
    return Number(string.size(), 2) + string;
}

// The value of a line of /proc/PID/status, kilobytes; 0 when the process is gone.
qint64 MemoryOf(qint64 process, const QByteArray& line)
{
    QFile status(QStringLiteral("/proc/%1/status").arg(process));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray text = status.readAll();
    const QByteArray value = text.mid(text.indexOf(line + ':') + line.size() + 1);
    return value.left(value.indexOf("kB")).trimmed().toLongLong();
}

qsizetype OpenFilesOf(qint64 process)
{
    return QDir(QStringLiteral("/proc/%1/fd").arg(process))
        .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
        .size();
}

// How many answers a local link holds that nobody reads.
int AnswersInALink()
{
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, ends) != 0)
        return 0;
    int count = 0;
    while (write(ends[0], kAnswer.constData(), static_cast<size_t>(kAnswer.size())) > 0)
        ++count;
    close(ends[0]);
    close(ends[1]);
    return count;
}

// The host's end of the link.
class Host
{
public:
    explicit Host(const QString& name)
    {
        server.setSocketOptions(QLocalServer::UserAccessOption);
        QVERIFY2(server.listen(name), qPrintable(server.errorString()));
    }

    [[nodiscard]] bool AwaitViewer()
    {
        if (!Await([this] { return socket != nullptr || server.hasPendingConnections(); }))
            return false;
        TakeViewer();
        return true;
    }

    /// Sends a command line as soon as the viewer connects.
    void GreetWith(const QString& words)
    {
        QObject::connect(&server, &QLocalServer::newConnection, &server, [this, words] {
            TakeViewer();
            Send(words);
        });
    }

    [[nodiscard]] bool HasViewer() const { return server.hasPendingConnections(); }

    void SendBytes(const QByteArray& bytes)
    {
        QVERIFY(socket != nullptr);
        socket->write(bytes);
        socket->flush();
    }
    void Send(const QString& message) { SendBytes(FrameBytes(message)); }

    /// All that the viewer sent so far.
    [[nodiscard]] const QByteArray& Received() const { return received; }
    [[nodiscard]] bool AwaitBytes(qsizetype size)
    {
        return Await([this, size] { return received.size() >= size; });
    }
    /// The same without a look at anything else meanwhile: for thousands of answers.
    [[nodiscard]] bool AwaitBytesAlone(qsizetype size)
    {
        while (received.size() < size) {
            if (!socket->waitForReadyRead(kPatience))
                return false;
        }
        return true;
    }

    /// From now on the viewer's answers stay where they are, until there is no room for more.
    void StopReading()
    {
        reading = false;
        socket->setReadBufferSize(1);
    }
    /// Bytes that the viewer sent and nobody has read.
    [[nodiscard]] qsizetype Unread() const
    {
        int size = 0;
        const auto descriptor = static_cast<int>(socket->socketDescriptor());
        return ioctl(descriptor, FIONREAD, &size) == 0 ? size + socket->bytesAvailable() : -1;
    }
    void ReadOn()
    {
        reading = true;
        socket->setReadBufferSize(0);
        Take();
    }

    /// Closes the link and the server.
    void Die()
    {
        server.close();
        socket->abort();
    }

    /// The process at the other end.
    [[nodiscard]] qint64 Peer() const
    {
        ucred peer = {};
        socklen_t size = sizeof peer;
        const auto descriptor = static_cast<int>(socket->socketDescriptor());
        return getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 ? peer.pid : 0;
    }

private:
    void TakeViewer()
    {
        if (socket != nullptr)
            return;
        socket = server.nextPendingConnection();
        QObject::connect(socket, &QLocalSocket::readyRead, &server, [this] { Take(); });
        Take(); // the greeting may have come already
    }

    void Take()
    {
        if (reading)
            received += socket->readAll();
    }

    QByteArray received;
    bool reading = true;
    QLocalServer server;
    QLocalSocket* socket = nullptr; // the server's
};

} // namespace

class TestHostLink : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void greetingComesFirst_andAnAnswerAfterEachCommandWithAFile_evenOneThatFailed();
    void commandIsAnsweredOnlyWhenItsErrorBoxIsClosed_data();
    void commandIsAnsweredOnlyWhenItsErrorBoxIsClosed();
    void withoutServerName_nothingIsSent();
    void serverThatIsNotThere_leavesTheViewerAlone();
    void serverNameWithAnOptionInIt_leavesTheViewerAlone();

    void jobs_areDoneBeforeTheAnswer_data();
    void jobs_areDoneBeforeTheAnswer();
    void jobs_showTheNewGraph();
    void jobs_withoutAName_areNamedAfterTheFirstGraph();
    void jobs_ofACommandWithoutAFile_areDoneWithTheNextFile();
    void printOptionInFront_isAWordLikeTheOthers();
    void optionInsideAFileName_isTheOption();
    void windowPosition_movesAndSizesTheWindow();
    void withoutWindowPosition_theWindowStaysWhereTheUserPutIt();
    void usageWord_showsTheBox_andTheWordsBeforeItCount();
    void relativeName_isFoundWhereTheViewerWasStarted();

    void commandDuringTheFirstFileDialog_isCarriedOut_data();
    void commandDuringTheFirstFileDialog_isCarriedOut();

    void quit_endsTheViewerOnceTheFileIsShown();
    void quit_afterAJob_endsTheViewer();
    void quit_withoutAFile_waitsForOne();

    void twoBlanks_clearTheFileName_nothingIsLoadedOrAnswered();
    void afterACommandWithoutAFile_theNextFrameIsLost_aBareStringIsNot();
    void byteByByte_nothingIsLoaded();
    void lengthAlone_waitsForTheString();
    void twoFramesAtOnce_theSecondWaitsForAThird();
    void frameBeforeTheAnswer_waitsForTheNextOne();
    void afterACommandWithoutAFile_theGraphIsGoneWhenTheWindowIsDrawn();
    void bytesThatAreNoFrame_areSurvived_data();
    void bytesThatAreNoFrame_areSurvived();
    void commandThatCannotBeUsed_isRefusedAndAnswered_data();
    void commandThatCannotBeUsed_isRefusedAndAnswered();

    void graphThatComesWhileABoxStands_staysWhenTheBoxIsAnswered();
    void jobOfTheStartThatFails_isNotDoneAgain();
    void commandAtTheGreeting_hasTheJobOfTheStartDoneWithItsGraph();
    void quitAtTheGreeting_isAnsweredAndCountsWithTheNextFile();

    void temporaryFile_isDeletedByTheNextMessage_whateverItHolds_data();
    void temporaryFile_isDeletedByTheNextMessage_whateverItHolds();
    void temporaryFile_ofTheOwnCommandLine_isDeletedByTheFirstMessage();
    void temporaryFile_namedTwice_isGoneAndFailsToLoad();
    void temporaryFile_isDeletedWhenTheWindowIsClosed_data();
    void temporaryFile_isDeletedWhenTheWindowIsClosed();
    void temporaryFile_isDeletedWhenACommandQuits();
    void temporaryFile_staysWhileItIsShown();
    void temporaryFile_thatIsALink_losesItsTarget();
    void temporaryFile_thatIsGone_isNotMissed();
    void temporaryFile_thatWasReplaced_isDeletedAllTheSame();
    void temporaryFile_thatBecameADirectory_isReportedAndStays();
    void temporaryFile_thatDidNotLoad_stays();
    void temporaryFile_staysWhenTheUserOpensAnother();
    void fileWithoutTmp_isNeverDeleted();
    void tmpOption_countsForItsOwnCommandOnly();

    void hostThatDies_isNotNoticed();
    void hostThatDiesBehindACommand_hasItDone();
    void hostThatNeverReads_isServed_andGetsEveryAnswerLater();
    void manyCommands_keepTheMemoryFlat();

private:
    QString Path(const QString& name) const { return home->filePath(name); }
    bool Exists(const QString& name) const { return QFile::exists(Path(name)); }
    void Start(const QStringList& arguments);
    void StartWithCommand(const QStringList& arguments, const QString& words);
    void Open(const QStringList& more = {});
    void PressInWindow(const QString& keys);
    void Quit();
    void Command(const QString& words);
    void ExpectAnswers(int count);
    void ExpectTitle(const QString& name);
    void CloseBox(const QString& title);
    bool AwaitCommands(qsizetype count);
    void ReadMessages();
    void ExpectStillAlive();

    std::optional<QTemporaryDir> home;
    std::optional<Viewer> viewer;
    std::optional<Host> host;
    int answers = 0;          // that must have come
    QByteArray messages;      // what the viewer wrote to its standard error output
    qsizetype notDeleted = 0; // how often it must say that it could not delete a file
    qsizetype notPrinted = 0; // how often it must have printed
};

void TestHostLink::initTestCase()
{
    QVERIFY2(!RunTool(QStringLiteral("xdotool"), {QStringLiteral("getdisplaygeometry")}).isEmpty(),
             "Is the package xdotool installed, and is this run by with-xserver.sh?");
}

// Every test has a directory of its own with two graphs, a host, and a viewer that is not started.
// The directory's name may not hold a '-', which could make an option of the files' names.
void TestHostLink::init()
{
    home.emplace(QDir::tempPath() + QStringLiteral("/hostlink_XXXXXX"));
    QVERIFY(home->isValid());
    QVERIFY(WriteFile(Path(QStringLiteral("graph.plf")), Graph(kRedHue)));
    QVERIFY(WriteFile(Path(QStringLiteral("other.plf")), Graph(kGreenHue)));
    QVERIFY(WriteFile(Path(QStringLiteral("text.plf")), "Once upon a time\n"));
    host.emplace(Path(QStringLiteral("socket")));
    viewer.emplace(home->path());
    viewer->SetEnvironment(QStringLiteral("QT_MESSAGE_PATTERN"),
                           QStringLiteral("[%{type}] %{message}"));
    viewer->SetEnvironment(QStringLiteral("CUPS_SERVER"), Path(QStringLiteral("no_printers")));
    answers = 0;
    messages.clear();
    notDeleted = 0;
    notPrinted = 0;
}

// The viewer never sends more than it must, and never complains.
void TestHostLink::cleanup()
{
    const QByteArray received = host->Received();
    ReadMessages();
    viewer.reset();
    host.reset();
    home.reset();
    if (QTest::currentTestFailed()) {
        qWarning("The viewer wrote:\n%s", messages.constData());
        return;
    }
    QCOMPARE(received.toHex(), kAnswer.repeated(answers).toHex());
    QCOMPARE(messages.count(kNotDeleted), notDeleted);
    QCOMPARE(messages.count(kNotPrinted), notPrinted);
    messages.replace(kNotDeleted, "").replace(kNotPrinted, "");
    for (const QByteArray& line : messages.split('\n')) {
        if (!line.isEmpty() && !line.startsWith(kDoneWith))
            QFAIL(line.constData());
    }
}

void TestHostLink::ReadMessages()
{
    messages += viewer->Errors();
}

// Starts the viewer and awaits its greeting.
void TestHostLink::Start(const QStringList& arguments)
{
    QVERIFY(viewer->Start(
        QStringList{QStringLiteral("-svrname=") + Path(QStringLiteral("socket"))} + arguments));
    QVERIFY(host->AwaitViewer());
    ExpectAnswers(1);
}

// The same with a command that arrives before the viewer first processes events, which it does
// before its first job: reading the slow configuration file takes longer than sending.
void TestHostLink::StartWithCommand(const QStringList& arguments, const QString& words)
{
    QVERIFY(WriteFile(Path(QStringLiteral("plotvw.cfg")), SlowConfiguration()));
    host->GreetWith(words);
    Start(arguments);
    ExpectAnswers(1);
}

// The same with a graph.
void TestHostLink::Open(const QStringList& more)
{
    Start(QStringList{QStringLiteral("graph.plf")} + more);
    ExpectTitle(QStringLiteral("graph.plf"));
}

// The main window gets the keyboard back a little after a box was closed. After a failure nothing
// more is worth telling: the same holds for the functions below.
void TestHostLink::PressInWindow(const QString& keys)
{
    const bool active = Await(
        [] { return WindowTitle(ActiveWindow()).startsWith(QStringLiteral("KORVEL Viewer")); });
    if (!QTest::currentTestFailed())
        QVERIFY(active);
    PressKeys(keys);
}

void TestHostLink::Quit()
{
    PressInWindow(QStringLiteral("ctrl+q"));
    if (!QTest::currentTestFailed())
        QCOMPARE(viewer->AwaitEnd(), 0);
}

// Sends a command line that the viewer answers.
void TestHostLink::Command(const QString& words)
{
    if (QTest::currentTestFailed())
        return;
    host->Send(words);
    ExpectAnswers(1);
}

// Awaits so many more answers.
void TestHostLink::ExpectAnswers(int count)
{
    answers += count;
    QVERIFY(host->AwaitBytes(answers * kAnswer.size()));
}

void TestHostLink::ExpectTitle(const QString& name)
{
    if (!QTest::currentTestFailed())
        QVERIFY2(viewer->AwaitWindow(TitleOf(name)), qPrintable(name));
}

void TestHostLink::CloseBox(const QString& title)
{
    QVERIFY(viewer->AwaitWindow(title));
    QCOMPARE(host->Received().size(), answers * kAnswer.size());
    PressKeys(QStringLiteral("Return"));
}

// Waits until the viewer has taken so many messages in all, with a file or without.
bool TestHostLink::AwaitCommands(qsizetype count)
{
    return Await([this, count] {
        ReadMessages();
        return messages.count(kDoneWith) >= count;
    });
}

// The viewer does what its user wants, and has taken what came before.
void TestHostLink::ExpectStillAlive()
{
    PressInWindow(QStringLiteral("F1"));
    if (!QTest::currentTestFailed())
        CloseBox(QStringLiteral("About Viewer"));
}

void TestHostLink::greetingComesFirst_andAnAnswerAfterEachCommandWithAFile_evenOneThatFailed()
{
    Open();
    Command(QStringLiteral("other.plf"));
    ExpectTitle(QStringLiteral("other.plf"));
    Command(QStringLiteral("graph.plf"));
    ExpectTitle(QStringLiteral("graph.plf"));
    host->Send(QStringLiteral("missing.plf"));
    CloseBox(QStringLiteral("Error"));
    ExpectAnswers(1);
    QVERIFY(viewer->AwaitWindow(QStringLiteral("KORVEL Viewer")));
    Command(QStringLiteral("other.plf"));
    ExpectTitle(QStringLiteral("other.plf"));
    Quit();
}

void TestHostLink::commandIsAnsweredOnlyWhenItsErrorBoxIsClosed_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");
    QTest::newRow("missing") << QStringLiteral("missing.plf")
                             << QStringLiteral("Error opening file.");
    QTest::newRow("a text") << QStringLiteral("text.plf")
                            << QStringLiteral("File is not a recognized PLF graphic format.");
}

void TestHostLink::commandIsAnsweredOnlyWhenItsErrorBoxIsClosed()
{
    QFETCH(QString, name);
    QFETCH(QString, reason);
    Open();
    host->Send(name);
    QVERIFY(viewer->AwaitWindow(QStringLiteral("Error")));
    QVERIFY(viewer->AwaitText(reason));
    CloseBox(QStringLiteral("Error"));
    ExpectAnswers(1);
    QVERIFY(viewer->AwaitWindow(QStringLiteral("KORVEL Viewer")));
    QVERIFY(viewer->AwaitText(QStringLiteral("Error reading ") + Path(name)));
    QVERIFY(Exists(QStringLiteral("text.plf")));
    Quit();
}

// Also with a server that listens under the name that other viewers are given.
void TestHostLink::withoutServerName_nothingIsSent()
{
    QVERIFY(viewer->Start({QStringLiteral("graph.plf")}));
    ExpectTitle(QStringLiteral("graph.plf"));
    ExpectStillAlive();
    QVERIFY(!host->HasViewer());
    Quit();
    QVERIFY(!host->HasViewer());
}

void TestHostLink::serverThatIsNotThere_leavesTheViewerAlone()
{
    QVERIFY(viewer->Start({QStringLiteral("-svrname=nobody_listens_here"),
                           QStringLiteral("graph.plf"), QStringLiteral("-tmp")}));
    ExpectTitle(QStringLiteral("graph.plf"));
    ExpectStillAlive();
    Quit();
    QVERIFY(!Exists(QStringLiteral("graph.plf"))); // it was a temporary one all the same
}

// "-p" is found first: the name is not stored, and the graph is printed.
void TestHostLink::serverNameWithAnOptionInIt_leavesTheViewerAlone()
{
    Host dashed(Path(QStringLiteral("krv-pipe")));
    QVERIFY(viewer->Start({QStringLiteral("-svrname=") + Path(QStringLiteral("krv-pipe")),
                           QStringLiteral("graph.plf")}));
    ExpectTitle(QStringLiteral("graph.plf"));
    ExpectStillAlive();
    QVERIFY(!dashed.HasViewer());
    notPrinted = 1;
    Quit();
}

void TestHostLink::jobs_areDoneBeforeTheAnswer_data()
{
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("start");
    const QByteArray jpeg("\xff\xd8\xff");
    const QByteArray eps("%!PS-Adobe-");
    QTest::newRow("JPEG") << QStringLiteral("other.plf -c=1 -cf=out") << QStringLiteral("out.jpg")
                          << jpeg;
    QTest::newRow("EPS") << QStringLiteral("-cf=out other.plf -c=2") << QStringLiteral("out.eps")
                         << eps;
    QTest::newRow("into another directory") << QStringLiteral("-cwd=%1/sub -cf=out -c=2 other.plf")
                                            << QStringLiteral("sub/out.eps") << eps;
    QTest::newRow("print and JPEG")
        << QStringLiteral("other.plf -c=1 -p -cf=out") << QStringLiteral("out.jpg") << jpeg;
    QTest::newRow("print, which a conversion discards")
        << QStringLiteral("other.plf -p -c=2 -cf=out") << QStringLiteral("out.eps") << eps;
}

void TestHostLink::jobs_areDoneBeforeTheAnswer()
{
    QFETCH(QString, words);
    QFETCH(QString, file);
    QFETCH(QByteArray, start);
    QVERIFY(QDir(home->path()).mkdir(QStringLiteral("sub")));
    Open();
    Command(words.replace(QStringLiteral("%1"), home->path()));
    QFile exported(Path(file));
    QVERIFY(exported.open(QIODevice::ReadOnly));
    QCOMPARE(exported.read(start.size()), start);
    notPrinted = words.contains(QStringLiteral("-c=1 -p")) ? 1 : 0;
    // Done once: the next command exports and prints nothing.
    QVERIFY(exported.remove());
    Command(QStringLiteral("graph.plf"));
    QVERIFY(!exported.exists());
    Quit();
}

void TestHostLink::jobs_showTheNewGraph()
{
    Open();
    Command(QStringLiteral("other.plf -c=1 -cf=out"));
    const QImage picture(Path(QStringLiteral("out.jpg")));
    QVERIFY(!picture.isNull());
    const QColor middle = picture.pixelColor(picture.rect().center());
    QVERIFY2(middle.green() > 100 && middle.red() < 30, qPrintable(middle.name()));
    Quit();
}

void TestHostLink::jobs_withoutAName_areNamedAfterTheFirstGraph()
{
    Open();
    Command(QStringLiteral("other.plf -c=2"));
    QVERIFY(Exists(QStringLiteral("graph.eps")));
    QVERIFY(!Exists(QStringLiteral("other.eps")));
    Quit();
}

void TestHostLink::jobs_ofACommandWithoutAFile_areDoneWithTheNextFile()
{
    Open();
    host->Send(QStringLiteral("-c=2 -cf=out"));
    QVERIFY(AwaitCommands(1));
    ExpectStillAlive();
    QVERIFY(!Exists(QStringLiteral("out.eps")));
    host->SendBytes(StringBytes(QStringLiteral("other.plf"))); // the length is still there
    ExpectAnswers(1);
    QVERIFY(Exists(QStringLiteral("out.eps")));
    Quit();
}

// There is no program name that would be skipped.
void TestHostLink::printOptionInFront_isAWordLikeTheOthers()
{
    Open();
    Command(QStringLiteral("-p other.plf"));
    ExpectTitle(QStringLiteral("other.plf"));
    ReadMessages();
    QCOMPARE(messages.count(kNotPrinted), 1);
    notPrinted = 1;
    Command(QStringLiteral("-c=2 graph.plf -cf=out"));
    QVERIFY(Exists(QStringLiteral("out.eps")));
    Quit();
}

void TestHostLink::optionInsideAFileName_isTheOption()
{
    QVERIFY(WriteFile(Path(QStringLiteral("my-plot.plf")), Graph(kGreenHue)));
    Open();
    host->Send(QStringLiteral("my-plot.plf"));
    QVERIFY(AwaitCommands(1));
    ExpectStillAlive();
    ExpectTitle(QStringLiteral("graph.plf"));
    ReadMessages();
    QCOMPARE(messages.count(kNotPrinted), 0);                  // there is no file to print yet
    host->SendBytes(StringBytes(QStringLiteral("other.plf"))); // the length is still there
    ExpectAnswers(1);
    notPrinted = 1;
    Quit();
}

void TestHostLink::windowPosition_movesAndSizesTheWindow()
{
    Open();
    Command(QStringLiteral("-wp=300,150,500,400 graph.plf"));
    QVERIFY(Await([&] { return viewer->Content().size() == QSize(500, 400); }));
    QVERIFY(Await([&] { return viewer->Frame().topLeft() == QPoint(300, 150); }));
    Command(QStringLiteral("other.plf -wp=20,30")); // the size stays
    QVERIFY(Await([&] { return viewer->Frame().topLeft() == QPoint(20, 30); }));
    QCOMPARE(viewer->Content().size(), QSize(500, 400));
    ExpectTitle(QStringLiteral("other.plf"));
    Quit();
}

void TestHostLink::withoutWindowPosition_theWindowStaysWhereTheUserPutIt()
{
    Open({QStringLiteral("-wp=300,150,500,400")});
    RunTool(QStringLiteral("xdotool"), {QStringLiteral("windowmove"), viewer->Window(),
                                        QStringLiteral("40"), QStringLiteral("50")});
    QVERIFY(Await([&] { return viewer->Frame().topLeft() == QPoint(40, 50); }));
    Command(QStringLiteral("other.plf"));
    ExpectTitle(QStringLiteral("other.plf"));
    ExpectStillAlive();
    QCOMPARE(viewer->AwaitWindow(TitleOf(QStringLiteral("other.plf"))), true);
    QCOMPARE(viewer->Frame().topLeft(), QPoint(40, 50));
    QCOMPARE(viewer->Content().size(), QSize(500, 400));
    Quit();
}

void TestHostLink::usageWord_showsTheBox_andTheWordsBeforeItCount()
{
    Open();
    host->Send(QStringLiteral("other.plf -? text.plf -q"));
    CloseBox(QStringLiteral("PLOTVW Usage"));
    ExpectAnswers(1);
    ExpectTitle(QStringLiteral("other.plf"));
    Quit();
}

void TestHostLink::relativeName_isFoundWhereTheViewerWasStarted()
{
    QVERIFY(QDir(home->path()).mkdir(QStringLiteral("sub")));
    Open();
    Command(QStringLiteral("-cwd=%1 other.plf").arg(Path(QStringLiteral("sub"))));
    ExpectTitle(QStringLiteral("other.plf"));
    Quit();
}

void TestHostLink::commandDuringTheFirstFileDialog_isCarriedOut_data()
{
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("file");
    QTest::newRow("a graph") << QStringLiteral("other.plf") << QString();
    QTest::newRow("EPS") << QStringLiteral("other.plf -c=2 -cf=out") << QStringLiteral("out.eps");
    QTest::newRow("JPEG") << QStringLiteral("other.plf -c=1 -cf=out") << QStringLiteral("out.jpg");
    QTest::newRow("print") << QStringLiteral("other.plf -p") << QString();
}

// A viewer that is started without a file asks for one before it has shown its window.
void TestHostLink::commandDuringTheFirstFileDialog_isCarriedOut()
{
    QFETCH(QString, words);
    QFETCH(QString, file);
    Start({});
    QVERIFY(viewer->AwaitWindow(QStringLiteral("Open File")));
    Command(words);
    QVERIFY(file.isEmpty() || Exists(file));
    notPrinted = words.contains(QStringLiteral("-p")) ? 1 : 0;
    PressKeys(QStringLiteral("Escape"));
    ExpectTitle(QStringLiteral("other.plf"));
    Command(QStringLiteral("graph.plf"));
    ExpectTitle(QStringLiteral("graph.plf"));
    Quit();
}

// The toolkit takes no request to quit before the program has come to rest.
void TestHostLink::quit_endsTheViewerOnceTheFileIsShown()
{
    Open();
    QVERIFY(viewer->AwaitStillPicture());
    Command(QStringLiteral("other.plf -q"));
    QCOMPARE(viewer->AwaitEnd(), 0);
}

void TestHostLink::quit_afterAJob_endsTheViewer()
{
    Open();
    QVERIFY(viewer->AwaitStillPicture());
    Command(QStringLiteral("-q other.plf -c=2 -p -cf=out"));
    QCOMPARE(viewer->AwaitEnd(), 0);
    QVERIFY(Exists(QStringLiteral("out.eps")));
    notPrinted = 1;
}

// On the viewer's own command line, too, it is only looked at when a file comes.
void TestHostLink::quit_withoutAFile_waitsForOne()
{
    Open({QStringLiteral("-q")});
    host->Send(QStringLiteral("-po=l"));
    QVERIFY(AwaitCommands(1));
    ExpectStillAlive();
    host->SendBytes(StringBytes(QStringLiteral("other.plf"))); // the length is still there
    ExpectAnswers(1);
    QCOMPARE(viewer->AwaitEnd(), 0);
}

// The empty word between the blanks comes after the file's name and is the name then.
void TestHostLink::twoBlanks_clearTheFileName_nothingIsLoadedOrAnswered()
{
    Open();
    host->Send(QStringLiteral("other.plf  -p"));
    QVERIFY(AwaitCommands(1));
    ExpectStillAlive();
    ExpectTitle(QStringLiteral("graph.plf"));
    Quit();
}

void TestHostLink::afterACommandWithoutAFile_theNextFrameIsLost_aBareStringIsNot()
{
    Open();
    host->Send(QStringLiteral("other.plf "));
    QVERIFY(AwaitCommands(1));
    for (int lost = 0; lost < 3; ++lost) {
        host->Send(QStringLiteral("other.plf"));
        QVERIFY(AwaitCommands(2 + lost));
    }
    ExpectStillAlive();
    ExpectTitle(QStringLiteral("graph.plf"));
    host->SendBytes(StringBytes(QStringLiteral("other.plf")));
    ExpectAnswers(1);
    ExpectTitle(QStringLiteral("other.plf"));
    // From here on everything is as it was.
    Command(QStringLiteral("graph.plf"));
    ExpectTitle(QStringLiteral("graph.plf"));
    Quit();
}

// Each byte behind the length is taken for a whole string, of which there is nothing to read.
void TestHostLink::byteByByte_nothingIsLoaded()
{
    Open();
    const QByteArray frame = FrameBytes(QStringLiteral("other.plf"));
    for (qsizetype i = 0; i < frame.size(); ++i) {
        host->SendBytes(frame.mid(i, 1));
        QVERIFY(AwaitCommands(i - 1));
    }
    ExpectStillAlive();
    host->SendBytes(StringBytes(QStringLiteral("other.plf")));
    ExpectAnswers(1);
    ExpectTitle(QStringLiteral("other.plf"));
    Quit();
}

void TestHostLink::lengthAlone_waitsForTheString()
{
    Open();
    const QByteArray frame = FrameBytes(QStringLiteral("other.plf"));
    host->SendBytes(frame.left(1));
    ExpectStillAlive();
    host->SendBytes(frame.mid(1, 1));
    ExpectStillAlive();
    QVERIFY(AwaitCommands(0));
    QCOMPARE(messages.count(kDoneWith), 0);
    host->SendBytes(frame.mid(2));
    ExpectAnswers(1);
    ExpectTitle(QStringLiteral("other.plf"));
    Quit();
}

// One command is taken each time that something comes.
void TestHostLink::twoFramesAtOnce_theSecondWaitsForAThird()
{
    QVERIFY(WriteFile(Path(QStringLiteral("third.plf")), Graph(kRedHue)));
    Open();
    host->SendBytes(FrameBytes(QStringLiteral("other.plf")) +
                    FrameBytes(QStringLiteral("graph.plf")));
    ExpectAnswers(1);
    ExpectTitle(QStringLiteral("other.plf"));
    ExpectStillAlive();
    ExpectTitle(QStringLiteral("other.plf"));
    Command(QStringLiteral("third.plf"));
    ExpectTitle(QStringLiteral("graph.plf"));
    ExpectStillAlive();
    Command(QStringLiteral("other.plf"));
    ExpectTitle(QStringLiteral("third.plf"));
    Quit();
}

// While the box of the command before is open, say.
void TestHostLink::frameBeforeTheAnswer_waitsForTheNextOne()
{
    Open();
    host->Send(QStringLiteral("missing.plf"));
    QVERIFY(viewer->AwaitWindow(QStringLiteral("Error")));
    host->Send(QStringLiteral("other.plf"));
    CloseBox(QStringLiteral("Error"));
    ExpectAnswers(1);
    ExpectStillAlive();
    QVERIFY(viewer->AwaitWindow(QStringLiteral("KORVEL Viewer")));
    Command(QStringLiteral("graph.plf"));
    ExpectTitle(QStringLiteral("other.plf"));
    Quit();
}

// Its words, of which none was a file, said what the current file is.
void TestHostLink::afterACommandWithoutAFile_theGraphIsGoneWhenTheWindowIsDrawn()
{
    Open();
    QVERIFY(viewer->AwaitStillPicture());
    const QColor middle = ScreenColor(viewer->Content().center());
    QVERIFY2(middle.red() > 100 && middle.green() < 30, qPrintable(middle.name()));
    host->Send(QStringLiteral("-wp=300,150,500,400"));
    QVERIFY(AwaitCommands(1));
    QVERIFY(Await([&] { return viewer->Content().size() == QSize(500, 400); }));
    QVERIFY(Await([&] { return ScreenColor(viewer->Content().center()) == QColor(Qt::white); }));
    ExpectTitle(QStringLiteral("graph.plf"));
    Quit();
}

void TestHostLink::bytesThatAreNoFrame_areSurvived_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("null string") << QByteArray::fromHex("0004ffffffff");
    QTest::newRow("empty string") << QByteArray::fromHex("000400000000");
    QTest::newRow("a count of four gigabytes") << QByteArray::fromHex("0028fffffffe0041");
    QTest::newRow("an odd count") << QByteArray::fromHex("0028000000030041");
    QTest::newRow("a length of zero") << QByteArray::fromHex("0000000000020020");
    QTest::newRow("a negative length") << QByteArray::fromHex("ffff000000020020");
    QTest::newRow("a text") << QByteArray("GET / HTTP/1.1\r\n\r\n");
    QTest::newRow("all ones") << QByteArray(1000, '\xff');
}

void TestHostLink::bytesThatAreNoFrame_areSurvived()
{
    QFETCH(QByteArray, bytes);
    Open();
    const qint64 process = host->Peer();
    const qint64 peak = MemoryOf(process, "VmPeak");
    host->SendBytes(bytes);
    QVERIFY(AwaitCommands(1));
    ExpectStillAlive();
    const qint64 growth = MemoryOf(process, "VmPeak") - peak;
    QVERIFY(peak > 0);
    QVERIFY2(growth <= kMostForNothing, qPrintable(QString::number(growth)));
    ExpectTitle(QStringLiteral("graph.plf"));
    Quit();
}

void TestHostLink::commandThatCannotBeUsed_isRefusedAndAnswered_data()
{
    QTest::addColumn<QString>("words");
    QTest::newRow("too long a name") << QString(1024, u'x');
    QTest::newRow("too long a name for exports")
        << QStringLiteral("-tmp other.plf -c=2 -q -cf=") + QString(1024, u'x');
    QTest::newRow("a zero") << QStringLiteral("-tmp other.plf -c=2 -q x") + QChar(u'\0');
    QTest::newRow("half a character") << QStringLiteral("-tmp other.plf -q ") + QChar(0xd800);
}

// Nothing changes, and the next command works.
void TestHostLink::commandThatCannotBeUsed_isRefusedAndAnswered()
{
    QFETCH(QString, words);
    Open();
    host->Send(words);
    CloseBox(QStringLiteral("Error"));
    ExpectAnswers(1);
    ExpectStillAlive();
    ExpectTitle(QStringLiteral("graph.plf"));
    QVERIFY(viewer->AwaitStillPicture());
    const QColor middle = ScreenColor(viewer->Content().center());
    QVERIFY2(middle.red() > 100 && middle.green() < 30, qPrintable(middle.name()));
    Command(QStringLiteral("other.plf"));
    ExpectTitle(QStringLiteral("other.plf"));
    Quit();
    QVERIFY(Exists(QStringLiteral("other.plf")));
    QVERIFY(!Exists(QStringLiteral("graph.eps")));
}

// The user has not closed the error box of the first graph when the host sends the next one.
void TestHostLink::graphThatComesWhileABoxStands_staysWhenTheBoxIsAnswered()
{
    Start({QStringLiteral("text.plf")});
    QVERIFY(viewer->AwaitWindow(QStringLiteral("Error")));
    Command(QStringLiteral("-tmp other.plf"));
    PressKeys(QStringLiteral("Return"));
    ExpectTitle(QStringLiteral("other.plf"));
    QVERIFY(viewer->AwaitStillPicture());
    const QColor middle = ScreenColor(viewer->Content().center());
    QVERIFY2(middle.green() > 100 && middle.red() < 30, qPrintable(middle.name()));
    Command(QStringLiteral("graph.plf -c=2 -cf=out"));
    QVERIFY(!Exists(QStringLiteral("other.plf")));
    QVERIFY(Exists(QStringLiteral("out.eps")));
    Quit();
}

void TestHostLink::jobOfTheStartThatFails_isNotDoneAgain()
{
    Start({QStringLiteral("graph.plf"), QStringLiteral("-c=1"),
           QStringLiteral("-cf=") + Path(QStringLiteral("none/first"))});
    QVERIFY(viewer->AwaitWindow(QStringLiteral("Save failed")));
    Command(QStringLiteral("other.plf")); // a second box would delay the answer
    CloseBox(QStringLiteral("Save failed"));
    ExpectTitle(QStringLiteral("other.plf"));
    ExpectStillAlive();
    Quit();
}

// The viewer runs a command that has arrived before its first start-up job, which then exports the
// command's graph.
void TestHostLink::commandAtTheGreeting_hasTheJobOfTheStartDoneWithItsGraph()
{
    StartWithCommand({QStringLiteral("graph.plf"), QStringLiteral("-c=1"),
                      QStringLiteral("-cf=") + Path(QStringLiteral("first"))},
                     QStringLiteral("other.plf"));
    ExpectTitle(QStringLiteral("other.plf"));
    const QImage picture(Path(QStringLiteral("first.jpg")));
    QVERIFY(!picture.isNull());
    const QColor middle = picture.pixelColor(picture.rect().center());
    QVERIFY2(middle.green() > 100 && middle.red() < 30, qPrintable(middle.name()));
    // The job is not run again.
    QVERIFY(QFile::remove(Path(QStringLiteral("first.jpg"))));
    Command(QStringLiteral("graph.plf"));
    QVERIFY(!Exists(QStringLiteral("first.jpg")));
    Quit();
}

// Qt ignores the request before the event loop runs, but the viewer keeps the option.
void TestHostLink::quitAtTheGreeting_isAnsweredAndCountsWithTheNextFile()
{
    StartWithCommand({QStringLiteral("graph.plf")}, QStringLiteral("other.plf -q"));
    ExpectTitle(QStringLiteral("other.plf"));
    ExpectStillAlive();
    ExpectTitle(QStringLiteral("other.plf"));
    Command(QStringLiteral("graph.plf"));
    QCOMPARE(viewer->AwaitEnd(), 0);
}

void TestHostLink::temporaryFile_isDeletedByTheNextMessage_whateverItHolds_data()
{
    QTest::addColumn<QByteArray>("next");
    QTest::addColumn<bool>("answered");
    QTest::newRow("another graph") << FrameBytes(QStringLiteral("other.plf")) << true;
    QTest::newRow("another temporary one") << FrameBytes(QStringLiteral("-tmp other.plf")) << true;
    QTest::newRow("an option alone") << FrameBytes(QStringLiteral("-po=l")) << false;
    QTest::newRow("two blanks") << FrameBytes(QStringLiteral("other.plf  -po=l")) << false;
    QTest::newRow("nothing") << FrameBytes(QString()) << false;
    QTest::newRow("no string") << QByteArray::fromHex("0028fffffffe0041") << false;
}

void TestHostLink::temporaryFile_isDeletedByTheNextMessage_whateverItHolds()
{
    QFETCH(QByteArray, next);
    QFETCH(bool, answered);
    Open();
    QVERIFY(WriteFile(Path(QStringLiteral("temp.plf")), Graph(kGreenHue)));
    Command(QStringLiteral("temp.plf -tmp"));
    ExpectTitle(QStringLiteral("temp.plf"));
    ExpectStillAlive();
    QVERIFY(Exists(QStringLiteral("temp.plf")));
    host->SendBytes(next);
    if (answered)
        ExpectAnswers(1);
    else
        QVERIFY(Await([&] { return !Exists(QStringLiteral("temp.plf")); }));
    QVERIFY(!Exists(QStringLiteral("temp.plf")));
    QVERIFY(Exists(QStringLiteral("graph.plf")));
    QVERIFY(Exists(QStringLiteral("other.plf")));
    QVERIFY(AwaitCommands(2));
    QVERIFY(
        messages.contains(kDoneWith + '"' + Path(QStringLiteral("temp.plf")).toUtf8() + "\"\n"));
    ExpectStillAlive();
    Quit();
}

void TestHostLink::temporaryFile_ofTheOwnCommandLine_isDeletedByTheFirstMessage()
{
    Open({QStringLiteral("-tmp")});
    QVERIFY(Exists(QStringLiteral("graph.plf")));
    Command(QStringLiteral("other.plf"));
    QVERIFY(!Exists(QStringLiteral("graph.plf")));
    ExpectTitle(QStringLiteral("other.plf"));
    Quit();
    QVERIFY(Exists(QStringLiteral("other.plf")));
}

void TestHostLink::temporaryFile_namedTwice_isGoneAndFailsToLoad()
{
    Open();
    Command(QStringLiteral("other.plf -tmp"));
    host->Send(QStringLiteral("other.plf -tmp"));
    QVERIFY(viewer->AwaitWindow(QStringLiteral("Error")));
    QVERIFY(viewer->AwaitText(QStringLiteral("Error opening file.")));
    QVERIFY(!Exists(QStringLiteral("other.plf")));
    CloseBox(QStringLiteral("Error"));
    ExpectAnswers(1);
    QVERIFY(viewer->AwaitWindow(QStringLiteral("KORVEL Viewer")));
    Quit();
}

void TestHostLink::temporaryFile_isDeletedWhenTheWindowIsClosed_data()
{
    QTest::addColumn<QString>("keys");
    QTest::newRow("by the program's key") << QStringLiteral("ctrl+q");
    QTest::newRow("by the window manager") << QStringLiteral("alt+F4");
}

void TestHostLink::temporaryFile_isDeletedWhenTheWindowIsClosed()
{
    QFETCH(QString, keys);
    Open();
    Command(QStringLiteral("-tmp other.plf"));
    ExpectTitle(QStringLiteral("other.plf"));
    PressInWindow(keys);
    QCOMPARE(viewer->AwaitEnd(), 0);
    QVERIFY(!Exists(QStringLiteral("other.plf")));
    QVERIFY(Exists(QStringLiteral("graph.plf")));
}

void TestHostLink::temporaryFile_isDeletedWhenACommandQuits()
{
    Open();
    QVERIFY(viewer->AwaitStillPicture());
    Command(QStringLiteral("-tmp other.plf -q"));
    QCOMPARE(viewer->AwaitEnd(), 0);
    QVERIFY(!Exists(QStringLiteral("other.plf")));
}

void TestHostLink::temporaryFile_staysWhileItIsShown()
{
    Open();
    Command(QStringLiteral("-tmp other.plf"));
    ExpectTitle(QStringLiteral("other.plf"));
    for (const char* key : {"Escape", "ctrl+0", "ctrl+b"})
        PressInWindow(QString::fromLatin1(key));
    ExpectStillAlive();
    QVERIFY(Exists(QStringLiteral("other.plf")));
    ExpectTitle(QStringLiteral("other.plf"));
    Quit();
}

void TestHostLink::temporaryFile_thatIsALink_losesItsTarget()
{
    Open();
    QVERIFY(QFile::link(Path(QStringLiteral("other.plf")), Path(QStringLiteral("link.plf"))));
    Command(QStringLiteral("-tmp link.plf"));
    ExpectTitle(QStringLiteral("link.plf"));
    Command(QStringLiteral("graph.plf"));
    QVERIFY(!Exists(QStringLiteral("other.plf")));
    QVERIFY(QFileInfo(Path(QStringLiteral("link.plf"))).isSymLink());
    // The link that leads nowhere is no file: it stays, and nothing is said about it.
    host->Send(QStringLiteral("-tmp link.plf"));
    CloseBox(QStringLiteral("Error"));
    ExpectAnswers(1);
    Command(QStringLiteral("graph.plf"));
    QVERIFY(QFileInfo(Path(QStringLiteral("link.plf"))).isSymLink());
    Quit();
}

void TestHostLink::temporaryFile_thatIsGone_isNotMissed()
{
    Open();
    Command(QStringLiteral("-tmp other.plf"));
    QVERIFY(QFile::remove(Path(QStringLiteral("other.plf"))));
    Command(QStringLiteral("graph.plf"));
    ExpectTitle(QStringLiteral("graph.plf"));
    Quit();
}

// It is the name that was handed over.
void TestHostLink::temporaryFile_thatWasReplaced_isDeletedAllTheSame()
{
    Open();
    Command(QStringLiteral("-tmp other.plf"));
    QVERIFY(QFile::remove(Path(QStringLiteral("other.plf"))));
    QVERIFY(WriteFile(Path(QStringLiteral("other.plf")), "something else"));
    Command(QStringLiteral("graph.plf"));
    QVERIFY(!Exists(QStringLiteral("other.plf")));
    Quit();
}

void TestHostLink::temporaryFile_thatBecameADirectory_isReportedAndStays()
{
    Open();
    Command(QStringLiteral("-tmp other.plf"));
    QVERIFY(QFile::remove(Path(QStringLiteral("other.plf"))));
    QVERIFY(QDir(home->path()).mkdir(QStringLiteral("other.plf")));
    Command(QStringLiteral("graph.plf"));
    notDeleted = 1;
    QVERIFY(Exists(QStringLiteral("other.plf")));
    ExpectTitle(QStringLiteral("graph.plf"));
    Quit();
}

// There is no current file then.
void TestHostLink::temporaryFile_thatDidNotLoad_stays()
{
    Open();
    host->Send(QStringLiteral("-tmp text.plf"));
    CloseBox(QStringLiteral("Error"));
    ExpectAnswers(1);
    Command(QStringLiteral("other.plf"));
    QVERIFY(Exists(QStringLiteral("text.plf")));
    Quit();
    QVERIFY(Exists(QStringLiteral("text.plf")));
}

void TestHostLink::temporaryFile_staysWhenTheUserOpensAnother()
{
    Open();
    Command(QStringLiteral("-tmp other.plf"));
    ExpectTitle(QStringLiteral("other.plf"));
    PressInWindow(QStringLiteral("ctrl+f"));
    QVERIFY(viewer->AwaitWindow(QStringLiteral("Open File")));
    TypeText(Path(QStringLiteral("graph.plf")));
    PressKeys(QStringLiteral("Return"));
    ExpectTitle(QStringLiteral("graph.plf"));
    Command(QStringLiteral("graph.plf"));
    QVERIFY(Exists(QStringLiteral("other.plf")));
    QVERIFY(Exists(QStringLiteral("graph.plf")));
    Quit();
    QVERIFY(Exists(QStringLiteral("other.plf")));
    QVERIFY(Exists(QStringLiteral("graph.plf")));
}

void TestHostLink::fileWithoutTmp_isNeverDeleted()
{
    Open();
    Command(QStringLiteral("other.plf"));
    Command(QStringLiteral("graph.plf"));
    Command(QStringLiteral("other.plf"));
    ExpectTitle(QStringLiteral("other.plf"));
    Quit();
    for (const char* name : {"graph.plf", "other.plf", "text.plf"})
        QVERIFY2(Exists(QString::fromLatin1(name)), name);
}

void TestHostLink::tmpOption_countsForItsOwnCommandOnly()
{
    QVERIFY(WriteFile(Path(QStringLiteral("temp.plf")), Graph(kGreenHue)));
    Open({QStringLiteral("-po=l")});
    Command(QStringLiteral("-tmp temp.plf"));
    Command(QStringLiteral("other.plf"));
    QVERIFY(!Exists(QStringLiteral("temp.plf")));
    ExpectTitle(QStringLiteral("other.plf"));
    Quit();
    QVERIFY(Exists(QStringLiteral("other.plf")));
}

void TestHostLink::hostThatDies_isNotNoticed()
{
    Open();
    Command(QStringLiteral("-tmp other.plf"));
    host->Die();
    ExpectStillAlive();
    ExpectTitle(QStringLiteral("other.plf"));
    QVERIFY(Exists(QStringLiteral("other.plf")));
    Quit();
    QVERIFY(!Exists(QStringLiteral("other.plf")));
}

void TestHostLink::hostThatDiesBehindACommand_hasItDone()
{
    Open();
    host->Send(QStringLiteral("other.plf -c=2 -cf=out"));
    host->Die();
    ExpectTitle(QStringLiteral("other.plf"));
    QVERIFY(Await([&] { return Exists(QStringLiteral("out.eps")); }));
    ExpectStillAlive();
    Quit();
}

// The viewer keeps the answers for which there is no room in the link.
void TestHostLink::hostThatNeverReads_isServed_andGetsEveryAnswerLater()
{
    constexpr int kBeyond = 20;
    const int room = AnswersInALink();
    QVERIFY(room > 0);
    Open();
    host->StopReading();
    for (int i = 1; i <= room; ++i) {
        host->Send(QStringLiteral("other.plf"));
        QVERIFY(Await([&] { return host->Unread() == i * kAnswer.size(); }));
    }
    for (int i = 1; i <= kBeyond; ++i) {
        host->Send(QStringLiteral("graph.plf"));
        QVERIFY(AwaitCommands(room + i));
        ExpectStillAlive();
    }
    ExpectTitle(QStringLiteral("graph.plf"));
    QCOMPARE(host->Unread(), room * kAnswer.size());
    host->ReadOn();
    ExpectAnswers(room + kBeyond);
    Quit();
}

// After a warm-up the viewer keeps less than this, kilobytes: fragments of the heap, where the
// commands themselves would leave some 400 bytes each if nothing of them was freed.
void TestHostLink::manyCommands_keepTheMemoryFlat()
{
    constexpr int kWarmUp = 500;
    constexpr int kCommands = 5000;
    constexpr int kLook = 200;
    constexpr qint64 kMostGrowth = 1024;
    Open();
    const qint64 process = host->Peer();
    qint64 before = 0;
    qsizetype filesBefore = 0;
    for (int i = 0; i < kWarmUp + kCommands; ++i) {
        if (i == kWarmUp) {
            before = MemoryOf(process, "VmRSS");
            filesBefore = OpenFilesOf(process);
        }
        host->Send(i % 2 == 0 ? QStringLiteral("other.plf -po=l -wp=300,150,500,400")
                              : QStringLiteral("graph.plf -wp=300,150,500,400"));
        QVERIFY(host->AwaitBytesAlone(++answers * kAnswer.size()));
        if (i % kLook == 0) // the viewer stands still when nobody takes what it writes
            QVERIFY(AwaitCommands(i));
    }
    ExpectTitle(QStringLiteral("graph.plf"));
    const qint64 growth = MemoryOf(process, "VmRSS") - before;
    QVERIFY(before > 0);
    QCOMPARE(OpenFilesOf(process), filesBefore);
    qInfo("resident memory after %d commands: %lld kB, %+lld kB", kCommands,
          static_cast<long long>(before + growth), static_cast<long long>(growth));
    // The address sanitizer keeps what was freed, for a while.
    if (!kSanitized)
        QVERIFY2(growth <= kMostGrowth, qPrintable(QString::number(growth)));
    Quit();
}

QTEST_MAIN(TestHostLink)

#include "test_hostlink.moc"
