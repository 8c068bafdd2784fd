// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/fill/linefiller.h"

#include "meta/fill/blend.h"
#include "meta/fill/dot.h"
#include "meta/fill/wideline.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace {

using Areas = Coverage::Areas;

constexpr int kGroup = Coverage::kGroup;
constexpr int kFullArea = 1 << Coverage::kAreaBits;

// Pixels around the image within which an edge might show.
constexpr double kAround = 2;

// Lays a color over the pixels of an image.
class Blender
{
public:
    Blender(uchar* first, qsizetype rowBytes, QRgb color)
        : bits(first), bytesPerLine(rowBytes), colors(Everywhere(color))
    {
    }

    void StartRow(int x, int y) { start = reinterpret_cast<QRgb*>(bits + y * bytesPerLine) + x; }

    void Group(int column, Areas areas) { Blend(start + column, kGroup, Shares(areas)); }

    void Run(int column, int count, int area)
    {
        const Halves shares = Shares(Areas{} + area);
        if (shares[0] == kFullShare) {
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

    void Blend(QRgb* pixels, size_t count, Halves shares) const
    {
        Halves there = {};
        memcpy(&there, pixels, count * sizeof(QRgb));
        const Halves mixed = Mix(colors, shares, there);
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
                         pen.brush().style() == Qt::SolidPattern &&
                         pen.color().alpha() == kFullShare;
    const bool isWide = pen.widthF() >= 1 && !pen.isCosmetic();
    // Compared just as QPainter does it.
    return isFormat && isPlain && isWide && OutlineMaker::CanMap(toDevice) &&
           !qFuzzyCompare(std::abs(toDevice.m11()), std::abs(toDevice.m22()));
}

LineFiller::LineFiller(QImage& image, const QRect& clip, const QTransform& toDevice)
    : bits(image.bits()), bytesPerLine(image.bytesPerLine()), asked(clip), picture(image.size()),
      pixels(clip & image.rect()), mapping(toDevice), outlines(toDevice, 1), coverage(pixels),
      tiles(bits, bytesPerLine, pixels, toDevice),
      aroundPixels(QRectF(pixels).adjusted(-kAround, -kAround, kAround, kAround)),
      around(toDevice.inverted().mapRect(aroundPixels))
{
}

bool LineFiller::IsFor(QImage& image, const QRect& clip, const QTransform& toDevice) const
{
    return bits == image.bits() && bytesPerLine == image.bytesPerLine() && asked == clip &&
           mapping == toDevice;
}

void LineFiller::SetPen(const QPen& pen)
{
    color = pen.color().rgba();
    width = pen.widthF();
    outlines = OutlineMaker(mapping, pen.widthF());
    tiles.SetPen(color, pen.widthF());
}

bool LineFiller::Line(int x1, int y1, int x2, int y2)
{
    if (only == color)
        return true;
    if (x1 == x2 && y1 == y2) {
        Dot(x1, y1);
        return true;
    }
    if (tiles.Hides(x1, y1, x2, y2))
        return true;
    Outline outline;
    if (!outlines.Make(x1, y1, x2, y2, outline))
        return FarLine(x1, y1, x2, y2);
    Fill(outline);
    return true;
}

void LineFiller::Dot(int x, int y)
{
    const QRectF units = DotOnPixels(x, y, width, mapping, picture);
    // Mapped as QPainter does it. What lies beyond the image may be as far as it likes.
    const Outline outline =
        OutlineOf(Near(mapping.map(units.topLeft())), Near(mapping.map(units.bottomRight())));
    const QRect touched(QPoint(outline.left, outline.top), QPoint(outline.right, outline.bottom));
    if (touched.intersects(pixels) && !tiles.Hides(touched))
        Fill(outline);
}

// The point, or the nearest to it of those that lie around the pixels.
QPointF LineFiller::Near(const QPointF& point) const
{
    return {std::clamp(point.x(), aroundPixels.left(), aroundPixels.right()),
            std::clamp(point.y(), aroundPixels.top(), aroundPixels.bottom())};
}

void LineFiller::Fill(const Outline& outline)
{
    coverage.Find(outline, Blender(bits, bytesPerLine, color));
    tiles.Draw();
    only.reset();
}

// QPainter would need a second for such a line, of which hardly ever an edge can be seen.
bool LineFiller::FarLine(int x1, int y1, int x2, int y2)
{
    const WideLine line(x1, y1, x2, y2, width);
    if (line.Misses(around))
        return true;
    if (!line.Contains(around))
        return false;
    FillAll();
    return true;
}

void LineFiller::FillAll()
{
    ForgetPixels();
    Blender blender(bits, bytesPerLine, color);
    for (int y = pixels.top(); y <= pixels.bottom(); ++y) {
        blender.StartRow(pixels.left(), y);
        blender.Run(0, pixels.width(), kFullArea);
    }
    if (KeepsItself(color))
        only = color;
}

void LineFiller::ForgetPixels()
{
    tiles.Forget();
    only.reset();
}
