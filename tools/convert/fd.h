// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// File descriptors that close themselves.
#pragma once

#include <unistd.h>

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
