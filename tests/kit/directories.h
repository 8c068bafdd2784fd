// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The directories of one test.
#pragma once

#include <QTemporaryDir>

#include <string>

namespace fixture {

/// Home, the program's and the working directory, all empty, with the globals reset to them.
class Directories
{
public:
    Directories();

    /// The path of a file or directory below the test's own directory.
    [[nodiscard]] std::string Path(const std::string& name) const;

    /// Writes a file and returns its path.
    std::string Write(const std::string& name, const std::string& bytes) const;

private:
    template <size_t size> void Make(const char* name, char (&global)[size]);

    QTemporaryDir root;
};

} // namespace fixture
