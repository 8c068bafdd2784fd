// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Bytes are read as signed characters throughout, so that 128..255 count as control characters.
#include "meta/decoder.h"

#include "meta/address.h"
#include "meta/drawingsink.h"
#include "meta/epssink.h"
#include "meta/paintersink.h"
#include "meta/passwatch.h"
#include "meta/polylinesink.h"
#include "meta/surveysink.h"
#include "meta/taperecorder.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

namespace {

constexpr int kBel = 7;
constexpr int kGs = 29;
constexpr int kEndByte = -1; // byte 255 ends the drawing like BEL

// Bytes of addresses to draw between two looks at the clock: less than a millisecond if no line is
// visible, and enough to make the look negligible.
constexpr ptrdiff_t kMostAtOnce = ptrdiff_t{64} * 1024;
// Letters of a command; one more character follows them.
constexpr ptrdiff_t kMaxLetters = 2;

constexpr bool IsUpper(int c)
{
    return c >= 'A' && c <= 'Z';
}

} // namespace

template <class Sink, class Reporter>
Decoder<Sink, Reporter>::Decoder(const PlfPass& decodedPass, const PassState& passState,
                                 Sink& target, Reporter& teller)
    : pass(decodedPass), state(passState), sink(target), report(teller),
      reader(pass.graph, state.input, report.Observer()), context{pass, reader, state.text, *this}
{
}

template <class Sink, class Reporter> unsigned long Decoder<Sink, Reporter>::Run()
{
    state.input.pCur = pass.graph.data;
    state.input.pEnd = pass.graph.End();
    state.input.nTextsRefused = 0;
    state.input.nTexts = 0;
    vectors = 0;
    sink.Begin();
    state.line.iWidth = -1;
    SetPenWidth(0);
    state.line.iColor = -1;
    SetColor(0);
    state.text = {};
    Plf2Screen();
    sink.Finish();
    return vectors;
}

// Returns 1 at the zero byte after the data, at BEL or at byte 255.
template <class Sink, class Reporter> int Decoder<Sink, Reporter>::Plf2Screen()
{
    if (state.input.pCur != nullptr)
        report.End(walk, DecodeAll());
    return 1;
}

// Returns the character that ended the drawing, 0 for the zero byte.
template <class Sink, class Reporter> int Decoder<Sink, Reporter>::DecodeAll()
{
    InputState& input = state.input;
    // The zero byte is checked first, even if a character is pending.
    while (*input.pCur != 0) {
        if (!walk.inEscape && walk.count == 0 && input.chPending == 0 && DrawAddresses())
            continue;
        const int c = NextChar();
        if (c == kBel || c == kEndByte)
            return c;
        if (c == kGs)
            input.fMoveNext = 1;
        if (c == kEsc && !walk.inEscape) {
            report.Escape(walk);
            walk.begin = input.pCur - 1;
            walk.inEscape = true;
            walk.count = 0;
        } else if (walk.inEscape) {
            CollectEscape(c);
        } else {
            CollectAddress(c);
        }
    }
    return 0;
}

// Returns the pending character, which discards an incomplete address, or the next byte, which
// draws a complete one: an address is decoded only when one more byte is read.
template <class Sink, class Reporter> int Decoder<Sink, Reporter>::NextChar()
{
    InputState& input = state.input;
    if (input.chPending != 0) {
        walk.count = 0;
        return std::exchange(input.chPending, 0);
    }
    const int c = static_cast<signed char>(*input.pCur++);
    if (walk.count < 0) {
        FinishAddress();
        walk.count = 0;
    }
    return c;
}

template <class Sink, class Reporter> void Decoder<Sink, Reporter>::CollectEscape(int c)
{
    if (c == kEsc)
        state.input.chPending = kEsc; // ends this command and begins the next
    walk.szSeq[static_cast<size_t>(walk.count++)] = static_cast<char>(c);
    if (walk.count > kMaxLetters || !IsUpper(c))
        FinishEscape(c);
}

// The third character belongs to the parameters. A second one that is not a letter is ignored.
template <class Sink, class Reporter> void Decoder<Sink, Reporter>::FinishEscape(int c)
{
    if (walk.count > kMaxLetters) {
        state.input.chPending = c;
        walk.szSeq[kMaxLetters] = 0;
    } else {
        walk.szSeq[1] = 0;
    }
    state.input.bTextOpen = false;
    gprosq(walk.count, walk.szSeq.data(), context);
    report.Command(walk);
    walk.inEscape = false;
    walk.count = 0;
}

template <class Sink, class Reporter> void Decoder<Sink, Reporter>::CollectAddress(int c)
{
    if (c <= kLastControl) {
        // A control character inside an address overwrites its first two bytes: deliberate, files
        // with line ends inside addresses have always been drawn that way.
        walk.szSeq[0] = static_cast<char>(c);
        walk.szSeq[1] = 0;
        gprosq(0, walk.szSeq.data(), context);
        report.Control(walk, c);
        return;
    }
    if (walk.count == 0)
        walk.begin = state.input.pCur - 1;
    const auto at = static_cast<size_t>(walk.count++);
    if (at + 1 == walk.szSeq.size())
        walk.szSeq.resize(2 * walk.szSeq.size());
    walk.szSeq[at] = static_cast<char>(c);
    if (c >= kFirstLowX && c <= kLastLowX) {
        walk.szSeq[at + 1] = 0;
        walk.count = -walk.count;
    }
}

template <class Sink, class Reporter>
inline void Decoder<Sink, Reporter>::Draw(bool continues, int x1, int y1, int x2, int y2)
{
    ++vectors;
    sink.Vector(continues, x1, y1, x2, y2);
}

// Moves or draws to an address.
template <class Sink, class Reporter>
inline void Decoder<Sink, Reporter>::GoTo(const AddressParts& part)
{
    BeamState& beam = state.beam;
    const PlfPoint to = PointOf(part);
    if (state.input.fMoveNext != 0) {
        state.input.fMoveNext = 0;
    } else {
        // Comparing both pairs at once would load them as wider numbers than they were stored,
        // which makes the processor wait.
        const bool continues = ((beam.xCur ^ beam.xPathEnd) | (beam.yCur ^ beam.yPathEnd)) == 0;
        Draw(continues, beam.xCur, beam.yCur, to.x, to.y);
        beam.xPathEnd = to.x;
        beam.yPathEnd = to.y;
    }
    beam.xCur = to.x;
    beam.yCur = to.y;
}

// Decodes an address that CollectAddress completed. The control characters in an interrupted one
// are high parts.
template <class Sink, class Reporter> void Decoder<Sink, Reporter>::tekcodeq(const char* seq)
{
    ReadAddress(seq, std::numeric_limits<signed char>::min(), state.address);
    GoTo(state.address);
}

// Called when the byte after the address has been read.
template <class Sink, class Reporter> void Decoder<Sink, Reporter>::FinishAddress()
{
    const bool isMove = state.input.fMoveNext != 0;
    const BeamState from = state.beam;
    tekcodeq(walk.szSeq.data());
    report.Address(walk, isMove, from);
}

// Fast path: decodes runs of whole addresses and GS in place. Stops at everything else, including
// an address that is interrupted by a control character or is at the end of the data, and after
// kMostAtOnce bytes, for the watch. Returns whether anything was decoded.
template <class Sink, class Reporter> bool Decoder<Sink, Reporter>::DrawAddresses()
{
    if constexpr (Reporter::kFollows)
        return false; // each address is reported separately
    const char* at = state.input.pCur;
    const char* stop = at + std::min(state.input.pEnd - at, kMostAtOnce);
    AddressParts part = state.address; // a local copy stays in registers
    while (at < stop) {
        if (*at == kGs) {
            state.input.fMoveNext = 1;
            ++at;
            continue;
        }
        AddressParts read = part;
        const char* end = ReadAddress(at, kLastControl + 1, read);
        if (end == nullptr || *end == 0)
            break;
        part = read;
        at = end;
        GoTo(part);
    }
    state.address = part;
    if (at >= stop && pass.watch != nullptr)
        pass.watch->Tick();
    return std::exchange(state.input.pCur, at) != at;
}

template <class Sink, class Reporter> void Decoder<Sink, Reporter>::SetPenWidth(int width)
{
    if (width == state.line.iWidth)
        return;
    state.line.iWidth = width;
    sink.SetWidth(width, pass.colors.Map(state.line.iColor)); // mapped a second time, deliberately
    ClearPenPos();
}

template <class Sink, class Reporter> void Decoder<Sink, Reporter>::SetColor(int index)
{
    // The stored color is mapped, the argument is not: the comparison is deliberate.
    if (index == state.line.iColor)
        return;
    state.line.iColor = pass.colors.Map(index);
    sink.SetColor(state.line.iColor, state.line.iWidth);
    ClearPenPos();
}

template <class Sink, class Reporter> void Decoder<Sink, Reporter>::DrawTextKorvel(char* text)
{
    size_t length = strlen(text);
    if (length > 0 && text[length - 1] == '\n')
        text[--length] = 0;
    state.input.nTexts += length > 0 ? 1 : 0;
    report.Text({text, length});
    sink.Text({text, length}, state.text.iTextX, state.text.iTextY);
}

template class Decoder<NoSink, NoReport>;
template class Decoder<PainterSink, NoReport>;
template class Decoder<PolylineSink, NoReport>;
template class Decoder<SurveySink, NoReport>;
template class Decoder<TapeRecorder, NoReport>;
template class Decoder<EpsSink, NoReport>;
template class Decoder<EpsAreaSink, NoReport>;
template class Decoder<BothSinks<PainterSink, EpsSink>, NoReport>;
template class Decoder<NoSink, ObserverReport>;
template class Decoder<PainterSink, ObserverReport>;
template class Decoder<NoSink, SkimReport>;
template class Decoder<DrawingSink, SkimReport>;
