// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/bytesink.h"

#include <utility>

std::unique_ptr<FileSink> FileSink::Open(const char* path)
{
    std::unique_ptr<FileSink> sink(new FileSink(path));
    return sink->file.Open() == 0 ? std::move(sink) : nullptr;
}
