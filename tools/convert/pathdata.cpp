// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/pathdata.h"

#include <charconv>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <utility>

namespace convert {

// Pairs of numbers after a move are lines, without a letter. The first move of a path begins at its
// origin.
void PathData::MoveTo(int64_t x, int64_t y)
{
    text += 'm';
    GoTo(x, y);
}

void PathData::LineTo(int64_t x, int64_t y)
{
    GoTo(x, y);
}

std::string PathData::Take()
{
    std::string path = std::move(text);
    *this = {};
    return path;
}

void PathData::GoTo(int64_t x, int64_t y)
{
    Number(x - std::exchange(lastX, x));
    Number(y - std::exchange(lastY, y));
    ++points;
}

// A sign separates numbers as well as a blank does.
void PathData::Number(int64_t parts)
{
    if (parts < 0)
        text += '-';
    else if (text.back() != 'm')
        text += ' ';
    char digits[std::numeric_limits<int64_t>::digits10 + 2];
    const int64_t size = std::abs(parts);
    text.append(digits, std::to_chars(digits, std::end(digits), size / kParts).ptr);
    if (size % kParts != 0)
        Fraction(size % kParts);
}

void PathData::Fraction(int64_t parts)
{
    text += '.';
    for (int64_t digit = kParts / 10; parts != 0; digit /= 10) {
        text += static_cast<char>('0' + parts / digit);
        parts %= digit;
    }
}

} // namespace convert
