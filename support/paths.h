// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The directories the program works with, the parts of a file name, and numbers for display.
// Names are local 8-bit text. A dst is a path buffer of kPathSize bytes; none of these functions
// writes beyond it, allocates memory or shows a message box.
#pragma once

#include <cstdint>

/// Copies the environment variable HOME into dst. If it is unset or too long for dst (which is
/// reported on standard error), dst becomes empty, and the files in the home directory are looked
/// for in "/". Returns dst.
char* GetHomeDir(char* dst);

/// Puts the temporary directory into dst: "/tmp" if there is such a directory, otherwise the first
/// of the environment variables TMP and TEMP that is set, unchanged, otherwise ".". A variable that
/// is too long for dst counts as unset and is reported on standard error. Returns dst.
char* GetTmpPath(char* dst);

/// GetTmpPath with another directory in place of "/tmp".
char* GetTmpPathOr(const char* preferred, char* dst);

/// Composes the name of a temporary file in gszTmppath from the prefix, the process id and the
/// time, see FormatTempName. The file may exist; nothing is created. If the name is too long for
/// dst, dst becomes empty and the name is reported on standard error. Returns dst.
char* TempName(const char* prefix, char* dst);

/// The name that TempName gives a process at a time (seconds since the epoch): "DIR/PREFIX", the
/// process id in hexadecimal, the low byte of the time, ".tmp". That byte is a signed char widened
/// and printed with "%2x", deliberately: 5 gives " 5" with a blank, 128 gives "ffffff80". Returns
/// false, with dst unchanged and a report on standard error, if the name does not fit.
bool FormatTempName(char* dst, const char* prefix, unsigned processId, int64_t seconds);

/// Returns 1 if the name contains a separator ('/', '\\' or ':') after its first character, else 0.
/// The first character is deliberately not checked: "/file.plf" has no path.
int FilenameHasPath(const char* name);

/// Returns the part of name after its last separator, as defined by FilenameHasPath, or name
/// itself. The result points into name; it is empty if name ends with a separator.
char* GetFilenameNoPath(char* name);

/// Removes ext from the end of name, in place, if name ends with it (case matters) and is longer.
/// Returns 0 if it was removed, the length of ext if name is not longer than ext, and otherwise the
/// non-zero result of comparing the end of name with ext.
int StripFileExt(char* name, const char* ext);

/// Size of a buffer for FormatInteger: 20 characters, 6 commas and the NUL.
constexpr int kFormattedIntegerSize = 27;

/// Writes value in decimal, in groups of three with commas, into buf (kFormattedIntegerSize bytes).
/// The value is deliberately read as signed, and a minus sign counts as a digit: -123 gives
/// "-,123". Returns buf.
char* FormatInteger(unsigned long value, char* buf);
