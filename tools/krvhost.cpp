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

#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace {

enum ExitCode {
    kOk = 0,
    kUsage = 1,
    kNotSetUp = 2,   // no server, viewer, script or temporary copy
    kNoGreeting = 3, // nobody connected and greeted in time
    kNoAnswer = 4,   // a command was not acknowledged in time
    kViewerGone = 5  // the viewer closed the connection
};

constexpr char kExitCodes[] =
    "Exit codes: 0 every command was acknowledged, 1 wrong usage, 2 no server, viewer, script or "
    "temporary copy, 3 no greeting in time, 4 no acknowledgement in time, 5 the viewer went away.";

// What the viewer sends: its greeting and each acknowledgement.
const QString kAccept = QStringLiteral("krv-accept-connect");

constexpr int kDefaultTimeout = 30;    // seconds
constexpr int kLongestTimeout = 86400; // seconds
constexpr int kMillisecondsPerSecond = 1000;

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

// A temporary copy of a file, for the viewer to delete. Its name holds no '-', which could make an
// option of it.
QString TemporaryCopy(const QString& file)
{
    QFile original(file);
    QTemporaryFile copy(QDir::tempPath() + QStringLiteral("/krvhost_XXXXXX.plf"));
    copy.setAutoRemove(false);
    if (!original.open(QIODevice::ReadOnly) || !copy.open())
        return {};
    const QByteArray bytes = original.readAll();
    return copy.write(bytes) == bytes.size() && copy.flush() ? copy.fileName() : QString();
}

// Replaces the words that name files by temporary copies and adds "-tmp". Empty on failure.
QString HandOverCopies(const QString& command)
{
    QStringList words = command.split(u' ');
    for (QString& word : words) {
        if (word.startsWith(u'-') || !QFileInfo(word).isFile())
            continue;
        word = TemporaryCopy(word);
        if (word.isEmpty())
            return {};
    }
    words.prepend(QStringLiteral("-tmp"));
    return words.join(u' ');
}

// One command line: sent, and acknowledged unless it begins with '!'.
int Command(Connection& viewer, QString command, const Options& options)
{
    const bool answered = !command.startsWith(u'!');
    if (!answered)
        command.remove(0, 1);
    if (options.temporary) {
        command = HandOverCopies(command);
        if (command.isEmpty())
            return Fail(kNotSetUp, QStringLiteral("cannot make a temporary copy."));
    }
    QElapsedTimer timer;
    timer.start();
    viewer.Send(command);
    if (!answered) {
        printf("sent            %s\n", qPrintable(command));
        return kOk;
    }
    QString message;
    const ExitCode result = viewer.Receive(options.timeout, &message);
    if (result != kOk) {
        const QString reason = result == kNoAnswer ? QStringLiteral("no acknowledgement in time: ")
                                                   : QStringLiteral("the viewer went away: ");
        return Fail(result, reason + command);
    }
    printf("%s %8.1f ms  %s\n", message == kAccept ? "ack" : qPrintable(message),
           static_cast<double>(timer.nsecsElapsed()) / 1e6, qPrintable(command));
    fflush(stdout);
    return kOk;
}

int CommandsOf(Connection& viewer, QFile& script, const Options& options)
{
    int result = kOk;
    while (result == kOk && !script.atEnd()) {
        QByteArray line = script.readLine();
        while (line.endsWith('\n') || line.endsWith('\r'))
            line.chop(1);
        if (!line.isEmpty() && !line.startsWith('#'))
            result = Command(viewer, QString::fromLocal8Bit(line), options);
    }
    return result;
}

int RunCommands(Connection& viewer, const Options& options)
{
    for (const QString& command : options.commands) {
        const int result = Command(viewer, command, options);
        if (result != kOk)
            return result;
    }
    if (options.script.isEmpty())
        return kOk;
    QFile script(options.script);
    const bool opened = options.script == u"-" ? script.open(stdin, QIODevice::ReadOnly)
                                               : script.open(QIODevice::ReadOnly);
    if (!opened)
        return Fail(kNotSetUp, QStringLiteral("cannot read %1.").arg(options.script));
    return CommandsOf(viewer, script, options);
}

int Greet(QLocalServer& server, Connection& viewer, const Options& options)
{
    QElapsedTimer timer;
    timer.start();
    QString message;
    if (viewer.Receive(options.timeout, &message) != kOk || message != kAccept)
        return Fail(kNoGreeting, QStringLiteral("the viewer did not send its greeting."));
    printf("greeting on %s\n", qPrintable(server.serverName()));
    fflush(stdout);
    return kOk;
}

// Waits for the viewer and works through the commands.
int Serve(QLocalServer& server, const Options& options)
{
    if (!server.waitForNewConnection(options.timeout))
        return Fail(kNoGreeting, QStringLiteral("no viewer connected in time."));
    Connection viewer(server.nextPendingConnection());
    const int result = Greet(server, viewer, options);
    return result == kOk ? RunCommands(viewer, options) : result;
}

// The viewer as a child that ends with this program, or as one that outlives it.
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

    void End(bool wait)
    {
        if (process.state() == QProcess::NotRunning)
            return;
        if (!wait)
            process.terminate();
        process.waitForFinished(-1);
    }

private:
    QProcess process;
};

int Run(const Options& options)
{
    QLocalServer server;
    server.setSocketOptions(QLocalServer::UserAccessOption); // nobody else may connect
    if (!server.listen(options.serverName))
        return Fail(kNotSetUp, QStringLiteral("cannot listen on %1: %2")
                                   .arg(options.serverName, server.errorString()));
    Viewer viewer;
    if (!options.start) {
        printf("waiting for -svrname=%s\n", qPrintable(options.serverName));
        fflush(stdout);
    } else if (!viewer.Start(options)) {
        return Fail(kNotSetUp, QStringLiteral("cannot start %1.").arg(options.viewer));
    }
    const int result = Serve(server, options);
    viewer.End(options.stay && result == kOk);
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
    parser.process(application);

    Options options;
    options.viewer = parser.isSet(viewer) ? parser.value(viewer) : DefaultViewer();
    options.viewerArguments = parser.values(argument);
    options.serverName = parser.isSet(name) ? parser.value(name) : GeneratedName();
    options.script = parser.value(script);
    options.commands = parser.positionalArguments();
    const int seconds = parser.isSet(timeout) ? parser.value(timeout).toInt() : kDefaultTimeout;
    if (seconds < 1 || seconds > kLongestTimeout) {
        Fail(kUsage, QStringLiteral("--timeout takes 1 to %1 seconds.").arg(kLongestTimeout));
        exit(kUsage);
    }
    options.timeout = seconds * kMillisecondsPerSecond;
    options.start = !parser.isSet(noStart);
    options.temporary = parser.isSet(temporary);
    options.stay = parser.isSet(stay);
    options.leave = parser.isSet(leave);
    return options;
}

} // namespace

int main(int argc, char** argv)
{
    signal(SIGPIPE, SIG_IGN); // a viewer that goes away while it is written to is an exit code
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("krvhost"));
    QCoreApplication::setApplicationVersion(QStringLiteral(PLOTVW_VERSION));
    return Run(ReadOptions(application));
}
