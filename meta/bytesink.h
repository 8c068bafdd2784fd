// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Destinations of written bytes.
#pragma once

#include "support/wholefile.h"

#include <cstddef>
#include <memory>
#include <string>

/// Takes bytes. Failures are not returned; a sink may report them in its own way.
class ByteSink
{
public:
    ByteSink() = default;
    virtual ~ByteSink() = default;
    ByteSink(const ByteSink&) = delete;
    ByteSink& operator=(const ByteSink&) = delete;

    virtual void Write(const char* bytes, size_t count) = 0;
};

/// A file, which appears when it is whole.
class FileSink final : public ByteSink
{
public:
    /// @return null if the file cannot be opened
    static std::unique_ptr<FileSink> Open(const char* path);

    void Write(const char* bytes, size_t count) override { file.Write(bytes, count); }
    /// Finishes the file. After a write error there is none, or the older one: deliberately not
    /// reported.
    void Commit() { file.Commit(); }

private:
    explicit FileSink(const char* path) : file(path) {}

    WholeFile file;
};

/// Memory.
class StringSink final : public ByteSink
{
public:
    void Write(const char* bytes, size_t count) override { text.append(bytes, count); }
    /// The bytes written.
    [[nodiscard]] const std::string& Text() const { return text; }

private:
    std::string text;
};
