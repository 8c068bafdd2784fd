// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "support/wholefile.h"

#include "support/files.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <iterator>
#include <system_error>
#include <utility>

namespace {

namespace fs = std::filesystem;

constexpr int kMostLinks = 40;            // so many does the system follow
constexpr mode_t kReadWriteForAll = 0666; // minus the umask
// Large enough to make the cost of a write call negligible.
constexpr size_t kBlockSize = size_t{64} * 1024;
// A file without a name is known to the system as one of the process's own.
constexpr char kOwnDescriptors[] = "/proc/self/fd";

// Unlike the functions that resolve names, it also finds where a link leads to nothing yet.
std::string FinalName(std::string name)
{
    for (int links = 0; links < kMostLinks; ++links) {
        std::error_code isNoLink;
        const fs::path next = fs::read_symlink(name, isNoLink);
        if (isNoLink)
            return name;
        name = (fs::path(name).parent_path() / next).string();
    }
    return name;
}

std::string FolderOf(const std::string& name)
{
    const std::string folder = fs::path(name).parent_path().string();
    return folder.empty() ? "." : folder;
}

std::string RandomHiddenName()
{
    uint64_t number = 0;
    if (getrandom(&number, sizeof number, 0) < 0)
        number = static_cast<uint64_t>(getpid()); // unique among the processes that run
    return ".plotvw-" + std::to_string(number);
}

// The links of some special folders lead elsewhere than they say.
bool LeadsTo(const std::string& name, const struct stat& expected)
{
    struct stat info = {};
    return stat(name.c_str(), &info) == 0 && info.st_dev == expected.st_dev &&
           info.st_ino == expected.st_ino;
}

// Asks the system by trying; fails with errno.
bool MayBeWritten(const std::string& name)
{
    return Fd(open(name.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC)).IsOpen();
}

// The user may not do this here: the folder is protected or another user's, or the file is mounted.
bool IsRefusal(int error)
{
    constexpr int kRefusals[] = {EACCES, EPERM, EROFS, EBUSY};
    return std::find(std::begin(kRefusals), std::end(kRefusals), error) != std::end(kRefusals);
}

// If the group cannot stay, the new one may do what everybody may: other people are in it.
void TakeOver(const struct stat& older, int fd)
{
    constexpr uid_t kSameOwner = static_cast<uid_t>(-1);
    constexpr int kGroupBits = 3;
    mode_t mode = older.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO);
    if (fchown(fd, older.st_uid, older.st_gid) != 0 && fchown(fd, kSameOwner, older.st_gid) != 0)
        mode = (mode & ~mode_t{S_IRWXG}) | (mode & S_IRWXO) << kGroupBits;
    fchmod(fd, mode);
}

// Some file systems cannot wait for the disk and say EINVAL.
bool ReachesDisk(const Fd& file)
{
    return fsync(file.Get()) == 0 || errno == EINVAL;
}

bool Link(const Fd& unnamed, const std::string& name)
{
    const std::string own = std::string(kOwnDescriptors) + '/' + std::to_string(unnamed.Get());
    return linkat(AT_FDCWD, own.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0;
}

} // namespace

WholeFile::WholeFile(const std::string& path, const std::string& hiddenName)
    : WholeFile(path, hiddenName, Rules())
{
}

WholeFile::WholeFile(const std::string& path, const std::string& hiddenName, Rules fileRules)
    : name(path), target(FinalName(path)),
      hidden(HiddenPath(path, hiddenName.empty() ? RandomHiddenName() : hiddenName)),
      rules(fileRules)
{
}

WholeFile::~WholeFile()
{
    RemoveHidden();
}

std::string WholeFile::HiddenPath(const std::string& path, const std::string& hiddenName)
{
    return FolderOf(FinalName(path)) + '/' + hiddenName;
}

int WholeFile::Open()
{
    struct stat older = {};
    const bool exists = stat(name.c_str(), &older) == 0;
    if (!exists && errno != ENOENT)
        return errno;
    if (exists && (!S_ISREG(older.st_mode) || !LeadsTo(target, older)))
        return OpenInPlace();
    // A file that is protected from writing is not replaced either.
    if (exists && !MayBeWritten(name))
        return errno;
    if (!OpenBeside())
        return exists && rules.inPlace && IsRefusal(errno) ? OpenInPlace() : errno;
    replaces = exists;
    if (exists)
        TakeOver(older, file.Get());
    return 0;
}

int WholeFile::OpenCopyOf(int descriptor)
{
    file = Fd(dup(descriptor));
    place = Place::kInPlace;
    return file.IsOpen() ? 0 : errno;
}

int WholeFile::OpenInPlace()
{
    file = Fd(OpenDescriptorForWriting(name.c_str()));
    place = Place::kInPlace;
    return file.IsOpen() ? 0 : errno;
}

// A file without a name vanishes with the process, even one that is killed.
bool WholeFile::OpenBeside()
{
    if (!fs::path(target).has_filename()) {
        errno = ENOENT;
        return false;
    }
    place = Place::kUnnamed;
    if (access(kOwnDescriptors, F_OK) == 0)
        file = Fd(open(FolderOf(target).c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, kReadWriteForAll));
    if (file.IsOpen())
        return true;
    file = Fd(open(hidden.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kReadWriteForAll));
    if (file.IsOpen())
        place = Place::kHidden;
    return file.IsOpen();
}

void WholeFile::Write(const void* bytes, size_t count)
{
    if (waiting.size() + count > kBlockSize)
        Flush();
    if (count > kBlockSize)
        Put(bytes, count);
    else
        waiting.append(static_cast<const char*>(bytes), count);
}

void WholeFile::Put(const void* bytes, size_t count)
{
    if (firstError == 0)
        NoteUnless(WriteWhole(file, bytes, count));
}

void WholeFile::Flush()
{
    Put(waiting.data(), waiting.size());
    waiting.clear();
}

void WholeFile::NoteUnless(bool worked)
{
    if (!worked && firstError == 0)
        firstError = errno;
}

int WholeFile::Commit(bool keepExisting)
{
    Flush();
    if (firstError == 0 && replaces && rules.sync)
        NoteUnless(ReachesDisk(file));
    if (firstError == 0)
        NoteUnless(CloseCopy(file.Get()));
    if (firstError == 0 && place != Place::kInPlace) {
        NoteUnless(GiveName(keepExisting));
        isNameRefused = firstError != 0 && place != Place::kInPlace;
    }
    return firstError;
}

// Only a file that has a name can replace another one, so it gets the hidden one for that moment.
bool WholeFile::GiveName(bool keepExisting)
{
    if (place == Place::kUnnamed) {
        if (Link(file, target))
            return true;
        if (errno != EEXIST || keepExisting || !Link(file, hidden))
            return false;
        place = Place::kHidden;
    }
    if (!Rename(keepExisting))
        return rules.inPlace && IsRefusal(errno) && CopyOverOlder();
    place = Place::kNowhere;
    return true;
}

bool WholeFile::Rename(bool keepExisting)
{
    const unsigned flags = keepExisting ? RENAME_NOREPLACE : 0;
    int result = renameat2(AT_FDCWD, hidden.c_str(), AT_FDCWD, target.c_str(), flags);
    // Not every file system knows the flag.
    if (result != 0 && errno == EINVAL && access(target.c_str(), F_OK) != 0)
        result = rename(hidden.c_str(), target.c_str());
    return result == 0;
}

bool WholeFile::CopyOverOlder()
{
    RemoveHidden();
    const Fd whole = std::move(file);
    // Systems that protect shared folders refuse to open another user's file there if the call
    // could create one.
    file = Fd(open(name.c_str(), O_WRONLY | O_TRUNC | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!file.IsOpen())
        return false;
    place = Place::kInPlace;
    if (lseek(whole.Get(), 0, SEEK_SET) != 0)
        return false;
    std::string block(kBlockSize, '\0');
    ssize_t count = 0;
    while ((count = read(whole.Get(), block.data(), block.size())) > 0)
        Put(block.data(), static_cast<size_t>(count));
    return count == 0 && firstError == 0 && CloseCopy(file.Get());
}

void WholeFile::RemoveHidden()
{
    if (place == Place::kHidden)
        unlink(hidden.c_str());
    place = Place::kNowhere;
}
