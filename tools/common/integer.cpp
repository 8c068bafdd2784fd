// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/common/integer.h"

#include <algorithm>

namespace tools {

namespace {

bool IsDigits(const QString& text)
{
    return !text.isEmpty() &&
           std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

} // namespace

std::optional<int> ParseInteger(const QString& text, int least, int most)
{
    bool fits = false;
    const int value = text.toInt(&fits);
    if (!IsDigits(text) || !fits || value < least || value > most)
        return {};
    return value;
}

} // namespace tools
