// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The command line of krvhost.
#pragma once

#include "tools/common/commandline.h"

namespace krvhost {

/// Longest wait for the viewer unless another is asked for, seconds.
constexpr int kDefaultTimeout = 30;
/// Longest wait that can be asked for, seconds: a day.
constexpr int kLongestTimeout = 86400;

/// What a call asks for.
struct Options {
    QString viewer; // empty = the one of the same build or installation
    QStringList viewerArguments;
    QString serverName; // empty = a new one
    QString script;     // empty = none
    QStringList commands;
    int timeout = kDefaultTimeout; // seconds
    bool noStart = false;
    bool temporary = false;
    bool stay = false;
    bool leave = false;

    /// The longest wait for the viewer.
    [[nodiscard]] int Milliseconds() const;
};

/// Reads the arguments, of which the first is the program's name. The application object exists.
tools::CommandLine<Options> ReadCommandLine(const QStringList& arguments);

} // namespace krvhost
