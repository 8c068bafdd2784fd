// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The code of integer parameters.
#pragma once

#include <cstddef>
#include <cstring>

/// Whether c ends an integer or is the high part of an address: 32..63.
constexpr int kLastHigh = 63;

/// The value of an integer. High characters carry six bits each, the low one four bits and the
/// sign; if there is no low character, the terminating NUL is read as one. Wraps in 32 bits.
int decodeq(const char* s);

/// Collects the characters of an integer, NUL-terminated; if there are too many, keeps the last
/// ones.
class IntegerText
{
public:
    void Append(int c)
    {
        if (length == kMaxChars)
            memmove(text, text + 1, --length);
        text[length++] = static_cast<char>(c);
        text[length] = 0;
    }
    [[nodiscard]] bool IsEmpty() const { return length == 0; }
    [[nodiscard]] int Value() const { return decodeq(text); }

private:
    // Each high one shifts by six bits, so only the last six of a longer run affect the 32 bits of
    // the value.
    static constexpr size_t kMaxChars = 8;

    char text[kMaxChars + 1] = "";
    size_t length = 0;
};
