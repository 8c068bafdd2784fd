// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Comparing graphs, with the settings of plfdiff.
#pragma once

#include "python/graph.h"
#include "tools/diff/changes.h"
#include "tools/diff/rules.h"

#include <string>
#include <vector>

namespace python {

/// Reads settings as plfdiff does.
/// @param ignored  names with commas between them; may be empty
/// @param areas    each "LEFT,TOP,RIGHT,BOTTOM" in drawing units
/// @throws SettingsFailure
diff::Rules ReadRules(const std::string& tolerance, const std::string& ignored,
                      const std::vector<std::string>& areas);

/// Compares what two graphs draw.
/// @throws std::length_error, std::bad_alloc
diff::Comparison Compare(const Graph& first, const Graph& second, const diff::Rules& rules);

} // namespace python
