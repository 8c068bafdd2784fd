// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors

#include "reference.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <optional>

#include <locale.h>

namespace reference {

namespace {

constexpr int kBel = 7;
constexpr int kEsc = 27;
constexpr int kGs = 29;
constexpr int kByte255 = -1;     // bytes are signed here
constexpr int kLastControl = 31; // bytes 128..255 are negative and so are controls as well
constexpr int kLastLow = 63;

constexpr int kFullWidth = 4096;
constexpr int kFullHeight = 3120;

constexpr int kWhite = 15;
constexpr int kNoPaletteRow = 16;
constexpr int kMapEntries = 16;

constexpr int kWidestPen = 32767;
constexpr int kLongestCountedString = 80;

// ------------------------------------------------------------------------------------------------
// Arithmetic: integers are 32 bits wide and wrap around.

int Wrapped(std::uint32_t bits)
{
    return static_cast<int>(bits);
}

int FlipY(int y)
{
    return Wrapped(static_cast<std::uint32_t>(kFullHeight) - static_cast<std::uint32_t>(y));
}

int Doubled(int value)
{
    return Wrapped(2U * static_cast<std::uint32_t>(value));
}

int TruncateToInt(double value)
{
    constexpr int lowest = std::numeric_limits<int>::min();
    constexpr int highest = std::numeric_limits<int>::max();
    if (std::isnan(value)) {
        return 0;
    }
    if (value <= static_cast<double>(lowest)) {
        return lowest;
    }
    if (value >= static_cast<double>(highest)) {
        return highest;
    }
    return static_cast<int>(value);
}

// ------------------------------------------------------------------------------------------------
// Wording of the operations.

std::string Color(int paletteIndex)
{
    static const std::array<const char*, kNoPaletteRow + 1> colors = {
        "#000000", "#00007f", "#007f00", "#007f7f", "#7f0000", "#7f007f", "#7f7f00", "#7f7f7f",
        "#3f3f3f", "#0000ff", "#00ff00", "#00ffff", "#ff0000", "#ff00ff", "#ffff00", "#ffffff",
        "#ffffff", // the index without a row of its own
    };
    return colors.at(static_cast<std::size_t>(paletteIndex));
}

std::string Numbers(const char* word, long a, long b, long c, long d)
{
    return std::string(word) + ' ' + std::to_string(a) + ' ' + std::to_string(b) + ' ' +
           std::to_string(c) + ' ' + std::to_string(d);
}

// ------------------------------------------------------------------------------------------------
// Characters of texts.

// One character of UTF-8 that starts at `at`, which moves after it; none when it is malformed.
std::optional<char32_t> DecodeUtf8(const std::string& bytes, std::size_t& at)
{
    const auto byteAt = [&bytes](std::size_t i) -> unsigned {
        return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U;
    };
    const unsigned first = byteAt(at);
    if (first < 0x80U) {
        ++at;
        return first;
    }
    std::size_t length = 0;
    std::uint32_t value = 0;
    std::uint32_t smallest = 0;
    if (first >= 0xC0U && first <= 0xDFU) {
        length = 2;
        value = first & 0x1FU;
        smallest = 0x80U;
    } else if (first >= 0xE0U && first <= 0xEFU) {
        length = 3;
        value = first & 0x0FU;
        smallest = 0x800U;
    } else if (first >= 0xF0U && first <= 0xF7U) {
        length = 4;
        value = first & 0x07U;
        smallest = 0x10000U;
    } else {
        return std::nullopt;
    }
    for (std::size_t i = 1; i < length; ++i) {
        const unsigned next = byteAt(at + i);
        if ((next & 0xC0U) != 0x80U) {
            return std::nullopt;
        }
        value = (value << 6U) + (next & 0x3FU);
    }
    const bool surrogate = value >= 0xD800U && value <= 0xDFFFU;
    if (value < smallest || value > 0x10FFFFU || surrogate) {
        return std::nullopt;
    }
    at += length;
    return value;
}

// UTF-8 when the whole text is that, Latin-1 otherwise.
std::u32string CharactersOf(const std::string& bytes)
{
    std::u32string characters;
    std::size_t at = 0;
    while (at < bytes.size()) {
        const std::optional<char32_t> character = DecodeUtf8(bytes, at);
        if (!character) {
            break;
        }
        characters += *character;
    }
    if (at == bytes.size()) {
        return characters;
    }
    characters.clear();
    for (const char byte : bytes) {
        characters += static_cast<char32_t>(static_cast<unsigned char>(byte));
    }
    return characters;
}

void AppendUtf8(std::string& out, char32_t character)
{
    const auto append = [&out](std::uint32_t byte) { out += static_cast<char>(byte); };
    const auto value = static_cast<std::uint32_t>(character);
    if (value < 0x80U) {
        append(value);
    } else if (value < 0x800U) {
        append(0xC0U | (value >> 6U));
        append(0x80U | (value & 0x3FU));
    } else if (value < 0x10000U) {
        append(0xE0U | (value >> 12U));
        append(0x80U | ((value >> 6U) & 0x3FU));
        append(0x80U | (value & 0x3FU));
    } else {
        append(0xF0U | (value >> 18U));
        append(0x80U | ((value >> 12U) & 0x3FU));
        append(0x80U | ((value >> 6U) & 0x3FU));
        append(0x80U | (value & 0x3FU));
    }
}

std::string WithoutControls(const std::string& bytes)
{
    std::string out;
    for (const char32_t character : CharactersOf(bytes)) {
        const bool control = character < 32 || (character >= 127 && character <= 159);
        if (!control) {
            AppendUtf8(out, character);
        }
    }
    return out;
}

// Texts are handled as C strings: whatever follows a zero byte is not part of them.
std::string UpToZero(const std::string& bytes)
{
    return bytes.substr(0, bytes.find('\0'));
}

// ------------------------------------------------------------------------------------------------
// Position text: the scanning format "%d,%d".

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool IsBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// Blanks, an optional sign and at least one digit, from `at`, which moves after them.
std::optional<int> ScanInt(const std::string& text, std::size_t& at)
{
    const auto charAt = [&text](std::size_t i) { return i < text.size() ? text[i] : '\0'; };
    while (IsBlank(charAt(at))) {
        ++at;
    }
    const bool negative = charAt(at) == '-';
    if (negative || charAt(at) == '+') {
        ++at;
    }
    if (!IsDigit(charAt(at))) {
        return std::nullopt;
    }
    constexpr std::int64_t beyondInt = std::int64_t{1} << 32U;
    std::int64_t value = 0;
    for (; IsDigit(charAt(at)); ++at) {
        if (value < beyondInt) {
            value = value * 10 + (charAt(at) - '0');
        }
    }
    return TruncateToInt(static_cast<double>(negative ? -value : value));
}

// A field that does not match keeps its value.
void ScanPosition(const std::string& text, int& x, int& y)
{
    std::size_t at = 0;
    const std::optional<int> first = ScanInt(text, at);
    if (!first) {
        return;
    }
    x = *first;
    if (at >= text.size() || text[at] != ',') {
        return;
    }
    ++at;
    const std::optional<int> second = ScanInt(text, at);
    if (second) {
        y = *second;
    }
}

// ------------------------------------------------------------------------------------------------
// Background of a file.

int PaletteIndexOfParameter(char parameter)
{
    const std::string parameters = " 435268?>;9:=<71";
    const std::size_t index = parameters.find(parameter);
    return index == std::string::npos ? kNoPaletteRow : static_cast<int>(index);
}

// Only the second mark after the region of the header counts.
int BackgroundOf(const std::string& file)
{
    constexpr std::size_t headerRegion = 100;
    const std::string mark = "RA1";
    if (file.size() <= headerRegion) {
        return kWhite;
    }
    const std::string text = UpToZero(file.substr(headerRegion));
    const std::size_t first = text.find(mark);
    if (first == std::string::npos) {
        return kWhite;
    }
    const std::size_t second = text.find(mark, first + mark.size());
    if (second == std::string::npos) {
        return kWhite;
    }
    const std::size_t parameter = second + mark.size();
    return parameter < text.size() ? PaletteIndexOfParameter(text[parameter]) : kNoPaletteRow;
}

int BackgroundOf(const std::string& file, const View& view)
{
    return view.whiteBackground ? kWhite : BackgroundOf(file);
}

// ------------------------------------------------------------------------------------------------
// Where the decoder's commands end.

class Target
{
public:
    Target() = default;
    Target(const Target&) = delete;
    Target& operator=(const Target&) = delete;
    virtual ~Target() = default;

    virtual void SetWidth(int width) = 0;
    virtual void SetColor(int index) = 0;
    virtual void Vector(int x1, int y1, int x2, int y2) = 0;
    virtual void Text(int x, int y, const std::string& bytes) = 0;
};

int MapColor(int index)
{
    return index >= 1 && index <= kNoPaletteRow ? index : 0;
}

// ------------------------------------------------------------------------------------------------
// What is drawn, and with which pen.

class Canvas : public Target
{
public:
    explicit Canvas(const View& view) : view_(view) {}

    void Begin(int background);
    void SetWidth(int width) override;
    void SetColor(int index) override;
    void Vector(int x1, int y1, int x2, int y2) override;
    void Text(int x, int y, const std::string& bytes) override;
    Result Finish() const { return result_; }

private:
    void SetMapping();
    void SetViewport();
    void SetPen(int index);
    int RequestedPenWidth() const;

    const View& view_;
    Result result_;
    int background_ = kWhite;
    int color_ = -1; // current color after mapping, -1 = none
    int width_ = -1; // current line width, -1 = none
    int penColor_ = 0;
    int penWidth_ = 1;
};

void Canvas::SetViewport()
{
    const int left = TruncateToInt(view_.dpiX * 0.8 + view_.pageX);
    const int top = TruncateToInt(view_.dpiY * 0.6 + view_.pageY);
    const int width = TruncateToInt((view_.dpiX * 9.0) * view_.pageSizeX);
    const int height = TruncateToInt((view_.dpiY * 6.855) * view_.pageSizeY);
    result_.operations.push_back(Numbers("viewport", left, top, width, height));
}

void Canvas::SetMapping()
{
    result_.operations.push_back(Numbers("window", 0, 0, kFullWidth, kFullHeight));
    if (view_.zoomed()) {
        result_.operations.push_back(Numbers("window", view_.zoomLeft, view_.zoomTop,
                                             view_.zoomRight - view_.zoomLeft,
                                             view_.zoomBottom - view_.zoomTop));
    }
    if (view_.printing) {
        SetViewport();
    }
}

// The background always fills the whole graph, also when a part of it is asked for.
void Canvas::Begin(int background)
{
    background_ = background;
    result_.background = background;
    SetMapping();
    result_.operations.push_back(Numbers("fill", 0, 0, kFullWidth, kFullHeight) + ' ' +
                                 Color(background));
    width_ = -1;
    SetWidth(0);
    color_ = -1;
    SetColor(0);
}

int Canvas::RequestedPenWidth() const
{
    if (!view_.printing) {
        return width_ / 2;
    }
    return Doubled(width_ < view_.minPrintWidth ? view_.minPrintWidth : width_);
}

// White on white would not be seen and becomes black. A width Qt refuses leaves the pen
// as wide as it was.
void Canvas::SetPen(int index)
{
    penColor_ = background_ == kWhite && index == kWhite ? 0 : index;
    const int width = RequestedPenWidth();
    if (width >= 0 && width <= kWidestPen) {
        penWidth_ = width;
    }
}

void Canvas::SetWidth(int width)
{
    if (width == width_) {
        return;
    }
    width_ = width;
    SetPen(MapColor(color_));
}

void Canvas::SetColor(int index)
{
    if (index == color_) {
        return;
    }
    color_ = MapColor(index);
    SetPen(color_);
}

void Canvas::Vector(int x1, int y1, int x2, int y2)
{
    ++result_.vectors;
    result_.operations.push_back(Numbers("line", x1, y1, x2, y2) + ' ' + Color(penColor_) + ' ' +
                                 std::to_string(penWidth_));
}

void Canvas::Text(int x, int y, const std::string& bytes)
{
    std::string text = UpToZero(bytes);
    if (text.size() > std::size_t{kLongestText}) {
        return;
    }
    if (!text.empty() && text.back() == '\n') {
        text.pop_back();
    }
    const std::string visible = WithoutControls(text);
    if (!visible.empty()) {
        result_.operations.push_back("text " + std::to_string(x) + ' ' + std::to_string(y) + ' ' +
                                     Color(penColor_) + ' ' + visible);
    }
}

// ------------------------------------------------------------------------------------------------
// What is written as EPS.

// While one lives, snprintf writes decimal points, whatever locale the program has set.
class PointsNotCommas
{
public:
    PointsNotCommas() : c_(newlocale(LC_ALL_MASK, "C", nullptr)), before_(uselocale(c_)) {}
    PointsNotCommas(const PointsNotCommas&) = delete;
    PointsNotCommas& operator=(const PointsNotCommas&) = delete;
    ~PointsNotCommas()
    {
        uselocale(before_);
        freelocale(c_);
    }

private:
    locale_t c_;
    locale_t before_;
};

template <typename... Values> std::string Printed(const char* format, Values... values)
{
    const PointsNotCommas points;
    const int length = std::snprintf(nullptr, 0, format, values...);
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    std::snprintf(text.data(), text.size(), format, values...);
    text.pop_back();
    return text;
}

struct Rgb {
    double red;
    double green;
    double blue;
};

Rgb EpsColor(int paletteIndex)
{
    static const std::array<std::array<int, 3>, kNoPaletteRow + 1> rows = {{
        {0, 0, 0},
        {0, 0, 127},
        {0, 127, 0},
        {0, 127, 127},
        {127, 0, 0},
        {127, 0, 127},
        {127, 127, 0},
        {127, 127, 127},
        {63, 63, 63},
        {0, 0, 255},
        {0, 255, 0},
        {0, 255, 255},
        {255, 0, 0},
        {255, 0, 255},
        {255, 255, 0},
        {255, 255, 255},
        {255, 255, 255}, // the index without a row of its own
    }};
    const std::array<int, 3>& row = rows.at(static_cast<std::size_t>(paletteIndex));
    return {row[0] / 255.0, row[1] / 255.0, row[2] / 255.0};
}

class EpsPage : public Target
{
public:
    EpsPage(const View& view, const EpsOptions& options) : view_(view), options_(options) {}

    void Begin(int background);
    void SetWidth(int width) override;
    void SetColor(int index) override;
    void Vector(int x1, int y1, int x2, int y2) override;
    void Text(int x, int y, const std::string& bytes) override;
    std::string Finish();

private:
    template <typename... Values> void Print(const char* format, Values... values)
    {
        file_ += Printed(format, values...);
    }

    void SetArea();
    void PrintHeader();
    void PrintBoundingBox();
    void PrintFill();
    void MoveAndDraw(int x1, int y1, int x2, int y2);
    void Draw(int x2, int y2);
    void CountItem();

    const View& view_;
    const EpsOptions& options_;
    std::string file_;

    // The area that is drawn, in drawing coordinates.
    int left_ = 0;
    int top_ = 0;
    int right_ = kFullWidth;
    int bottom_ = kFullHeight;

    int background_ = kWhite;
    int color_ = -1;
    int width_ = -1;
    int pathEndX_ = -1; // no address has this x
    int pathEndY_ = 0;
    int items_ = 1;
};

void EpsPage::SetArea()
{
    if (!view_.zoomed()) {
        return;
    }
    left_ = static_cast<int>(view_.zoomLeft);
    top_ = static_cast<int>(view_.zoomTop);
    right_ = static_cast<int>(view_.zoomRight);
    bottom_ = static_cast<int>(view_.zoomBottom);
}

void EpsPage::PrintBoundingBox()
{
    const double s = options_.scale;
    const char* format = "%%%%BoundingBox: %d %d %d %d\n";
    if (!view_.zoomed()) {
        Print(format, TruncateToInt(left_ * s), 0, TruncateToInt(right_ * s),
              TruncateToInt(bottom_ * s));
    } else {
        Print(format, TruncateToInt(left_ * s), TruncateToInt(FlipY(bottom_) * s),
              TruncateToInt(right_ * s), TruncateToInt(FlipY(top_) * s));
    }
}

// The corner that the fill begins with is named once more at its end.
void EpsPage::PrintFill()
{
    Print("%d %d moveto %d %d lineto %d %d lineto %d %d lineto %d %d lineto fill\n", left_,
          FlipY(top_), right_, FlipY(top_), right_, FlipY(bottom_), left_, FlipY(bottom_), left_,
          FlipY(top_));
}

void EpsPage::PrintHeader()
{
    file_ += "%!PS-Adobe-3.0 EPSF-3.0\n";
    file_ += "%%Creator: PLF Viewer (plotvw)\n";
    file_ += "%%Title:   KORVEL-generated file\n";
    PrintBoundingBox();
    file_ += "/DeviceRGB setcolorspace 0 setlinecap 0 setlinejoin 30 setmiterlimit\n";
    Print("%d setlinewidth\n", options_.minLineWidth);
    Print("%3.2lf %3.2lf scale\n", options_.scale, options_.scale);
    const bool hasRow = options_.backgroundIndex < kNoPaletteRow;
    const Rgb fill = EpsColor(hasRow ? static_cast<int>(options_.backgroundIndex) : kNoPaletteRow);
    Print("%3.2f %3.2f %3.2f setcolor\n", fill.red, fill.green, fill.blue);
    if (options_.fillBackground) {
        PrintFill();
    }
}

void EpsPage::Begin(int background)
{
    background_ = background;
    SetArea();
    width_ = -1;
    PrintHeader();
    SetWidth(0);
    color_ = -1;
    SetColor(0);
}

void EpsPage::SetWidth(int width)
{
    if (width == width_) {
        return;
    }
    width_ = width;
    Print(" stroke %d setlinewidth ",
          width > options_.minLineWidth ? width : options_.minLineWidth);
    pathEndX_ = -1;
}

void EpsPage::SetColor(int index)
{
    if (index == color_) {
        return;
    }
    color_ = MapColor(index);
    Rgb line = EpsColor(color_);
    if (options_.linesToBlack) {
        line = {0.0, 0.0, 0.0};
    } else if (background_ == kWhite && color_ == kWhite) {
        line = EpsColor(0);
    }
    Print("\nstroke %3.2f %3.2f %3.2f setcolor\n", line.red, line.green, line.blue);
    pathEndX_ = -1;
}

void EpsPage::Vector(int x1, int y1, int x2, int y2)
{
    if (x1 == pathEndX_ && y1 == pathEndY_) {
        Draw(x2, y2);
    } else {
        MoveAndDraw(x1, y1, x2, y2);
    }
    pathEndX_ = x2;
    pathEndY_ = y2;
}

void EpsPage::MoveAndDraw(int x1, int y1, int x2, int y2)
{
    Print("%d %d moveto %d %d lineto ", x1, FlipY(y1), x2, FlipY(y2));
    CountItem();
}

void EpsPage::Draw(int x2, int y2)
{
    Print("%d %d lineto ", x2, FlipY(y2));
    CountItem();
}

// The count goes on over changes of width and color, whatever lines these begin.
void EpsPage::CountItem()
{
    constexpr int itemsOfALine = 4;
    ++items_;
    if (items_ > itemsOfALine) {
        file_ += '\n';
        items_ = 1;
    }
}

// Texts are never part of the file.
void EpsPage::Text(int /*x*/, int /*y*/, const std::string& /*bytes*/) {}

std::string EpsPage::Finish()
{
    file_ += "\nstroke\n";
    return file_;
}

// ------------------------------------------------------------------------------------------------
// The bytes of the file with the cursor and the one character that can be pushed back.

class Source
{
public:
    explicit Source(const std::string& bytes) : bytes_(bytes) {}

    bool AtEndOfData() const { return cursor_ >= bytes_.size(); }
    int Peek() const { return AtEndOfData() ? 0 : static_cast<signed char>(bytes_[cursor_]); }
    int ReadData();

    bool HasPending() const { return pending_ != 0; }
    int Pending() const { return pending_; }
    int TakePending();
    void SetPending(int character) { pending_ = character; }

private:
    const std::string& bytes_;
    std::size_t cursor_ = 0;
    int pending_ = 0; // 0 = none, so that a zero byte that is pushed back is lost
};

int Source::ReadData()
{
    const int character = Peek();
    ++cursor_;
    return character;
}

int Source::TakePending()
{
    const int character = pending_;
    pending_ = 0;
    return character;
}

// High characters carry six bits each, the low one that ends the integer four bits and the sign.
// An integer without a low character is followed by the zero that ends its text.
int DecodeInteger(const std::vector<int>& characters)
{
    std::uint32_t high = 0;
    int low = 0;
    for (const int character : characters) {
        if (character <= kLastLow) {
            low = character;
            break;
        }
        high = (high << 6U) + static_cast<std::uint32_t>(character - 64);
    }
    high <<= 4U;
    if (low >= 48) {
        return Wrapped(high + static_cast<std::uint32_t>(low - 48));
    }
    return Wrapped(0U - (high + static_cast<std::uint32_t>(low - 32)));
}

// ------------------------------------------------------------------------------------------------
// Color map.

struct Hls {
    int hue = 0;
    int lightness = 0;
    int saturation = 0;
};

int PaletteIndexOfHue(int hue)
{
    if (hue < 15 || hue > 344) {
        return 1;
    }
    if (hue <= 44) {
        return 13;
    }
    if (hue <= 74) {
        return 5;
    }
    if (hue <= 104) {
        return 12;
    }
    if (hue <= 134) {
        return 4;
    }
    if (hue <= 164) {
        return 6;
    }
    if (hue <= 194) {
        return 14;
    }
    if (hue <= 224) {
        return 10;
    }
    if (hue <= 254) {
        return 2;
    }
    if (hue <= 284) {
        return 11;
    }
    if (hue <= 314) {
        return 3;
    }
    return 9;
}

// Nothing for the one lightness that leaves an entry as it was.
std::optional<int> PaletteIndexOfGrey(int lightness)
{
    if (lightness <= 9) {
        return 0;
    }
    if (lightness <= 34) {
        return 8;
    }
    if (lightness <= 79) {
        return 7;
    }
    if (lightness == 80) {
        return std::nullopt;
    }
    return kWhite;
}

std::optional<int> PaletteIndexOf(const Hls& color)
{
    if (color.saturation > 9) {
        return PaletteIndexOfHue(color.hue);
    }
    return PaletteIndexOfGrey(color.lightness);
}

// ------------------------------------------------------------------------------------------------
// The decoder.

class Decoder
{
public:
    Decoder(const std::string& file, const View& view, Target& target)
        : source_(file), widthScale_(view.widthScale), target_(target)
    {
    }

    void Run();

private:
    int NextCharacter();
    void Accept(int character);
    void AcceptEscape();
    void AcceptCommandCharacter(int character);
    void AcceptGraphCharacter(int character);
    void FinishCommand(int lastCharacter);

    void DecodeAddress();
    void CompleteAddress(int lowX);

    void Dispatch(std::size_t count, int first, int second);
    void DispatchG(int second);
    void DispatchM(int second);
    void DispatchT(int second);
    void DispatchZ(int second);
    void ReadColorMapEntry();
    int ReadComponent();

    int ReadInteger();
    void SkipToControl();
    void ReadCountedString();
    std::optional<int> ReadCount();
    std::string ReadText();
    void ReadPosition();

    Source source_;
    double widthScale_;
    Target& target_;

    bool inEscape_ = false;
    std::vector<int> sequence_; // letters of a command or bytes of an address
    bool addressClosed_ = false;

    bool moveNext_ = false;
    int x_ = 0;
    int y_ = 0;
    int highX_ = 0;
    int highY_ = 0;
    int lowY_ = 0;
    int extra_ = 0;
    int lowYSeen_ = 0;

    bool commaSeen_ = false;
    bool commaOk_ = false;
    std::array<int, kMapEntries> colorMap_{};

    int textX_ = 0;
    int textY_ = 0;
};

void Decoder::Run()
{
    // The zero byte stops the pass even when a character is pending.
    while (source_.Peek() != 0) {
        const int character = NextCharacter();
        if (character == kBel || character == kByte255) {
            return;
        }
        if (character == kGs) {
            moveNext_ = true;
        }
        Accept(character);
    }
}

// A closed address waits here for one more byte of data, so that the one which ends the data is
// never drawn.
int Decoder::NextCharacter()
{
    if (source_.HasPending()) {
        sequence_.clear();
        return source_.TakePending();
    }
    const int character = source_.ReadData();
    if (addressClosed_) {
        DecodeAddress();
        addressClosed_ = false;
        sequence_.clear();
    }
    return character;
}

void Decoder::Accept(int character)
{
    if (character == kEsc) {
        AcceptEscape();
    } else if (inEscape_) {
        AcceptCommandCharacter(character);
    } else {
        AcceptGraphCharacter(character);
    }
}

void Decoder::AcceptEscape()
{
    if (!inEscape_) {
        inEscape_ = true;
        sequence_.clear();
        return;
    }
    source_.SetPending(kEsc);
    sequence_.push_back(kEsc);
    FinishCommand(kEsc);
}

void Decoder::AcceptCommandCharacter(int character)
{
    sequence_.push_back(character);
    const bool letter = character >= 'A' && character <= 'Z';
    if (sequence_.size() <= 2 && letter) {
        return;
    }
    FinishCommand(character);
}

// The third character is the first one of the parameters; a second one that is no letter is lost.
void Decoder::FinishCommand(int lastCharacter)
{
    const std::size_t count = sequence_.size();
    const int first = sequence_.front();
    int second = 0;
    if (count == 3) {
        source_.SetPending(lastCharacter);
        second = sequence_[1];
    }
    Dispatch(count, first, second);
    inEscape_ = false;
    sequence_.clear();
}

void Decoder::AcceptGraphCharacter(int character)
{
    if (character > kLastControl) {
        sequence_.push_back(character);
        addressClosed_ = character >= 64 && character <= 95;
        return;
    }
    // A control character overwrites the start of a half read address: with itself and a zero.
    if (!sequence_.empty()) {
        sequence_[0] = character;
    }
    if (sequence_.size() > 1) {
        sequence_[1] = 0;
    }
}

// --- Addresses ---

void Decoder::DecodeAddress()
{
    for (const int byte : sequence_) {
        if (byte <= kLastLow) {
            if (lowYSeen_ != 0) {
                highX_ = byte & 31;
                lowYSeen_ = 0;
            } else {
                highY_ = byte & 31;
            }
        } else if (byte >= 96) {
            ++lowYSeen_;
            if (lowYSeen_ == 2) {
                extra_ = lowY_;
            }
            lowY_ = byte & 31;
        } else {
            lowYSeen_ = 0;
            CompleteAddress(byte & 31);
            return;
        }
    }
}

// Where a path starts makes no difference to a painter, so the end of the path is kept by the page
// that needs it.
void Decoder::CompleteAddress(int lowX)
{
    const int x = ((highX_ << 5) + lowX) * 4 + (extra_ & 3);
    const int y = FlipY(((highY_ << 5) + lowY_) * 4 + ((extra_ & 12) >> 2));
    if (moveNext_) {
        moveNext_ = false;
    } else {
        target_.Vector(x_, y_, x, y);
    }
    x_ = x;
    y_ = y;
}

// --- Commands ---

void Decoder::Dispatch(std::size_t count, int first, int second)
{
    if (count == 1) {
        return;
    }
    switch (first) {
    case 'G':
        DispatchG(second);
        break;
    case 'L':
        if (second == 'T') {
            ReadCountedString();
        }
        break;
    case 'M':
        DispatchM(second);
        break;
    case 'R':
        if (second == 'A') {
            ReadInteger();
            ReadInteger();
        }
        break;
    case 'T':
        DispatchT(second);
        break;
    case 'Z':
        DispatchZ(second);
        break;
    default:
        SkipToControl();
        break;
    }
}

void Decoder::DispatchG(int second)
{
    if (second == 'T') {
        const int width = ReadInteger();
        target_.SetWidth(TruncateToInt(width * widthScale_));
    } else {
        target_.SetWidth(0);
    }
}

void Decoder::DispatchM(int second)
{
    const int index = ReadInteger();
    if (second == 'L') {
        if (index >= 0 && index < kMapEntries) {
            target_.SetColor(colorMap_.at(static_cast<std::size_t>(index)));
        }
    } else if (second == 'R') {
        ReadInteger();
    } else if (second == 'C') {
        ReadInteger();
        commaSeen_ = false;
        commaOk_ = false;
        ReadInteger();
    }
}

void Decoder::DispatchT(int second)
{
    if (second == 'G') {
        ReadColorMapEntry();
    } else {
        SkipToControl();
    }
}

// Neither the font of a text nor its size, color and attributes have a part in what is drawn:
// their parameters are only read.
void Decoder::DispatchZ(int second)
{
    switch (second) {
    case 'F':
        ReadText();
        break;
    case 'S':
    case 'C':
    case 'A':
    case 'O':
        ReadInteger();
        break;
    case 'P':
        ReadPosition();
        break;
    case 'D':
        target_.Text(textX_, textY_, ReadText());
        break;
    default:
        break;
    }
}

void Decoder::ReadColorMapEntry()
{
    ReadInteger(); // surface
    ReadInteger(); // how many values follow; three are read whatever it says
    const int index = ReadInteger();
    Hls color;
    commaOk_ = true;
    color.hue = ReadComponent();
    color.lightness = ReadComponent();
    color.saturation = ReadComponent();
    commaOk_ = false;
    if (index < 0 || index >= kMapEntries) {
        return;
    }
    const std::optional<int> entry = PaletteIndexOf(color);
    if (entry) {
        colorMap_.at(static_cast<std::size_t>(index)) = *entry;
    }
}

// A comma ends one component, as 0, and takes the place of the next one.
int Decoder::ReadComponent()
{
    if (commaSeen_) {
        commaSeen_ = false;
        return 0;
    }
    return ReadInteger();
}

// --- Parameters ---

// A pending character is ordinary whatever it is; only controls read from the data end the integer
// and are pushed back.
int Decoder::ReadInteger()
{
    std::vector<int> characters;
    for (;;) {
        commaSeen_ = false;
        const bool fromData = !source_.HasPending();
        const int character = fromData ? source_.ReadData() : source_.TakePending();
        if (fromData && character <= kLastControl) {
            source_.SetPending(character);
            const bool nothing = characters.empty() && character != 0;
            return nothing ? 0 : DecodeInteger(characters);
        }
        if (character == ',' && commaOk_) {
            commaSeen_ = true;
            return 0;
        }
        characters.push_back(character);
        if (character <= kLastLow) {
            return DecodeInteger(characters);
        }
    }
}

void Decoder::SkipToControl()
{
    if (source_.HasPending()) {
        source_.TakePending();
    }
    int character = source_.ReadData();
    while (character > kLastControl) {
        character = source_.ReadData();
    }
    source_.SetPending(character);
}

// Unlike in other integers 64 ends the count, and is part of it. A control from the data ends the
// whole read: there is no count then.
std::optional<int> Decoder::ReadCount()
{
    std::vector<int> characters;
    for (;;) {
        const bool fromData = !source_.HasPending();
        const int character = fromData ? source_.ReadData() : source_.TakePending();
        if (fromData && character <= kLastControl) {
            source_.SetPending(character);
            return std::nullopt;
        }
        characters.push_back(character);
        if (character <= 64) {
            return DecodeInteger(characters);
        }
    }
}

// Nothing can be pending once the count is read, so every string character comes from the data.
void Decoder::ReadCountedString()
{
    const std::optional<int> count = ReadCount();
    if (!count) {
        return;
    }
    for (int read = 0; read < *count && read < kLongestCountedString; ++read) {
        const int character = source_.ReadData();
        if (character <= kLastControl) {
            source_.SetPending(character);
            return;
        }
    }
}

// A pending escape does not end the text before it starts: it is left out and the text goes on up
// to the next one.
std::string Decoder::ReadText()
{
    std::string text;
    if (source_.Pending() != kEsc) {
        text += static_cast<char>(source_.Pending());
    }
    while (!source_.AtEndOfData()) {
        const int character = source_.ReadData();
        if (character == kEsc) {
            break;
        }
        text += static_cast<char>(character);
    }
    source_.SetPending(kEsc);
    return text;
}

// The flip is done even when there is no position, to the one that is kept.
void Decoder::ReadPosition()
{
    const auto closes = [](int character) { return character == kEsc || character == ';'; };
    std::string text;
    if (!closes(source_.Pending())) {
        text += static_cast<char>(source_.Pending());
        while (!source_.AtEndOfData()) {
            const int character = source_.ReadData();
            if (closes(character)) {
                break;
            }
            text += static_cast<char>(character);
        }
    }
    source_.SetPending(kEsc);
    ScanPosition(UpToZero(text), textX_, textY_);
    textY_ = FlipY(textY_);
}

} // namespace

bool View::zoomed() const
{
    return zoomRight - zoomLeft > 0;
}

Result Draw(const std::string& fileBytes, const View& view)
{
    Canvas canvas(view);
    canvas.Begin(BackgroundOf(fileBytes, view));
    Decoder decoder(fileBytes, view, canvas);
    decoder.Run();
    return canvas.Finish();
}

std::string DrawEps(const std::string& fileBytes, const View& view, const EpsOptions& options)
{
    EpsPage page(view, options);
    page.Begin(BackgroundOf(fileBytes, view));
    Decoder decoder(fileBytes, view, page);
    decoder.Run();
    return page.Finish();
}

} // namespace reference
