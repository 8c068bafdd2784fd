// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The command line of plfinfo.
#pragma once

#include "tools/common/commandline.h"

namespace info {

/// What a call asks for. At most one of the kinds of output is set; none is the summary for people.
struct Options {
    bool asJson = false;
    bool asJsonLines = false;
    bool asDump = false;
    bool asVectors = false;   // rows of CSV
    bool isCheck = false;     // damage counts as a failure
    bool isRecursive = false; // folders in folders are searched too
    QStringList names;        // graphs and folders, at least one
};

/// Reads the arguments, of which the first is the program's name. The application object exists.
tools::CommandLine<Options> ReadCommandLine(const QStringList& arguments);

} // namespace info
