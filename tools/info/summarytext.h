// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What a graph holds, for people.
#pragma once

#include "tools/info/summary.h"

#include <QByteArray>

namespace info {

/// Lines for people, each with its line end.
/// @param name  what the graph is called, printable
QByteArray SummaryText(const QByteArray& name, const Summary& summary);

} // namespace info
