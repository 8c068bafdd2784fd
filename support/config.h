// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The configuration file "plotvw.cfg": printing and export settings in plain text. The program
// reads it once, when the main window is created, and never writes it.
#pragma once

/// Reads plotvw.cfg from the home directory (gszHomedir) or, if it cannot be opened there, from the
/// application's directory (gszExePath), and stores each known value in its global. The two files
/// are never merged. Returns 0 if a file was read to its end (or up to a read error), -1 if none
/// could be opened; then nothing changes. No value is checked or reported.
int ReadCfgFile();

/// Puts the path of the configuration file in a directory into dst (kPathSize bytes). Returns
/// false, with dst unchanged and a report on standard error, if it does not fit.
bool GetCfgPath(char* dst, const char* directory);
