// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The interpreter of the loaded graph: one object per drawing, created on the stack for its target.
// It builds a pass from the program's settings, and stores the results in the program's variables.
#pragma once

#include "app/state/sizes.h"
#include "meta/bytesink.h"
#include "meta/pass.h"
#include "meta/state.h"
#include "support/rect.h"

#include <QFont>
#include <QPen>

#include <memory>
#include <vector>

class PassWatch;
class QPainter;
class QPrinter;

/// Conversion mode of a pass that also writes EPS.
constexpr int kConvertEps = 3;

/// Draws the loaded graph (gpPlfmembuf).
class CPlfMeta
{
public:
    /// @param name        the file's name, kept for reference
    /// @param painter     target, or null to draw nothing, as does one that is not active; must
    ///                    outlive the object
    /// @param printer     the painter's printer when printing (page mapping and pens for paper),
    ///                    otherwise null
    /// @param widthScale  factor for the file's line widths; any value, infinite ones saturate
    /// @param cvtmode     kConvertEps also writes the pass as EPS into gszCvtFilename
    CPlfMeta(char* name, QPainter* painter, QPrinter* printer, double widthScale, int cvtmode);
    ~CPlfMeta();
    CPlfMeta(const CPlfMeta&) = delete;
    CPlfMeta& operator=(const CPlfMeta&) = delete;

    /// Resets the object to the state before a pass.
    void Init(char* name, double widthScale);

    /// Lets a watch know when a pass takes long.
    /// @param passWatch  must outlive the passes; null = none
    void Watch(PassWatch* passWatch) { watch = passWatch; }

    /// Draws the whole file: maps the painter's window to the area, fills the background, runs the
    /// decoder. Stores the number of vectors in gdwVectorCnt and the background in gdwBkClrFile.
    /// @param zoom  area to show in drawing units; a width of 0 or less means the whole file
    /// @param full  the file's area, kWholeArea
    /// @return 1
    int DrawPlf(Rect* zoom, Rect* full);

    /// Sets the pen's color from a palette index, and its width from the current line width.
    void SetPen(int index);
    /// Sets the line width in scaled file units and starts a new path, unless the width is the
    /// same.
    void SetPenWidth(int width);
    /// Sets the line color and starts a new path, unless index equals the current mapped color.
    void SetColor(int index);
    /// The palette index to draw index with; an index outside 1..16 becomes 0, and 16 is unchanged.
    [[nodiscard]] int MapColor(int index) const;

    /// Draws a vector that continues the path. Drawing units, y downward.
    void Draw(int x1, int y1, int x2, int y2);
    /// Draws a vector that starts a new path.
    void MoveAndDraw(int x1, int y1, int x2, int y2);
    /// Draws text with its baseline at the text position, without a line feed at its end.
    void DrawTextKorvel(char* text);
    /// The font that the file requests. It is not used to draw texts, see DrawTextKorvel.
    [[nodiscard]] QFont TextFont() const;

private:
    struct Order; // of the members below, which is fixed

    [[nodiscard]] PlfPass MakePass(const Rect& zoom, const Rect& full) const;
    [[nodiscard]] bool CanPaint() const;
    PassState State() { return {text, input, line, beam, address}; }
    int Plf2Screen(const PlfPass& pass);
    template <class Sink> int RunInto(Sink& sink, const PlfPass& pass, int background);
    int DrawBands(const PlfPass& pass, const std::vector<int>& cuts, int background);
    static int Leave(const PlfResult& result, int background);
    template <class Action> void Act(Action action);
    void DrawVector(bool continues, int x1, int y1, int x2, int y2);
    void TraceObject(const char* what) const;

    QPen pen;                        // the working pen
    char szFileName[kPathSize] = ""; // the metafile's name, for reference
    TextState text;                  // the settings of texts
    InputState input;                // the decoder's position
    double dWidthScale = 1.0;        // factor for line widths
    Rect rDraw = {};                 // the area being drawn
    int cvtflag = 0;                 // kConvertEps = also write EPS
    LineState line;                  // current color and width
    int fZoomed = 0;                 // 1 = a part of the file is shown
    std::unique_ptr<FileSink> cvtfp; // the EPS output; null = none
    BeamState beam;                  // position, and where the output path ended
    QPainter* pPainter = nullptr;
    QPrinter* pPrinter = nullptr;
    AddressParts address;
    int nEpsItems = 1;          // number of the next path item on its line of the EPS output
    PassWatch* watch = nullptr; // called when a pass takes long
};
