// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/krvhost/run.h"

#include "tools/common/filename.h"
#include "tools/krvhost/command.h"
#include "tools/krvhost/session.h"
#include "tools/krvhost/temporarycopies.h"
#include "tools/krvhost/viewerprocess.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocalServer>
#include <QRandomGenerator>

#include <cstdio>

namespace krvhost {

namespace {

using tools::Fail;
using tools::kDone;
using tools::kFailed;
using tools::kNotStarted;

// Waits for the viewer and works through the commands.
int Serve(QLocalServer& server, QFile& script, TemporaryCopies& copies, const Options& options)
{
    if (!server.waitForNewConnection(options.Milliseconds()))
        return Fail(kFailed, QStringLiteral("no viewer connected in time"));
    Session session(server.nextPendingConnection(), copies, options);
    const int result = session.Greet(server.serverName());
    return result == kDone ? session.RunCommands(script) : result;
}

QString GeneratedName()
{
    return QStringLiteral("krvhost_%1_%2")
        .arg(QCoreApplication::applicationPid())
        .arg(QRandomGenerator::system()->generate(), 0, 16);
}

// What a server of that name listens on.
QString SocketPath(const QString& name)
{
    return QDir(QDir::tempPath()).absoluteFilePath(name);
}

// Nobody else may connect. Qt puts such a socket in place of anything that has its name.
int Listen(QLocalServer& server, const QString& name)
{
    if (QFileInfo::exists(SocketPath(name)))
        return Fail(kNotStarted, QStringLiteral("%1 already exists").arg(SocketPath(name)));
    server.setSocketOptions(QLocalServer::UserAccessOption);
    if (!server.listen(name))
        return Fail(kNotStarted,
                    QStringLiteral("cannot listen on %1: %2").arg(name, server.errorString()));
    return kDone;
}

int OpenScript(QFile& script)
{
    if (script.fileName().isEmpty())
        return kDone;
    const bool opened = script.fileName() == u"-" ? script.open(stdin, QIODevice::ReadOnly)
                                                  : script.open(QIODevice::ReadOnly);
    return opened ? kDone
                  : Fail(kNotStarted, QStringLiteral("cannot read %1: %2")
                                          .arg(script.fileName(), script.errorString()));
}

int StartViewer(ViewerProcess& viewer, const QString& serverName, const Options& options)
{
    const QString program = options.viewer.isEmpty() ? DefaultViewer() : options.viewer;
    if (!viewer.Start(program, serverName, options))
        return Fail(kNotStarted, QStringLiteral("cannot start %1").arg(program));
    return kDone;
}

// With a server that listens.
int RunWith(QLocalServer& server, QFile& script, const QString& serverName, const Options& options)
{
    ViewerProcess viewer;
    if (options.noStart)
        printf("waiting for %s\n",
               tools::VisibleText(WordFor(ViewerOption::kServerName) + serverName).constData());
    else if (StartViewer(viewer, serverName, options) != kDone)
        return kNotStarted;
    TemporaryCopies copies;
    const int result = Serve(server, script, copies, options);
    viewer.End(options.stay && result == kDone);
    // A viewer that goes on showing a copy deletes it itself.
    if (!options.noStart && !options.leave)
        copies.RemoveRest();
    return result;
}

int RunCommands(const Options& options)
{
    QLocalServer server;
    QFile script(options.script);
    const QString serverName = options.serverName.isEmpty() ? GeneratedName() : options.serverName;
    int result = OpenScript(script);
    if (result == kDone)
        result = Listen(server, serverName);
    return result == kDone ? RunWith(server, script, serverName, options) : result;
}

} // namespace

int Run(const Options& options)
{
    const int result = RunCommands(options);
    return !tools::FinishOutput() && result == kDone ? kFailed : result;
}

} // namespace krvhost
