// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The loaded graph: the whole file in one block of memory (gpPlfmembuf, gdwFilesize) that every
// drawing pass reads from its start.
#pragma once

#include <cstddef>

/// Bytes in the header that every file begins with.
constexpr size_t kPlfHeaderSize = 16;
/// Zero bytes kept behind the data: the decoder's loop ends at the first of them, and its readers
/// consume at most six beyond that (a "TG" command cut off at the end of the file).
constexpr size_t kPlfTailSize = 32;
/// Where the search for the background colour begins: the header area lies before it.
constexpr size_t kBackgroundScanStart = 100;
/// Background index of a character that stands for no colour; it has no palette row.
constexpr int kNoBackground = 16;
/// Bytes that LoadPlfFile may write into its message buffer.
constexpr size_t kLoadMessageSize = 45;

/// The header: ESC "TG140000" ESC "TG1410".
extern const char gszPlfhdr[kPlfHeaderSize];
/// The character that stands for each palette index behind "RA1".
extern const int gBkClrEsc[16];

/// Reads a file whole into gpPlfmembuf, with kPlfTailSize zero bytes behind it, and its size into
/// gdwFilesize. The block loaded before is freed first, so a failure leaves none.
/// @param path     local 8-bit file name
/// @param message  at least kLoadMessageSize bytes; receives the reason of a failure
/// @return 0, or -1 when the file cannot be opened or read whole, is empty, is no regular file, or
///         has another header
int LoadPlfFile(char* path, char* message);

/// Frees the loaded file, if there is one.
void FreePlfBuffer();

/// The palette index of the background: white (15) when gbBkClrWhite is set, else what the second
/// "RA1" behind kBackgroundScanStart names; white without a second one.
/// @param buf  the loaded file, or any zero-terminated text longer than kBackgroundScanStart
/// @return 0..15, or kNoBackground for a character that stands for no colour
int GetPlfBackGroundColor(char* buf);

/// The character that names the background: the one behind the second "RA1" of those behind
/// kBackgroundScanStart. It may be the zero byte behind the data.
/// @param buf  as above; may be null
/// @return null when there is no second one
const char* FindPlfBackGround(const char* buf);

/// Writes ".emf" over the first '.' of name and what follows it, or behind a name without one; the
/// caller's buffer has room for four more bytes. Nothing in the program calls it.
/// @return name
char* MakeMetafileName(char* name);
