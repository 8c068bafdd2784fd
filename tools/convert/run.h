// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// One call of the converter: its command line, its jobs and its exit code.
#pragma once

#include "tools/convert/options.h"

namespace convert {

/// Reads the command line of the process. Refuses to write a picture to a terminal.
CommandLine ReadCall(int argc, char** argv);

/// Converts what is asked for and reports it.
/// @param argv  of the program
/// @return the exit code
int Run(const Options& options, char** argv);

} // namespace convert
