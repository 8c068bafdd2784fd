// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What a graph holds, for programs.
#pragma once

#include "tools/info/summary.h"

#include <QJsonObject>

namespace info {

/// The summary as an object, see the manual page; it has no "file".
QJsonObject SummaryJson(const Summary& summary);

} // namespace info
