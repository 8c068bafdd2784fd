// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Changes graphs by whole commands, addresses and integers. Single bytes changed at random mostly
// make commands that the decoder skips.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace fuzz {

/// A header, a command with its parameters, an address, or a single byte of anything else.
using Unit = std::string;

/// The units of a graph; together they are its bytes.
std::vector<Unit> SplitGraph(std::string_view graph);

/// Inserts, deletes, duplicates or swaps units of a graph, or changes one of its numbers. A graph
/// without a header gets one.
/// @param seed     decides what is done; the same one does the same everywhere
/// @param maxSize  most bytes of the result
std::string MutateGraph(std::string_view graph, unsigned seed, size_t maxSize);

} // namespace fuzz
