// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/integercode.h"

#include <cstdint>

int decodeq(const char* s)
{
    uint32_t acc = 0;
    for (; static_cast<signed char>(*s) > kLastHigh; ++s)
        acc = (acc << 6) + static_cast<uint32_t>(*s - 64);
    const uint32_t hi = acc << 4;
    const int low = static_cast<signed char>(*s);
    return static_cast<int>(low >= 48 ? hi + static_cast<uint32_t>(low - 48)
                                      : 0 - (hi + static_cast<uint32_t>(low - 32)));
}
