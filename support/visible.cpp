// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "support/visible.h"

#include <algorithm>
#include <iterator>

namespace {

struct Range {
    char32_t first;
    char32_t last;
};

constexpr Range kHidden[] = {
    {0x0000, 0x001F}, // controls
    {0x007F, 0x009F}, // delete, and the controls that terminals take for ESC and a letter
    {0x061C, 0x061C}, // Arabic letter mark
    {0x200E, 0x200F}, // marks of the writing direction
    {0x2028, 0x2029}, // separators of lines and paragraphs
    {0x202A, 0x202E}, // embeddings and overrides of the writing direction
    {0x2066, 0x2069}, // isolates
};

// The characters of each length in UTF-8; a shorter form of one is not valid. So are no halves of
// surrogate pairs.
constexpr Range kOfLength[] = {{0, 0x7F}, {0x80, 0x7FF}, {0x800, 0xFFFF}, {0x10000, 0x10FFFF}};
constexpr Range kSurrogates = {0xD800, 0xDFFF};

bool IsIn(char32_t character, const Range& range)
{
    return character >= range.first && character <= range.last;
}

// A character at the start of some bytes.
struct Character {
    char32_t code = 0;
    qsizetype size = 0; // in bytes; 0 = none, they are not UTF-8
};

// What a first byte says of the length; 0 = it is none.
qsizetype LengthFrom(unsigned char first)
{
    if (first < 0x80)
        return 1;
    if (first < 0xC0 || first >= 0xF8)
        return 0;
    return first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
}

Character FirstOf(QByteArrayView bytes)
{
    const auto first = static_cast<unsigned char>(bytes.front());
    const qsizetype size = LengthFrom(first);
    if (size == 0 || size > bytes.size())
        return {};
    char32_t code = size == 1 ? first : first & (0x7FU >> size);
    for (const char c : bytes.first(size).sliced(1)) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte & 0xC0U) != 0x80)
            return {};
        code = code << 6U | (byte & 0x3FU);
    }
    const bool isValid = IsIn(code, kOfLength[size - 1]) && !IsIn(code, kSurrogates);
    return isValid ? Character{code, size} : Character{};
}

QByteArray Escaped(QByteArrayView bytes)
{
    QByteArray escaped;
    for (const char c : bytes)
        escaped += "\\x" + QByteArray(1, c).toHex();
    return escaped;
}

} // namespace

bool IsHidden(char32_t character)
{
    return std::any_of(std::begin(kHidden), std::end(kHidden),
                       [=](const Range& range) { return IsIn(character, range); });
}

QByteArray VisibleName(QByteArrayView name)
{
    QByteArray visible;
    while (!name.isEmpty()) {
        const Character character = FirstOf(name);
        const QByteArrayView bytes = name.first(std::max<qsizetype>(character.size, 1));
        if (character.size == 0 || IsHidden(character.code))
            visible += Escaped(bytes);
        else if (character.code == U'\\')
            visible += "\\\\";
        else
            visible += bytes;
        name = name.sliced(bytes.size());
    }
    return visible;
}
