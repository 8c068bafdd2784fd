// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// PLF files for tests, as strings of bytes to be joined: Start() + Line(...) + End(). Positions are
// file units, 0..4095 each, y upward.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace plf {

/// The 16 bytes that every file begins with. They end inside a color map entry.
inline std::string Header()
{
    return "\x1bTG140000\x1bTG1410";
}

/// The header and the rest of its last entry, so that a command may follow: line index 1 is black.
inline std::string Start()
{
    return Header() + "00";
}

/// Ends the drawing. An address is drawn only when a byte follows it.
inline std::string End()
{
    return "\a";
}

/// An integer parameter.
inline std::string Int(int value)
{
    const int64_t number = value;
    const auto magnitude = static_cast<uint64_t>(number < 0 ? -number : number);
    const char sign = number < 0 ? ' ' : '0';
    std::string code(1, static_cast<char>(sign + static_cast<char>(magnitude & 15)));
    for (uint64_t rest = magnitude >> 4; rest != 0; rest >>= 6)
        code.insert(code.begin(), static_cast<char>('@' + static_cast<char>(rest & 63)));
    return code;
}

/// ESC, two letters and integer parameters.
inline std::string Command(std::string_view letters, std::initializer_list<int> parameters = {})
{
    std::string command("\x1b");
    command += letters;
    for (const int parameter : parameters)
        command += Int(parameter);
    return command;
}

/// A position, all five bytes of it.
inline std::string Address(int x, int y)
{
    const std::array<int, 5> bytes = {
        32 + (y >> 7),                 // high y
        96 + ((y & 3) << 2) + (x & 3), // the two lowest bits of both
        96 + ((y >> 2) & 31),          // low y
        32 + (x >> 7),                 // high x
        64 + ((x >> 2) & 31),          // low x
    };
    std::string address;
    for (const int byte : bytes)
        address += static_cast<char>(byte);
    return address;
}

/// Goes to a position without drawing.
inline std::string Move(int x, int y)
{
    std::string move("\x1d");
    move += Address(x, y); // put before it, optimized code gets a false warning from g++ 12
    return move;
}

/// Draws from the last position to this one.
inline std::string Draw(int x, int y)
{
    return Address(x, y);
}

inline std::string Line(int x1, int y1, int x2, int y2)
{
    return Move(x1, y1) + Draw(x2, y2);
}

/// A whole graph that is one line from corner to corner.
inline std::string Diagonal()
{
    return Start() + Line(0, 0, 4095, 3119) + End();
}

/// Line width; half as many units wide on the screen.
inline std::string Width(int width)
{
    return Command("GT", {width});
}

/// Gives a line index the color nearest to a hue in degrees (0 blue, 90 red, 210 green),
/// lightness and saturation 0..100.
inline std::string ColorMapEntry(int index, int hue, int lightness, int saturation)
{
    return Command("TG", {1, 4, index, hue, lightness, saturation});
}

/// Draws with the color of a line index from here on.
inline std::string LineIndex(int index)
{
    return Command("ML", {index});
}

/// A text with its baseline at a position. It ends with an escape that does nothing, so that
/// anything may follow.
inline std::string Text(int x, int y, std::string_view text)
{
    std::string command = Command("ZP") + std::to_string(x) + ',' + std::to_string(y);
    command += Command("ZD");
    command += text;
    return command + "\x1b\f";
}

/// The file's background as a palette index 0..15. It must stand behind everything else that
/// contains "RA1"; bytes is the file so far, which is padded because the first 100 bytes of a file
/// are not searched. Returns the file with the background.
inline std::string WithBackground(std::string bytes, int index)
{
    constexpr size_t kSearchStart = 100;
    constexpr std::string_view kCharacters = " 435268?>;9:=<71";
    bytes.resize(std::max(bytes.size(), kSearchStart), '\n');
    const std::string command = Command("RA", {1}) + kCharacters[static_cast<size_t>(index)];
    return bytes + command + command;
}

} // namespace plf
