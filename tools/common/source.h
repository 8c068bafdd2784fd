// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Loading a graph that a call names, with reasons that help when it cannot be loaded.
#pragma once

#include "meta/plfgraph.h"

#include <QByteArray>
#include <QString>

namespace tools {

/// Loads a graph, also a packed one or one from a pipe. What is no graph is refused after its first
/// bytes, whatever its size. A packed one that is cut or damaged is what could be unpacked of it.
/// @param name   local name, or kStandardStream for what the standard input holds up to its end
/// @param graph  receives it
/// @param error  receives the errno of a read that failed, else 0; may be null
/// @return empty, or why it was not loaded
QString LoadGraph(const QByteArray& name, PlfGraph* graph, int* error = nullptr);

} // namespace tools
