// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/commands.h"

#include "support/numbers.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace {

constexpr int kBel = 7;

// Matches any character.
constexpr char kAny = '*';

using Context = CommandContext;

int Integer(Context& c)
{
    return c.reader.getseq(kInteger);
}

void Nothing(Context& /*c*/) {}

template <int Count> void SkipIntegers(Context& c)
{
    for (int i = 0; i < Count; ++i)
        c.reader.getseq(kInteger);
}

void SkipThreeWithoutCommas(Context& c)
{
    SkipIntegers<2>(c);
    c.reader.HadComma();
    c.reader.TakeCommas(false);
    SkipIntegers<1>(c);
}

void DrawText(Context& c)
{
    char text[kTextSize];
    c.reader.GetTextKorvel(text);
    c.target.DrawTextKorvel(text);
}

void ChooseLineIndex(Context& c)
{
    const int k = Integer(c);
    if (k >= 0 && k < kLineIndexCount)
        c.target.SetColor(static_cast<int>(c.dwClrMap[k]));
}

void SetColorMapEntry(Context& c)
{
    SkipIntegers<2>(c); // surface, count
    const int k = Integer(c);
    int hls[3] = {};
    c.reader.TakeCommas(true);
    for (int& component : hls) {
        // A comma replaces the previous component and this one.
        if (!c.reader.HadComma())
            component = Integer(c);
    }
    c.reader.TakeCommas(false);
    getclrq(k, c.dwClrMap, hls);
}

// One row per command: its letters, and a function that reads its parameters and executes it. The
// first matching row counts.
struct Command {
    char first;
    char second;
    void (*run)(Context& c);
};

// clang-format off
constexpr Command kCommands[] = {
    // line width
    {'G', 'T',  [](Context& c) { c.target.SetPenWidth(TruncToInt(Integer(c) * c.pass.widthScale)); }},
    {'G', kAny, [](Context& c) { c.target.SetPenWidth(0); }},
    // graph text: skipped
    {'L', 'T',  [](Context& c) { c.reader.getseq(kCountedString); }},
    {'L', kAny, Nothing},
    // texts: font, size in points, color, bold and italic, a value without effect, position, text
    {'Z', 'F',  [](Context& c) { c.reader.GetTextKorvel(c.text.szFontName); }},
    {'Z', 'S',  [](Context& c) { c.text.iFontSize = Integer(c); }},
    {'Z', 'C',  [](Context& c) { c.text.iTextColor = c.pass.colors.Map(Integer(c)); }},
    {'Z', 'A',  [](Context& c) { c.text.dwTextAttr = Integer(c); }},
    {'Z', 'O',  [](Context& c) { c.text.iTextZo = Integer(c); }},
    {'Z', 'P',  [](Context& c) { c.reader.GetXYKorvel(&c.text.iTextX, &c.text.iTextY); }},
    {'Z', 'D',  DrawText},
    {'Z', kAny, Nothing},
    // line index; skipped ones
    {'M', 'L',  ChooseLineIndex},
    {'M', 'R',  SkipIntegers<2>},
    {'M', 'C',  SkipThreeWithoutCommas},
    {'M', kAny, SkipIntegers<1>},
    // the background, found by a separate scan
    {'R', 'A',  SkipIntegers<2>},
    {'R', kAny, Nothing},
    // color map
    {'T', 'G',  SetColorMapEntry},
    // everything up to the next control character
    {kAny, kAny, [](Context& c) { c.reader.getseq(kSkip); }},
};
// clang-format on

constexpr bool Fits(const Command& row, char first, char second)
{
    return (row.first == first || row.first == kAny) &&
           (row.second == second || row.second == kAny);
}

constexpr bool Fits(const Command& row, const Command& other)
{
    return Fits(row, other.first, other.second);
}

// Whether the last row matches everything.
constexpr bool IsTotal()
{
    const Command& last = *std::rbegin(kCommands);
    return last.first == kAny && last.second == kAny;
}

// Whether each row can be reached: no row before it matches everything that it matches.
constexpr bool IsInOrder()
{
    for (const Command* row = std::begin(kCommands); row != std::end(kCommands); ++row) {
        if (std::any_of(std::begin(kCommands), row,
                        [row](auto& above) { return Fits(above, *row); }))
            return false;
    }
    return true;
}

constexpr bool HasActions()
{
    return std::all_of(std::begin(kCommands), std::end(kCommands),
                       [](auto& row) { return row.run != nullptr; });
}

static_assert(IsTotal(), "every pair of characters has a row");
static_assert(IsInOrder(), "no row comes before one that is more particular");
static_assert(HasActions());

const Command& FindCommand(const char* seq)
{
    return *std::find_if(std::begin(kCommands), std::end(kCommands),
                         [seq](auto& row) { return Fits(row, seq[0], seq[1]); });
}

} // namespace

int gprosq(ptrdiff_t count, const char* seq, CommandContext& context)
{
    if (count == 0)
        return seq[0] == kBel ? 1 : 0;
    if (count > 1)
        FindCommand(seq).run(context);
    return 0;
}

bool IsKnownCommand(const char* seq)
{
    return FindCommand(seq).first != kAny;
}
