// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/report.h"

#include "meta/commands.h"
#include "meta/plfarea.h"
#include "support/numbers.h"

namespace {

constexpr int kBel = 7;
constexpr int kGs = 29;
constexpr ptrdiff_t kTwoLetters = 2;

} // namespace

void ObserverReport::Address(const Walk& walk, bool wasMove, const BeamState& from)
{
    const PlfSpan span = {OffsetOf(walk.begin), OffsetOf(state.input.pCur - 1)};
    const int x = state.beam.xCur;
    const int y = kPlfHeight - state.beam.yCur;
    if (wasMove)
        observer.Move(span, x, y);
    else
        observer.Vector(
            span, {from.xCur, kPlfHeight - from.yCur, x, y, state.line.iColor, state.line.iWidth});
}

void ObserverReport::Escape(const Walk& walk)
{
    if (walk.count > 0)
        observer.DroppedAddress(OffsetOf(walk.begin));
}

void ObserverReport::Control(const Walk& walk, int c)
{
    const char* end = state.input.pCur;
    if (walk.count > 0)
        observer.BrokenAddress(OffsetOf(walk.begin));
    else if (c == kGs)
        observer.NextMoves({OffsetOf(end - 1), OffsetOf(end)});
}

// A pending character belongs to the next item, unless it only marks the end of the data.
void ObserverReport::Command(const Walk& walk)
{
    const InputState& input = state.input;
    const char* end = input.chPending != 0 && !input.bTextOpen ? input.pCur - 1 : input.pCur;
    const PlfSpan span = {OffsetOf(walk.begin), OffsetOf(end)};
    const char* letters = walk.szSeq.data();
    if (walk.count >= kTwoLetters)
        observer.Command(span, letters, IsKnownCommand(letters));
    else if (letters[0] == kGs)
        observer.NextMoves(span);
}

void ObserverReport::Text(std::string_view text)
{
    const TextState& set = state.text;
    observer.Text({text, set.iTextX, WrapSubtract(kPlfHeight, set.iTextY), set.szFontName,
                   set.iFontSize, set.iTextColor, (set.dwTextAttr & kBold) != 0,
                   (set.dwTextAttr & kItalic) != 0});
}

void ObserverReport::End(const Walk& walk, int last)
{
    const InputState& input = state.input;
    // After a text there is an escape before the BEL, which does not begin a command.
    if (walk.inEscape && (walk.count > 0 || last == 0))
        observer.DroppedCommand(OffsetOf(walk.begin));
    else if (!walk.inEscape && walk.count != 0)
        observer.DroppedAddress(OffsetOf(walk.begin));
    if (last == 0)
        observer.End(OffsetOf(input.pCur),
                     input.pCur < input.pEnd ? PlfEnd::kZeroByte : PlfEnd::kEndOfFile);
    else
        observer.End(OffsetOf(input.pCur - 1), last == kBel ? PlfEnd::kBel : PlfEnd::kByte255);
}
