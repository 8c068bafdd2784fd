// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The settings file ".plotvwsettings" in the home directory: the window position and the choice of
// background, in 59 bytes.
//
//   offset  bytes
//        0     10  gszFileVersion, text padded with zero bytes
//       10      1  gbBkClrWhite, 0 or 1
//       11     48  grWinPos, six signed 64-bit fields, little-endian on every host
#pragma once

/// Reads the settings file into its globals; the window rectangle only if the command line gave
/// none (gfCmdlineWndpos). The version is stored unchecked and written back by the next save; it
/// may use all its bytes, without a NUL. The rectangle may contain any values. A short file changes
/// only the bytes that it contains. Returns 0, or -1 if the file cannot be opened; then nothing
/// changes.
int ReadSettingsFile();

/// Writes the whole settings file. Returns 0, or -1 if it cannot be created or written; then an
/// older one stays as it is.
int WriteSettingsFile();

/// Puts the path of the settings file into dst (kPathSize bytes). Returns false, with dst unchanged
/// and a report on standard error, if it does not fit.
bool GetSettingsPath(char* dst);
