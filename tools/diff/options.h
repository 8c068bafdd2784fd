// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The command line of plfdiff.
#pragma once

#include "tools/common/commandline.h"
#include "tools/diff/rules.h"

#include <QString>

#include <optional>

namespace diff {

/// What a call asks for.
struct Options {
    Rules rules;
    QString first, second;           // graphs or directories
    QString output;                  // picture or report; empty = none
    QString tolerance;               // as it was written; rules has the value
    std::optional<double> pageWidth; // of a graph, millimeters
    int maxChanges = 0;              // that still count as equal
    bool asJson = false;
    bool quiet = false;
    bool sideBySide = false;
    bool strict = false;      // damaged graphs are not compared
    bool isRecursive = false; // directories in directories are compared too
};

/// Reads the arguments, of which the first is the program's name. The application object exists.
tools::CommandLine<Options> ReadCommandLine(const QStringList& arguments);

} // namespace diff
