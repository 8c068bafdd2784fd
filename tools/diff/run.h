// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// One call of plfdiff.
#pragma once

#include "tools/diff/options.h"

namespace diff {

/// The exit codes, which are those of other programs that compare.
enum ExitCode { kEqual = 0, kDifferent = 1, kTrouble = 2 };

/// Compares what is asked for, and prints and draws the result.
/// @param argv  of the program
/// @return the exit code
int Run(const Options& options, char** argv);

} // namespace diff
