// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/linefilter.h"

#include <QPainter>

bool LineFilterEngine::begin(QPaintDevice* /*device*/)
{
    return true;
}

QPen LineFilterEngine::Filtered(QPen pen) const
{
    if (pen.widthF() < filter.minPenWidth)
        pen.setWidthF(filter.minPenWidth);
    return pen;
}

void LineFilterEngine::updateState(const QPaintEngineState& change)
{
    const DirtyFlags flags = change.state();
    if (flags.testFlag(DirtyPen))
        target->setPen(Filtered(change.pen()));
    if (flags.testFlag(DirtyBrush))
        target->setBrush(change.brush());
    if (flags.testFlag(DirtyTransform))
        target->setTransform(change.transform());
    if (flags.testFlag(DirtyHints))
        target->setRenderHints(change.renderHints());
}

void LineFilterEngine::drawRects(const QRect* rects, int count)
{
    for (int i = 0; i < count && !filter.withoutBackground; ++i)
        target->fillRect(rects[i], target->brush());
}

void LineFilterEngine::drawRects(const QRectF* rects, int count)
{
    for (int i = 0; i < count && !filter.withoutBackground; ++i)
        target->fillRect(rects[i], target->brush());
}

void LineFilterEngine::drawLines(const QLine* lines, int count)
{
    target->drawLines(lines, count);
}

void LineFilterEngine::drawLines(const QLineF* lines, int count)
{
    target->drawLines(lines, count);
}

void LineFilterEngine::drawPath(const QPainterPath& path)
{
    target->drawPath(path);
}

void LineFilterEngine::drawTextItem(const QPointF& at, const QTextItem& item)
{
    target->drawTextItem(at, item);
}

void LineFilterEngine::drawPixmap(const QRectF& place, const QPixmap& picture, const QRectF& part)
{
    target->drawPixmap(place, picture, part);
}

LineFilter::LineFilter(QPainter* painter, const LineFilterRules& rules)
    : device(painter->device()), engine(painter, rules)
{
}

int LineFilter::metric(PaintDeviceMetric metric) const
{
    switch (metric) {
    case PdmWidth:
        return device->width();
    case PdmHeight:
        return device->height();
    case PdmWidthMM:
        return device->widthMM();
    case PdmHeightMM:
        return device->heightMM();
    case PdmDpiX:
        return device->logicalDpiX();
    case PdmDpiY:
        return device->logicalDpiY();
    case PdmPhysicalDpiX:
        return device->physicalDpiX();
    case PdmPhysicalDpiY:
        return device->physicalDpiY();
    case PdmDepth:
        return device->depth();
    case PdmNumColors:
        return device->colorCount();
    case PdmDevicePixelRatio:
        return 1;
    default:
        return QPaintDevice::metric(metric);
    }
}
