// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Bytes are read as signed characters throughout, so that 128..255 count as control characters.
#include "meta/reader.h"

#include "meta/integercode.h"
#include "meta/plfarea.h"
#include "support/numbers.h"
#include "support/scan.h"
#include "support/text.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

namespace {

// Maximum length of a counted string.
constexpr int kMaxCountedString = 80;

// The "%d,%d" of a position; fields that do not match keep their values.
void ScanPosition(const char* text, int* x, int* y)
{
    long left = *x;
    long top = *y;
    ScanLongs(text, {&left, &top});
    *x = SaturateToInt(left);
    *y = SaturateToInt(top);
}

} // namespace

int ParameterReader::Report(int value, PlfInteger kind)
{
    observer.Integer(value, kind);
    return value;
}

void ParameterReader::Report(const char* begin, const char* end, bool isWhole)
{
    const size_t at = bytes.OffsetOf(begin);
    observer.String({bytes.data + at, std::max(at, bytes.OffsetOf(end)) - at}, isWhole);
}

int ParameterReader::getseq(int mode)
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

bool ParameterReader::HadComma()
{
    return std::exchange(input.bCommaSeen, false);
}

// Reads the next character of a parameter. A pending character is taken whatever it is; a control
// character from the data becomes pending and ends the parameter (false).
bool ParameterReader::TakeChar(int* c)
{
    if (input.chPending != 0) {
        *c = std::exchange(input.chPending, 0);
        return true;
    }
    *c = static_cast<signed char>(*input.pCur++);
    if (*c > kLastControl)
        return true;
    input.chPending = *c;
    return false;
}

int ParameterReader::ReadInteger()
{
    IntegerText digits;
    int c = 0;
    bool taken = true;
    do {
        taken = TakeChar(&c);
        input.bCommaSeen = taken && c == ',' && input.fCommaOk != 0;
        if (input.bCommaSeen)
            return Report(0, PlfInteger::kComma);
        if (taken)
            digits.Append(c);
    } while (taken && c > kLastHigh);
    const PlfInteger kind = c > kLastControl ? PlfInteger::kWhole : PlfInteger::kUnfinished;
    // A missing integer is 0, but a zero byte in its place is read as a low character (32).
    if (digits.IsEmpty() && c != 0)
        return Report(0, kind);
    return Report(digits.Value(), kind);
}

int ParameterReader::ReadCountedString()
{
    IntegerText digits;
    int c = 0;
    do {
        if (!TakeChar(&c))
            return Report(0, PlfInteger::kUnfinished);
        digits.Append(c);
    } while (c > 64); // '@' ends the count too
    const int length = digits.Value();
    Report(length, c > kLastControl ? PlfInteger::kWhole : PlfInteger::kUnfinished);
    const char* text = input.pCur;
    bool isWhole = true;
    for (int n = 0; isWhole && n < std::min(length, kMaxCountedString); ++n)
        isWhole = TakeChar(&c);
    Report(text, isWhole ? input.pCur : input.pCur - 1, isWhole);
    return isWhole ? std::min(length, kMaxCountedString) : 0;
}

int ParameterReader::SkipToControl()
{
    const char* text = input.chPending != 0 ? input.pCur - 1 : input.pCur;
    int c = 0;
    while (TakeChar(&c)) {
    }
    Report(text, input.pCur - 1, true);
    return 0;
}

int ParameterReader::GetTextKorvel(char* buf)
{
    std::string text;
    if (input.chPending != kEsc)
        text.push_back(static_cast<char>(input.chPending));
    const char* end =
        std::find(input.pCur, std::max(input.pCur, input.pEnd), static_cast<char>(kEsc));
    text.append(input.pCur, end);
    input.bTextOpen = end >= input.pEnd;
    input.pCur = input.bTextOpen ? end : end + 1;
    input.chPending = kEsc;
    observer.String(text, !input.bTextOpen);
    if (!CopyText(buf, kTextSize, text.c_str())) {
        ++input.nTextsRefused;
        buf[0] = 0;
    }
    return static_cast<int>(strlen(buf));
}

void ParameterReader::GetXYKorvel(int* x, int* y)
{
    std::string text;
    const auto isEnd = [](int c) { return c == kEsc || c == ';'; };
    if (!isEnd(input.chPending)) {
        text.push_back(static_cast<char>(input.chPending));
        const char* end = std::find_if(input.pCur, std::max(input.pCur, input.pEnd), isEnd);
        text.append(input.pCur, end);
        input.bTextOpen = end >= input.pEnd;
        input.pCur = input.bTextOpen ? end : end + 1;
    }
    input.chPending = kEsc;
    ScanPosition(text.c_str(), x, y);
    *y = WrapSubtract(kPlfHeight, *y);
    observer.Position(*x, WrapSubtract(kPlfHeight, *y), !input.bTextOpen);
}
