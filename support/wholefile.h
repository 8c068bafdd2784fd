// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A file that appears under its name only when it is whole: whatever happens before, an older file
// of that name stays as it is.
#pragma once

#include "support/descriptor.h"

#include <cstddef>
#include <string>

/// What is written goes into a file without a name in the same folder, or with a hidden one where
/// the file system cannot do without; Commit gives it its name. It has the permissions of the file
/// that it replaces, and the owner and the group as far as the user may set them. At the end of a
/// symbolic link the file there is replaced or created, and the link stays. A pipe or a device is
/// written to directly.
class WholeFile
{
public:
    struct Rules {
        /// Write an older file in place, as a last resort, if its folder does not let it be
        /// replaced. A failure then leaves less of it.
        bool inPlace = true;
        /// Replace an older file only when the new one has reached the disk.
        bool sync = true;
    };

    /// @param path        opened later, by Open
    /// @param hiddenName  without a folder, for a while the name of the unfinished file where it
    ///                    needs one; no two files that are open at a time may share it. Empty = a
    ///                    random one
    explicit WholeFile(const std::string& path, const std::string& hiddenName = {});
    WholeFile(const std::string& path, const std::string& hiddenName, Rules fileRules);
    /// Removes what was not committed.
    ~WholeFile();
    WholeFile(const WholeFile&) = delete;
    WholeFile& operator=(const WholeFile&) = delete;

    /// Starts the file; fails where the program could not write to the path itself. Never waits for
    /// the reader of a pipe.
    /// @return 0, or an error number; then there is nothing to write to or to commit
    int Open();
    /// Writes to an open descriptor instead, which remains the caller's.
    int OpenCopyOf(int descriptor);
    /// After a failure the rest is taken and dropped; Commit reports the first failure.
    void Write(const void* bytes, size_t count);
    /// Finishes the file and gives it its name. To be called once.
    /// @param keepExisting  fail if the name is taken by then
    /// @return 0, or the error number of the first failure since Open
    int Commit(bool keepExisting = false);
    /// Commit failed because the system refused the name, as a disk for other systems does with a
    /// colon: it would have refused to open the file under it.
    [[nodiscard]] bool IsNameRefused() const { return isNameRefused; }

    /// The hidden name with its folder, for a process that removes what another one left.
    static std::string HiddenPath(const std::string& path, const std::string& hiddenName);

private:
    enum class Place { kNowhere, kUnnamed, kHidden, kInPlace };

    int OpenInPlace();
    bool OpenBeside();
    void Put(const void* bytes, size_t count);
    void Flush();
    void NoteUnless(bool worked);
    bool GiveName(bool keepExisting);
    bool Rename(bool keepExisting);
    bool CopyOverOlder();
    void RemoveHidden();

    std::string name;
    std::string target; // where the links lead
    std::string hidden; // with its folder
    Rules rules;
    Place place = Place::kNowhere;
    bool replaces = false;
    Fd file;
    std::string waiting; // written with the next block
    int firstError = 0;
    bool isNameRefused = false;
};
