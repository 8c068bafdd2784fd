// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/bytesink.h"

#include <cstdio>
#include <utility>

std::unique_ptr<FileSink> FileSink::Open(const char* path)
{
    FilePtr file(OpenForWriting(path));
    if (file == nullptr)
        return nullptr;
    setvbuf(file.get(), nullptr, _IONBF, 0); // the writers have their own buffers
    return std::unique_ptr<FileSink>(new FileSink(std::move(file)));
}

FileSink::FileSink(FilePtr output) : file(std::move(output)) {}

void FileSink::Write(const char* bytes, size_t count)
{
    fwrite(bytes, 1, count, file.get());
}
