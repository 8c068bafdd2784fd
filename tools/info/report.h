// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What a graph holds, for people and for programs.
#pragma once

#include "tools/info/summary.h"

#include <QByteArray>
#include <QJsonObject>

/// Lines for people, each with its line end.
/// @param name  what the graph is called, printable
QByteArray SummaryText(const QByteArray& name, const Summary& summary);

/// The same as an object, see the manual page; it has no "file".
QJsonObject SummaryJson(const Summary& summary);
