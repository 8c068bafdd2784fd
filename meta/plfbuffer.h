// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The program's loaded graph: one block of memory (gpPlfmembuf, gdwFilesize) that every repaint
// reads from its start.
#pragma once

#include "meta/plfgraph.h"

#include <string_view>

/// Bytes that the loaders may write into their message buffer.
constexpr size_t kLoadMessageSize = 45;

/// Reads a whole file into gpPlfmembuf, followed by kPlfTailSize zero bytes, and its size into
/// gdwFilesize. The previous block is freed first, so after a failure there is none.
/// @param path     local 8-bit file name
/// @param message  at least kLoadMessageSize bytes; receives the reason of a failure
/// @return 0, or -1 if the file cannot be opened or read completely, is empty, is not a regular
///         file, or has another header
int LoadPlfFile(char* path, char* message);

/// The same for a graph in memory, which is copied.
int LoadPlfBytes(std::string_view bytes, char* message);

/// Frees the loaded graph, if any.
void FreePlfBuffer();

/// The loaded graph for a pass, until the next load.
PlfBytes LoadedPlf();

/// The palette index of the background: white (15) if gbBkClrWhite is set; otherwise that of the
/// second "RA1" after kBackgroundScanStart, or white if there is no second one.
/// @param buf  the loaded graph, or any zero-terminated text longer than kBackgroundScanStart
/// @return 0..15, or kNoBackground for a character without a color
int GetPlfBackGroundColor(char* buf);

/// Replaces the first '.' of name and everything after it by ".emf", or appends that; the caller's
/// buffer must have room for four more bytes. Nothing in the program calls it.
/// @return name
char* MakeMetafileName(char* name);
