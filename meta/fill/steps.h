// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Where a straight edge crosses one grid line after the other: whole numbers, rounded down, without
// a division for each.
#pragma once

#include <cstdint>
#include <limits>

/// Rounds down, not toward zero.
/// @param divisor  above 0
template <typename Int> constexpr Int DivideDown(Int dividend, Int divisor)
{
    // All bits of a negative number inverted give the number that rounds up where it would have
    // rounded down.
    const Int sign = dividend >> std::numeric_limits<Int>::digits;
    return ((dividend ^ sign) / divisor) ^ sign;
}

/// offset / divisor, (offset + step) / divisor, (offset + 2 * step) / divisor and so on.
template <typename Int> class Steps
{
public:
    /// @param by  above 0
    Steps(Int offset, Int step, Int by)
        : value(DivideDown(offset, by)), rest(offset - value * by), each(DivideDown(step, by)),
          eachRest(step - each * by), divisor(by)
    {
    }

    [[nodiscard]] int Value() const { return static_cast<int>(value); }

    void Next()
    {
        value += each;
        rest += eachRest;
        // Written without a branch: whether there is one more cannot be predicted.
        const Int carry = rest >= divisor ? -1 : 0;
        value -= carry;
        rest -= carry & divisor;
    }

private:
    Int value;
    Int rest; // of the division: 0 <= rest < divisor
    Int each;
    Int eachRest;
    Int divisor;
};
