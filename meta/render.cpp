// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// From commands to the painter: the coordinate mapping, pens, vectors and texts.
#include "meta/epswriter.h"
#include "meta/palette.h"
#include "meta/passwatch.h"
#include "meta/plfmeta.h"
#include "meta/plftext.h"
#include "meta/printerdpi.h"
#include "support/numbers.h"

#include <QPainter>
#include <QPainterPath>
#include <QString>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

// The printed area in inches: 9.0 by 6.855 keeps the shape of the file's area.
constexpr double kPageLeft = 0.8;
constexpr double kPageTop = 0.6;
constexpr double kPageWidth = 9.0;
constexpr double kPageHeight = 6.855;

// Farthest that the page may lie or reach, in printer pixels: the toolkit adds place and size as
// ints, and the configuration file may hold any shift and factor.
constexpr int kMaxPagePixels = 1 << 29;

int PagePixels(double value)
{
    return std::clamp(TruncToInt(value), -kMaxPagePixels, kMaxPagePixels);
}

// Path items on a line of the EPS output.
constexpr int kEpsItemsPerLine = 4;

QRect ToQRect(int64_t left, int64_t top, int64_t right, int64_t bottom)
{
    return {QPoint(SaturateToInt(left), SaturateToInt(top)),
            QPoint(SaturateToInt(right - 1), SaturateToInt(bottom - 1))};
}

// Whether the toolkit would make a picture of each glyph of a text, as it does where their area is
// small, and they are longer than such a picture may be: a narrow part of a graph in a wide window.
bool IsTooLongForPictures(const QPainter& painter)
{
    constexpr double kLongest = 512;             // pixels; the toolkit crashes from about 1000
    constexpr double kLargestArea = 2 * 64 * 64; // it makes none from half of that
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

} // namespace

void CPlfMeta::MapWindow(const Rect& zoom, const Rect& full)
{
    fZoomed = zoom.width > 0 ? 1 : 0;
    if (pPainter == nullptr)
        return;
    pPainter->setPen(Qt::black);
    pPainter->setWindow(ToQRect(0, 0, full.right, full.bottom));
    if (fZoomed != 0)
        pPainter->setWindow(ToQRect(zoom.left, zoom.top, zoom.right, zoom.bottom));
    if (pPrinter != nullptr)
        MapPage();
}

// Every truncation stands where it does on purpose: hosts rely on the printed position.
void CPlfMeta::MapPage()
{
    const Resolution dpi = PrinterResolution(pPrinter);
    const int left = PagePixels(dpi.x * kPageLeft + giPageX);
    const int top = PagePixels(dpi.y * kPageTop + giPageY);
    const int width = PagePixels(dpi.x * kPageWidth * gdPageSizeX);
    const int height = PagePixels(dpi.y * kPageHeight * gdPageSizeY);
    const QRect page(left, top, width, height);
    pPainter->setViewport(page);
    if (fZoomed != 0)
        ClipToPage(page);
}

// On screen the view's edges hide what lies around the zoomed part; paper goes on beside the page.
void CPlfMeta::ClipToPage(const QRect& page)
{
    pPainter->setViewTransformEnabled(false);
    pPainter->setClipRect(page.normalized());
    pPainter->setViewTransformEnabled(true);
}

void CPlfMeta::FillBackground(const Rect& full)
{
    if (pPainter == nullptr)
        return;
    pPainter->setBackground(PaletteColor(static_cast<long>(gdwBkClrFile)));
    pPainter->eraseRect(ToQRect(0, 0, full.right, full.bottom));
}

int CPlfMeta::MapColor(int index) const
{
    if (index < 1 || index > kPaletteSize)
        return 0;
    if (pPrinter != nullptr && gfPrtWht2Blk != 0)
        return index == kWhite ? 0 : index;
    if (gdwLineClrFlag == 1)
        return 0;
    if (gdwLineClrFlag == 2 && index < kPaletteSize)
        return gwLineClrMap[index];
    return index;
}

int CPlfMeta::PenWidth() const
{
    const int64_t width =
        pPrinter != nullptr ? 2 * int64_t{std::max(iWidth, giPrtMinLineWidth)} : iWidth / 2;
    // The toolkit refuses such a width with a warning for each; refused here, it costs nothing.
    if (width < 0 || width > kMaxPenWidth)
        return pen.width();
    return static_cast<int>(width);
}

void CPlfMeta::SetPen(int index)
{
    // White lines would vanish on white. Black on black is not swapped, deliberately.
    if (static_cast<int>(gdwBkClrFile) == kWhite && index == kWhite)
        index = 0;
    pen.setColor(PaletteColor(index));
    pen.setStyle(Qt::SolidLine);
    pen.setWidth(PenWidth());
    lines.SetPen(pen);
}

void CPlfMeta::SetPenWidth(int width)
{
    if (width == iWidth)
        return;
    iWidth = width;
    SetPen(MapColor(iColor)); // mapped a second time, deliberately
    if (cvtfp != nullptr)
        cvtfp->LineWidth(width);
    ClearPenPos();
}

void CPlfMeta::SetColor(int index)
{
    // The stored colour is mapped, the argument is not: compared as they are, deliberately.
    if (index == iColor)
        return;
    iColor = MapColor(index);
    SetPen(iColor);
    if (cvtfp != nullptr)
        cvtfp->LineColor(iColor);
    ClearPenPos();
}

void CPlfMeta::EpsVector(bool continues, int x1, int y1, int x2, int y2)
{
    if (continues)
        cvtfp->LineTo(x2, y2);
    else
        cvtfp->MoveAndLineTo(x1, y1, x2, y2);
    CountEpsItem();
}

// A moveto with its lineto is one item, like a lineto alone.
void CPlfMeta::CountEpsItem()
{
    if (++nEpsItems > kEpsItemsPerLine) {
        cvtfp->EndLine();
        nEpsItems = 1;
    }
}

QFont CPlfMeta::TextFont() const
{
    QFont font(TextFromFile(szFontName));
    if (iFontSize > 0)
        font.setPointSize(iFontSize);
    font.setWeight((dwTextAttr & kBold) != 0 ? QFont::Bold : QFont::Normal);
    font.setItalic((dwTextAttr & kItalic) != 0);
    return font;
}

// The text stands in the painter's current font and line pen, whatever ZF, ZS, ZA and ZC asked
// for: deliberate, graphs are laid out for it.
void CPlfMeta::DrawTextKorvel(char* text)
{
    size_t length = strlen(text);
    if (length > 0 && text[length - 1] == '\n')
        text[--length] = 0;
    ReportText({text, length});
    if (pPainter == nullptr)
        return;
    lines.Flush();
    if (watch != nullptr)
        watch->Tick();
    const QPoint at(iTextX, iTextY);
    const QString decoded = TextFromFile({text, length});
    if (IsRaster(pPainter) && IsTooLongForPictures(*pPainter))
        DrawOutlines(*pPainter, at, decoded);
    else
        pPainter->drawText(at, decoded);
}
