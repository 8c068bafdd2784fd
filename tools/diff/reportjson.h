// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The result for programs.
#pragma once

#include "tools/diff/pair.h"

#include <QJsonObject>

namespace diff {

/// The version of what is printed: programs that read it need not care for one that grows.
constexpr int kJsonVersion = 1;

/// A pair as an object, see the manual page.
QJsonObject PairJson(const Pair& pair);

} // namespace diff
