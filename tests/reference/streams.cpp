// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors

#include "streams.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>

// Every draw from the random source is a statement of its own: the order in which operands and
// arguments are evaluated is the compiler's choice, and the streams must not depend on it.

namespace streams {

namespace {

constexpr std::size_t kHeaderSize = 16;
constexpr std::size_t kLargest = 6144;
constexpr std::size_t kBackgroundFrom = 100;
constexpr char kEsc = 27;
constexpr char kGs = 29;

const std::string& Header()
{
    static const std::string header = "\033TG140000\033TG1410";
    return header;
}

class Random
{
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    std::uint64_t Bits()
    {
        state_ += 0x9E3779B97F4A7C15U;
        std::uint64_t mixed = state_;
        mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9U;
        mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBU;
        return mixed ^ (mixed >> 31U);
    }

    // lowest and highest are both possible.
    int Between(int lowest, int highest)
    {
        const auto span = static_cast<std::uint64_t>(std::int64_t{highest} - lowest + 1);
        return static_cast<int>(lowest + static_cast<std::int64_t>(Bits() % span));
    }

    bool OneIn(int chances) { return Between(1, chances) == 1; }

    char Character(int lowest, int highest) { return static_cast<char>(Between(lowest, highest)); }

    template <typename T, std::size_t N> const T& Pick(const std::array<T, N>& values)
    {
        return values[static_cast<std::size_t>(Between(0, static_cast<int>(N) - 1))];
    }

private:
    std::uint64_t state_;
};

// ------------------------------------------------------------------------------------------------
// Pieces that are well formed.

// Four bits and the sign in the last character, six bits in each one before it.
std::string Integer(std::int64_t value)
{
    const bool negative = value < 0;
    std::uint64_t size =
        negative ? 0U - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
    std::string text(1, static_cast<char>((negative ? 32U : 48U) + (size & 15U)));
    for (size >>= 4U; size != 0; size >>= 6U) {
        text.insert(text.begin(), static_cast<char>(64U + (size & 63U)));
    }
    return text;
}

std::string Command(const char* letters)
{
    return std::string(1, kEsc) + letters;
}

std::string Command(const char* letters, std::int64_t value)
{
    return Command(letters) + Integer(value);
}

// ASCII mostly, sometimes Latin-1 letters, sometimes the controls that a text may hold.
std::string Text(Random& random, int length)
{
    const bool latin = random.OneIn(4);
    const bool controls = random.OneIn(6);
    std::string text;
    for (int i = 0; i < length; ++i) {
        if (latin && random.OneIn(5)) {
            text += random.Character(0xC0, 0xFF);
        } else if (controls && random.OneIn(8)) {
            text += random.Pick(std::array<char, 4>{'\r', '\n', '\a', '\t'});
        } else {
            text += random.Character(' ', '~');
        }
    }
    if (random.OneIn(5)) {
        text += '\n';
    }
    return text;
}

// A letter of two bytes in UTF-8, so that a text can be all UTF-8 without being ASCII.
std::string Utf8Letter(Random& random)
{
    std::string text = "\xC3";
    text += random.Character(0x80, 0xBF);
    return text;
}

std::string Utf8Text(Random& random)
{
    std::string text;
    const int length = random.Between(1, 20);
    for (int i = 0; i < length; ++i) {
        if (random.OneIn(3)) {
            text += Utf8Letter(random);
        } else {
            text += random.Character(' ', '~');
        }
    }
    return text;
}

std::string ColorMapEntry(Random& random, int index)
{
    // The edges between the colors, and the lightness that changes nothing.
    static const std::array<int, 28> hues = {0,   14,  15,  44,  45,  74,  75,  104, 105, 134,
                                             135, 164, 165, 194, 195, 224, 225, 254, 255, 284,
                                             285, 314, 315, 344, 345, 360, 359, 120};
    static const std::array<int, 10> lights = {0, 9, 10, 34, 35, 79, 80, 81, 100, 50};
    static const std::array<int, 6> saturations = {0, 5, 9, 10, 50, 100};
    int hue = random.Pick(hues);
    int light = random.Pick(lights);
    const int saturation = random.Pick(saturations);
    if (random.OneIn(3)) {
        hue = random.Between(0, 360);
        light = random.Between(0, 100);
    }
    return Command("TG", 1) + Integer(4) + Integer(index) + Integer(hue) + Integer(light) +
           Integer(saturation);
}

// Addresses in the short form: what did not change since the last one is left out.
class AddressWriter
{
public:
    std::string Full(int x, int y)
    {
        known_ = false;
        return Next(x, y);
    }

    std::string Next(int x, int y)
    {
        const int highY = y >> 7;
        const int lowY = (y >> 2) & 31;
        const int highX = x >> 7;
        const int extra = ((y & 3) << 2) + (x & 3);
        const bool sendsExtra = !known_ || extra != extra_;
        const bool sendsHighX = !known_ || highX != highX_;
        const bool sendsLowY = !known_ || lowY != lowY_ || sendsExtra || sendsHighX;
        std::string bytes;
        if (!known_ || highY != highY_) {
            bytes += static_cast<char>(32 + highY);
        }
        if (sendsExtra) {
            bytes += static_cast<char>(96 + extra);
        }
        if (sendsLowY) {
            bytes += static_cast<char>(96 + lowY);
        }
        if (sendsHighX) {
            bytes += static_cast<char>(32 + highX);
        }
        bytes += static_cast<char>(64 + ((x >> 2) & 31));
        highY_ = highY;
        lowY_ = lowY;
        highX_ = highX;
        extra_ = extra;
        known_ = true;
        return bytes;
    }

private:
    bool known_ = false;
    int highY_ = 0;
    int lowY_ = 0;
    int highX_ = 0;
    int extra_ = 0;
};

std::string Polyline(Random& random, AddressWriter& writer)
{
    int x = random.Between(0, 4095);
    int y = random.Between(0, 4095);
    std::string out(1, kGs);
    out += random.OneIn(2) ? writer.Full(x, y) : writer.Next(x, y);
    const int points = random.Between(1, 12);
    const int reach = random.Pick(std::array<int, 4>{2, 40, 400, 4095});
    for (int i = 0; i < points; ++i) {
        x = std::clamp(x + random.Between(-reach, reach), 0, 4095);
        y = std::clamp(y + random.Between(-reach, reach), 0, 4095);
        out += writer.Next(x, y);
    }
    return out;
}

std::string ColoredPolyline(Random& random, AddressWriter& writer)
{
    std::string out = Command("ML", random.Between(0, 15));
    out += Polyline(random, writer);
    return out;
}

std::string Position(Random& random)
{
    std::string out = Command("ZP");
    out += std::to_string(random.Between(-200, 4300));
    out += ',';
    out += std::to_string(random.Between(-200, 4300));
    return out;
}

std::string Label(Random& random)
{
    std::string out;
    if (random.OneIn(2)) {
        out += Command("ZF") + "Helvetica";
    }
    out += Command("ZS", random.Between(4, 40));
    if (random.OneIn(2)) {
        out += Command("ZC", random.Between(0, 17));
        out += Command("ZA", random.Between(0, 3));
        out += Command("ZO", random.Between(-9, 9));
    }
    out += Position(random);
    out += random.OneIn(2) ? std::string(";ZD") : Command("ZD");
    out += random.OneIn(8) ? Utf8Text(random) : Text(random, random.Between(0, 40));
    // An escape has to close the text; the line index after it makes the escape one of its own.
    out += Command("ML", random.Between(0, 15));
    return out;
}

std::string BackgroundMark(Random& random)
{
    std::string out = Command("RA") + "1";
    out += random.OneIn(8)
               ? random.Character(32, 126)
               : random.Pick(std::array<char, 16>{' ', '4', '3', '5', '2', '6', '8', '?', '>', ';',
                                                  '9', ':', '=', '<', '7', '1'});
    return out;
}

std::string CountedString(Random& random)
{
    const int length = random.Between(0, 90);
    std::string out = Command("LT", length);
    for (int i = 0; i < length; ++i) {
        out += random.Character(' ', '~');
    }
    return out;
}

// Commands that are read and change nothing.
std::string IdleCommand(Random& random)
{
    switch (random.Between(0, 7)) {
    case 0:
        return Command("MR", 10) + Integer(random.Between(-500, 500));
    case 1:
        return Command("MC", 40) + Integer(60) + Integer(random.Between(-20, 20));
    case 2:
        return Command("KA", 1) + '\r';
    case 3:
        return Command("SX", 1) + Integer(200) + '\n';
    case 4:
        return Command("\f");
    case 5:
        return CountedString(random);
    case 6:
        return Command("MT", random.Between(0, 9));
    default:
        return Command("TF", 5) + '\n';
    }
}

std::string PlausiblePiece(Random& random, AddressWriter& writer)
{
    switch (random.Between(0, 11)) {
    case 0:
        return ColorMapEntry(random, random.Between(0, 15));
    case 1:
        return Command("GT", random.Between(0, 30));
    case 2:
    case 3:
        return Label(random);
    case 4:
        return IdleCommand(random);
    case 5:
        return Command("GA");
    case 6:
    case 7:
        return ColoredPolyline(random, writer);
    default:
        return Polyline(random, writer);
    }
}

// The rest of the entry that the header began, then the whole map or the end of it.
std::string ColorMap(Random& random)
{
    std::string out = Integer(random.Between(0, 100));
    out += Integer(random.Between(0, 100));
    for (int index = random.Pick(std::array<int, 4>{2, 2, 8, 13}); index < 16; ++index) {
        out += ColorMapEntry(random, index);
    }
    return out;
}

// Small streams are as likely as large ones: many faults show only when little follows them.
std::size_t Size(Random& random)
{
    const int largest = random.Pick(std::array<int, 4>{64, 400, 2000, 6000});
    return static_cast<std::size_t>(random.Between(0, largest)) + kHeaderSize;
}

// Two marks count only when they are far enough inside the file; now and then they are not.
void AppendBackground(Random& random, std::string& out)
{
    const std::size_t from = random.OneIn(4) ? kHeaderSize : kBackgroundFrom;
    while (out.size() < from) {
        out += ColorMapEntry(random, random.Between(0, 15));
    }
    const int marks = random.Pick(std::array<int, 5>{1, 2, 2, 2, 3});
    for (int i = 0; i < marks; ++i) {
        out += BackgroundMark(random);
        if (random.OneIn(3)) {
            out += Command("ML", random.Between(0, 15));
        }
    }
}

std::string Plausible(Random& random)
{
    const std::size_t size = Size(random);
    AddressWriter writer;
    std::string out = Header() + ColorMap(random);
    if (!random.OneIn(4)) {
        AppendBackground(random, out);
    }
    out += ColoredPolyline(random, writer);
    while (out.size() < size) {
        out += PlausiblePiece(random, writer);
    }
    if (random.OneIn(3)) {
        out += random.Pick(std::array<char, 3>{'\a', '\xFF', '\r'});
    }
    return out;
}

// ------------------------------------------------------------------------------------------------
// Pieces that are not.

std::int64_t OddValue(Random& random)
{
    static const std::array<std::int64_t, 18> values = {
        0,     -1,    -2,    -3,    1,      15,     16,         80,          2147483647,
        32767, 32768, 65535, 65536, -65536, 131071, 2147483648, -2147483648, 68719476735};
    return random.OneIn(3) ? random.Between(-40, 40) : random.Pick(values);
}

// The parameter may be cut short by a control, or by nothing at all.
std::string OddInteger(Random& random)
{
    switch (random.Between(0, 9)) {
    case 0: {
        std::string highOnly;
        const int length = random.Between(1, 8);
        for (int i = 0; i < length; ++i) {
            highOnly += random.Character(64, 127);
        }
        return highOnly + random.Pick(std::array<char, 4>{'\r', '\n', kEsc, kGs});
    }
    case 1:
        return std::string(1, random.Character(1, 6));
    case 2:
        return std::string(1, random.Character(128, 254));
    case 3:
        return std::string(1, ',');
    case 4:
        return random.OneIn(3) ? std::string(1, '\0') : std::string("A\0", 2);
    case 5:
        return "";
    case 6:
        return "@@" + Integer(random.Between(0, 20));
    default:
        return Integer(OddValue(random));
    }
}

std::string Integers(Random& random, int count)
{
    std::string out;
    for (int i = 0; i < count; ++i) {
        out += random.OneIn(3) ? OddInteger(random) : Integer(random.Between(-2, 17));
    }
    return out;
}

std::string RandomLetters(Random& random, int count)
{
    std::string out(1, kEsc);
    for (int i = 0; i < count; ++i) {
        out += random.Character('A', 'Z');
    }
    return out;
}

std::string OddCommand(Random& random)
{
    static const std::array<const char*, 18> letters = {"GT", "GX", "LT", "LX", "ZS", "ZC",
                                                        "ZA", "ZO", "ZX", "ML", "MR", "MC",
                                                        "MX", "RA", "RX", "TX", "TG", "KA"};
    std::string out = Command(random.Pick(letters));
    const int integers = random.Between(0, 4);
    return out + Integers(random, integers);
}

std::string OddWidth(Random& random)
{
    std::string out = Command("GT");
    out += random.OneIn(3) ? OddInteger(random) : Integer(OddValue(random));
    return out;
}

std::string CommasInMap(Random& random)
{
    std::string out = Command("TG", 1) + Integer(4) + Integer(random.Between(-1, 17));
    for (int i = 0; i < 3; ++i) {
        if (random.OneIn(4)) {
            out += random.Character(64, 90);
        }
        if (random.OneIn(2)) {
            out += ',';
        } else {
            out += Integer(random.Between(0, 360));
        }
    }
    return out;
}

std::string OddLineIndex(Random& random)
{
    return Command("ML", random.OneIn(4) ? OddValue(random) : random.Between(-2, 18));
}

std::string EscapePair(Random& random)
{
    switch (random.Between(0, 7)) {
    case 0:
        return std::string(2, kEsc) + "ML" + Integer(random.Between(0, 15));
    case 1:
        return RandomLetters(random, 1) + std::string(1, kEsc);
    case 2:
        return RandomLetters(random, 2) + std::string(1, kEsc);
    case 3:
        return std::string(static_cast<std::size_t>(random.Between(2, 6)), kEsc);
    case 4:
        return Command("M") + kEsc + "GT9";
    case 5:
        return Command("ZD") + kEsc + "open" + kEsc;
    case 6:
        return Command("GT") + kEsc;
    default:
        return Command("ML") + kEsc + "5";
    }
}

std::string OddLetters(Random& random)
{
    std::string out = RandomLetters(random, random.Between(0, 3));
    out += random.Character(1, 126);
    return out;
}

char AnyControl(Random& random)
{
    // Those which end a pass are rare, or few streams would get any further.
    if (random.OneIn(40)) {
        return random.Pick(std::array<char, 3>{'\a', '\xFF', '\0'});
    }
    if (random.OneIn(4)) {
        return random.Character(128, 254);
    }
    return random.Pick(std::array<char, 6>{'\r', '\n', '\f', kGs, '\x1F', '\x01'});
}

std::string BrokenAddresses(Random& random)
{
    AddressWriter writer;
    std::string out;
    const int addresses = random.Between(1, 6);
    for (int i = 0; i < addresses; ++i) {
        const int x = random.Between(0, 4095);
        const int y = random.Between(0, 4095);
        std::string bytes = random.OneIn(2) ? writer.Full(x, y) : writer.Next(x, y);
        if (random.OneIn(2)) {
            const int at = random.Between(0, static_cast<int>(bytes.size()));
            bytes.insert(static_cast<std::size_t>(at), 1, AnyControl(random));
        }
        if (random.OneIn(5)) {
            bytes.pop_back();
        }
        out += bytes;
    }
    return out;
}

std::string AddressRun(Random& random)
{
    std::string out;
    const int length = random.Pick(std::array<int, 5>{3, 12, 70, 300, 3000});
    for (int i = 0; i < length; ++i) {
        out += random.OneIn(2) ? random.Character(32, 63) : random.Character(96, 127);
    }
    if (random.OneIn(2)) {
        out += AnyControl(random);
    }
    out += random.Character(64, 95);
    return out;
}

std::string OddPosition(Random& random)
{
    using namespace std::string_literals;
    static const std::array<std::string, 22> texts = {"12,34"s,
                                                      " 12 , 34"s,
                                                      " \t-5,\n+7"s,
                                                      "5"s,
                                                      "6,"s,
                                                      ",7"s,
                                                      ""s,
                                                      "x,y"s,
                                                      "1,x"s,
                                                      "8,9,10"s,
                                                      "0x10,3"s,
                                                      "3.5,4"s,
                                                      "- 3,4"s,
                                                      "--3,4"s,
                                                      "11\0,2"s,
                                                      "2147483647,1"s,
                                                      "2147483648,-2147483648"s,
                                                      "-2147483649,2147483647"s,
                                                      "99999999999999999999,-99999999999999999999"s,
                                                      "18446744073709551617,4294967297"s,
                                                      "\x80"
                                                      "12,3"s,
                                                      "0,3120"s};
    std::string out = Command("ZP") + random.Pick(texts);
    out += random.OneIn(2) ? std::string(";") : std::string(1, kEsc);
    if (random.OneIn(2)) {
        out += "ZD" + Text(random, random.Between(1, 8)) + std::string(1, kEsc);
    }
    return out;
}

std::string OddText(Random& random)
{
    std::string out = Command(random.OneIn(5) ? "ZF" : "ZD");
    out += Text(random, random.Between(0, 12));
    switch (random.Between(0, 6)) {
    case 0:
        out += '\0';
        out += Text(random, random.Between(0, 12));
        break;
    case 1:
        out += "\n\n";
        break;
    case 2:
        out += random.Character(128, 159);
        break;
    case 3:
        out += "\a\r\n";
        break;
    case 4:
        out += Utf8Letter(random);
        break;
    default:
        break;
    }
    // Not closed now and then: the text then swallows what comes next.
    if (!random.OneIn(6)) {
        out += kEsc;
    }
    return out;
}

// Around the length from which texts are not drawn.
std::string LongText(Random& random)
{
    std::string out = Command(random.OneIn(4) ? "ZF" : "ZD");
    const int length = random.Between(reference::kLongestText - 4, reference::kLongestText + 4);
    for (int i = 0; i < length; ++i) {
        out += random.Character('a', 'z');
    }
    if (random.OneIn(3)) {
        out.back() = '\n';
    }
    if (random.OneIn(5)) {
        out[static_cast<std::size_t>(random.Between(4, 1000))] = '\0';
    }
    return out + kEsc;
}

std::string OddCountedString(Random& random)
{
    static const std::array<int, 12> counts = {0, -1, 1, 2, 5, 79, 80, 81, 200, 1024, -70, 1 << 20};
    std::string out = Command("LT");
    switch (random.Between(0, 4)) {
    case 0:
        out += random.OneIn(2) ? "@" : "A@";
        break;
    case 1:
        out += random.Character(1, 31);
        break;
    case 2:
        out += random.Character(65, 70);
        out += AnyControl(random);
        break;
    default:
        out += Integer(random.Pick(counts));
        break;
    }
    const int length = random.Pick(std::array<int, 6>{0, 1, 5, 79, 81, 120});
    for (int i = 0; i < length; ++i) {
        out += random.Character(' ', '~');
    }
    if (random.OneIn(3)) {
        out += AnyControl(random);
    }
    return out;
}

std::string AnyBytes(Random& random)
{
    std::string out;
    const int length = random.Between(1, 12);
    for (int i = 0; i < length; ++i) {
        out += random.OneIn(8) ? AnyControl(random) : random.Character(32, 127);
    }
    return out;
}

std::string HostilePiece(Random& random, AddressWriter& writer)
{
    switch (random.Between(0, 18)) {
    case 0:
        return OddCommand(random);
    case 1:
        return OddWidth(random);
    case 2:
        return CommasInMap(random);
    case 3:
        return OddLineIndex(random);
    case 4:
        return EscapePair(random);
    case 5:
        return OddLetters(random);
    case 6:
    case 7:
        return BrokenAddresses(random);
    case 8:
        return AddressRun(random);
    case 9:
        return OddPosition(random);
    case 10:
        return OddText(random);
    case 11:
        return random.OneIn(4) ? LongText(random) : OddText(random);
    case 12:
        return OddCountedString(random);
    case 13:
        return AnyBytes(random);
    case 14:
        return std::string(1, AnyControl(random));
    case 15:
        return random.OneIn(2) ? BackgroundMark(random) : std::string("RA1");
    default:
        // So that lines in some color and width show what the rest has done.
        return PlausiblePiece(random, writer);
    }
}

std::string Hostile(Random& random)
{
    const std::size_t size = Size(random);
    AddressWriter writer;
    std::string out = Header();
    if (!random.OneIn(3)) {
        out += ColorMap(random);
    }
    while (out.size() < size) {
        out += HostilePiece(random, writer);
    }
    // Most often the last piece is cut somewhere.
    if (!random.OneIn(3)) {
        out.resize(std::max(size, kHeaderSize));
    }
    return out;
}

// ------------------------------------------------------------------------------------------------
// Random bytes. All of the 256 end a pass soon, so other alphabets go deeper.

char RandomByte(Random& random, int alphabet)
{
    static const std::array<char, 24> busy = {kEsc, kEsc, kEsc, kEsc, kGs, 'G', 'T', 'M',
                                              'L',  'Z',  'P',  'D',  'R', 'A', 'C', ';',
                                              ',',  '0',  '5',  'A',  'a', ' ', '!', '\r'};
    switch (alphabet) {
    case 0:
        return random.Character(0, 255);
    case 1:
        return random.Character(32, 127);
    case 2:
        return random.OneIn(10) ? kEsc : random.Character(32, 127);
    case 3: {
        const char byte = random.Character(1, 254);
        return byte == '\a' ? kGs : byte;
    }
    default:
        return random.OneIn(4) ? random.Character(32, 127) : random.Pick(busy);
    }
}

std::string RandomBytes(Random& random)
{
    const std::size_t size = Size(random);
    const int alphabet = random.Between(0, 5);
    std::string out = Header();
    while (out.size() < size) {
        out += RandomByte(random, alphabet);
    }
    return out;
}

// ------------------------------------------------------------------------------------------------
// Damaged graphs.

void Flip(Random& random, std::string& bytes, std::size_t at)
{
    const int bit = random.Between(0, 7);
    bytes[at] = static_cast<char>(static_cast<unsigned char>(bytes[at]) ^ (1U << bit));
}

void Mutate(Random& random, std::string& bytes)
{
    if (bytes.size() <= kHeaderSize) {
        return;
    }
    const auto at = static_cast<std::size_t>(
        random.Between(static_cast<int>(kHeaderSize), static_cast<int>(bytes.size()) - 1));
    switch (random.Between(0, 20)) {
    case 0:
        bytes.resize(at);
        break;
    case 1:
        bytes[at] = random.Character(0, 255);
        break;
    case 2:
    case 3:
    case 4:
    case 5:
        bytes.insert(at, 1, random.OneIn(2) ? AnyControl(random) : random.Character(32, 127));
        break;
    case 6:
    case 7:
    case 8:
    case 9:
        bytes.erase(at, static_cast<std::size_t>(random.Between(1, 3)));
        break;
    case 10:
        bytes.insert(at, 1, kEsc);
        break;
    case 11:
    case 12:
        bytes[at] = random.Character(32, 127);
        break;
    default:
        Flip(random, bytes, at);
        break;
    }
}

std::string Damaged(Random& random)
{
    std::string out = Plausible(random);
    const int mutations = random.Pick(std::array<int, 5>{1, 2, 5, 20, 60});
    for (int i = 0; i < mutations; ++i) {
        Mutate(random, out);
    }
    return out;
}

// ------------------------------------------------------------------------------------------------
// Views.

void SetZoom(Random& random, reference::View& view)
{
    const int left = random.Between(0, 4000);
    const int top = random.Between(0, 3100);
    int width = random.Between(2, 2000);
    int height = random.Between(2, 1500);
    int shift = 0;
    switch (random.Between(0, 7)) {
    case 0:
        width = 1;
        break;
    case 1:
        width = -width;
        break;
    case 2:
        height = 0;
        break;
    case 3:
        height = -height;
        break;
    case 4:
        shift = random.OneIn(2) ? 100000 : -100000;
        break;
    case 5:
        width *= 10000;
        height *= 10000;
        break;
    default:
        break;
    }
    view.zoomLeft = left + shift;
    view.zoomTop = top + shift;
    view.zoomRight = view.zoomLeft + width;
    view.zoomBottom = view.zoomTop + height;
}

double WidthScale(Random& random)
{
    static const std::array<double, 10> usual = {1.0,  0.37, 12.8, 1.6,   0.0,
                                                 -1.0, -0.5, 2.0,  1e-12, 1e9};
    if (!random.OneIn(8)) {
        return random.OneIn(2) ? 1.0 : random.Pick(usual);
    }
    constexpr double infinite = std::numeric_limits<double>::infinity();
    constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();
    return random.Pick(std::array<double, 3>{infinite, -infinite, noNumber});
}

void SetPage(Random& random, reference::View& view)
{
    static const std::array<int, 6> resolutions = {600, 300, 72, 1200, 96, 203};
    static const std::array<double, 7> factors = {1.0, 1.0, 0.5, 2.0, 0.37, 0.0, -1.0};
    static const std::array<int, 9> widths = {2, 2, 2, 0, 1, 3, 10, 16383, 16384};
    view.printing = true;
    view.dpiX = random.Pick(resolutions);
    view.dpiY = random.OneIn(3) ? random.Pick(resolutions) : view.dpiX;
    view.minPrintWidth = random.Pick(widths);
    if (random.OneIn(2)) {
        view.pageX = random.Between(-2000, 2000);
        view.pageY = random.Between(-2000, 2000);
        view.pageSizeX = random.Pick(factors);
        view.pageSizeY = random.Pick(factors);
    }
}

} // namespace

std::string Make(unsigned seed)
{
    Random random(seed);
    std::string out;
    switch (seed % 8U) {
    case 0:
    case 1:
        out = Plausible(random);
        break;
    case 2:
    case 3:
    case 4:
        out = Hostile(random);
        break;
    case 5:
        out = RandomBytes(random);
        break;
    default:
        out = Damaged(random);
        break;
    }
    out.resize(std::min(out.size(), kLargest));
    return out;
}

reference::View MakeView(unsigned seed)
{
    // Another sequence than that of the stream with the same seed.
    constexpr std::uint64_t apart = std::uint64_t{1} << 40U;
    Random random(apart + seed);
    reference::View view;
    view.whiteBackground = random.OneIn(3);
    view.widthScale = WidthScale(random);
    if (random.OneIn(3)) {
        SetZoom(random, view);
    }
    if (random.OneIn(3)) {
        SetPage(random, view);
    }
    return view;
}

} // namespace streams
