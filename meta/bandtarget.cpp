// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/bandtarget.h"

#include "meta/imagepainter.h"
#include "meta/paintersink.h"
#include "meta/pass.h"

#include <QImage>
#include <QPen>

namespace {

void Map(const PlfPass& pass, QPainter& painter)
{
    QPen pen;
    PainterSink(painter, pass, pass.Background(), pen).MapWindow();
}

} // namespace

std::optional<BandTarget> FindBandTarget(const PlfPass& pass, QPainter& painter)
{
    constexpr int kDepth = 32;
    if (pass.page || !IsRaster(painter) || !PaintsPlainly(painter))
        return std::nullopt;
    QImage* image = ImageOf(painter);
    if (image == nullptr || image->depth() != kDepth)
        return std::nullopt;
    const std::optional<QRect> clip = PixelClip(painter, *image);
    Map(pass, painter);
    const QTransform toDevice = painter.deviceTransform();
    if (!clip || toDevice.type() > QTransform::TxScale || !toDevice.isInvertible())
        return std::nullopt;
    const QRect pixels = *clip & image->rect();
    if (pixels.isEmpty())
        return std::nullopt;
    return BandTarget{image, pixels};
}

PainterState::PainterState(const QPainter& painter)
    : font(painter.font()), hints(painter.renderHints()), window(painter.window()),
      viewport(painter.viewport()), world(painter.worldTransform()),
      isViewed(painter.viewTransformEnabled()), isMapped(painter.worldMatrixEnabled())
{
}

void PainterState::ApplyTo(QPainter& painter) const
{
    painter.setRenderHints(painter.renderHints(), false);
    painter.setRenderHints(hints);
    painter.setFont(font);
    painter.setWindow(window);
    painter.setViewport(viewport);
    painter.setViewTransformEnabled(isViewed);
    painter.setWorldTransform(world);
    painter.setWorldMatrixEnabled(isMapped);
}
