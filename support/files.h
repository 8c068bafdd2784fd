// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Opening the files that the program reads, so that no name a user can give makes it hang.
#pragma once

#include <cstdio>
#include <memory>

/// Closes a stream when its owner goes.
struct FileCloser {
    void operator()(FILE* file) const { std::fclose(file); }
};
/// A stream that is closed at the end of its scope; null when it did not open.
using FilePtr = std::unique_ptr<FILE, FileCloser>;

/// Opens a file for binary reading, as fopen(path, "rb") does, but only a regular file or a
/// directory (which opens and then fails to read). Anything else, such as a pipe whose opening or
/// a device whose reading would never end, does not open. Never waits.
/// Returns null on failure; the caller closes the stream, best through FilePtr.
FILE* OpenForReading(const char* path);

/// Opens a file for writing, emptied or to be appended to; it is created when it is missing. A
/// pipe that nobody reads does not open, where plain fopen would wait for a reader.
/// @return null when it cannot be opened
FILE* OpenForWriting(const char* path, bool append = false);
