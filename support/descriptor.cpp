// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "support/descriptor.h"

#include <cerrno>

namespace {

// Calls read or write until every byte has passed.
template <typename Byte, typename Transfer>
bool TransferWhole(int fd, Byte* bytes, size_t size, Transfer transfer)
{
    while (size > 0) {
        const ssize_t count = transfer(fd, bytes, size);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        bytes += count;
        size -= static_cast<size_t>(count);
    }
    return true;
}

} // namespace

bool WriteWhole(const Fd& fd, const void* data, size_t size)
{
    return TransferWhole(fd.Get(), static_cast<const char*>(data), size, write);
}

bool ReadWhole(const Fd& fd, void* data, size_t size)
{
    return TransferWhole(fd.Get(), static_cast<char*>(data), size, read);
}

bool CloseCopy(int descriptor)
{
    const int copy = dup(descriptor);
    return copy >= 0 && close(copy) == 0;
}
