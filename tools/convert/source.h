// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Loading the graph to convert, with reasons that help when it cannot be loaded.
#pragma once

#include <QByteArray>
#include <QString>

/// Makes a graph the loaded file (see LoadPlfFile).
/// @param name  local name, or kStandardStream for what the standard input holds up to its end
/// @return empty, or why it was not loaded
QString LoadGraph(const QByteArray& name);
