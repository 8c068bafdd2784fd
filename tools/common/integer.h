// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Whole numbers on command lines.
#pragma once

#include <QString>

#include <optional>

namespace tools {

/// Decimal digits alone, with a value from least to most; nothing for any other text.
std::optional<int> ParseInteger(const QString& text, int least, int most);

} // namespace tools
