// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "support/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Users link a file to it to make it empty.
bool IsNullDevice(const struct stat& info)
{
    struct stat null = {};
    return S_ISCHR(info.st_mode) && stat("/dev/null", &null) == 0 && info.st_rdev == null.st_rdev;
}

// Checks the open descriptor, not the name: the name may mean another file by then.
bool EndsByItself(int fd)
{
    struct stat info = {};
    if (fstat(fd, &info) != 0)
        return false;
    return S_ISREG(info.st_mode) || S_ISDIR(info.st_mode) || IsNullDevice(info);
}

} // namespace

FILE* OpenForReading(const char* path)
{
    // Without O_NONBLOCK, opening a pipe waits for a writer, which may never come; without
    // O_NOCTTY, a terminal may become the program's controlling terminal.
    const int fd = open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (fd < 0)
        return nullptr;
    FILE* file = EndsByItself(fd) ? fdopen(fd, "rb") : nullptr;
    if (file == nullptr)
        close(fd);
    return file;
}

int OpenDescriptorForWriting(const char* path, bool append)
{
    constexpr mode_t kReadWriteForAll = 0666; // minus the umask, as in fopen
    const int how = append ? O_APPEND : O_TRUNC;
    const int fd =
        open(path, O_WRONLY | O_CREAT | how | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, kReadWriteForAll);
    // Only opening must not wait; writing to a pipe may.
    if (fd >= 0)
        fcntl(fd, F_SETFL, append ? O_APPEND : 0);
    return fd;
}

FILE* OpenForWriting(const char* path, bool append)
{
    const int fd = OpenDescriptorForWriting(path, append);
    FILE* file = fd < 0 ? nullptr : fdopen(fd, append ? "ab" : "wb");
    if (file == nullptr && fd >= 0)
        close(fd);
    return file;
}
