// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// One walk through a graph: a value that says what to draw, and functions that draw it. Nothing
// else is read and nothing kept, so that any number of passes may run at once, each in a thread of
// its own, over one graph or over many.
#pragma once

#include "meta/plfarea.h"
#include "meta/plfgraph.h"
#include "support/rect.h"

#include <array>
#include <cstdint>
#include <optional>

class ByteSink;
class PassWatch;
class PlfObserver;
class QPainter;

/// Which palette index a line is drawn in.
struct LineColors {
    // Rules; every other number is the first.
    static constexpr unsigned long kFileColors = 0, kAllBlack = 1, kThroughMap = 2;

    bool whiteToBlack = false; // white lines black, the others as they are, whatever rule says
    unsigned long rule = kFileColors;
    std::array<uint16_t, 16> map = {};

    /// The palette index to draw index with; outside 1..16 it is 0, and 16 itself passes.
    [[nodiscard]] int Map(int index) const;
};

/// A printed page.
struct PrintedPage {
    int dpiX = 0, dpiY = 0;              // of the painter, dots per inch
    int shiftX = 0, shiftY = 0;          // dots
    double factorX = 1.0, factorY = 1.0; // on its size
    int minLineWidth = 2;                // the thinnest line, in line widths of the file
};

/// How EPS is written.
struct EpsOptions {
    double scale = 0.25;          // points for a drawing unit
    int minLineWidth = 5;         // thinner lines become that wide
    bool allBlack = false;        // all lines
    bool fillsBackground = false; // with backgroundIndex
    unsigned long backgroundIndex = 0;
};

/// What to draw.
struct PlfPass {
    PlfBytes graph;
    Rect zoom = {};                  // the part to draw, drawing units; without width, full
    Rect full = kWholeArea;          // the graph's area
    bool whiteBackground = true;     // else the one that the graph names
    bool fillsBackground = true;     // else what the painter holds shows through
    double widthScale = 1.0;         // factor on line widths; infinite ones saturate
    double minPenWidth = 0.0;        // the thinnest pen of a painter, drawing units
    LineColors colors;               // of painted lines
    std::optional<PrintedPage> page; // on paper; without it a painter's viewport stays
    EpsOptions eps;
    PassWatch* watch = nullptr; // told when the pass takes long; one of its own for each pass

    [[nodiscard]] bool IsZoomed() const { return zoom.width > 0; }
    [[nodiscard]] const Rect& Area() const { return IsZoomed() ? zoom : full; }
    /// The palette index of the background, 0..15, or kNoBackground.
    [[nodiscard]] int Background() const;
};

/// What a pass found.
struct PlfResult {
    unsigned long vectors = 0; // all of them, seen or not
    int background = 0;        // palette index
    int textsRefused = 0;      // texts and font names of kTextSize bytes or more, not used
};

/// Draws a graph: maps the painter's window to the area, fills the background, draws lines and
/// texts. A clip rectangle of the painter limits all of it.
PlfResult PaintGraph(const PlfPass& pass, QPainter& painter);

/// Writes a graph as EPS.
PlfResult WriteEps(const PlfPass& pass, ByteSink& output);

/// Tells an observer everything that is in a graph, and draws it as well where there is a painter.
PlfResult FollowGraph(const PlfPass& pass, PlfObserver& observer, QPainter* painter = nullptr);

/// Counts the vectors of a graph, and draws nothing.
PlfResult CountVectors(const PlfPass& pass);

/// Says on standard error (through Qt's messages) how many texts were refused, if any were.
void TellRefusedTexts(const PlfResult& result);
