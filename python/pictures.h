// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Pictures of a graph, with the converter's settings.
#pragma once

#include "python/graph.h"
#include "tools/convert/options.h"

#include <QByteArray>
#include <QImage>

#include <string>
#include <vector>

namespace python {

/// Reads settings as the converter does.
/// @param words   its options, such as "--width=640"
/// @param output  the picture's name, or one with the extension of its format
/// @throws SettingsFailure
convert::Options ReadSettings(const std::vector<std::string>& words, const std::string& output);

// Each of these uses Qt: a QtUse lives. They throw std::bad_alloc, std::runtime_error and
// SystemFailure.

/// Draws a graph into an image of format RGBA8888, which is not shared.
QImage Render(const Graph& graph, const convert::PictureSettings& settings);

/// The bytes of a file.
QByteArray Draw(const Graph& graph, const convert::Options& options);

/// Writes a file, which appears when it is whole.
/// @param name  local 8-bit name
/// @throws OutputFailure  for the name of a graph
void Save(const Graph& graph, const convert::Options& options, const std::string& name);

} // namespace python
