// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/common/naturalorder.h"

#include <algorithm>
#include <string_view>

namespace tools {

namespace {

constexpr bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

// Takes the digits at the beginning of a text off it, and leading zeros off them.
std::string_view TakeNumber(std::string_view* text)
{
    const auto* end = std::find_if_not(text->begin(), text->end(), IsDigit);
    std::string_view digits = text->substr(0, static_cast<size_t>(end - text->begin()));
    text->remove_prefix(digits.size());
    digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
    return digits;
}

// A folder's files come before those of another one that begins with its name.
constexpr int Rank(char c)
{
    return c == '/' ? -1 : static_cast<unsigned char>(c);
}

// Below, equal to or above zero, as of memcmp.
int Compare(std::string_view a, std::string_view b)
{
    while (!a.empty() && !b.empty()) {
        if (IsDigit(a.front()) && IsDigit(b.front())) {
            const std::string_view left = TakeNumber(&a);
            const std::string_view right = TakeNumber(&b);
            if (left.size() != right.size())
                return left.size() < right.size() ? -1 : 1;
            if (left != right)
                return left.compare(right);
            continue;
        }
        if (a.front() != b.front())
            return Rank(a.front()) - Rank(b.front());
        a.remove_prefix(1);
        b.remove_prefix(1);
    }
    return static_cast<int>(b.empty()) - static_cast<int>(a.empty());
}

std::string_view View(const QByteArray& name)
{
    return {name.constData(), static_cast<size_t>(name.size())};
}

} // namespace

bool IsNaturallyBefore(const QByteArray& a, const QByteArray& b)
{
    const int order = Compare(View(a), View(b));
    return order == 0 ? a < b : order < 0;
}

} // namespace tools
