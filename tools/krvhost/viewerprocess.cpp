// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/krvhost/viewerprocess.h"

#include "tools/krvhost/command.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace krvhost {

namespace {

constexpr int kEndTime = 5000; // milliseconds until a viewer that was asked to end is killed

} // namespace

bool ViewerProcess::Start(const QString& program, const QString& serverName, const Options& options)
{
    QStringList arguments = options.viewerArguments;
    arguments.prepend(WordFor(ViewerOption::kServerName) + serverName);
    if (options.leave)
        return QProcess::startDetached(program, arguments);
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(program, arguments);
    return process.waitForStarted();
}

void ViewerProcess::End(bool wait)
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

QString DefaultViewer()
{
    for (const char* beside : {"/plotvw", "/../app/plotvw"}) {
        QString path = QCoreApplication::applicationDirPath() + QLatin1StringView(beside);
        if (QFileInfo(path).isExecutable())
            return path;
    }
    return QStringLiteral("plotvw");
}

} // namespace krvhost
