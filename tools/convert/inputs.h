// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Which graphs a call names: one by one, in folders, or in a list of names.
#pragma once

#include "tools/common/graphsearch.h"
#include "tools/convert/options.h"

#include <vector>

namespace convert {

/// A graph, or why there is none of that name.
using Input = tools::FoundGraph;

/// The graphs of a call. Those of a folder are in natural order.
std::vector<Input> CollectInputs(const Options& options);

} // namespace convert
