// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Descriptors that close themselves, and transfers of a given number of bytes.
#pragma once

#include <unistd.h>

#include <cstddef>
#include <utility>

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
    [[nodiscard]] bool IsOpen() const { return fd >= 0; }
    void Close()
    {
        if (fd >= 0)
            close(fd);
        fd = -1;
    }

private:
    int fd = -1;
};

/// Writes all the bytes, however many writes it takes.
/// @return false if that fails, with errno; for a pipe, when the reader is gone
bool WriteWhole(const Fd& fd, const void* data, size_t size);

/// Reads so many bytes, however many reads it takes.
/// @return false when the data ends before
bool ReadWhole(const Fd& fd, void* data, size_t size);

/// Asks for the errors that closing would report, such as of a disk that is full, while the file
/// remains open: closing a second descriptor has the same effect.
/// @return false if there are any, with errno
bool CloseCopy(int descriptor);
