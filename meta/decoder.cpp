// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// From bytes to commands: 4014-style addresses, 4100-style escape commands and their parameters.
// Bytes are read as signed characters throughout, so that 128..255 count as control characters.
#include "meta/plfmeta.h"

#include "meta/observer.h"
#include "meta/palette.h"
#include "meta/passwatch.h"
#include "support/numbers.h"
#include "support/scan.h"
#include "support/text.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <limits>
#include <utility>

namespace {

constexpr int kBel = 7;
constexpr int kEsc = 27;
constexpr int kGs = 29;
constexpr int kEndByte = -1; // byte 255 ends the drawing like BEL
constexpr int kLastControl = 31;
constexpr int kFirstLowX = 64; // 64..95 closes an address
constexpr int kLastLowX = 95;
constexpr int kLastHigh = 63; // 32..63 is the high part of an address, or ends an integer

// What getseq reads.
constexpr int kCountedString = 3;
constexpr int kInteger = 4;
constexpr int kSkip = 5;

// Address bytes that are kept without asking for memory. An ordinary address has five; there is no
// limit, longer runs make the buffer grow, at most to the size of the file.
constexpr size_t kAddressReserve = 64;
// Bytes of addresses that are drawn before the watch gets a look at the clock: less than a
// millisecond where no line can be seen, and nothing beside it.
constexpr ptrdiff_t kMostAtOnce = ptrdiff_t{64} * 1024;
// Letters of a command and the character behind them.
constexpr ptrdiff_t kMaxLetters = 2;
// Characters of an integer that are kept. Each high one shifts by six bits, so that of a longer run
// only the last six reach the 32 bits of the result.
constexpr size_t kMaxIntegerChars = 8;
// Longest string that LT skips.
constexpr int kMaxCountedString = 80;

constexpr bool IsUpper(int c)
{
    return c >= 'A' && c <= 'Z';
}

// The characters of an integer as they arrive, NUL-terminated; of too many the last ones.
class IntegerText
{
public:
    void Append(int c)
    {
        if (length == kMaxIntegerChars)
            memmove(text, text + 1, --length);
        text[length++] = static_cast<char>(c);
        text[length] = 0;
    }
    [[nodiscard]] bool IsEmpty() const { return length == 0; }
    [[nodiscard]] const char* Text() const { return text; }

private:
    char text[kMaxIntegerChars + 1] = "";
    size_t length = 0;
};

// The "%d,%d" of a position; fields that do not match keep their values.
void ScanPosition(const char* text, int* x, int* y)
{
    long left = *x;
    long top = *y;
    ScanLongs(text, {&left, &top});
    *x = SaturateToInt(left);
    *y = SaturateToInt(top);
}

// Palette index of a hue in degrees, 0..360 in steps of 30; each row holds below its limit.
struct HueRow {
    int below;
    int color;
};
constexpr HueRow kHues[] = {{15, 1},   {45, 13},  {75, 5},  {105, 12}, {135, 4}, {165, 6},
                            {195, 14}, {225, 10}, {255, 2}, {285, 11}, {315, 3}, {345, 9}};

int ColorOfHue(int hue)
{
    for (const HueRow& row : kHues) {
        if (hue < row.below)
            return row.color;
    }
    return 1;
}

} // namespace

// One row per command: its letters, and the member that reads its parameters and acts. '*' stands
// for any other character, and the first row that fits is taken.
struct CPlfMeta::Command {
    char first;
    char second;
    void (CPlfMeta::*run)(uint32_t* map);
};

const CPlfMeta::Command CPlfMeta::kCommands[] = {
    {'G', 'T', &CPlfMeta::LineWidth},      // int: line width
    {'G', '*', &CPlfMeta::ThinLine},       // none: line width 0
    {'L', 'T', &CPlfMeta::GraphText},      // counted string, skipped
    {'L', '*', &CPlfMeta::Nothing},        //
    {'Z', 'F', &CPlfMeta::FontName},       // string up to ESC
    {'Z', 'S', &CPlfMeta::FontSize},       // int: points
    {'Z', 'C', &CPlfMeta::TextColor},      // int: palette index
    {'Z', 'A', &CPlfMeta::TextAttributes}, // int: bit 0 bold, bit 1 italic
    {'Z', 'O', &CPlfMeta::TextZo},         // int, kept only
    {'Z', 'P', &CPlfMeta::TextPosition},   // decimal "x,y"
    {'Z', 'D', &CPlfMeta::DrawText},       // string up to ESC
    {'Z', '*', &CPlfMeta::Nothing},        //
    {'M', 'L', &CPlfMeta::LineIndex},      // int: line index
    {'M', 'R', &CPlfMeta::IgnoreTwo},      // int, int
    {'M', 'C', &CPlfMeta::IgnoreThree},    // int, int, int
    {'M', '*', &CPlfMeta::IgnoreOne},      // int
    {'R', 'A', &CPlfMeta::IgnoreTwo},      // int, int: the background, found by its own scan
    {'R', '*', &CPlfMeta::Nothing},        //
    {'T', 'G', &CPlfMeta::ColorMapEntry},  // int, int, int index, three components
    {'*', '*', &CPlfMeta::SkipParameters}, // everything up to the next control character
};

// Returns 1 at the zero byte behind the data, at BEL or at byte 255.
int CPlfMeta::Plf2Screen()
{
    if (pCur == nullptr)
        return 1;
    Walk walk;
    walk.szSeq.resize(kAddressReserve);
    const int last = RunDecoder(walk);
    if (observer != nullptr)
        ReportEnd(walk, last);
    return 1;
}

// Returns the character that ended the drawing, 0 for the zero byte.
int CPlfMeta::RunDecoder(Walk& walk)
{
    const bool mayHurry = observer == nullptr; // the fast road reports nothing
    // The zero byte is looked for first, even when a character is pending.
    while (*pCur != 0) {
        if (!walk.inEscape && walk.count == 0 && chPending == 0 && mayHurry && DrawAddresses())
            continue;
        const int c = NextChar(walk);
        if (c == kBel || c == kEndByte)
            return c;
        if (c == kGs)
            fMoveNext = 1;
        if (c == kEsc && !walk.inEscape) {
            if (observer != nullptr && walk.count > 0)
                observer->DroppedAddress(OffsetOf(walk.begin));
            walk.begin = pCur - 1;
            walk.inEscape = true;
            walk.count = 0;
        } else if (walk.inEscape) {
            CollectEscape(walk, c);
        } else {
            CollectAddress(walk, c);
        }
    }
    return 0;
}

// The pending character, which drops an unfinished address, or the next byte, which draws a
// finished one: an address is decoded only when one more byte is read.
int CPlfMeta::NextChar(Walk& walk)
{
    if (chPending != 0) {
        const int c = chPending;
        chPending = 0;
        walk.count = 0;
        return c;
    }
    const int c = static_cast<signed char>(*pCur++);
    if (walk.count < 0) {
        FinishAddress(walk);
        walk.count = 0;
    }
    return c;
}

void CPlfMeta::CollectEscape(Walk& walk, int c)
{
    if (c == kEsc)
        chPending = kEsc; // closes this command and opens the next
    walk.szSeq[static_cast<size_t>(walk.count++)] = static_cast<char>(c);
    if (walk.count > kMaxLetters || !IsUpper(c))
        FinishEscape(walk, c);
}

// The third character belongs to the parameters. A second one that is no letter is dropped.
void CPlfMeta::FinishEscape(Walk& walk, int c)
{
    if (walk.count > kMaxLetters) {
        chPending = c;
        walk.szSeq[kMaxLetters] = 0;
    } else {
        walk.szSeq[1] = 0;
    }
    bTextOpen = false;
    gprosq(walk.count, walk.szSeq.data(), walk.dwClrMap);
    if (observer != nullptr)
        ReportEscape(walk);
    walk.inEscape = false;
    walk.count = 0;
}

void CPlfMeta::CollectAddress(Walk& walk, int c)
{
    if (c <= kLastControl) {
        // A control character inside an address overwrites the first two bytes of it: deliberate,
        // files that carry line ends inside addresses have always been drawn that way.
        walk.szSeq[0] = static_cast<char>(c);
        walk.szSeq[1] = 0;
        gprosq(0, walk.szSeq.data(), walk.dwClrMap);
        if (observer != nullptr)
            ReportControl(walk, c);
        return;
    }
    if (walk.count == 0)
        walk.begin = pCur - 1;
    const auto at = static_cast<size_t>(walk.count++);
    if (at + 1 == walk.szSeq.size())
        walk.szSeq.resize(2 * walk.szSeq.size());
    walk.szSeq[at] = static_cast<char>(c);
    if (c >= kFirstLowX && c <= kLastLowX) {
        walk.szSeq[at + 1] = 0;
        walk.count = -walk.count;
    }
}

// Decodes one address, up to its low-X byte. Parts that are left out keep their last values.
// Returns what follows the address, or null where a byte below lowest comes before its end.
inline const char* CPlfMeta::ReadAddress(const char* seq, int lowest, AddressParts& part)
{
    for (;; ++seq) {
        const int b = static_cast<signed char>(*seq);
        if (b > kLastLowX) {
            if (++part.nLoY == 2)
                part.extra = part.loY; // the first of two such bytes carried the extra bits
            part.loY = b & 31;
        } else if (b >= kFirstLowX) {
            part.nLoY = 0;
            part.loX = b & 31;
            return seq + 1;
        } else if (b < lowest) {
            return nullptr;
        } else if (part.nLoY != 0) {
            part.hiX = b & 31;
            part.nLoY = 0;
        } else {
            part.hiY = b & 31;
        }
    }
}

// Moves or draws to an address.
inline void CPlfMeta::GoTo(const AddressParts& part)
{
    const int x = ((part.hiX << 5) + part.loX) * 4 + (part.extra & 3);
    const int y = kPlfHeight - (((part.hiY << 5) + part.loY) * 4 + ((part.extra & 12) >> 2));
    if (fMoveNext != 0) {
        fMoveNext = 0;
    } else {
        // Compared together, the two pairs would be read as wider numbers than they were written,
        // for which the processor has to wait.
        const bool continues = ((xCur ^ xPathEnd) | (yCur ^ yPathEnd)) == 0;
        DrawVector(continues, xCur, yCur, x, y);
        xPathEnd = x;
        yPathEnd = y;
    }
    xCur = x;
    yCur = y;
}

// Decodes an address that CollectAddress completed. The control characters in an interrupted one
// are high parts.
void CPlfMeta::tekcodeq(const char* seq)
{
    ReadAddress(seq, std::numeric_limits<signed char>::min(), address);
    GoTo(address);
}

// The byte behind the address has been read.
void CPlfMeta::FinishAddress(const Walk& walk)
{
    const bool isMove = fMoveNext != 0;
    const int x = xCur;
    const int y = yCur;
    tekcodeq(walk.szSeq.data());
    if (observer != nullptr)
        ReportAddress(walk, isMove, x, y);
}

// What most of a file is made of, whole addresses and GS, straight from its bytes: saves the road
// of each through the buffer. Leaves everything else, an address interrupted by a control character
// or at the end of the data included. Stops now and then, for the watch. Returns whether there was
// any.
bool CPlfMeta::DrawAddresses()
{
    const char* at = pCur;
    const char* stop = at + std::min(pEnd - at, kMostAtOnce);
    AddressParts part = address; // a copy that nothing else can see stays in registers
    while (at < stop) {
        if (*at == kGs) {
            fMoveNext = 1;
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
    address = part;
    if (at >= stop && watch != nullptr)
        watch->Tick();
    return std::exchange(pCur, at) != at;
}

// count = characters of the sequence: 0 is a control character outside a command, 1 an escape that
// no letter followed. Returns 1 for BEL.
int CPlfMeta::gprosq(ptrdiff_t count, const char* seq, uint32_t* dwClrMap)
{
    if (count == 0)
        return seq[0] == kBel ? 1 : 0;
    if (count == 1)
        return 0;
    (this->*FindCommand(seq)->run)(dwClrMap);
    return 0;
}

bool CPlfMeta::IsKnown(const char* seq)
{
    return FindCommand(seq)->first != '*';
}

const CPlfMeta::Command* CPlfMeta::FindCommand(const char* seq)
{
    return std::find_if(std::begin(kCommands), std::end(kCommands), [seq](auto& row) {
        return (row.first == seq[0] || row.first == '*') &&
               (row.second == seq[1] || row.second == '*');
    });
}

// The next vector starts a new output path.
void CPlfMeta::ClearPenPos()
{
    xPathEnd = -1;
}

void CPlfMeta::LineWidth(uint32_t* /*map*/)
{
    SetPenWidth(TruncToInt(getseq(kInteger) * dWidthScale));
}

void CPlfMeta::ThinLine(uint32_t* /*map*/)
{
    SetPenWidth(0);
}

void CPlfMeta::GraphText(uint32_t* /*map*/)
{
    getseq(kCountedString);
}

void CPlfMeta::FontName(uint32_t* /*map*/)
{
    GetTextKorvel(szFontName);
}

void CPlfMeta::FontSize(uint32_t* /*map*/)
{
    iFontSize = getseq(kInteger);
}

void CPlfMeta::TextColor(uint32_t* /*map*/)
{
    iTextColor = MapColor(getseq(kInteger));
}

void CPlfMeta::TextAttributes(uint32_t* /*map*/)
{
    dwTextAttr = getseq(kInteger);
}

void CPlfMeta::TextZo(uint32_t* /*map*/)
{
    iTextZo = getseq(kInteger);
}

void CPlfMeta::TextPosition(uint32_t* /*map*/)
{
    GetXYKorvel(&iTextX, &iTextY);
}

void CPlfMeta::DrawText(uint32_t* /*map*/)
{
    char text[kTextSize];
    GetTextKorvel(text);
    DrawTextKorvel(text);
}

void CPlfMeta::LineIndex(uint32_t* map)
{
    const int k = getseq(kInteger);
    if (k >= 0 && k < kLineIndexCount)
        SetColor(static_cast<int>(map[k]));
}

void CPlfMeta::IgnoreOne(uint32_t* /*map*/)
{
    getseq(kInteger);
}

void CPlfMeta::IgnoreTwo(uint32_t* /*map*/)
{
    getseq(kInteger);
    getseq(kInteger);
}

void CPlfMeta::IgnoreThree(uint32_t* /*map*/)
{
    getseq(kInteger);
    getseq(kInteger);
    bCommaSeen = false;
    fCommaOk = 0;
    getseq(kInteger);
}

void CPlfMeta::ColorMapEntry(uint32_t* map)
{
    getseq(kInteger); // surface
    getseq(kInteger); // count
    const int k = getseq(kInteger);
    int hls[3] = {};
    fCommaOk = 1;
    for (int& component : hls) {
        // A comma stands for the component before it and for this one.
        if (bCommaSeen)
            bCommaSeen = false;
        else
            component = getseq(kInteger);
    }
    fCommaOk = 0;
    getclrq(k, map, hls);
}

void CPlfMeta::Nothing(uint32_t* /*map*/) {}

void CPlfMeta::SkipParameters(uint32_t* /*map*/)
{
    getseq(kSkip);
}

// Gives line index k the palette index nearest to a hue (degrees), lightness and saturation
// (0..100). An index without an entry changes nothing.
void CPlfMeta::getclrq(int k, uint32_t* map, const int* hls)
{
    if (k < 0 || k >= kLineIndexCount)
        return;
    const int lightness = hls[1];
    if (hls[2] > 9)
        map[k] = static_cast<uint32_t>(ColorOfHue(hls[0]));
    else if (lightness > 80)
        map[k] = kWhite;
    else if (lightness == 80)
        return; // the entry stays as it is: a deliberate gap
    else if (lightness >= 35)
        map[k] = 7;
    else if (lightness >= 10)
        map[k] = 8;
    else
        map[k] = 0;
}

// High characters carry six bits each, the low one four bits and the sign; a text that ends
// without a low character reads its terminating NUL as one. Wraps in 32 bits.
int CPlfMeta::decodeq(const char* s)
{
    uint32_t acc = 0;
    for (; static_cast<signed char>(*s) > kLastHigh; ++s)
        acc = (acc << 6) + static_cast<uint32_t>(*s - 64);
    const uint32_t hi = acc << 4;
    const int low = static_cast<signed char>(*s);
    return static_cast<int>(low >= 48 ? hi + static_cast<uint32_t>(low - 48)
                                      : 0 - (hi + static_cast<uint32_t>(low - 32)));
}

int CPlfMeta::getseq(int mode)
{
    switch (mode) {
    case kCountedString:
        return ReadCountedString();
    case kInteger:
        return ReadInteger();
    default:
        return SkipToControl();
    }
}

// The next character of a parameter. The pending one is taken whatever it is; a control character
// from the data becomes pending and ends the parameter (false).
bool CPlfMeta::TakeChar(int* c)
{
    if (chPending != 0) {
        *c = chPending;
        chPending = 0;
        return true;
    }
    *c = static_cast<signed char>(*pCur++);
    if (*c > kLastControl)
        return true;
    chPending = *c;
    return false;
}

int CPlfMeta::ReadInteger()
{
    IntegerText digits;
    int c = 0;
    bool taken = true;
    do {
        taken = TakeChar(&c);
        bCommaSeen = taken && c == ',' && fCommaOk != 0;
        if (bCommaSeen)
            return ReportInteger(0, PlfInteger::kComma);
        if (taken)
            digits.Append(c);
    } while (taken && c > kLastHigh);
    const PlfInteger kind = c > kLastControl ? PlfInteger::kWhole : PlfInteger::kUnfinished;
    // No character at all is 0, but a zero byte in its place reads as a low character (32).
    if (digits.IsEmpty() && c != 0)
        return ReportInteger(0, kind);
    return ReportInteger(decodeq(digits.Text()), kind);
}

int CPlfMeta::ReadCountedString()
{
    IntegerText digits;
    int c = 0;
    do {
        if (!TakeChar(&c))
            return ReportInteger(0, PlfInteger::kUnfinished);
        digits.Append(c);
    } while (c > 64); // '@' ends the count too
    const int length = decodeq(digits.Text());
    ReportInteger(length, c > kLastControl ? PlfInteger::kWhole : PlfInteger::kUnfinished);
    const char* text = pCur;
    bool isWhole = true;
    for (int n = 0; isWhole && n < std::min(length, kMaxCountedString); ++n)
        isWhole = TakeChar(&c);
    ReportString(text, isWhole ? pCur : pCur - 1, isWhole);
    return isWhole ? std::min(length, kMaxCountedString) : 0;
}

int CPlfMeta::SkipToControl()
{
    const char* text = chPending != 0 ? pCur - 1 : pCur;
    int c = 0;
    while (TakeChar(&c)) {
    }
    ReportString(text, pCur - 1, true);
    return 0;
}

// Reads up to ESC, which stays pending, or to the end of the data. A text that does not fit leaves
// buf (kTextSize bytes) empty. Returns the length.
int CPlfMeta::GetTextKorvel(char* buf)
{
    std::string text;
    if (chPending != kEsc)
        text.push_back(static_cast<char>(chPending));
    const char* end = std::find(pCur, std::max(pCur, pEnd), static_cast<char>(kEsc));
    text.append(pCur, end);
    bTextOpen = end >= pEnd;
    pCur = bTextOpen ? end : end + 1;
    chPending = kEsc;
    if (observer != nullptr)
        observer->String(text, !bTextOpen);
    if (!CopyText(buf, kTextSize, text.c_str())) {
        ++nTextsRefused;
        buf[0] = 0;
    }
    return static_cast<int>(strlen(buf));
}

// Reads a decimal position up to ESC or ';', either of which opens the next command.
void CPlfMeta::GetXYKorvel(int* x, int* y)
{
    std::string text;
    const auto isEnd = [](int c) { return c == kEsc || c == ';'; };
    if (!isEnd(chPending)) {
        text.push_back(static_cast<char>(chPending));
        const char* end = std::find_if(pCur, std::max(pCur, pEnd), isEnd);
        text.append(pCur, end);
        bTextOpen = end >= pEnd;
        pCur = bTextOpen ? end : end + 1;
    }
    chPending = kEsc;
    ScanPosition(text.c_str(), x, y);
    *y = WrapSubtract(kPlfHeight, *y);
    if (observer != nullptr)
        observer->Position(*x, WrapSubtract(kPlfHeight, *y), !bTextOpen);
}
