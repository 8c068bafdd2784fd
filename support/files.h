// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Opens files so that no name can make the program hang.
#pragma once

#include <cstdio>
#include <memory>

/// Closes a stream when its owner is destroyed.
struct FileCloser {
    void operator()(FILE* file) const { std::fclose(file); }
};
/// A stream that is closed at the end of its scope; null if it could not be opened.
using FilePtr = std::unique_ptr<FILE, FileCloser>;

/// Opens a file for binary reading, as fopen(path, "rb") does, but only a regular file or a
/// directory (which opens and then fails to read). Anything else is refused, such as a pipe or a
/// device, for which opening or reading might never return. Never waits. Returns null on failure;
/// the caller closes the stream, preferably with FilePtr.
FILE* OpenForReading(const char* path);

/// Opens a file for writing, truncated or for appending; creates it if it is missing. A pipe
/// without a reader is refused, where plain fopen would wait for one.
/// @return null if it cannot be opened
FILE* OpenForWriting(const char* path, bool append = false);

/// The same, and returns the descriptor, which the caller closes.
/// @return -1 if it cannot be opened
int OpenDescriptorForWriting(const char* path, bool append = false);
