// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The colors that a graph gives its line indices.
#pragma once

#include <cstdint>

/// Line indices that the color map knows; commands with another index leave it alone.
constexpr int kLineIndexCount = 16;

/// Gives line index k the palette index nearest to a hue (degrees), lightness and saturation
/// (0..100). An index without an entry changes nothing.
/// @param map  kLineIndexCount entries
/// @param hls  the three of them
void getclrq(int k, uint32_t* map, const int* hls);
