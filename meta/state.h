// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The state of a pass, as plain values.
#pragma once

#include <cstddef>

/// Bytes of a text or font name, including the terminating NUL; a longer one is ignored.
constexpr size_t kTextSize = 1024;
// Bits of the text attributes.
constexpr int kBold = 1;
constexpr int kItalic = 2;

/// The settings of texts.
struct TextState {
    char szFontName[kTextSize] = ""; // ZF
    int iFontSize = 0;               // ZS, points
    int iTextColor = 0;              // ZC, a palette index
    int iTextX = 0;                  // ZP
    int iTextY = 0;                  // ZP, y downward
    int iTextZo = 0;                 // ZO; not used for drawing
    int dwTextAttr = 0;              // ZA: bit 0 bold, bit 1 italic
};

/// The decoder's position in the bytes.
struct InputState {
    const char* pCur = nullptr; // read cursor
    const char* pEnd = nullptr; // end of the data, where unclosed texts end
    int chPending = 0;          // pushed-back character; 0 = none
    int fMoveNext = 0;          // 1 = the next address is a move
    bool bCommaSeen = false;    // a comma replaced a color component
    int fCommaOk = 0;           // 1 = commas are special
    bool bTextOpen = false;     // the last string or position ended at the end of the data
    int nTextsRefused = 0;      // texts of this pass that did not fit
    int nTexts = 0;             // texts of this pass that were drawn
};

/// The color and width of lines.
struct LineState {
    int iColor = -1; // current mapped color; -1 = none
    int iWidth = -1; // current line width; -1 = none
};

/// The beam, in drawing units.
struct BeamState {
    int xCur = 0, yCur = 0;         // its position
    int xPathEnd = 0, yPathEnd = 0; // where the output path ended
};

/// The five-bit parts of an address, as last read.
struct AddressParts {
    int hiX = 0, loX = 0, hiY = 0, loY = 0;
    int extra = 0; // two bits for each coordinate
    int nLoY = 0;  // low-Y bytes read in this address
};

/// All of the state, wherever its parts are stored.
struct PassState {
    TextState& text;
    InputState& input;
    LineState& line;
    BeamState& beam;
    AddressParts& address;
};
