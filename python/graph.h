// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A graph as Python has it: its bytes and what they draw. Nothing here knows Python.
#pragma once

#include "meta/damage.h"
#include "meta/drawing.h"
#include "meta/plfgraph.h"

#include <QByteArray>

#include <string>
#include <string_view>

namespace python {

/// A graph that was read. Nothing changes it, so any number of threads may use it.
struct Graph {
    std::string name; // local, or tools::kStandardStream without one
    PlfGraph source;
    PlfDrawing drawing;
    PlfDamageMap damage;
};

/// Reads a file, also a packed one, or a pipe.
/// @param path    local 8-bit name
/// @param strict  refuse a graph that lacks something
/// @throws GraphFailure, SystemFailure
Graph ReadFile(const std::string& path, bool strict);

/// Reads bytes, also packed ones, of which it keeps a copy.
/// @throws GraphFailure
Graph ReadBytes(std::string_view bytes, bool strict);

/// What the graph holds, as JSON; the keys are those of plfinfo, without "file".
QByteArray Info(const Graph& graph);

} // namespace python
