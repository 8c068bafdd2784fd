// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "fuzz/graphmutator.h"

#include "tests/kit/plf.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <limits>
#include <random>

namespace fuzz {

namespace {

using Units = std::vector<Unit>;

constexpr char kEscape = '\x1b';

// What a command reads after its letters and its integers.
enum class Tail { kNothing, kText, kPosition, kCountedText };

struct Range {
    int least;
    int most;
};

// The values that a parameter can sensibly have; others are tried too, see Dice::Number.
constexpr Range kFlag = {0, 3};
constexpr Range kIndex = {0, 15};
constexpr Range kPercent = {0, 100};
constexpr Range kDegrees = {0, 360};
constexpr Range kWidth = {0, 4100}; // up to the whole graph
constexpr Range kUnits = {0, 4095};
constexpr size_t kMostNumbers = 6;

struct Form {
    const char* letters;
    size_t count; // of the integers
    std::array<Range, kMostNumbers> ranges;
    Tail tail = Tail::kNothing;
};

// clang-format off
constexpr Form kForms[] = {
    {"GT", 1, {kWidth}},
    {"GG", 0, {}},
    {"LG", 0, {}},
    {"LT", 0, {}, Tail::kCountedText},
    {"MC", 3, {kPercent, kPercent, kPercent}},
    {"ML", 1, {kIndex}},
    {"MM", 1, {kIndex}},
    {"MR", 2, {kUnits, kUnits}},
    {"RA", 2, {kFlag, kIndex}},
    {"TG", 6, {kFlag, kFlag, kIndex, kDegrees, kPercent, kPercent}},
    {"ZA", 1, {kFlag}},
    {"ZC", 1, {kIndex}},
    {"ZD", 0, {}, Tail::kText},
    {"ZF", 0, {}, Tail::kText},
    {"ZO", 1, {kFlag}},
    {"ZP", 0, {}, Tail::kPosition},
    {"ZS", 1, {kPercent}},
};
// clang-format on

constexpr int kExtremes[] = {-1,
                             0,
                             1,
                             15,
                             16,
                             17,
                             4096,
                             32767,
                             65536,
                             std::numeric_limits<int>::max(),
                             std::numeric_limits<int>::min()};

class Dice
{
public:
    explicit Dice(unsigned seed) : engine(seed) {}

    int Between(int least, int most)
    {
        return std::uniform_int_distribution<int>(least, most)(engine);
    }
    size_t Below(size_t count)
    {
        return std::uniform_int_distribution<size_t>(0, count - 1)(engine);
    }
    bool OneIn(int count) { return Between(1, count) == 1; }
    template <typename Table> const auto& Choose(const Table& table)
    {
        return table[Below(std::size(table))];
    }
    // Mostly within the range.
    int Number(Range range)
    {
        constexpr int kSensible = 8;
        return OneIn(kSensible) ? Choose(kExtremes) : Between(range.least, range.most);
    }

private:
    std::minstd_rand engine;
};

// Bytes as the decoder reads them: those from 128 up are control characters.
bool IsControl(char c)
{
    return static_cast<signed char>(c) < ' ';
}

bool IsLetter(char c)
{
    return c >= 'A' && c <= 'Z';
}

bool IsHigh(char c)
{
    return static_cast<signed char>(c) >= '@';
}

bool IsLowX(char c)
{
    return c >= '@' && c <= '_';
}

const Form* FindForm(std::string_view command)
{
    const auto* form = std::find_if(std::begin(kForms), std::end(kForms), [command](auto& row) {
        return command.substr(1).substr(0, 2) == row.letters;
    });
    return form == std::end(kForms) ? nullptr : form;
}

constexpr size_t kLettersEnd = 3; // of a command: ESC and two letters

// The end of an integer that begins at an offset; that offset, where there is none.
size_t IntegerEnd(std::string_view bytes, size_t begin)
{
    size_t end = begin;
    while (end < bytes.size() && IsHigh(bytes[end]))
        ++end;
    return end < bytes.size() && !IsControl(bytes[end]) ? end + 1 : begin;
}

template <typename Predicate>
size_t FindFrom(std::string_view bytes, size_t begin, Predicate predicate)
{
    const auto* from = bytes.begin() + std::min(begin, bytes.size());
    return static_cast<size_t>(std::find_if(from, bytes.end(), predicate) - bytes.begin());
}

size_t CommandEnd(std::string_view bytes)
{
    if (bytes.size() < 2 || !IsLetter(bytes[1]))
        return 1;
    const Form* form = FindForm(bytes);
    if (form == nullptr || form->tail == Tail::kCountedText)
        return FindFrom(bytes, 2, IsControl);
    if (form->tail != Tail::kNothing)
        return FindFrom(bytes, kLettersEnd, [](char c) { return c == kEscape; });
    size_t end = kLettersEnd;
    for (size_t i = 0; i < form->count; ++i)
        end = IntegerEnd(bytes, end);
    return end;
}

size_t UnitEnd(std::string_view bytes)
{
    if (bytes.front() == kEscape)
        return CommandEnd(bytes);
    const size_t end = FindFrom(bytes, 0, [](char c) { return IsControl(c) || IsLowX(c); });
    // An address ends with its low X; a control character is a unit, also inside one.
    return end < bytes.size() && (IsLowX(bytes[end]) || end == 0) ? end + 1 : end;
}

std::string NewText(Dice& dice)
{
    static constexpr const char* kTexts[] = {"Ab",     "1.5 dB", "gjpq", "\xc3\xa4\xe2\x82\xac",
                                             "\xe4\n", " ",      ""};
    constexpr int kLong = 16; // one text of so many is at the limit of 1023 bytes
    constexpr int kLimit = 1023;
    if (dice.OneIn(kLong))
        return std::string(static_cast<size_t>(dice.Between(kLimit - 1, kLimit + 1)), 'M');
    return dice.Choose(kTexts);
}

std::string NewTail(Tail tail, Dice& dice)
{
    const std::string text = NewText(dice);
    switch (tail) {
    case Tail::kText:
        return text;
    case Tail::kPosition:
        return std::to_string(dice.Number(kUnits)) + ',' + std::to_string(dice.Number(kUnits)) +
               (dice.OneIn(2) ? ";ZD" + text : std::string());
    case Tail::kCountedText:
        return plf::Int(dice.Number({0, static_cast<int>(text.size())})) + text;
    default:
        return {};
    }
}

Unit NewCommand(const Form& form, Dice& dice)
{
    Unit command = plf::Command(form.letters);
    for (size_t i = 0; i < form.count; ++i)
        command += plf::Int(dice.Number(form.ranges[i]));
    return command + NewTail(form.tail, dice);
}

// Whole, without its extra byte, or without what did not change since the last one.
Unit NewAddress(Dice& dice)
{
    const Unit whole = plf::Address(dice.Between(kUnits.least, kUnits.most),
                                    dice.Between(kUnits.least, kUnits.most));
    constexpr size_t kExtra = 1;
    static constexpr size_t kCuts[] = {0, 1, 2, 4};
    if (dice.OneIn(4))
        return Unit(whole).erase(kExtra, 1);
    return whole.substr(dice.Choose(kCuts));
}

Unit NewUnit(Dice& dice)
{
    static constexpr char kControls[] = {'\x1d', '\x1d', '\x1d', '\x1b', '\x1f',
                                         '\r',   '\n',   '\x7',  '\0',   '\xff'};
    switch (dice.Between(0, 4)) {
    case 0:
        return {dice.Choose(kControls)};
    case 1:
    case 2:
        return NewAddress(dice);
    default:
        return NewCommand(dice.Choose(kForms), dice);
    }
}

// The header stays in its place.
constexpr size_t kFirstUnit = 1;

size_t AnyUnit(const Units& units, Dice& dice)
{
    return kFirstUnit + dice.Below(units.size() - kFirstUnit);
}

auto At(Units& units, size_t index)
{
    return units.begin() + static_cast<std::ptrdiff_t>(index);
}

void Insert(Units& units, Dice& dice)
{
    constexpr int kMost = 4;
    const size_t place = kFirstUnit + dice.Below(units.size());
    for (int i = dice.Between(1, kMost); i > 0; --i)
        units.insert(At(units, place), NewUnit(dice));
}

// Where a run of units begins and where it ends.
struct Run {
    size_t begin;
    size_t end;
};

Run AnyRun(const Units& units, Dice& dice)
{
    constexpr size_t kMost = 8;
    const size_t begin = AnyUnit(units, dice);
    return {begin, std::min(begin + 1 + dice.Below(kMost), units.size())};
}

void Delete(Units& units, Dice& dice)
{
    const Run run = AnyRun(units, dice);
    units.erase(At(units, run.begin), At(units, run.end));
}

// Next to itself, which makes what takes many of a kind, or elsewhere.
void Duplicate(Units& units, Dice& dice)
{
    constexpr int kMost = 16;
    const Run run = AnyRun(units, dice);
    const Units copy(At(units, run.begin), At(units, run.end));
    const size_t place = dice.OneIn(2) ? run.end : AnyUnit(units, dice);
    for (int i = dice.OneIn(2) ? 1 : dice.Between(1, kMost); i > 0; --i)
        units.insert(At(units, place), copy.begin(), copy.end());
}

void Swap(Units& units, Dice& dice)
{
    std::swap(units[AnyUnit(units, dice)], units[AnyUnit(units, dice)]);
}

// One of the integers of a command, which may be damaged and then has fewer.
void ChangeInteger(Unit& command, const Form& form, Dice& dice)
{
    const size_t chosen = dice.Below(form.count);
    size_t begin = kLettersEnd;
    for (size_t i = 0; i < chosen; ++i)
        begin = IntegerEnd(command, begin);
    const size_t end = IntegerEnd(command, begin);
    command.replace(begin, end - begin, plf::Int(dice.Number(form.ranges[chosen])));
}

// The bits of one byte that belong to the position; the others say which part it is.
void ChangeAddress(Unit& address, Dice& dice)
{
    constexpr int kValueBits = 31;
    char& part = address[dice.Below(address.size())];
    part = static_cast<char>((part & ~kValueBits) | dice.Between(0, kValueBits));
}

void ChangeNumber(Units& units, Dice& dice)
{
    Unit& unit = units[AnyUnit(units, dice)];
    if (!IsControl(unit.front())) {
        ChangeAddress(unit, dice);
        return;
    }
    const Form* form = unit.front() == kEscape ? FindForm(unit) : nullptr;
    if (form == nullptr)
        unit = NewUnit(dice);
    else if (form->count > 0)
        ChangeInteger(unit, *form, dice);
    else
        unit = NewCommand(*form, dice);
}

// What selects the options of a target.
void ChangeLastByte(Units& units, Dice& dice)
{
    constexpr int kMostByte = 255;
    units.push_back({'\a', static_cast<char>(dice.Between(0, kMostByte))});
}

constexpr void (*kMutations[])(Units& units, Dice& dice) = {
    Insert, Insert, Delete, Duplicate, Swap, ChangeNumber, ChangeNumber, ChangeLastByte};

std::string Join(const Units& units, size_t maxSize)
{
    std::string bytes;
    for (const Unit& unit : units) {
        if (bytes.size() + unit.size() > maxSize)
            break;
        bytes += unit;
    }
    return bytes;
}

} // namespace

std::vector<Unit> SplitGraph(std::string_view graph)
{
    Units units;
    const std::string header = plf::Header();
    size_t begin = 0;
    if (graph.substr(0, header.size()) == header) {
        units.push_back(header);
        begin = header.size();
    }
    while (begin < graph.size()) {
        const std::string_view rest = graph.substr(begin);
        units.emplace_back(rest.substr(0, UnitEnd(rest)));
        begin += units.back().size();
    }
    return units;
}

std::string MutateGraph(std::string_view graph, unsigned seed, size_t maxSize)
{
    Dice dice(seed);
    Units units = SplitGraph(graph);
    if (units.empty() || units.front() != plf::Header())
        units.insert(units.begin(), plf::Header());
    constexpr int kMost = 3;
    for (int i = dice.Between(1, kMost); i > 0; --i) {
        const auto mutation = units.size() > kFirstUnit ? dice.Choose(kMutations) : Insert;
        mutation(units, dice);
    }
    return Join(units, maxSize);
}

} // namespace fuzz
