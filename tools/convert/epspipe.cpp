// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/epspipe.h"

#include <QIODevice>

#include <fcntl.h>

namespace {

// What a pipe holds.
constexpr size_t kCopyBytes = size_t{64} * 1024;

} // namespace

EpsPipe::EpsPipe(QIODevice* target)
{
    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC) != 0)
        return;
    readEnd = Fd(ends[0]);
    writeEnd = Fd(ends[1]);
    copier = std::thread([this, target] { Copy(target); });
}

bool EpsPipe::IsUsable() const
{
    return writeEnd.IsOpen() && access(Name().constData(), W_OK) == 0;
}

// Reads on after a failure, so that the writer is never kept waiting.
void EpsPipe::Copy(QIODevice* target) const
{
    char buffer[kCopyBytes];
    ssize_t count = 0;
    while ((count = read(readEnd.Get(), buffer, sizeof buffer)) > 0)
        target->write(buffer, count);
}

void EpsPipe::Finish()
{
    writeEnd.Close();
    if (copier.joinable())
        copier.join();
}
