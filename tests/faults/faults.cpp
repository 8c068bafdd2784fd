// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Stands between a program and the system, linked or preloaded, and lets calls fail that open,
// write, close, link or rename files, as a FaultPlan says. Pipes and sockets are not touched, but
// the standard output is.
#include "tests/faults/faultplan.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>

namespace {

FaultPlan ownPlan;
FaultPlan* plan = &ownPlan;

template <typename Function> Function* Real(Function* /*type*/, const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

bool IsFile(int fd)
{
    struct stat info = {};
    return fd == STDOUT_FILENO || (fstat(fd, &info) == 0 && S_ISREG(info.st_mode));
}

bool IsWrittenFile(int fd)
{
    return IsFile(fd) && (fcntl(fd, F_GETFL) & O_ACCMODE) != O_RDONLY;
}

// Counts a call. Returns whether it is to fail, with errno.
bool Fails()
{
    const Fault fault = plan->fault;
    if (fault == Fault::kNone || fault == Fault::kNoName)
        return false;
    const long call = ++plan->calls;
    const long failAt = plan->failAt;
    if (call < failAt || (call > failAt && fault != Fault::kFullDisk))
        return false;
    if (fault == Fault::kKill || fault == Fault::kKillGroup)
        kill(fault == Fault::kKill ? getpid() : 0, SIGKILL);
    errno = fault == Fault::kFullDisk ? ENOSPC : EIO;
    return true;
}

// The same for a call that gives a file a name.
bool NameFails()
{
    if (plan->fault != Fault::kNoName)
        return Fails();
    ++plan->calls;
    errno = EINVAL;
    return true;
}

// The C library writes what goes through its streams by itself; it does not call what is below.
ssize_t WriteOutput(void* /*cookie*/, const char* bytes, size_t count)
{
    const ssize_t written = write(STDOUT_FILENO, bytes, count);
    return written < 0 ? 0 : written;
}

void TakeStandardOutput()
{
    cookie_io_functions_t functions = {};
    functions.write = WriteOutput;
    FILE* stream = fopencookie(nullptr, "w", functions);
    if (stream != nullptr)
        stdout = stream;
}

[[gnu::constructor]] void ReadPlan()
{
    const char* name = getenv(kFaultVariable);
    const int fd = name == nullptr ? -1 : open(name, O_RDWR | O_CLOEXEC);
    if (fd < 0)
        return;
    void* shared = mmap(nullptr, sizeof(FaultPlan), PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    if (shared != MAP_FAILED)
        plan = static_cast<FaultPlan*>(shared);
    TakeStandardOutput();
}

template <typename Open> int OpenUnlessFault(Open open, int flags)
{
    const bool writes = (flags & O_ACCMODE) != O_RDONLY;
    return writes && Fails() ? -1 : open();
}

} // namespace

extern "C" {

FaultPlan* CurrentFaultPlan()
{
    return plan;
}

// The mode is read also where there is none: it is not looked at then.
int open(const char* path, int flags, ...)
{
    va_list rest;
    va_start(rest, flags);
    const auto mode = va_arg(rest, mode_t);
    va_end(rest);
    return OpenUnlessFault([&] { return Real(::open, "open")(path, flags, mode); }, flags);
}

int open64(const char* path, int flags, ...)
{
    va_list rest;
    va_start(rest, flags);
    const auto mode = va_arg(rest, mode_t);
    va_end(rest);
    return OpenUnlessFault([&] { return Real(::open, "open64")(path, flags, mode); }, flags);
}

ssize_t write(int fd, const void* bytes, size_t count)
{
    const bool fails = IsFile(fd) && Fails();
    const bool isHalf = fails && errno == ENOSPC && count > 1 && plan->calls == plan->failAt;
    if (fails && !isHalf)
        return -1;
    return Real(::write, "write")(fd, bytes, isHalf ? count / 2 : count);
}

ssize_t writev(int fd, const iovec* blocks, int count)
{
    return IsFile(fd) && Fails() ? -1 : Real(::writev, "writev")(fd, blocks, count);
}

// A descriptor is closed even if that reports an error.
int close(int fd)
{
    const bool fails = IsWrittenFile(fd) && Fails();
    const int error = errno;
    const int result = Real(::close, "close")(fd);
    if (!fails)
        return result;
    errno = error;
    return -1;
}

int fsync(int fd)
{
    return Fails() ? -1 : Real(::fsync, "fsync")(fd);
}

int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags)
{
    return NameFails() ? -1 : Real(::linkat, "linkat")(fromFolder, from, toFolder, to, flags);
}

int rename(const char* from, const char* to) noexcept
{
    return NameFails() ? -1 : Real(::rename, "rename")(from, to);
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to,
              unsigned flags) noexcept
{
    return NameFails() ? -1 : Real(::renameat2, "renameat2")(fromFolder, from, toFolder, to, flags);
}
}
