// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/common/source.h"

#include "meta/packed/gunzip.h"
#include "support/descriptor.h"
#include "tools/common/filename.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

namespace tools {

namespace {

QString SystemReason()
{
    return QString::fromLocal8Bit(strerror(errno));
}

// What a descriptor delivers, of which the first bytes can be looked at before.
class Input
{
public:
    // The last failure is noted.
    Input(int inputDescriptor, int* inputError) : descriptor(inputDescriptor), error(inputError) {}

    // Whether the data begins as gzip's does. A failure is for Read to meet again.
    bool IsPacked()
    {
        while (ahead < start.size()) {
            const ssize_t count = read(descriptor, start.data() + ahead, start.size() - ahead);
            if (count <= 0)
                return false;
            ahead += static_cast<size_t>(count);
        }
        return IsGzip(start.data());
    }

    ssize_t Read(char* block, size_t size)
    {
        if (taken == ahead)
            return ReadOn(block, size);
        const size_t count = std::min(size, ahead - taken);
        memcpy(block, start.data() + taken, count);
        taken += count;
        return static_cast<ssize_t>(count);
    }

private:
    ssize_t ReadOn(char* block, size_t size)
    {
        const ssize_t count = read(descriptor, block, size);
        if (count < 0)
            *error = errno;
        return count;
    }

    int descriptor;
    int* error;
    std::array<char, kGzipMagicSize> start = {};
    size_t ahead = 0; // bytes of it that were read
    size_t taken = 0; // and handed on
};

QString LoadDescriptor(int descriptor, PlfGraph* graph, int* error)
{
    struct stat info = {};
    if (fstat(descriptor, &info) != 0)
        return SystemReason();
    if (S_ISDIR(info.st_mode))
        return QStringLiteral("is a directory");
    Input input(descriptor, error);
    const auto read = [&input](char* block, size_t size) { return input.Read(block, size); };
    if (input.IsPacked())
        return LoadPacked(read, graph);
    const auto expected = S_ISREG(info.st_mode) ? static_cast<size_t>(info.st_size) : 0;
    const char* reason = nullptr;
    *graph = PlfGraph::FromReader(read, expected, &reason);
    return graph->IsLoaded() || reason != nullptr ? QString::fromLatin1(reason) : SystemReason();
}

} // namespace

QString LoadGraph(const QByteArray& name, PlfGraph* graph, int* error)
{
    int ignored = 0;
    int* const noted = error == nullptr ? &ignored : error;
    *noted = 0;
    if (name == kStandardStream)
        return LoadDescriptor(STDIN_FILENO, graph, noted);
    const Fd file(open(name.constData(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
    return file.IsOpen() ? LoadDescriptor(file.Get(), graph, noted) : SystemReason();
}

} // namespace tools
