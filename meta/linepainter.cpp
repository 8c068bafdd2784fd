// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/linepainter.h"

#include "meta/fill/dot.h"
#include "meta/fill/linefiller.h"
#include "meta/fill/paintcheck.h"
#include "meta/imagepainter.h"
#include "meta/passwatch.h"
#include "support/numbers.h"

#include <QImage>
#include <QPaintEngine>
#include <QPainter>
#include <QPen>
#include <QRegion>
#include <QTransform>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

// Device pixels that a line may extend beyond its pen: half of the thinnest pen, what antialiasing
// spreads, and the rounding of its ends.
constexpr double kReach = 2.0;

// The corner of a square cap is so many times a pen's width from the line's end.
constexpr double kCorner = std::numbers::sqrt2 / 2;

// The visible part of the device, in its pixels: the exposed part, if there is one. The device may
// report its size in larger units.
QRegion VisiblePixels(const QPainter& painter)
{
    QRegion exposed = painter.paintEngine()->systemClip();
    if (!exposed.isEmpty())
        return exposed;
    const QPaintDevice* device = painter.device();
    const double ratio = device->devicePixelRatioF();
    return QRect(0, 0, TruncToInt(std::ceil(device->width() * ratio)),
                 TruncToInt(std::ceil(device->height() * ratio)));
}

} // namespace

LinePainter::LinePainter(QPainter& target) : painter(&target), isRaster(IsRaster(target)) {}

LinePainter::~LinePainter()
{
    DrawWaiting();
    if (clipsDevice)
        painter->setClipping(false);
}

void LinePainter::LimitTo(const QRect& pixels)
{
    ClipToPixels(*painter, pixels);
    clip = pixels;
}

void LinePainter::SetPen(const QPen& pen)
{
    DrawWaiting();
    painter->setPen(pen);
    dots = FindDotWay(pen);
    if (!isRaster)
        return;
    ClipToDevice(pen);
    FindVisible(pen);
    batchSize = MayBatch(pen) ? kBatchSize : 1;
    FindFiller(pen);
}

void LinePainter::Add(int x1, int y1, int x2, int y2)
{
    const bool isBetweenParts =
        partCount > 0 && std::all_of(parts.begin(), parts.begin() + partCount,
                                     [=](auto& part) { return part.Misses(x1, y1, x2, y2); });
    if (isBetweenParts)
        return;
    if (fills && filler->Line(x1, y1, x2, y2)) {
        CountFilled();
        return;
    }
    if (x1 == x2 && y1 == y2 && !IsLine(x1, y1)) {
        Dot(x1, y1);
        return;
    }
    batch[waiting++] = QLine(x1, y1, x2, y2);
    if (waiting == batchSize)
        DrawWaiting();
}

// Whether a dot is drawn as a line.
bool LinePainter::IsLine(int x, int y) const
{
    return dots == DotWay::kAsLines ||
           (dots == DotWay::kAsLinesInside && !IsPutBeside(*painter, x, y));
}

void LinePainter::Dot(int x, int y)
{
    DrawWaiting();
    if (dots == DotWay::kOnPaper)
        PaintDotOnPaper(*painter, x, y);
    else
        PaintDotOnPixels(*painter, x, y);
    HavePainted();
}

void LinePainter::Flush()
{
    DrawWaiting();
    if (filler != nullptr)
        filler->ForgetPixels();
}

void LinePainter::DrawWaiting()
{
    if (waiting == 0)
        return;
    painter->drawLines(batch.data(), static_cast<int>(waiting));
    waiting = 0;
    HavePainted();
}

void LinePainter::HavePainted()
{
    if (filler != nullptr)
        filler->ForgetPixels();
    if (watch != nullptr)
        watch->Tick();
}

// Filled lines wait for nobody, so that no batch of them is ever full.
void LinePainter::CountFilled()
{
    filled = (filled + 1) % kBatchSize;
    if (filled == 0 && watch != nullptr)
        watch->Tick();
}

void LinePainter::FindVisible(const QPen& pen)
{
    visible = {};
    partCount = 0;
    const QTransform toDevice = painter->deviceTransform();
    if (toDevice.type() > QTransform::TxScale || !toDevice.isInvertible())
        return;
    const double reachX = pen.widthF() * kCorner + kReach / std::abs(toDevice.m11());
    const double reachY = pen.widthF() * kCorner + kReach / std::abs(toDevice.m22());
    const auto touching = [&, fromDevice = toDevice.inverted()](const QRect& pixels) {
        QRectF units = fromDevice.mapRect(QRectF(pixels));
        if (!clip && painter->hasClipping())
            units &= painter->clipBoundingRect();
        return UnitBounds{TruncToInt(std::floor(units.left() - reachX)),
                          TruncToInt(std::floor(units.top() - reachY)),
                          TruncToInt(std::ceil(units.right() + reachX)),
                          TruncToInt(std::ceil(units.bottom() + reachY))};
    };
    const QRegion pixels = clip ? QRegion(*clip) : VisiblePixels(*painter);
    visible = touching(pixels.boundingRect());
    if (pixels.rectCount() == 1 || pixels.rectCount() > static_cast<int>(kMostParts))
        return;
    for (const QRect& part : pixels)
        parts[static_cast<size_t>(partCount++)] = touching(part);
}

// Of the thinnest pen, Qt paints the pixel itself. An engine that is no part of Qt gets each vector
// as it is.
LinePainter::DotWay LinePainter::FindDotWay(const QPen& pen) const
{
    if (isRaster)
        return pen.widthF() > 0 ? DotWay::kOnPixels : DotWay::kAsLinesInside;
    return painter->paintEngine()->type() == QPaintEngine::User ? DotWay::kAsLines
                                                                : DotWay::kOnPaper;
}

// Qt draws the lines of a call one by one unless it has to stretch the pen to an ellipse; in that
// case it fills them as one shape, in which crossings are not drawn twice.
bool LinePainter::MayBatch(const QPen& pen) const
{
    return HasSameScales(painter->deviceTransform()) || pen.widthF() == 0.0;
}

void LinePainter::FindFiller(const QPen& pen)
{
    fills = false;
    QImage* image = ImageOf(*painter);
    const QTransform toDevice = painter->deviceTransform();
    if (image == nullptr || !LineFiller::CanFill(pen, toDevice, image->format()) ||
        !PaintsPlainly(*painter) || !FillsLikePainter())
        return;
    const std::optional<QRect> pixels = clip ? clip : PixelClip(*painter, *image);
    if (!pixels)
        return;
    if (filler == nullptr || !filler->IsFor(*image, *pixels, toDevice))
        filler = std::make_unique<LineFiller>(*image, *pixels, toDevice);
    filler->SetPen(pen);
    fills = true;
}

// Qt draws the thinnest lines in 0.3 to 0.8 of the time, and with the same pixels, when its clip is
// known to be a rectangle; without one it looks each span up, in a clip that is one too.
void LinePainter::ClipToDevice(const QPen& pen)
{
    if (clipsDevice && !IsExactInClip(*painter, pen)) {
        painter->setClipping(false);
        clip.reset();
        clipsDevice = false;
    }
    const QImage* image = ImageOf(*painter);
    if (clip || image == nullptr || painter->hasClipping() || !IsExactInClip(*painter, pen))
        return;
    ClipToPixels(*painter, image->rect());
    clip = image->rect();
    clipsDevice = true;
}
