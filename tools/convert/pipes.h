// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Pipes between processes, whose ends close themselves.
#pragma once

#include <unistd.h>

#include <cstddef>
#include <utility>

namespace convert {

/// An open descriptor, or none.
class Fd
{
public:
    Fd() = default;
    explicit Fd(int descriptor) : fd(descriptor) {}
    Fd(Fd&& other) noexcept : fd(std::exchange(other.fd, -1)) {}
    Fd& operator=(Fd&& other) noexcept
    {
        std::swap(fd, other.fd);
        return *this;
    }
    Fd(const Fd&) = delete;
    Fd& operator=(const Fd&) = delete;
    ~Fd() { Close(); }

    /// The number for system calls; -1 = none.
    [[nodiscard]] int Get() const { return fd; }
    void Close()
    {
        if (fd >= 0)
            close(fd);
        fd = -1;
    }

private:
    int fd = -1;
};

/// Creates a pipe that programs started from here do not get.
/// @return false when there is none
bool MakePipe(Fd* readEnd, Fd* writeEnd);

/// Writes all the bytes, however many writes it takes.
/// @return false when the reader is gone
bool WriteWhole(const Fd& fd, const void* data, size_t size);

/// Reads so many bytes, however many reads it takes.
/// @return false when the data ends before
bool ReadWhole(const Fd& fd, void* data, size_t size);

} // namespace convert
