// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The command line of plfinfo.
#pragma once

#include "tools/common/commandline.h"

namespace info {

/// What a call asks for.
struct Options {
    bool asJson = false;
    bool asDump = false;
    QStringList graphs; // at least one
};

/// Reads the arguments, of which the first is the program's name. The application object exists.
tools::CommandLine<Options> ReadCommandLine(const QStringList& arguments);

} // namespace info
