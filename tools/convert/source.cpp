// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/source.h"

#include "meta/plfbuffer.h"
#include "tools/convert/fd.h"
#include "tools/convert/settings.h"

#include <sys/mman.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>

namespace {

constexpr size_t kCopyBytes = size_t{64} * 1024;

QString SystemReason()
{
    return QString::fromLocal8Bit(strerror(errno));
}

bool WriteAll(int fd, const char* bytes, ssize_t count)
{
    while (count > 0) {
        const ssize_t written = write(fd, bytes, static_cast<size_t>(count));
        if (written < 0)
            return false;
        bytes += written;
        count -= written;
    }
    return true;
}

// Up to the end of the input.
bool CopyStandardInput(int target)
{
    char buffer[kCopyBytes];
    ssize_t count = 0;
    while ((count = read(STDIN_FILENO, buffer, sizeof buffer)) > 0) {
        if (!WriteAll(target, buffer, count))
            return false;
    }
    return count == 0;
}

// What the loader would refuse without saying more than that it did.
QString FileProblem(const char* name)
{
    struct stat info = {};
    if (stat(name, &info) != 0)
        return SystemReason();
    if (S_ISDIR(info.st_mode))
        return QStringLiteral("is a folder");
    if (!S_ISREG(info.st_mode))
        return QStringLiteral("is not a regular file; read a pipe with '-'");
    if (access(name, R_OK) != 0)
        return SystemReason();
    return info.st_size == 0 ? QStringLiteral("is empty") : QString();
}

QString LoadFile(QByteArray name)
{
    QString problem = FileProblem(name.constData());
    if (!problem.isEmpty())
        return problem;
    char message[kLoadMessageSize] = "";
    return LoadPlfFile(name.data(), message) == 0 ? QString() : QString::fromLatin1(message);
}

// The loader takes files that have a size, and a stream has none: it goes into memory first.
QString LoadStandardInput()
{
    const Fd copy(memfd_create("graph", MFD_CLOEXEC));
    if (!copy.IsOpen() || !CopyStandardInput(copy.Get()))
        return SystemReason();
    return LoadFile(NameOfFd(copy));
}

} // namespace

QString LoadGraph(const QByteArray& name)
{
    return name == kStandardStream ? LoadStandardInput() : LoadFile(name);
}
