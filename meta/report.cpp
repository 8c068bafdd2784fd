// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What the decoder tells its observer. Apart from the parameters, a pass that nobody follows calls
// none of this.
#include "meta/observer.h"
#include "meta/plfbuffer.h"
#include "meta/plfmeta.h"
#include "support/numbers.h"

#include <algorithm>

namespace {

constexpr int kBel = 7;
constexpr int kGs = 29;
constexpr ptrdiff_t kTwoLetters = 2;

} // namespace

// Readers of parameters may stand in the zero bytes behind the data.
size_t CPlfMeta::OffsetOf(const char* at) const
{
    return static_cast<size_t>(std::min<const char*>(at, pEnd) - gpPlfmembuf);
}

int CPlfMeta::ReportInteger(int value, PlfInteger kind)
{
    if (observer != nullptr)
        observer->Integer(value, kind);
    return value;
}

void CPlfMeta::ReportString(const char* begin, const char* end, bool isWhole)
{
    if (observer == nullptr)
        return;
    const size_t at = OffsetOf(begin);
    observer->String({gpPlfmembuf + at, std::max(at, OffsetOf(end)) - at}, isWhole);
}

// x and y are where the beam stood before, in drawing units.
void CPlfMeta::ReportAddress(const Walk& walk, bool isMove, int x, int y)
{
    const PlfSpan span = {OffsetOf(walk.begin), OffsetOf(pCur - 1)};
    if (isMove)
        observer->Move(span, xCur, kPlfHeight - yCur);
    else
        observer->Vector(span, {x, kPlfHeight - y, xCur, kPlfHeight - yCur, iColor, iWidth});
}

void CPlfMeta::ReportControl(const Walk& walk, int c)
{
    if (walk.count > 0)
        observer->BrokenAddress(OffsetOf(walk.begin));
    else if (c == kGs)
        observer->NextMoves({OffsetOf(pCur - 1), OffsetOf(pCur)});
}

// A pending character belongs to what comes next, unless it only stands for the end of the data.
void CPlfMeta::ReportEscape(const Walk& walk)
{
    const char* end = chPending != 0 && !bTextOpen ? pCur - 1 : pCur;
    const PlfSpan span = {OffsetOf(walk.begin), OffsetOf(end)};
    const char* letters = walk.szSeq.data();
    if (walk.count >= kTwoLetters)
        observer->Command(span, letters, IsKnown(letters));
    else if (walk.szSeq[0] == kGs)
        observer->NextMoves(span);
}

void CPlfMeta::ReportText(std::string_view text)
{
    if (observer != nullptr)
        observer->Text({text, iTextX, WrapSubtract(kPlfHeight, iTextY), szFontName, iFontSize,
                        iTextColor, (dwTextAttr & kBold) != 0, (dwTextAttr & kItalic) != 0});
}

void CPlfMeta::ReportEnd(const Walk& walk, int last)
{
    // Behind a text an escape stands in front of the BEL, and means no command.
    if (walk.inEscape && (walk.count > 0 || last == 0))
        observer->DroppedCommand(OffsetOf(walk.begin));
    else if (!walk.inEscape && walk.count != 0)
        observer->DroppedAddress(OffsetOf(walk.begin));
    if (last == 0)
        observer->End(OffsetOf(pCur), pCur < pEnd ? PlfEnd::kZeroByte : PlfEnd::kEndOfFile);
    else
        observer->End(OffsetOf(pCur - 1), last == kBel ? PlfEnd::kBel : PlfEnd::kByte255);
}
