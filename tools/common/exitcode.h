// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// How the tools end.
#pragma once

namespace tools {

/// The exit codes of every tool. Standard error has the reason for each but kDone.
enum ExitCode {
    kDone = 0,       // everything was done
    kFailed = 1,     // something failed
    kWrongUsage = 2, // the command line was refused; nothing was done
    kNotStarted = 3  // the work could not start
};

} // namespace tools
