// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/environment.h"

#include "tools/common/commandline.h"

#include <QGuiApplication>

#include <fcntl.h>
#include <langinfo.h>
#include <unistd.h>

#include <clocale>
#include <cstring>
#include <mutex>

namespace convert {

namespace {

// Of the keeper that lives.
QString* kept = nullptr;

void HandleMessage(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& text)
{
    // A conversion has no use for the user's runtime directory.
    if (text.startsWith(QLatin1StringView("QStandardPaths: ")))
        return;
    static std::mutex mutex; // several threads may draw
    const std::lock_guard lock(mutex);
    if (kept == nullptr)
        tools::PrintError(text.toLocal8Bit());
    else
        *kept += (kept->isEmpty() ? QString() : QStringLiteral("\n")) + text;
}

// Qt warns of any other character set and uses this one.
void UseUtf8()
{
    std::setlocale(LC_CTYPE, "");
    if (strcmp(nl_langinfo(CODESET), "UTF-8") != 0)
        qputenv("LC_ALL", "C.UTF-8");
}

// A stream that the caller closed would give its number to one of the pipes between the processes,
// and pictures would be written into that. Here its number is taken, by what can only fail.
void TakeClosedStreams()
{
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        const int how = stream == STDIN_FILENO ? O_WRONLY : O_RDONLY;
        // The lowest free number is given first, and those before this one are taken.
        if (fcntl(stream, F_GETFD) == -1)
            open("/dev/null", how);
    }
}

void SetDefault(const char* variable, const char* value)
{
    if (qEnvironmentVariableIsEmpty(variable))
        qputenv(variable, value);
}

} // namespace

void PrepareProcess()
{
    TakeClosedStreams();
    UseUtf8();
    qInstallMessageHandler(HandleMessage);
}

std::shared_ptr<void> StartQt(char** argv)
{
    SetDefault("QT_QPA_PLATFORM", "offscreen");
    SetDefault("XDG_RUNTIME_DIR", "/dev/null"); // or Qt creates one in /tmp
    static int count = 1;
    return std::make_shared<QGuiApplication>(count, argv);
}

MessageKeeper::MessageKeeper()
{
    kept = &messages;
}

MessageKeeper::~MessageKeeper()
{
    kept = nullptr;
}

} // namespace convert
