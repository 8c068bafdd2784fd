// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// One call of plfinfo.
#pragma once

#include "tools/info/options.h"

namespace info {

/// Prints what the graphs contain.
/// @return the exit code
int Run(const Options& options);

} // namespace info
