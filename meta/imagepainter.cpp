// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/imagepainter.h"

#include <QImage>
#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QTransform>

#include <algorithm>
#include <cmath>

namespace {

// A rectangle between pixels, if that is what the path is.
std::optional<QRect> AsPixels(const QPainterPath& path)
{
    // What mapping the clip there and back may change, in pixels.
    constexpr double kTolerance = 1e-6;
    const QRectF bounds = path.boundingRect();
    const QRect pixels = bounds.toRect();
    QPainterPath same;
    same.addRect(pixels);
    if (path.elementCount() != same.elementCount())
        return std::nullopt;
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPointF off = QPointF(path.elementAt(i)) - QPointF(same.elementAt(i));
        if (off.manhattanLength() > kTolerance)
            return std::nullopt;
    }
    return pixels;
}

// Whether the clip of a painter may have been rounded to drawing units that are larger than pixels,
// as those of more than a rectangle are.
bool MayBeRounded(const QPainterPath& path, const QTransform& toDevice)
{
    const QRectF bounds = path.boundingRect();
    return bounds == bounds.toRect() &&
           std::max(std::abs(toDevice.m11()), std::abs(toDevice.m22())) > 1.0;
}

} // namespace

bool IsRaster(const QPainter& painter)
{
    return painter.isActive() && painter.paintEngine()->type() == QPaintEngine::Raster;
}

QImage* ImageOf(const QPainter& painter)
{
    const QPaintEngine* engine = painter.paintEngine();
    const bool isDirect =
        painter.device() == engine->paintDevice() && engine->systemClip().isEmpty();
    return isDirect ? dynamic_cast<QImage*>(painter.device()) : nullptr;
}

bool PaintsPlainly(const QPainter& painter)
{
    return painter.testRenderHint(QPainter::Antialiasing) && painter.opacity() == 1.0 &&
           painter.compositionMode() == QPainter::CompositionMode_SourceOver;
}

bool HasSameScales(const QTransform& toDevice)
{
    return toDevice.type() <= QTransform::TxScale &&
           qFuzzyCompare(std::abs(toDevice.m11()), std::abs(toDevice.m22()));
}

std::optional<QRect> PixelClip(const QPainter& painter, const QImage& image)
{
    if (!painter.hasClipping())
        return image.rect();
    const QPainterPath path = painter.clipPath();
    const QTransform toDevice = painter.deviceTransform();
    if (MayBeRounded(path, toDevice))
        return std::nullopt;
    return AsPixels(toDevice.map(path));
}

// Where the scales are the same, Qt cuts a line that is wider than a pixel at the clip before it
// fills it, and rounds the color of one that is thinner in another way; wide lines that are not
// antialiased are cut in any case.
bool IsExactInClip(const QPainter& painter, const QPen& pen)
{
    const QTransform toDevice = painter.deviceTransform();
    return toDevice.type() <= QTransform::TxScale &&
           painter.testRenderHint(QPainter::Antialiasing) &&
           (pen.widthF() == 0.0 || !HasSameScales(toDevice));
}

QImage SharedPixels(QImage& image)
{
    QImage same(image.bits(), image.width(), image.height(), image.bytesPerLine(), image.format());
    same.setDevicePixelRatio(image.devicePixelRatio());
    same.setDotsPerMeterX(image.dotsPerMeterX());
    same.setDotsPerMeterY(image.dotsPerMeterY());
    return same;
}

void ClipToPixels(QPainter& painter, const QRect& pixels)
{
    const bool isViewed = painter.viewTransformEnabled();
    const bool isMapped = painter.worldMatrixEnabled();
    painter.setViewTransformEnabled(false);
    painter.setWorldMatrixEnabled(false);
    const double ratio = painter.device()->devicePixelRatioF();
    painter.setClipRect(QRectF(pixels.x() / ratio, pixels.y() / ratio, pixels.width() / ratio,
                               pixels.height() / ratio));
    painter.setWorldMatrixEnabled(isMapped);
    painter.setViewTransformEnabled(isViewed);
}
