// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The viewer's command line, from a user or from the host.
#pragma once

/// Parses argv[first] .. argv[argc-1] into the globals, after emptying the file name and the
/// "-cwd=" directory and clearing the temporary-file flag. An option is recognized anywhere inside
/// an argument; a value that does not fit is refused with a message box.
/// @return 0, or -1 if the usage box was shown; arguments after "-?" are then ignored
int ProcessCmdline(int argc, char** argv, int first);

/// Checks that every value of such a command line fits its buffer, and every file name also as a
/// full path. Words after "-?" are not checked. Changes nothing; shows a message box for the first
/// value that does not fit.
/// @return whether all of them fit
bool CmdlineFits(int argc, char** argv, int first);
