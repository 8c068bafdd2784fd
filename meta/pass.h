// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A drawing pass over a graph: a value that says what to draw, and functions that draw it. They use
// nothing else and keep nothing, so any number of passes may run at once, each in its own thread,
// over one graph or many.
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
class PolylineTarget;
class QPainter;

/// Maps the palette indices of lines.
struct LineColors {
    // Rules; any other number means the first.
    static constexpr unsigned long kFileColors = 0, kAllBlack = 1, kThroughMap = 2;

    bool whiteToBlack = false; // white lines become black, others are unchanged, regardless of rule
    unsigned long rule = kFileColors;
    std::array<uint16_t, 16> map = {};

    /// The palette index to draw index with; an index outside 1..16 becomes 0, and 16 is unchanged.
    [[nodiscard]] int Map(int index) const;
};

/// A printed page.
struct PrintedPage {
    int dpiX = 0, dpiY = 0;              // the painter's, dots per inch
    int shiftX = 0, shiftY = 0;          // dots
    double factorX = 1.0, factorY = 1.0; // factors for its size
    int minLineWidth = 2;                // minimum width, in line widths of the file
};

/// How EPS is written.
struct EpsOptions {
    double scale = 0.25;          // points per drawing unit
    int minLineWidth = 5;         // minimum line width
    bool allBlack = false;        // draws all lines black
    bool fillsBackground = false; // fills the background with backgroundIndex
    unsigned long backgroundIndex = 0;
    bool isExact = false;  // writes all digits of the scale, and a box that holds the area
    bool dots = false;     // draws vectors of no length, which PostScript does not
    bool areaOnly = false; // leaves out vectors that leave no trace in the part to draw
};

/// What to draw.
struct PlfPass {
    PlfBytes graph;
    Rect zoom = {};                  // the part to draw, drawing units; width 0: full
    Rect full = kWholeArea;          // the graph's area
    bool whiteBackground = true;     // otherwise the one that the graph names
    bool fillsBackground = true;     // otherwise it is transparent
    bool drawsTexts = true;          // without an application object for windows Qt has no fonts
    double widthScale = 1.0;         // factor on line widths; infinite ones saturate
    double minPenWidth = 0.0;        // minimum pen width of a painter, drawing units
    LineColors colors;               // of painted lines
    std::optional<PrintedPage> page; // when printing; otherwise the viewport is unchanged
    EpsOptions eps;
    int threads = 1;            // that may draw an image at once, including the caller's
    PassWatch* watch = nullptr; // called when the pass takes long; each pass needs its own

    [[nodiscard]] bool IsZoomed() const { return zoom.width > 0; }
    [[nodiscard]] const Rect& Area() const { return IsZoomed() ? zoom : full; }
    /// The palette index of the background, 0..15, or kNoBackground.
    [[nodiscard]] int Background() const;
};

/// The results of a pass.
struct PlfResult {
    unsigned long vectors = 0; // all of them, visible or not
    int background = 0;        // palette index
    int textsRefused = 0;      // texts and font names of kTextSize bytes or more, ignored
    int texts = 0;             // texts that were drawn, visible or not
};

/// Draws a graph: maps the painter's window to the area, fills the background, draws lines and
/// texts. A clip rectangle of the painter limits all of it. A painter that is not active draws
/// nothing, without a word. Where other threads help, they are done
/// when this returns; the picture does not show it.
PlfResult PaintGraph(const PlfPass& pass, QPainter& painter);

/// Writes a graph as EPS.
PlfResult WriteEps(const PlfPass& pass, ByteSink& output);

/// Hands on what touches the area of a graph, with its lines joined to polylines: for formats that
/// keep lines as lines. The background is the target's.
/// @param tolerance  how far what two lines cover with square caps of their own may extend beyond
///                   the polyline that replaces them, drawing units
PlfResult JoinLines(const PlfPass& pass, PolylineTarget& target, double tolerance);

/// Calls an observer for everything in a graph, and also draws it if there is a painter.
PlfResult FollowGraph(const PlfPass& pass, PlfObserver& observer, QPainter* painter = nullptr);

/// Counts the vectors of a graph without drawing.
PlfResult CountVectors(const PlfPass& pass);

/// Reports on standard error (through Qt's messages) how many texts were ignored, if any.
void TellRefusedTexts(const PlfResult& result);
