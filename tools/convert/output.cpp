// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/output.h"

#include "tools/common/filename.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace convert {

namespace {

QString Reason(int error)
{
    return QString::fromLocal8Bit(strerror(error));
}

// A pipe, a device or a directory: something that a new file must not replace.
bool IsSpecial(const QByteArray& name)
{
    struct stat info = {};
    return stat(name.constData(), &info) == 0 && !S_ISREG(info.st_mode);
}

// Where they cannot be set, the file keeps those of a new one.
void CopyPermissions(const QByteArray& from, FILE* to)
{
    constexpr mode_t kPermissions = 0777;
    struct stat info = {};
    if (stat(from.constData(), &info) == 0)
        fchmod(fileno(to), info.st_mode & kPermissions);
}

FILE* OpenStandardOutput()
{
    const int copy = dup(STDOUT_FILENO);
    return copy < 0 ? nullptr : fdopen(copy, "wb");
}

} // namespace

QByteArray FinalName(const QByteArray& name)
{
    struct stat info = {};
    if (lstat(name.constData(), &info) != 0 || !S_ISLNK(info.st_mode))
        return name;
    char resolved[PATH_MAX];
    return realpath(name.constData(), resolved) == nullptr ? name : QByteArray(resolved);
}

QByteArray TemporaryName(const QByteArray& name, const QByteArray& token)
{
    const QByteArray target = FinalName(name);
    return target.left(target.lastIndexOf('/') + 1) + ".plfconvert-" + token;
}

Output::Output(const QByteArray& name, const QByteArray& token)
    : target(name == tools::kStandardStream ? name : FinalName(name))
{
    if (name != tools::kStandardStream && !IsSpecial(target))
        temporary = TemporaryName(name, token);
}

Output::~Output()
{
    file.reset();
    if (!temporary.isEmpty())
        unlink(temporary.constData());
}

QString Output::Open()
{
    if (IsReplacing() && access(target.constData(), W_OK) != 0)
        return Reason(errno); // a file that is protected from writing is not replaced either
    if (target == tools::kStandardStream)
        file.reset(OpenStandardOutput());
    else if (temporary.isEmpty())
        file.reset(OpenForWriting(target.constData()));
    else
        file.reset(fopen(temporary.constData(), "wbxe"));
    if (file == nullptr) {
        temporary.clear(); // not ours: do not unlink
        return Reason(errno);
    }
    open(QIODevice::WriteOnly);
    return {};
}

bool Output::IsReplacing() const
{
    return !temporary.isEmpty() && access(target.constData(), F_OK) == 0;
}

qint64 Output::readData(char* /*data*/, qint64 /*size*/)
{
    return -1;
}

// After a failure the rest is taken and dropped. The failure is reported at the end, once: some of
// those who write do not look, and others print words of their own.
qint64 Output::writeData(const char* data, qint64 size)
{
    const auto bytes = static_cast<size_t>(size);
    if (firstError == 0 && fwrite(data, 1, bytes, file.get()) != bytes)
        firstError = errno;
    return size;
}

QString Output::Commit(bool keepExisting)
{
    if (firstError == 0 && fflush(file.get()) != 0)
        firstError = errno;
    if (IsReplacing())
        CopyPermissions(target, file.get());
    // Some file systems report a full disk only here.
    if (fclose(file.release()) != 0 && firstError == 0)
        firstError = errno;
    if (firstError != 0)
        return Reason(firstError);
    return temporary.isEmpty() ? QString() : Rename(keepExisting);
}

QString Output::Rename(bool keepExisting)
{
    const unsigned flags = keepExisting ? RENAME_NOREPLACE : 0;
    int result = renameat2(AT_FDCWD, temporary.constData(), AT_FDCWD, target.constData(), flags);
    // Not every file system knows the flag.
    if (result != 0 && errno == EINVAL && access(target.constData(), F_OK) != 0)
        result = rename(temporary.constData(), target.constData());
    if (result != 0)
        return Reason(errno);
    temporary.clear();
    return {};
}

} // namespace convert
