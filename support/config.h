// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The configuration file "plotvw.cfg": printing and export settings in plain text. The program
// reads it once, when the main window is made, and never writes it.
#pragma once

/// Reads plotvw.cfg from the home directory (gszHomedir) or, when it does not open there, from the
/// application's directory (gszExePath), and stores each value it knows in its global. The two
/// files are never merged. Returns 0 when a file was read to its end (or to where it could not be
/// read any further), -1 when none opened; then nothing changes. No value is checked or reported.
int ReadCfgFile();

/// Puts the path of the configuration file in a directory into dst (kPathSize bytes). Returns
/// false, with dst unchanged and a report on standard error, when it does not fit.
bool GetCfgPath(char* dst, const char* directory);
