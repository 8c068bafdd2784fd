// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The colors that a graph assigns to its line indices.
#pragma once

#include <cstdint>

/// Number of line indices in the color map; commands with another index do not change it.
constexpr int kLineIndexCount = 16;

/// Assigns to line index k the palette index nearest to a hue (degrees), lightness and saturation
/// (0..100). An index outside the map changes nothing.
/// @param map  kLineIndexCount entries
/// @param hls  hue, lightness and saturation
void getclrq(int k, uint32_t* map, const int* hls);
