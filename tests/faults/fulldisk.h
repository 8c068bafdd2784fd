// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A disk in memory that becomes full. Only this process and its children see it.
#pragma once

#include <sched.h>
#include <sys/mount.h>
#include <sys/statfs.h>

#include <string>
#include <utility>

/// The disk lies on a folder for as long as the object lives.
class FullDisk
{
public:
    explicit FullDisk(std::string path) : folder(std::move(path))
    {
        isThere = unshare(CLONE_NEWNS) == 0 &&
                  mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                  mount("none", folder.c_str(), "tmpfs", 0, "size=1m") == 0;
    }
    ~FullDisk()
    {
        if (isThere)
            umount2(folder.c_str(), MNT_DETACH);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

    /// False where the process may not mount.
    [[nodiscard]] bool IsThere() const { return isThere; }
    /// Lets so many blocks be free and no more.
    [[nodiscard]] bool LeaveFree(unsigned long blocks) const
    {
        struct statfs info = {};
        if (statfs(folder.c_str(), &info) != 0)
            return false;
        const unsigned long used = info.f_blocks - info.f_bfree;
        const std::string size =
            "size=" + std::to_string((used + blocks) * static_cast<unsigned long>(info.f_bsize));
        return mount(nullptr, folder.c_str(), nullptr, MS_REMOUNT, size.c_str()) == 0;
    }

private:
    std::string folder;
    bool isThere = false;
};
