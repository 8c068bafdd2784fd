// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The settings file ".plotvwsettings" in the home directory: the window's place and the background
// choice, as 59 bytes.
//
//   offset  bytes
//        0     10  gszFileVersion, text padded with zero bytes
//       10      1  gbBkClrWhite, 0 or 1
//       11     48  grWinPos, six signed 64-bit fields, little-endian on every host
#pragma once

/// Reads the settings file into its globals; the window rectangle only when the command line gave
/// none (gfCmdlineWndpos). The version is kept as found, compared with nothing and written back by
/// the next save; all its bytes may be used, without a NUL. The rectangle may hold any values. A
/// short file changes the bytes it has and leaves the others as they were.
/// Returns 0, or -1 when the file does not open; then nothing changes.
int ReadSettingsFile();

/// Writes the settings file, always whole. Returns 0, or -1 when it cannot be created or written.
int WriteSettingsFile();

/// Puts the path of the settings file into dst (kPathSize bytes). Returns false, with dst unchanged
/// and a report on standard error, when it does not fit.
bool GetSettingsPath(char* dst);
