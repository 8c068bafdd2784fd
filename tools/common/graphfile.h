// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What a file is, by its first bytes.
#pragma once

#include <QByteArray>

namespace tools {

/// Whether a file begins as a graph does. Never waits for a pipe.
/// @param name  local name
bool IsGraph(const QByteArray& name);

} // namespace tools
