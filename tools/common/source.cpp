// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/common/source.h"

#include "tools/common/filename.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace tools {

namespace {

QString SystemReason()
{
    return QString::fromLocal8Bit(strerror(errno));
}

// What the loader would refuse without saying more than that it did.
QString FileProblem(const char* name)
{
    struct stat info = {};
    if (stat(name, &info) != 0)
        return SystemReason();
    if (S_ISDIR(info.st_mode))
        return QStringLiteral("is a directory");
    if (!S_ISREG(info.st_mode))
        return QStringLiteral("is not a regular file; use '-' to read from a pipe");
    if (access(name, R_OK) != 0)
        return SystemReason();
    return info.st_size == 0 ? QString::fromLatin1(kNoBytes) : QString();
}

QString LoadFile(const QByteArray& name, PlfGraph* graph)
{
    QString problem = FileProblem(name.constData());
    if (!problem.isEmpty())
        return problem;
    const char* reason = nullptr;
    *graph = PlfGraph::FromFile(name.constData(), &reason);
    return QString::fromLatin1(reason);
}

QString LoadStandardInput(PlfGraph* graph)
{
    const char* reason = nullptr;
    *graph = PlfGraph::FromStream(STDIN_FILENO, &reason);
    return QString::fromLocal8Bit(reason);
}

} // namespace

QString LoadGraph(const QByteArray& name, PlfGraph* graph)
{
    return name == kStandardStream ? LoadStandardInput(graph) : LoadFile(name, graph);
}

} // namespace tools
