// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Plays the KORVEL process: starts the viewer, sends it command lines over a local server and
// prints how long each acknowledgement took.
#include "hostlink/frame.h"

#include <QBuffer>
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryFile>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace {

enum ExitCode {
    kOk = 0,
    kUsage = 1,
    kNotSetUp = 2,   // no server, viewer, script or temporary copy
    kNoGreeting = 3, // nobody connected and greeted in time
    kNoAnswer = 4,   // a command was not acknowledged in time, or answered with something else
    kViewerGone = 5  // the viewer closed the connection
};

constexpr char kExitCodes[] =
    "Exit codes: 0 every command was acknowledged, 1 wrong usage, 2 no server, viewer, script or "
    "temporary copy, 3 no greeting in time, 4 no acknowledgement in time or no end after -q, 5 the "
    "viewer went away.";

// What the viewer sends: its greeting and each acknowledgement.
const QString kAccept = QStringLiteral("krv-accept-connect");

constexpr int kDefaultTimeout = 30;    // seconds
constexpr int kLongestTimeout = 86400; // seconds
constexpr int kMillisecondsPerSecond = 1000;
constexpr int kEndTime = 5000; // milliseconds until a viewer that was asked to end is killed
// Milliseconds that a viewer gets to quit before it is asked again. Asking too early only shows the
// file once more.
constexpr int kQuitTime = 500;

struct Options {
    QString viewer;
    QStringList viewerArguments;
    QString serverName;
    QString script;
    QStringList commands;
    int timeout = 0; // milliseconds
    bool start = true;
    bool temporary = false;
    bool stay = false;
    bool leave = false;
};

int Fail(ExitCode code, const QString& reason)
{
    fprintf(stderr, "krvhost: %s\n", qPrintable(reason));
    return code;
}

// The viewer's connection: whole frames in, frames out.
class Connection
{
public:
    explicit Connection(QLocalSocket* connected) : socket(connected) {}

    void Send(const QString& message)
    {
        socket->write(EncodeFrame(message));
        socket->flush();
    }

    // Waits for the viewer to close the connection. Returns whether it has.
    bool AwaitEnd(int milliseconds)
    {
        return socket->state() == QLocalSocket::UnconnectedState ||
               socket->waitForDisconnected(milliseconds);
    }

    // Waits for one frame. Returns kOk, kNoAnswer after the time, or kViewerGone.
    ExitCode Receive(int milliseconds, QString* message)
    {
        const QDeadlineTimer deadline(milliseconds);
        while (!TakeFrame(message)) {
            if (socket->state() == QLocalSocket::UnconnectedState)
                return kViewerGone;
            if (!socket->waitForReadyRead(static_cast<int>(deadline.remainingTime())) &&
                deadline.hasExpired())
                return kNoAnswer;
            received += socket->readAll();
        }
        return kOk;
    }

private:
    bool TakeFrame(QString* message)
    {
        if (received.size() < kFrameLengthSize)
            return false;
        const auto high = static_cast<uchar>(received[0]);
        const auto low = static_cast<uchar>(received[1]);
        const qsizetype size = kFrameLengthSize + (high << 8) + low;
        if (received.size() < size)
            return false;
        QByteArray frame = received.left(size);
        received.remove(0, size);
        QBuffer device(&frame);
        device.open(QIODevice::ReadOnly);
        qint16 blockSize = 0;
        return ReadFrame(&device, &blockSize, message);
    }

    QLocalSocket* socket;
    QByteArray received;
};

// The viewer's options, in the order in which it looks for them anywhere in a word.
constexpr const char* kViewerOptions[] = {
    "-wp=", "-po=", "-p", "-c=", "-cf=", "-svrname=", "-q", "-tmp", "-cwd=", "-?"};

// The option that the viewer takes a word for; empty if it is a file name.
QLatin1StringView OptionIn(const QString& word)
{
    for (const char* option : kViewerOptions) {
        if (word.contains(QLatin1StringView(option)))
            return QLatin1StringView(option);
    }
    return {};
}

// The words of a command line that the viewer looks at.
QStringList UsedWords(const QString& command)
{
    QStringList words = command.split(u' ');
    const auto isUsage = [](const QString& word) { return OptionIn(word) == QLatin1String("-?"); };
    words.erase(std::find_if(words.begin(), words.end(), isUsage), words.end());
    return words;
}

bool HasOption(const QString& command, const char* option)
{
    const QStringList words = UsedWords(command);
    return std::any_of(words.begin(), words.end(), [option](const QString& word) {
        return OptionIn(word) == QLatin1StringView(option);
    });
}

// The file that a command line names: the last one counts.
QString FileIn(const QString& command)
{
    QString file;
    for (const QString& word : UsedWords(command)) {
        if (OptionIn(word).isEmpty())
            file = word;
    }
    return file;
}

// Whether a command line can name that file: its words end at blanks.
bool IsFileName(const QString& name)
{
    return !name.contains(u' ') && OptionIn(name).isEmpty();
}

// Copies of files, for the viewer to delete.
class TemporaryCopies
{
public:
    /// Replaces the words that name files by copies and adds "-tmp". Empty on failure.
    QString HandOver(const QString& command)
    {
        QStringList words = command.split(u' ');
        for (QString& word : words) {
            if (word.startsWith(u'-') || !QFileInfo(word).isFile())
                continue;
            word = Copy(word);
            if (word.isEmpty())
                return {};
        }
        words.prepend(QStringLiteral("-tmp"));
        return words.join(u' ');
    }

    /// Deletes what the viewer left: the last one when it was ended by force, and those that it
    /// could not load.
    void RemoveRest() const
    {
        for (const QString& name : names)
            QFile::remove(name);
    }

private:
    QString Copy(const QString& file)
    {
        QFile original(file);
        QTemporaryFile copy(QDir::tempPath() + QStringLiteral("/krvhost_XXXXXX.plf"));
        if (!IsFileName(copy.fileTemplate()) || !original.open(QIODevice::ReadOnly) || !copy.open())
            return {};
        const QByteArray bytes = original.readAll();
        if (copy.write(bytes) != bytes.size() || !copy.flush())
            return {};
        copy.setAutoRemove(false);
        names.append(copy.fileName());
        return copy.fileName();
    }

    QStringList names;
};

// The command lines and their answers.
class Session
{
public:
    Session(QLocalSocket* connected, TemporaryCopies& forViewer, const Options& how)
        : viewer(connected), copies(forViewer), options(how)
    {
    }

    int Greet(const QString& serverName)
    {
        QString message;
        if (viewer.Receive(options.timeout, &message) != kOk || message != kAccept)
            return Fail(kNoGreeting, QStringLiteral("the viewer did not send its greeting."));
        printf("greeting on %s\n", qPrintable(serverName));
        return kOk;
    }

    int RunCommands(QFile& script)
    {
        int result = kOk;
        for (qsizetype i = 0; result == kOk && i < options.commands.size(); ++i)
            result = Command(options.commands.at(i));
        return result == kOk && script.isOpen() ? RunScript(script) : result;
    }

private:
    int RunScript(QFile& script)
    {
        int result = kOk;
        // A pipe cannot tell that it is at its end; an empty line has its line feed.
        for (QByteArray line; result == kOk && !(line = script.readLine()).isEmpty();) {
            while (line.endsWith('\n') || line.endsWith('\r'))
                line.chop(1);
            if (!line.isEmpty() && !line.startsWith('#'))
                result = Command(QString::fromLocal8Bit(line));
        }
        return result;
    }

    // One command line: sent, and acknowledged unless it begins with '!'.
    int Command(QString command)
    {
        const bool answered = !command.startsWith(u'!');
        if (!answered)
            command.remove(0, 1);
        if (options.temporary) {
            command = copies.HandOver(command);
            if (command.isEmpty())
                return Fail(kNotSetUp, QStringLiteral("cannot make a temporary copy."));
        }
        QElapsedTimer timer;
        timer.start();
        viewer.Send(command);
        if (answered) {
            const int result = AwaitAnswer(command, timer);
            return result == kOk && HasOption(command, "-q") ? AwaitQuit(command) : result;
        }
        printf("sent            %s\n", qPrintable(command));
        return kOk;
    }

    // A viewer that is still starting acknowledges "-q" but cannot quit yet; it quits after the
    // next file. So the same file is sent again, without the jobs.
    int AwaitQuit(QString command)
    {
        const QDeadlineTimer deadline(options.timeout);
        while (!viewer.AwaitEnd(kQuitTime)) {
            if (deadline.hasExpired())
                return Fail(kNoAnswer, QStringLiteral("the viewer does not quit: %1").arg(command));
            command = Again(command);
            if (command.isEmpty() && !viewer.AwaitEnd(kQuitTime))
                return Fail(kNotSetUp, QStringLiteral("cannot make a temporary copy."));
            if (!command.isEmpty() && !SendAgain(command, deadline))
                return Fail(kNoAnswer,
                            QStringLiteral("no acknowledgement in time: %1").arg(command));
        }
        copies.RemoveRest(); // a copy that the viewer did not read any more
        return kOk;
    }

    // The same file with "-q". The viewer deletes a temporary file when the next command arrives,
    // so that one is copied first. Empty if there is nothing to copy.
    QString Again(const QString& command)
    {
        const QString file = FileIn(command);
        const QString request = file + QStringLiteral(" -q");
        if (!HasOption(command, "-tmp"))
            return request;
        const QString copy = copies.HandOver(request);
        return FileIn(copy) == file ? QString() : copy;
    }

    // Returns false if the viewer neither answers nor quits.
    bool SendAgain(const QString& command, const QDeadlineTimer& deadline)
    {
        printf("again           %s\n", qPrintable(command));
        viewer.Send(command);
        QString message;
        const auto left = static_cast<int>(deadline.remainingTime());
        return viewer.Receive(left, &message) != kNoAnswer;
    }

    int AwaitAnswer(const QString& command, const QElapsedTimer& timer)
    {
        QString message;
        const ExitCode result = viewer.Receive(options.timeout, &message);
        if (result == kNoAnswer)
            return Fail(result, QStringLiteral("no acknowledgement in time: %1").arg(command));
        if (result != kOk)
            return Fail(result, QStringLiteral("the viewer went away: %1").arg(command));
        if (message != kAccept)
            return Fail(kNoAnswer,
                        QStringLiteral("the viewer answered \"%1\": %2").arg(message, command));
        printf("ack %8.1f ms  %s\n", static_cast<double>(timer.nsecsElapsed()) / 1e6,
               qPrintable(command));
        return kOk;
    }

    Connection viewer;
    TemporaryCopies& copies;
    const Options& options;
};

// Waits for the viewer and works through the commands.
int Serve(QLocalServer& server, QFile& script, TemporaryCopies& copies, const Options& options)
{
    if (!server.waitForNewConnection(options.timeout))
        return Fail(kNoGreeting, QStringLiteral("no viewer connected in time."));
    Session session(server.nextPendingConnection(), copies, options);
    const int result = session.Greet(server.serverName());
    return result == kOk ? session.RunCommands(script) : result;
}

// The viewer as a child that this program ends, or as one that outlives it.
class Viewer
{
public:
    bool Start(const Options& options)
    {
        QStringList arguments = options.viewerArguments;
        arguments.prepend(QStringLiteral("-svrname=") + options.serverName);
        if (options.leave)
            return QProcess::startDetached(options.viewer, arguments);
        process.setProcessChannelMode(QProcess::ForwardedChannels);
        process.start(options.viewer, arguments);
        return process.waitForStarted();
    }

    /// @param wait  until its user closes it
    void End(bool wait)
    {
        if (process.state() == QProcess::NotRunning)
            return;
        if (!wait)
            process.terminate();
        if (!process.waitForFinished(wait ? -1 : kEndTime)) {
            process.kill();
            process.waitForFinished();
        }
    }

private:
    QProcess process;
};

// What a server of that name listens on.
QString SocketPath(const QString& name)
{
    return QDir(QDir::tempPath()).absoluteFilePath(name);
}

// Nobody else may connect. The toolkit puts such a socket in place of anything that has its name.
int Listen(QLocalServer& server, const QString& name)
{
    if (QFileInfo::exists(SocketPath(name)))
        return Fail(kNotSetUp, QStringLiteral("%1 is there already.").arg(SocketPath(name)));
    server.setSocketOptions(QLocalServer::UserAccessOption);
    if (!server.listen(name))
        return Fail(kNotSetUp,
                    QStringLiteral("cannot listen on %1: %2").arg(name, server.errorString()));
    return kOk;
}

int OpenScript(QFile& script)
{
    if (script.fileName().isEmpty())
        return kOk;
    const bool opened = script.fileName() == u"-" ? script.open(stdin, QIODevice::ReadOnly)
                                                  : script.open(QIODevice::ReadOnly);
    return opened ? kOk : Fail(kNotSetUp, QStringLiteral("cannot read %1.").arg(script.fileName()));
}

int Run(const Options& options)
{
    QLocalServer server;
    QFile script(options.script);
    int result = OpenScript(script);
    if (result == kOk)
        result = Listen(server, options.serverName);
    if (result != kOk)
        return result;
    Viewer viewer;
    if (!options.start)
        printf("waiting for -svrname=%s\n", qPrintable(options.serverName));
    else if (!viewer.Start(options))
        return Fail(kNotSetUp, QStringLiteral("cannot start %1.").arg(options.viewer));
    TemporaryCopies copies;
    result = Serve(server, script, copies, options);
    viewer.End(options.stay && result == kOk);
    // A viewer that goes on showing a copy deletes it itself.
    if (options.start && !options.leave)
        copies.RemoveRest();
    return result;
}

QString GeneratedName()
{
    return QStringLiteral("krvhost_%1_%2")
        .arg(QCoreApplication::applicationPid())
        .arg(QRandomGenerator::system()->generate(), 0, 16);
}

// The viewer of the same build or installation, or the one in the search path.
QString DefaultViewer()
{
    for (const char* beside : {"/plotvw", "/../app/plotvw"}) {
        QString path = QCoreApplication::applicationDirPath() + QLatin1StringView(beside);
        if (QFileInfo(path).isExecutable())
            return path;
    }
    return QStringLiteral("plotvw");
}

QCommandLineOption Option(const char* name, const char* description, const char* value = "")
{
    return {QString::fromLatin1(name), QString::fromLatin1(description),
            QString::fromLatin1(value)};
}

Options ReadOptions(const QCoreApplication& application)
{
    const auto viewer = Option("viewer", "Viewer to start.", "program");
    const auto argument = Option("arg", "Argument for the viewer; may be repeated.", "argument");
    const auto name = Option("name", "Name of the local server (default: a new one).", "name");
    const auto script =
        Option("script", "Command lines from a file, - for standard input.", "file");
    const auto timeout = Option("timeout", "Longest wait for the viewer (default: 30).", "seconds");
    const auto noStart = Option("no-start", "Wait for a viewer that is started by hand.");
    const auto temporary = Option("tmp", "Hand over temporary copies of the files, with -tmp.");
    const auto stay = Option("stay", "When done, wait until the viewer is closed.");
    const auto leave = Option("leave", "When done, leave the viewer running.");
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Plays the KORVEL process for the viewer.\n\n") +
        QLatin1StringView(kExitCodes));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({viewer, argument, name, script, timeout, noStart, temporary, stay, leave});
    parser.addPositionalArgument(
        QStringLiteral("commands"),
        QStringLiteral(
            "Command lines for the viewer, one an argument; '!' in front of one that the "
            "viewer does not acknowledge. A line that begins with an option stands "
            "behind --."),
        QStringLiteral("[commands...]"));
    // A command that begins with an option is taken apart into letters that nobody has typed.
    if (!parser.parse(QCoreApplication::arguments()))
        exit(Fail(kUsage, parser.errorText() + QStringLiteral(" Put -- in front of commands that "
                                                              "begin with an option.")));
    parser.process(application);

    Options options;
    options.viewer = parser.isSet(viewer) ? parser.value(viewer) : DefaultViewer();
    options.viewerArguments = parser.values(argument);
    options.serverName = parser.isSet(name) ? parser.value(name) : GeneratedName();
    options.script = parser.value(script);
    options.commands = parser.positionalArguments();
    const int seconds = parser.isSet(timeout) ? parser.value(timeout).toInt() : kDefaultTimeout;
    if (seconds < 1 || seconds > kLongestTimeout)
        exit(Fail(kUsage, QStringLiteral("--timeout takes 1 to %1 seconds.").arg(kLongestTimeout)));
    options.timeout = seconds * kMillisecondsPerSecond;
    options.start = !parser.isSet(noStart);
    options.temporary = parser.isSet(temporary);
    options.stay = parser.isSet(stay);
    options.leave = parser.isSet(leave);
    if (options.stay && options.leave)
        exit(Fail(kUsage, QStringLiteral("--stay and --leave exclude each other.")));
    return options;
}

} // namespace

int main(int argc, char** argv)
{
    signal(SIGPIPE, SIG_IGN); // a viewer that goes away while it is written to is an exit code
    setvbuf(stdout, nullptr, _IOLBF, BUFSIZ); // each line is there as soon as it is true
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("krvhost"));
    QCoreApplication::setApplicationVersion(QStringLiteral(PLOTVW_VERSION));
    return Run(ReadOptions(application));
}
