// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/fill/linefiller.h"

#include <cmath>
#include <cstdint>
#include <cstring>

namespace {

// A share of a pixel, in 255ths, and a part of a color, each for half of a pixel: every other byte.
using Areas = Coverage::Areas;
using Halves = uint16_t __attribute__((vector_size(sizeof(Areas))));

constexpr int kGroup = Coverage::kGroup;
constexpr int kFull = 255;
constexpr int kShareBits = 8;

// The sign of an area does not matter, but is there when it is rounded down.
Halves Shares(Areas areas)
{
    using Signed = int16_t __attribute__((vector_size(sizeof(Areas))));
    areas >>= Coverage::kAreaBits - kShareBits;
    const auto shares = reinterpret_cast<Signed>((areas & 0xFFFF) | areas << 16);
    const Signed positive = shares < 0 ? -shares : shares;
    return reinterpret_cast<Halves>(positive < kFull ? positive : kFull + Signed{});
}

// Divides by 255, nearly: as QPainter does, which rounds a few products the wrong way.
Halves Times(Halves parts, Halves shares)
{
    const Halves product = parts * shares;
    return (product + (product >> 8) + 128) >> 8;
}

// Lays a color over the pixels of an image.
class Blender
{
public:
    Blender(uchar* first, qsizetype rowBytes, QRgb color)
        : bits(first), bytesPerLine(rowBytes),
          colors(reinterpret_cast<Halves>(Areas{} + static_cast<int>(color)))
    {
    }

    void StartRow(int x, int y) { start = reinterpret_cast<QRgb*>(bits + y * bytesPerLine) + x; }

    void Group(int column, Areas areas) { Blend(start + column, kGroup, Shares(areas)); }

    void Run(int column, int count, int area)
    {
        const Halves shares = Shares(Areas{} + area);
        if (shares[0] == kFull) {
            ForGroups(start + column, count, [this](QRgb* pixels, size_t some) {
                memcpy(pixels, &colors, some * sizeof(QRgb));
            });
        } else if (shares[0] > 0) {
            ForGroups(start + column, count,
                      [this, shares](QRgb* pixels, size_t some) { Blend(pixels, some, shares); });
        }
    }

private:
    template <typename Function> static void ForGroups(QRgb* pixels, int count, Function function)
    {
        for (; count >= kGroup; count -= kGroup, pixels += kGroup)
            function(pixels, kGroup);
        for (; count > 0; --count, ++pixels)
            function(pixels, 1);
    }

    // Each of the two products is rounded by itself.
    void Blend(QRgb* pixels, size_t count, Halves shares) const
    {
        Halves there = {};
        memcpy(&there, pixels, count * sizeof(QRgb));
        const Halves rest = kFull - shares;
        const Halves low = Times(colors & 255, shares) + Times(there & 255, rest);
        const Halves high = Times(colors >> 8, shares) + Times(there >> 8, rest);
        const Halves mixed = low | high << 8;
        memcpy(pixels, &mixed, count * sizeof(QRgb));
    }

    uchar* bits;
    qsizetype bytesPerLine;
    QRgb* start = nullptr;
    Halves colors; // as many times as there are pixels in a group
};

} // namespace

bool LineFiller::CanFill(const QPen& pen, const QTransform& toDevice, QImage::Format format)
{
    const bool isFormat =
        format == QImage::Format_RGB32 || format == QImage::Format_ARGB32_Premultiplied;
    const bool isPlain = pen.style() == Qt::SolidLine && pen.capStyle() == Qt::SquareCap &&
                         pen.brush().style() == Qt::SolidPattern && pen.color().alpha() == kFull;
    const bool isWide = pen.widthF() >= 1 && !pen.isCosmetic();
    // Compared just as QPainter does it.
    return isFormat && isPlain && isWide && OutlineMaker::CanMap(toDevice) &&
           !qFuzzyCompare(std::abs(toDevice.m11()), std::abs(toDevice.m22()));
}

LineFiller::LineFiller(QImage& image, const QRect& clip, const QTransform& toDevice)
    : bits(image.bits()), bytesPerLine(image.bytesPerLine()), pixels(clip), mapping(toDevice),
      outlines(toDevice, 1), coverage(clip & image.rect())
{
}

bool LineFiller::IsFor(QImage& image, const QRect& clip, const QTransform& toDevice) const
{
    return bits == image.bits() && bytesPerLine == image.bytesPerLine() && pixels == clip &&
           mapping == toDevice;
}

void LineFiller::SetPen(const QPen& pen)
{
    color = pen.color().rgba();
    outlines = OutlineMaker(mapping, pen.widthF());
}

bool LineFiller::Line(int x1, int y1, int x2, int y2)
{
    if (x1 == x2 && y1 == y2)
        return true;
    Outline outline;
    if (!outlines.Make(x1, y1, x2, y2, outline))
        return false;
    coverage.Find(outline, Blender(bits, bytesPerLine, color));
    return true;
}
