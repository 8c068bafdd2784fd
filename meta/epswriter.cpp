// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/epswriter.h"

#include "meta/bytesink.h"
#include "meta/palette.h"
#include "meta/plfarea.h"
#include "support/numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

namespace {

constexpr size_t kLongestInteger = std::numeric_limits<int>::digits10 + 2; // "-2147483648"
// Four numbers and two operators with their blanks, and the extra byte of a copied word.
constexpr size_t kLongestItem = 6 * (kLongestInteger + 1) + 1;
// "-", the digits of the largest double, "." and two decimals.
constexpr size_t kLongestDecimal = std::numeric_limits<double>::max_exponent10 + 5;

constexpr double kBlack[3] = {0, 0, 0};

// A number with its blank, in one machine word.
struct NumberText {
    char text[7];
    unsigned char length;
};

// All coordinates of addresses, as texts.
using NumberTexts = std::array<NumberText, kPlfWidth>;

constexpr NumberText MakeNumberText(int value)
{
    NumberText number = {};
    for (int power = 1000; power > 0; power /= 10) {
        if (value >= power || power == 1)
            number.text[number.length++] = static_cast<char>('0' + value / power % 10);
    }
    number.text[number.length++] = ' ';
    return number;
}

constexpr NumberTexts MakeNumberTexts()
{
    NumberTexts numbers = {};
    for (size_t value = 0; value < numbers.size(); ++value)
        numbers[value] = MakeNumberText(static_cast<int>(value));
    return numbers;
}

constexpr NumberTexts kNumberTexts = MakeNumberTexts();

// The two functions below need room for the longest item, and return the end of what they wrote.

// A number and a blank. The table saves the divisions.
inline char* Append(char* at, int value)
{
    if (value >= 0 && value < kPlfWidth) {
        const NumberText& number = kNumberTexts[static_cast<size_t>(value)];
        memcpy(at, &number, sizeof number);
        return at + number.length;
    }
    at = std::to_chars(at, at + kLongestInteger, value).ptr;
    *at++ = ' ';
    return at;
}

// An operator with its blank and the NUL: one machine word.
inline char* Append(char* at, const char (&word)[8])
{
    memcpy(at, word, sizeof word);
    return at + sizeof word - 1;
}

// The color of a palette index; white if it has no row, as on screen.
const double* EpsColor(unsigned long index)
{
    return kPaletteFractions[std::min<unsigned long>(index, kWhite)].data();
}

int Upward(int y)
{
    return WrapSubtract(kPlfHeight, y);
}

} // namespace

EpsWriter::EpsWriter(ByteSink& output, const EpsOptions& epsOptions, int backgroundIndex)
    : sink(output), options(epsOptions), background(backgroundIndex)
{
}

EpsWriter::~EpsWriter()
{
    Flush();
}

void EpsWriter::Header(const Rect& area, bool zoomed)
{
    Text("%!PS-Adobe-3.0 EPSF-3.0\n"
         "%%Creator: PLF Viewer (plotvw)\n"
         "%%Title:   KORVEL-generated file\n");
    BoundingBox(area, zoomed);
    Text("/DeviceRGB setcolorspace 0 setlinecap 0 setlinejoin 30 setmiterlimit\n");
    Integer(options.minLineWidth);
    Text(" setlinewidth\n");
    Scale();
    Text(" ");
    Scale();
    Text(" scale\n");
    Color(EpsColor(options.backgroundIndex));
    Text(" setcolor\n");
    if (options.fillsBackground)
        Background(area);
}

void EpsWriter::Scale()
{
    constexpr double kSteps = 100; // two decimals
    if (options.isExact && std::round(options.scale * kSteps) / kSteps != options.scale)
        Exactly(options.scale);
    else
        Decimal(options.scale);
}

// In points, each value truncated toward zero, or away from the area if nothing may be cut off.
void EpsWriter::BoundingBox(const Rect& area, bool zoomed)
{
    constexpr double kRounded = 1e-6; // by how much a whole number of points may be missed
    const auto low = [this](int64_t value) {
        const double points = static_cast<double>(value) * options.scale;
        return TruncToInt(options.isExact ? std::floor(points + kRounded) : points);
    };
    const auto high = [this](int64_t value) {
        const double points = static_cast<double>(value) * options.scale;
        return TruncToInt(options.isExact ? std::ceil(points - kRounded) : points);
    };
    const int64_t bottom = zoomed ? kPlfHeight - area.bottom : 0;
    const int64_t top = zoomed ? kPlfHeight - area.top : area.bottom;
    Text("%%BoundingBox: ");
    Integer(low(area.left));
    Text(" ");
    Integer(low(bottom));
    Text(" ");
    Integer(high(area.right));
    Text(" ");
    Integer(high(top));
    Text("\n");
}

void EpsWriter::Background(const Rect& area)
{
    const int left = SaturateToInt(area.left);
    const int top = SaturateToInt(area.top);
    const int right = SaturateToInt(area.right);
    const int bottom = SaturateToInt(area.bottom);
    Point(left, top);
    Text(" moveto ");
    for (const auto& [x, y] :
         {std::pair(right, top), {right, bottom}, {left, bottom}, {left, top}}) {
        Point(x, y);
        Text(" lineto ");
    }
    Text("fill\n");
}

void EpsWriter::LineWidth(int width)
{
    lineWidth = std::max(options.minLineWidth, width);
    Text(" stroke ");
    Integer(lineWidth);
    Text(" setlinewidth ");
}

void EpsWriter::LineColor(int index)
{
    const bool whiteOnWhite = background == kWhite && index == kWhite;
    const bool black = options.allBlack || whiteOnWhite;
    Text("\nstroke ");
    Color(black ? kBlack : EpsColor(static_cast<unsigned long>(index)));
    Text(" setcolor\n");
}

void EpsWriter::LineTo(int x, int y)
{
    Reserve(kLongestItem);
    char* end = Append(buffer + used, x);
    end = Append(end, Upward(y));
    end = Append(end, "lineto ");
    used = static_cast<size_t>(end - buffer);
}

void EpsWriter::MoveAndLineTo(int x1, int y1, int x2, int y2)
{
    Reserve(kLongestItem);
    char* end = Append(buffer + used, x1);
    end = Append(end, Upward(y1));
    end = Append(end, "moveto ");
    end = Append(end, x2);
    end = Append(end, Upward(y2));
    end = Append(end, "lineto ");
    used = static_cast<size_t>(end - buffer);
}

void EpsWriter::Dot(int x, int y)
{
    Decimal(x - lineWidth / 2.0);
    Text(" ");
    Decimal(Upward(y) - lineWidth / 2.0);
    Text(" ");
    Integer(lineWidth);
    Text(" ");
    Integer(lineWidth);
    Text(" rectfill ");
}

void EpsWriter::EndLine()
{
    Text("\n");
}

void EpsWriter::Finish()
{
    Text("\nstroke\n");
    Flush();
}

void EpsWriter::Point(int x, int y)
{
    Integer(x);
    Text(" ");
    Integer(Upward(y));
}

void EpsWriter::Color(const double* rgb)
{
    Decimal(rgb[0]);
    Text(" ");
    Decimal(rgb[1]);
    Text(" ");
    Decimal(rgb[2]);
}

void EpsWriter::Text(std::string_view text)
{
    Reserve(text.size());
    memcpy(buffer + used, text.data(), text.size());
    used += text.size();
}

void EpsWriter::Integer(int value)
{
    Reserve(kLongestInteger);
    used = static_cast<size_t>(
        std::to_chars(buffer + used, buffer + used + kLongestInteger, value).ptr - buffer);
}

// Two decimals, rounded like "%.2f" of the C library.
void EpsWriter::Decimal(double value)
{
    Reserve(kLongestDecimal);
    used = static_cast<size_t>(std::to_chars(buffer + used, buffer + used + kLongestDecimal, value,
                                             std::chars_format::fixed, 2)
                                   .ptr -
                               buffer);
}

// As many digits as it takes, and no exponent.
void EpsWriter::Exactly(double value)
{
    Reserve(kLongestDecimal);
    used = static_cast<size_t>(std::to_chars(buffer + used, buffer + used + kLongestDecimal, value,
                                             std::chars_format::fixed)
                                   .ptr -
                               buffer);
}

void EpsWriter::Flush()
{
    // Forgotten first: a sink that fails by an exception is not asked again while it is thrown.
    if (const size_t waiting = std::exchange(used, 0); waiting > 0)
        sink.Write(buffer, waiting);
}
