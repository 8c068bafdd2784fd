// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Integer arithmetic that is defined for every input: a damaged file or an empty selection leads
// to infinite scales and to sums that leave the int range.
#pragma once

#include <cstdint>
#include <limits>

/// Truncates toward zero; values outside the int range saturate, NaN gives 0.
constexpr int TruncToInt(double value)
{
    constexpr double kMin = std::numeric_limits<int>::min();
    constexpr double kMax = std::numeric_limits<int>::max();
    if (value != value)
        return 0;
    if (value <= kMin)
        return std::numeric_limits<int>::min();
    if (value >= kMax)
        return std::numeric_limits<int>::max();
    return static_cast<int>(value);
}

/// a - b in 32-bit two's complement: wraps where plain int subtraction would be undefined.
constexpr int WrapSubtract(int a, int b)
{
    return static_cast<int>(static_cast<uint32_t>(a) - static_cast<uint32_t>(b));
}

/// A 64-bit value as an int for Qt; values outside the int range saturate.
constexpr int SaturateToInt(int64_t value)
{
    if (value < std::numeric_limits<int>::min())
        return std::numeric_limits<int>::min();
    if (value > std::numeric_limits<int>::max())
        return std::numeric_limits<int>::max();
    return static_cast<int>(value);
}
