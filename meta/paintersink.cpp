// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/paintersink.h"

#include "meta/imagepainter.h"
#include "meta/palette.h"
#include "meta/passwatch.h"
#include "meta/plftext.h"
#include "support/numbers.h"

#include <QPainter>
#include <QPainterPath>
#include <QString>

#include <algorithm>
#include <cmath>

namespace {

// The printed area in inches: 9.0 by 6.855 has the shape of the file's area.
constexpr double kPageLeft = 0.8;
constexpr double kPageTop = 0.6;
constexpr double kPageWidth = 9.0;
constexpr double kPageHeight = 6.855;

// Limit of the page's position and size, in printer pixels: Qt adds the two as ints, and the
// configuration file may contain any shift and factor.
constexpr int kMaxPagePixels = 1 << 29;

int PagePixels(double value)
{
    return std::clamp(TruncToInt(value), -kMaxPagePixels, kMaxPagePixels);
}

QRect ToQRect(int64_t left, int64_t top, int64_t right, int64_t bottom)
{
    return {QPoint(SaturateToInt(left), SaturateToInt(top)),
            QPoint(SaturateToInt(right - 1), SaturateToInt(bottom - 1))};
}

// Whether Qt would make a bitmap of each glyph of a text, as it does for small glyphs, and the
// glyphs are longer than such a bitmap may be: in a narrow part of a graph in a wide window.
bool IsTooLongForPictures(const QPainter& painter)
{
    constexpr double kLongest = 512;             // pixels; Qt crashes from about 1000
    constexpr double kLargestArea = 2 * 64 * 64; // it makes none above half of that
    const QTransform toDevice = painter.deviceTransform();
    const double size = painter.fontMetrics().height();
    const double stretch = std::max({std::abs(toDevice.m11()), std::abs(toDevice.m12()),
                                     std::abs(toDevice.m21()), std::abs(toDevice.m22())});
    return size * stretch > kLongest &&
           size * size * std::abs(toDevice.determinant()) < kLargestArea;
}

void DrawOutlines(QPainter& painter, const QPoint& at, const QString& text)
{
    QPainterPath path;
    path.addText(at, painter.font(), text);
    painter.fillPath(path, painter.pen().color());
}

// Qt would reject such a width with a warning each time.
int Accepted(int64_t width, int before)
{
    return width < 0 || width > kMaxPenWidth ? before : static_cast<int>(width);
}

} // namespace

int PenWidthOf(int width, int before)
{
    return Accepted(width / 2, before);
}

PainterSink::PainterSink(QPainter& target, const PlfPass& drawnPass, int backgroundIndex,
                         QPen& workingPen)
    : painter(target), pass(drawnPass), background(backgroundIndex), pen(workingPen), lines(target)
{
    lines.Watch(pass.watch);
}

void PainterSink::Begin()
{
    MapWindow();
    if (pass.fillsBackground)
        FillBackground();
}

void PainterSink::MapWindow()
{
    painter.setPen(Qt::black);
    painter.setWindow(ToQRect(0, 0, pass.full.right, pass.full.bottom));
    if (pass.IsZoomed())
        painter.setWindow(
            ToQRect(pass.zoom.left, pass.zoom.top, pass.zoom.right, pass.zoom.bottom));
    if (pass.page)
        MapPage(*pass.page);
}

// The order of the truncations is deliberate: hosts rely on the printed position.
void PainterSink::MapPage(const PrintedPage& page)
{
    const int left = PagePixels(page.dpiX * kPageLeft + page.shiftX);
    const int top = PagePixels(page.dpiY * kPageTop + page.shiftY);
    const int width = PagePixels(page.dpiX * kPageWidth * page.factorX);
    const int height = PagePixels(page.dpiY * kPageHeight * page.factorY);
    const QRect place(left, top, width, height);
    painter.setViewport(place);
    if (pass.IsZoomed())
        ClipToPage(place);
}

// On screen the view's edges hide everything around the zoomed part; on paper nothing does.
void PainterSink::ClipToPage(const QRect& page)
{
    painter.setViewTransformEnabled(false);
    painter.setClipRect(page.normalized());
    painter.setViewTransformEnabled(true);
}

void PainterSink::FillBackground()
{
    painter.setBackground(PaletteColor(background));
    painter.eraseRect(ToQRect(0, 0, pass.full.right, pass.full.bottom));
}

int PainterSink::PenWidth(int width) const
{
    if (!pass.page)
        return PenWidthOf(width, pen.width());
    return Accepted(2 * int64_t{std::max(width, pass.page->minLineWidth)}, pen.width());
}

void PainterSink::SetPen(int index, int width)
{
    pen.setColor(LineColor(index, background));
    pen.setStyle(Qt::SolidLine);
    pen.setWidth(PenWidth(width));
    lines.SetPen(Visible(pen));
}

QPen PainterSink::Visible(QPen thin) const
{
    if (thin.widthF() < pass.minPenWidth)
        thin.setWidthF(pass.minPenWidth);
    return thin;
}

// The text is drawn in the painter's current font and line pen, regardless of ZF, ZS, ZA and ZC:
// deliberate, graphs are designed for this.
void PainterSink::Text(std::string_view text, int x, int y)
{
    if (!pass.drawsTexts)
        return;
    lines.Flush();
    if (pass.watch != nullptr)
        pass.watch->Tick();
    const QPoint at(x, y);
    const QString decoded = TextFromFile(text);
    if (IsRaster(painter) && IsTooLongForPictures(painter))
        DrawOutlines(painter, at, decoded);
    else
        painter.drawText(at, decoded);
}
