// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "support/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Asked of the open descriptor, not of the name: the name may mean another file by then.
bool EndsByItself(int fd)
{
    struct stat info = {};
    return fstat(fd, &info) == 0 && (S_ISREG(info.st_mode) || S_ISDIR(info.st_mode));
}

} // namespace

FILE* OpenForReading(const char* path)
{
    // Without O_NONBLOCK the opening of a pipe waits for a writer, which may never come; without
    // O_NOCTTY that of a terminal may make it the program's own.
    const int fd = open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (fd < 0)
        return nullptr;
    FILE* file = EndsByItself(fd) ? fdopen(fd, "rb") : nullptr;
    if (file == nullptr)
        close(fd);
    return file;
}
