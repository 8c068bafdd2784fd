// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Where written bytes go.
#pragma once

#include "support/files.h"

#include <cstddef>
#include <memory>
#include <string>

/// Takes bytes. Whoever needs to know of failures asks the sink itself.
class ByteSink
{
public:
    ByteSink() = default;
    virtual ~ByteSink() = default;
    ByteSink(const ByteSink&) = delete;
    ByteSink& operator=(const ByteSink&) = delete;

    virtual void Write(const char* bytes, size_t count) = 0;
};

/// A file. Write errors are not noticed.
class FileSink final : public ByteSink
{
public:
    /// Creates the file (or empties it).
    /// @return null when it cannot be opened
    static std::unique_ptr<FileSink> Open(const char* path);

    void Write(const char* bytes, size_t count) override;

private:
    explicit FileSink(FilePtr output);

    FilePtr file;
};

/// Memory.
class StringSink final : public ByteSink
{
public:
    void Write(const char* bytes, size_t count) override { text.append(bytes, count); }
    /// What was written.
    [[nodiscard]] const std::string& Text() const { return text; }

private:
    std::string text;
};
