// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A graph as data: its vectors in one block of equal records, which other programs can take as it
// is, and its texts.
#pragma once

#include "meta/plfgraph.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

class PlfObserver;
struct TextState;

/// A vector in file units, y upward. Addresses have twelve bits, so every coordinate is 0..4095.
struct VectorRecord {
    int16_t x1 = 0, y1 = 0;
    int16_t x2 = 0, y2 = 0;
    int32_t width = 0; // as the file says it
    uint32_t path = 0; // vectors that continue one another have the same number, from 0
    uint8_t color = 0; // palette index
    // So that the same records are the same bytes.
    uint8_t unused[3] = {};
};
static_assert(sizeof(VectorRecord) == 20, "readers of the block rely on the size");

/// A text in file units, y upward.
struct TextRecord {
    std::string text;
    int x = 0, y = 0;
    size_t before = 0; // number of the vector that is drawn next
    int lineColor = 0; // palette index; the text is drawn with it
    std::string font;  // read, but not used for drawing, like all that follows
    int size = 0;      // points
    int color = 0;     // palette index
    bool isBold = false;
    bool isItalic = false;
};

/// What a graph draws, in its order.
struct PlfDrawing {
    std::vector<VectorRecord> vectors;
    std::vector<TextRecord> texts;
    int background = 0;   // palette index that the file names, or kNoBackground
    int textsRefused = 0; // texts and font names that were too long
};

/// Reads a graph.
/// @param observer  is called for everything but addresses, except for those that are interrupted
PlfDrawing ReadDrawing(const PlfBytes& graph, PlfObserver& observer);
PlfDrawing ReadDrawing(const PlfBytes& graph);
