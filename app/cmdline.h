// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The viewer's command line, as a user types it and as the host sends it.
#pragma once

/// Parses argv[first] .. argv[argc-1] into the globals, after emptying the file name and the
/// "-cwd=" directory and clearing the temporary-file flag. An option is recognised wherever it
/// stands inside an argument; a value that does not fit is refused with a message box.
/// @return 0, or -1 when the usage box was shown; arguments behind "-?" are then not looked at
int ProcessCmdline(int argc, char** argv, int first);

/// Checks that every value of such a command line fits its buffer, and every file name also as a
/// full path. Words after "-?" are not checked. Changes nothing; shows a message box for the first
/// value that does not fit.
/// @return whether all of them fit
bool CmdlineFits(int argc, char** argv, int first);
