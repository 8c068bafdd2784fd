// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// One call of krvhost.
#pragma once

#include "tools/krvhost/options.h"

namespace krvhost {

/// Listens, starts the viewer, and works through the commands.
/// @return the exit code
int Run(const Options& options);

} // namespace krvhost
