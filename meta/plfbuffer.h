// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The program's loaded graph: one block of memory (gpPlfmembuf, gdwFilesize) that every drawing of
// the window reads from its start.
#pragma once

#include "meta/plfgraph.h"

#include <string_view>

/// Bytes that the loaders may write into their message buffer.
constexpr size_t kLoadMessageSize = 45;

/// Reads a file whole into gpPlfmembuf, with kPlfTailSize zero bytes behind it, and its size into
/// gdwFilesize. The block loaded before is freed first, so a failure leaves none.
/// @param path     local 8-bit file name
/// @param message  at least kLoadMessageSize bytes; receives the reason of a failure
/// @return 0, or -1 when the file cannot be opened or read whole, is empty, is no regular file, or
///         has another header
int LoadPlfFile(char* path, char* message);

/// The same for a graph in memory, which is copied.
int LoadPlfBytes(std::string_view bytes, char* message);

/// Frees the loaded graph, if there is one.
void FreePlfBuffer();

/// The loaded graph for a pass, until the next load.
PlfBytes LoadedPlf();

/// The palette index of the background: white (15) when gbBkClrWhite is set, else what the second
/// "RA1" behind kBackgroundScanStart names; white without a second one.
/// @param buf  the loaded graph, or any zero-terminated text longer than kBackgroundScanStart
/// @return 0..15, or kNoBackground for a character that stands for no color
int GetPlfBackGroundColor(char* buf);

/// Writes ".emf" over the first '.' of name and what follows it, or behind a name without one; the
/// caller's buffer has room for four more bytes. Nothing in the program calls it.
/// @return name
char* MakeMetafileName(char* name);
