// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The code that integer parameters are written in.
#pragma once

#include <cstddef>
#include <cstring>

/// Ends an integer, or is the high part of an address: 32..63.
constexpr int kLastHigh = 63;

/// The value of an integer. High characters carry six bits each, the low one four bits and the
/// sign; a text that ends without a low character reads its terminating NUL as one. Wraps in 32
/// bits.
int decodeq(const char* s);

/// The characters of an integer as they arrive, NUL-terminated; of too many the last ones.
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
    // Each high one shifts by six bits, so that of a longer run only the last six reach the 32
    // bits of the value.
    static constexpr size_t kMaxChars = 8;

    char text[kMaxChars + 1] = "";
    size_t length = 0;
};
