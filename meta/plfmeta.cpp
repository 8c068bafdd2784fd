// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/plfmeta.h"

#include "app/state/globals.h"
#include "meta/bands.h"
#include "meta/decoder.h"
#include "meta/epssink.h"
#include "meta/paintersink.h"
#include "meta/palette.h"
#include "meta/passrun.h"
#include "meta/plfbuffer.h"
#include "meta/plftext.h"
#include "meta/printerdpi.h"
#include "support/log.h"
#include "support/text.h"

#include <QPainter>

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace {

// The level of the interpreter's own trace messages; they are written only if gdwDebug equals it.
constexpr unsigned long kTraceLevel = 2;

LineColors ColorsFromSettings(bool isPrinting)
{
    LineColors colors;
    colors.whiteToBlack = isPrinting && gfPrtWht2Blk != 0;
    colors.rule = gdwLineClrFlag;
    std::copy(std::begin(gwLineClrMap), std::end(gwLineClrMap), colors.map.begin());
    return colors;
}

PrintedPage PageFromSettings(const QPrinter* printer)
{
    const Resolution dpi = PrinterResolution(printer);
    return {dpi.x, dpi.y, giPageX, giPageY, gdPageSizeX, gdPageSizeY, giPrtMinLineWidth};
}

EpsOptions EpsFromSettings()
{
    return {gdEpsCvtScale, giEpsMinLineWidth, gfEpsCvt2Blk != 0, gfEpsUseBkClr != 0, gdwBackClrEPS};
}

} // namespace

// Hosts rely on this order of the members.
struct CPlfMeta::Order {
    static constexpr size_t kOffsets[] = {
        offsetof(CPlfMeta, pen),         offsetof(CPlfMeta, szFileName),
        offsetof(CPlfMeta, text),        offsetof(CPlfMeta, input),
        offsetof(CPlfMeta, dWidthScale), offsetof(CPlfMeta, rDraw),
        offsetof(CPlfMeta, cvtflag),     offsetof(CPlfMeta, line),
        offsetof(CPlfMeta, fZoomed),     offsetof(CPlfMeta, cvtfp),
        offsetof(CPlfMeta, beam),        offsetof(CPlfMeta, pPainter),
        offsetof(CPlfMeta, pPrinter),    offsetof(CPlfMeta, address),
        offsetof(CPlfMeta, nEpsItems)};
    static_assert(kOffsets[0] == 0 && std::is_sorted(std::begin(kOffsets), std::end(kOffsets)));
};

CPlfMeta::CPlfMeta(char* name, QPainter* painter, QPrinter* printer, double widthScale, int cvtmode)
    : cvtflag(cvtmode), pPainter(painter), pPrinter(printer)
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
    line = {};
    cvtfp.reset();
    input.fMoveNext = 0;
    input.fCommaOk = 0;
    address = {};
    nEpsItems = 1;
    text = {};
}

// The current settings of the program.
PlfPass CPlfMeta::MakePass(const Rect& zoom, const Rect& full) const
{
    PlfPass pass;
    pass.graph = LoadedPlf();
    pass.zoom = zoom;
    pass.full = full;
    pass.whiteBackground = gbBkClrWhite;
    pass.widthScale = dWidthScale;
    pass.colors = ColorsFromSettings(pPrinter != nullptr);
    if (pPrinter != nullptr)
        pass.page = PageFromSettings(pPrinter);
    pass.eps = EpsFromSettings();
    pass.threads = ThreadLimit();
    pass.watch = watch;
    return pass;
}

// A file that cannot be opened leaves cvtfp empty, and the pass writes no EPS at all.
int CPlfMeta::DrawPlf(Rect* zoom, Rect* full)
{
    const PlfPass pass = MakePass(*zoom, *full);
    fZoomed = pass.IsZoomed() ? 1 : 0;
    rDraw = pass.Area();
    if (cvtflag == kConvertEps)
        cvtfp = FileSink::Open(gszCvtFilename);
    const int result = Plf2Screen(pass);
    if (cvtfp != nullptr)
        cvtfp->Commit();
    cvtfp.reset();
    return result;
}

// A painter cannot begin on a screen whose pixels are indices of colors.
bool CPlfMeta::CanPaint() const
{
    return pPainter != nullptr && pPainter->isActive();
}

// Connects the decoder with its sinks.
int CPlfMeta::Plf2Screen(const PlfPass& pass)
{
    const int background = pass.Background();
    const bool paints = CanPaint();
    if (!paints && cvtfp == nullptr) {
        NoSink nowhere;
        return RunInto(nowhere, pass, background);
    }
    if (cvtfp == nullptr) {
        const RowCuts cuts = FindCuts(pass, *pPainter);
        if (!cuts.empty())
            return DrawBands(pass, cuts, background);
        PainterSink painting(*pPainter, pass, background, pen);
        return RunInto(painting, pass, background);
    }
    EpsSink writing(*cvtfp, pass, background, nEpsItems);
    if (!paints)
        return RunInto(writing, pass, background);
    PainterSink painting(*pPainter, pass, background, pen);
    BothSinks both(painting, writing);
    return RunInto(both, pass, background);
}

template <class Sink> int CPlfMeta::RunInto(Sink& sink, const PlfPass& pass, int background)
{
    NoReport nobody;
    PlfResult result;
    result.vectors = Decoder<Sink, NoReport>(pass, State(), sink, nobody).Run();
    result.textsRefused = input.nTextsRefused;
    result.texts = input.nTexts;
    return Leave(result, background);
}

// The object and its painter are left as by a pass in one piece.
int CPlfMeta::DrawBands(const PlfPass& pass, const RowCuts& cuts, int background)
{
    PassValues values = {text, input, line, beam, address, pen};
    const PlfResult result = PaintInBands(pass, *pPainter, cuts, &values);
    text = values.text;
    input = values.input;
    line = values.line;
    beam = values.beam;
    address = values.address;
    pen = values.pen;
    pPainter->setBackground(PaletteColor(background));
    pPainter->setPen(pen);
    return Leave(result, background);
}

// Where the program looks for what a pass found.
int CPlfMeta::Leave(const PlfResult& result, int background)
{
    gdwVectorCnt = result.vectors;
    gdwBkClrFile = static_cast<unsigned long>(background);
    TellRefusedTexts(result);
    return 1;
}

// Does outside a pass what the decoder does during one, on the painter, if any.
template <class Action> void CPlfMeta::Act(Action action)
{
    const PlfPass pass = MakePass({}, kWholeArea);
    NoReport nobody;
    if (!CanPaint()) {
        NoSink nowhere;
        Decoder decoder(pass, State(), nowhere, nobody);
        action(decoder);
    } else {
        PainterSink painting(*pPainter, pass, static_cast<int>(gdwBkClrFile), pen);
        Decoder decoder(pass, State(), painting, nobody);
        action(decoder);
    }
}

int CPlfMeta::MapColor(int index) const
{
    return ColorsFromSettings(pPrinter != nullptr).Map(index);
}

void CPlfMeta::SetPen(int index)
{
    if (!CanPaint())
        return;
    const PlfPass pass = MakePass({}, kWholeArea);
    PainterSink(*pPainter, pass, static_cast<int>(gdwBkClrFile), pen).SetPen(index, line.iWidth);
}

void CPlfMeta::SetPenWidth(int width)
{
    Act([width](auto& decoder) { decoder.SetPenWidth(width); });
}

void CPlfMeta::SetColor(int index)
{
    Act([index](auto& decoder) { decoder.SetColor(index); });
}

void CPlfMeta::Draw(int x1, int y1, int x2, int y2)
{
    DrawVector(true, x1, y1, x2, y2);
}

void CPlfMeta::MoveAndDraw(int x1, int y1, int x2, int y2)
{
    DrawVector(false, x1, y1, x2, y2);
}

void CPlfMeta::DrawVector(bool continues, int x1, int y1, int x2, int y2)
{
    Act([=](auto& decoder) { decoder.Draw(continues, x1, y1, x2, y2); });
    ++gdwVectorCnt;
}

void CPlfMeta::DrawTextKorvel(char* drawn)
{
    Act([drawn](auto& decoder) { decoder.DrawTextKorvel(drawn); });
}

QFont CPlfMeta::TextFont() const
{
    QFont font(TextFromFile(text.szFontName));
    if (text.iFontSize > 0)
        font.setPointSize(text.iFontSize);
    font.setWeight((text.dwTextAttr & kBold) != 0 ? QFont::Bold : QFont::Normal);
    font.setItalic((text.dwTextAttr & kItalic) != 0);
    return font;
}

void CPlfMeta::TraceObject(const char* what) const
{
    if (gpLog == nullptr)
        return;
    char message[256]; // two pointers, a number and the fixed words need less than 100
    const bool fits =
        FormatText(message, sizeof message, "CPlfMeta %s, this=%p, cvtflag=%d, cvtfp=%p\n", what,
                   static_cast<const void*>(this), cvtflag, static_cast<const void*>(cvtfp.get()));
    if (fits)
        gpLog->Log(kTraceLevel, message);
}
