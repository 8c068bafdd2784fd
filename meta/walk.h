// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#pragma once

#include <cstddef>
#include <string>

/// What the decoder collects while it reads a graph.
struct Walk {
    // Initial size of the buffer for address bytes. An ordinary address has five; there is no
    // limit, and longer runs make the buffer grow, at most to the size of the file.
    static constexpr size_t kReserve = 64;

    std::string szSeq = std::string(kReserve, '\0'); // letters of a command, or bytes of an address
    ptrdiff_t count = 0;                             // bytes in szSeq; negative = address complete
    const char* begin = nullptr;                     // first byte of the command or address
    bool inEscape = false; // between ESC and the end of a command's letters
};
