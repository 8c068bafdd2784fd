// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The command lines for a connected viewer, and its answers.
#pragma once

#include "tools/krvhost/connection.h"
#include "tools/krvhost/options.h"
#include "tools/krvhost/temporarycopies.h"

class QDeadlineTimer;
class QElapsedTimer;
class QFile;

namespace krvhost {

/// Each function that returns an int returns an exit code, and has printed why it is not kDone.
class Session
{
public:
    /// @param how  outlives the session, as the copies do
    Session(QLocalSocket* connected, TemporaryCopies& forViewer, const Options& how)
        : viewer(connected), copies(forViewer), options(how)
    {
    }

    /// Waits for the greeting and prints it.
    int Greet(const QString& serverName);
    /// Sends the commands of the call, then those of the script.
    /// @param script  may be closed
    int RunCommands(QFile& script);

private:
    int RunScript(QFile& script);
    int Command(QString command);
    int AwaitQuit(QString command);
    QString Again(const QString& command);
    bool SendAgain(const QString& command, const QDeadlineTimer& deadline);
    int AwaitAnswer(const QString& command, const QElapsedTimer& timer);

    Connection viewer;
    TemporaryCopies& copies;
    const Options& options;
};

} // namespace krvhost
