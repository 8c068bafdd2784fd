// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The interpreter's construction and one drawing pass.
#include "meta/plfmeta.h"

#include "meta/epswriter.h"
#include "meta/plfbuffer.h"
#include "support/log.h"
#include "support/text.h"

#include <QtGlobal>

#include <cstring>

namespace {

// The level of the interpreter's own trace messages; they are written when gdwDebug is just this.
constexpr unsigned long kTraceLevel = 2;

} // namespace

CPlfMeta::CPlfMeta(char* name, QPainter* painter, QPrinter* printer, double widthScale, int cvtmode)
    : cvtflag(cvtmode), pPainter(painter), pPrinter(printer), lines(painter)
{
    Init(name, widthScale);
    TraceObject("constructor");
}

CPlfMeta::~CPlfMeta()
{
    TraceObject("destructor");
}

void CPlfMeta::Init(char* name, double widthScale)
{
    if (!CopyText(szFileName, name))
        szFileName[0] = 0;
    dWidthScale = widthScale;
    fZoomed = 0;
    iColor = -1;
    iWidth = -1;
    cvtfp.reset();
    fMoveNext = 0;
    fCommaOk = 0;
    address = {};
    nEpsItems = 1;
    ClearTextState();
}

int CPlfMeta::DrawPlf(Rect* zoom, Rect* full)
{
    pCur = gpPlfmembuf;
    pEnd = gpPlfmembuf == nullptr ? nullptr : gpPlfmembuf + gdwFilesize;
    gdwBkClrFile = static_cast<unsigned long>(GetPlfBackGroundColor(gpPlfmembuf));
    MapWindow(*zoom, *full);
    FillBackground(*full);
    CopyRect(&rDraw, zoom->width > 0 ? zoom : full);
    gdwVectorCnt = 0;
    iWidth = -1;
    nTextsRefused = 0;
    OpenEps();
    SetPenWidth(0);
    iColor = -1;
    SetColor(0);
    ClearTextState();
    const int result = Plf2Screen();
    lines.Flush();
    CloseEps();
    if (nTextsRefused > 0)
        qWarning("plotvw: %d texts or font names of more than %zu bytes are not drawn.",
                 nTextsRefused, kTextSize - 1);
    return result;
}

// A file that cannot be opened leaves cvtfp empty, and the pass writes no EPS at all.
void CPlfMeta::OpenEps()
{
    if (cvtflag != kConvertEps)
        return;
    cvtfp = EpsWriter::Open(gszCvtFilename);
    if (cvtfp != nullptr)
        cvtfp->Header(rDraw, fZoomed != 0);
}

void CPlfMeta::CloseEps()
{
    if (cvtfp == nullptr)
        return;
    cvtfp->Finish();
    cvtfp.reset();
}

void CPlfMeta::ClearTextState()
{
    memset(szFontName, 0, sizeof szFontName);
    iFontSize = iTextColor = iTextX = iTextY = iTextZo = dwTextAttr = 0;
}

void CPlfMeta::TraceObject(const char* what) const
{
    if (gpLog == nullptr)
        return;
    char message[256]; // two pointers, a number and the fixed words take fewer than 100
    const bool fits =
        FormatText(message, sizeof message, "CPlfMeta %s, this=%p, cvtflag=%d, cvtfp=%p\n", what,
                   static_cast<const void*>(this), cvtflag, static_cast<const void*>(cvtfp.get()));
    if (fits)
        gpLog->Log(kTraceLevel, message);
}
