// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/krvhost/session.h"

#include "hostlink/protocol.h"
#include "tools/common/filename.h"
#include "tools/krvhost/command.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QFile>

#include <cstdio>

namespace krvhost {

namespace {

using tools::kDone;
using tools::VisibleText;

// Milliseconds that a viewer gets to quit before it is asked again. Asking too early only shows the
// file once more.
constexpr int kQuitTime = 500;
constexpr double kNanosecondsPerMillisecond = 1e6;

int Fail(const QString& reason)
{
    return tools::Fail(tools::kFailed, reason);
}

int FailToCopy()
{
    return Fail(QStringLiteral("cannot create a temporary copy"));
}

int FailToAnswer(const QString& command)
{
    return Fail(QStringLiteral("no acknowledgement in time: %1").arg(command));
}

} // namespace

int Session::Greet(const QString& serverName)
{
    QString message;
    if (viewer.Receive(options.Milliseconds(), &message) != Arrival::kCame || message != kAccept)
        return Fail(QStringLiteral("the viewer did not send its greeting"));
    printf("greeting on %s\n", VisibleText(serverName).constData());
    return kDone;
}

int Session::RunCommands(QFile& script)
{
    int result = kDone;
    for (qsizetype i = 0; result == kDone && i < options.commands.size(); ++i)
        result = Command(options.commands.at(i));
    return result == kDone && script.isOpen() ? RunScript(script) : result;
}

int Session::RunScript(QFile& script)
{
    int result = kDone;
    // A pipe does not know that it is at its end; an empty line has its line feed.
    for (QByteArray line; result == kDone && !(line = script.readLine()).isEmpty();) {
        while (line.endsWith('\n') || line.endsWith('\r'))
            line.chop(1);
        if (!line.isEmpty() && !line.startsWith('#'))
            result = Command(tools::DecodeName(line));
    }
    return result;
}

// One command line: sent, and acknowledged unless it begins with '!'.
int Session::Command(QString command)
{
    const bool answered = !command.startsWith(u'!');
    if (!answered)
        command.remove(0, 1);
    if (options.temporary) {
        command = copies.HandOver(command);
        if (command.isEmpty())
            return FailToCopy();
    }
    QElapsedTimer timer;
    timer.start();
    viewer.Send(command);
    if (answered) {
        const int result = AwaitAnswer(command, timer);
        return result == kDone && HasOption(command, ViewerOption::kQuit) ? AwaitQuit(command)
                                                                          : result;
    }
    printf("sent            %s\n", VisibleText(command).constData());
    return kDone;
}

// A viewer that is still starting acknowledges "-q" but cannot quit yet; it quits after the
// next file. So the same file is sent again, without the jobs.
int Session::AwaitQuit(QString command)
{
    const QDeadlineTimer deadline(options.Milliseconds());
    while (!viewer.AwaitEnd(kQuitTime)) {
        if (deadline.hasExpired())
            return Fail(QStringLiteral("the viewer did not quit in time: %1").arg(command));
        command = Again(command);
        if (command.isEmpty() && !viewer.AwaitEnd(kQuitTime))
            return FailToCopy();
        if (!command.isEmpty() && !SendAgain(command, deadline))
            return FailToAnswer(command);
    }
    copies.RemoveRest(); // a copy that the viewer did not read any more
    return kDone;
}

// The same file with "-q". The viewer deletes a temporary file when the next command arrives,
// so that one is copied first. Empty if there is nothing to copy.
QString Session::Again(const QString& command)
{
    const QString file = FileIn(command);
    QString request = file + u' ' + WordFor(ViewerOption::kQuit);
    if (!HasOption(command, ViewerOption::kTemporary))
        return request;
    const QString copy = copies.HandOver(request);
    return FileIn(copy) == file ? QString() : copy;
}

// Returns false if the viewer neither answers nor quits.
bool Session::SendAgain(const QString& command, const QDeadlineTimer& deadline)
{
    printf("again           %s\n", VisibleText(command).constData());
    viewer.Send(command);
    QString message;
    const auto left = static_cast<int>(deadline.remainingTime());
    return viewer.Receive(left, &message) != Arrival::kLate;
}

int Session::AwaitAnswer(const QString& command, const QElapsedTimer& timer)
{
    QString message;
    const Arrival arrival = viewer.Receive(options.Milliseconds(), &message);
    if (arrival == Arrival::kLate)
        return FailToAnswer(command);
    if (arrival == Arrival::kClosed)
        return Fail(QStringLiteral("the viewer closed the connection: %1").arg(command));
    if (message != kAccept)
        return Fail(QStringLiteral("the viewer answered \"%1\": %2").arg(message, command));
    printf("ack %8.1f ms  %s\n",
           static_cast<double>(timer.nsecsElapsed()) / kNanosecondsPerMillisecond,
           VisibleText(command).constData());
    return kDone;
}

} // namespace krvhost
