// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The metafile interpreter: one object per drawing pass, made on the stack for its target.
#pragma once

#include "app/globals.h"
#include "meta/linepainter.h"
#include "meta/observer.h"
#include "support/rect.h"

#include <QFont>
#include <QPen>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

class EpsWriter;
class QPainter;
class QPrinter;
class QRect;
class PassWatch;

/// Height of the visible file area; the file's y points up, drawing y is kPlfHeight - y.
constexpr int kPlfHeight = 3120;
/// Width of the file area: one 12-bit address per unit.
constexpr int kPlfWidth = 4096;
/// Bytes in a text or font name with the terminating NUL; a longer one is not used at all.
constexpr size_t kTextSize = 1024;
/// Line indices that the colour map knows; commands with another index leave it alone.
constexpr int kLineIndexCount = 16;
/// Conversion mode of a pass that also writes EPS.
constexpr int kConvertEps = 3;
// Bits of the text attributes.
constexpr int kBold = 1;
constexpr int kItalic = 2;
/// Widest pen that the toolkit takes. It refuses wider and negative ones and keeps the old width.
constexpr int kMaxPenWidth = 32767;

/// Walks the loaded file (gpPlfmembuf) once and draws it.
class CPlfMeta
{
public:
    /// @param name        the file's name, kept for reference
    /// @param painter     target, or null to draw nothing; must be active and outlive the object
    /// @param printer     the painter's printer when printing (page mapping and pens on paper),
    ///                    else null
    /// @param widthScale  factor on the file's line widths; any value, infinite ones saturate
    /// @param cvtmode     kConvertEps also writes the pass as EPS into gszCvtFilename
    CPlfMeta(char* name, QPainter* painter, QPrinter* printer, double widthScale, int cvtmode);
    ~CPlfMeta();
    CPlfMeta(const CPlfMeta&) = delete;
    CPlfMeta& operator=(const CPlfMeta&) = delete;

    /// Puts the object into the state before a pass.
    void Init(char* name, double widthScale);

    /// Lets somebody follow the passes to come, which then take longer.
    /// @param follower  must outlive them; null = nobody
    void Observe(PlfObserver* follower) { observer = follower; }

    /// Lets somebody know when a pass takes long.
    /// @param passWatch  must outlive the passes; null = nobody
    void Watch(PassWatch* passWatch)
    {
        watch = passWatch;
        lines.Watch(passWatch);
    }

    /// Draws the whole file: maps the painter's window to the area, fills the background, runs the
    /// decoder. Counts the vectors in gdwVectorCnt and leaves the background in gdwBkClrFile.
    /// @param zoom  area to show in drawing units; a width of 0 or less means the whole file
    /// @param full  the file's area, (0, 0, kPlfWidth, kPlfHeight)
    /// @return 1
    int DrawPlf(Rect* zoom, Rect* full);

    /// Makes palette index the pen's colour, with the width that is current.
    void SetPen(int index);
    /// Sets the line width in scaled file units and starts a new path, unless it is current.
    void SetPenWidth(int width);
    /// Sets the line colour and starts a new path, unless index equals the current mapped colour.
    void SetColor(int index);
    /// The palette index to draw index with; outside 1..16 it is 0, and 16 itself passes.
    [[nodiscard]] int MapColor(int index) const;

    /// Draws a vector that continues the path. Drawing units, y downward.
    void Draw(int x1, int y1, int x2, int y2) { DrawVector(true, x1, y1, x2, y2); }
    /// Draws a vector that starts a new path.
    void MoveAndDraw(int x1, int y1, int x2, int y2) { DrawVector(false, x1, y1, x2, y2); }
    /// Draws text with its baseline at the text position; a last line feed is removed from it.
    void DrawTextKorvel(char* text);
    /// The font that the file asks for. Texts are not drawn in it: see DrawTextKorvel.
    [[nodiscard]] QFont TextFont() const;

private:
    // One walk of the decoder.
    struct Walk {
        std::string szSeq;                       // letters of a command, or bytes of an address
        ptrdiff_t count = 0;                     // bytes in szSeq; negative = address complete
        const char* begin = nullptr;             // first byte of the command or address
        bool inEscape = false;                   // between ESC and the end of a command's letters
        uint32_t dwClrMap[kLineIndexCount] = {}; // line index -> palette index
    };
    // The five-bit parts of an address as last received.
    struct AddressParts {
        int hiX = 0, loX = 0, hiY = 0, loY = 0;
        int extra = 0; // two bits for each coordinate
        int nLoY = 0;  // low-Y bytes seen in the address
    };
    struct Command;
    static const Command kCommands[];

    int Plf2Screen();
    int RunDecoder(Walk& walk);
    int NextChar(Walk& walk);
    void CollectEscape(Walk& walk, int c);
    void FinishEscape(Walk& walk, int c);
    void CollectAddress(Walk& walk, int c);
    static const char* ReadAddress(const char* seq, int lowest, AddressParts& part);
    void GoTo(const AddressParts& part);
    void tekcodeq(const char* seq);
    void FinishAddress(const Walk& walk);
    void ReportAddress(const Walk& walk, bool isMove, int x, int y);
    void ReportControl(const Walk& walk, int c);
    void ReportEscape(const Walk& walk);
    void ReportEnd(const Walk& walk, int last);
    int ReportInteger(int value, PlfInteger kind);
    void ReportString(const char* begin, const char* end, bool isWhole);
    void ReportText(std::string_view text);
    [[nodiscard]] size_t OffsetOf(const char* at) const;
    bool DrawAddresses();
    int gprosq(ptrdiff_t count, const char* seq, uint32_t* dwClrMap);
    static const Command* FindCommand(const char* seq);
    static bool IsKnown(const char* seq);
    void ClearPenPos();

    int getseq(int mode);
    bool TakeChar(int* c);
    int ReadInteger();
    int ReadCountedString();
    int SkipToControl();
    static int decodeq(const char* s);
    static void getclrq(int k, uint32_t* map, const int* hls);
    int GetTextKorvel(char* buf);
    void GetXYKorvel(int* x, int* y);

    void LineWidth(uint32_t* map);
    void ThinLine(uint32_t* map);
    void GraphText(uint32_t* map);
    void FontName(uint32_t* map);
    void FontSize(uint32_t* map);
    void TextColor(uint32_t* map);
    void TextAttributes(uint32_t* map);
    void TextZo(uint32_t* map);
    void TextPosition(uint32_t* map);
    void DrawText(uint32_t* map);
    void LineIndex(uint32_t* map);
    void IgnoreOne(uint32_t* map);
    void IgnoreTwo(uint32_t* map);
    void IgnoreThree(uint32_t* map);
    void ColorMapEntry(uint32_t* map);
    void Nothing(uint32_t* map);
    void SkipParameters(uint32_t* map);

    void MapWindow(const Rect& zoom, const Rect& full);
    void MapPage();
    void ClipToPage(const QRect& page);
    void FillBackground(const Rect& full);
    void OpenEps();
    void CloseEps();
    void DrawVector(bool continues, int x1, int y1, int x2, int y2)
    {
        ++gdwVectorCnt;
        lines.Line(x1, y1, x2, y2);
        if (cvtfp != nullptr)
            EpsVector(continues, x1, y1, x2, y2);
    }
    void EpsVector(bool continues, int x1, int y1, int x2, int y2);
    void CountEpsItem();
    void ClearTextState();
    [[nodiscard]] int PenWidth() const;
    void TraceObject(const char* what) const;

    QPen pen;                         // the working pen
    char szFileName[kTextSize];       // the metafile's name, for reference
    char szFontName[kTextSize];       // ZF
    int iFontSize = 0;                // ZS, points
    int iTextColor = 0;               // ZC, a palette index
    int iTextX = 0;                   // ZP
    int iTextY = 0;                   // ZP, y downward
    int iTextZo = 0;                  // ZO; not used for drawing
    int dwTextAttr = 0;               // ZA: bit 0 bold, bit 1 italic
    const char* pCur = nullptr;       // read cursor
    const char* pEnd = nullptr;       // end of the data, where unclosed texts end
    int chPending = 0;                // pushed-back character; 0 = none
    int fMoveNext = 0;                // 1 = the next address is a move
    bool bCommaSeen = false;          // a comma took the place of a colour component
    int fCommaOk = 0;                 // 1 = commas are special
    int nTextsRefused = 0;            // texts of this pass that did not fit
    double dWidthScale = 1.0;         // factor on line widths
    Rect rDraw = {};                  // the area being drawn
    int cvtflag = 0;                  // 3 = also write EPS
    int iColor = -1;                  // current mapped colour; -1 = none
    int iWidth = -1;                  // current line width; -1 = none
    int fZoomed = 0;                  // 1 = a part of the file is shown
    std::unique_ptr<EpsWriter> cvtfp; // the EPS output; null = none
    int xCur = 0, yCur = 0;           // beam position
    int xPathEnd = 0, yPathEnd = 0;   // where the output path ended
    QPainter* pPainter = nullptr;
    QPrinter* pPrinter = nullptr;
    LinePainter lines; // the painter's lines
    AddressParts address;
    int nEpsItems = 1;               // number of the next path item on its line of the EPS output
    PlfObserver* observer = nullptr; // follows the pass; null = nobody does
    PassWatch* watch = nullptr;      // the same, when the pass takes long
    bool bTextOpen = false;          // the last string or position ended with the data
};
