// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/fill/dot.h"

#include <QLineF>
#include <QPaintDevice>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QTransform>

#include <algorithm>
#include <cmath>

namespace {

// What a dot covers along one axis, in drawing units.
struct Extent {
    double from, to;
};

// Pixels by which a point on an edge may be beside it, as the mapping is rounded.
constexpr double kRounding = 1e-6;

bool IsWithin(double pixel, int pixels)
{
    return pixel <= pixels + kRounding;
}

Extent Along(int at, double width, double scale, double shift, int pixels)
{
    if (width * std::abs(scale) >= 1)
        return {at - width / 2, at + width / 2};
    const double point = at * scale + shift;
    const double pixel = std::floor(point) - (point >= pixels && IsWithin(point, pixels) ? 1 : 0);
    const double one = (pixel - shift) / scale;
    const double other = (pixel + 1 - shift) / scale;
    return {std::min(one, other), std::max(one, other)};
}

QSize SizeOf(const QPaintDevice& device)
{
    return {device.width(), device.height()};
}

QRectF Square(double x, double y, double side)
{
    return {x - side / 2, y - side / 2, side, side};
}

} // namespace

QRectF DotOnPixels(int x, int y, double width, const QTransform& toDevice, const QSize& picture)
{
    // Turned, it has the area of a pixel at least.
    if (toDevice.type() > QTransform::TxScale)
        return Square(x, y, std::max(width, 1 / std::sqrt(std::abs(toDevice.determinant()))));
    const Extent across = Along(x, width, toDevice.m11(), toDevice.dx(), picture.width());
    const Extent down = Along(y, width, toDevice.m22(), toDevice.dy(), picture.height());
    return {QPointF(across.from, down.from), QPointF(across.to, down.to)};
}

// Known to be a rectangle, it would be painted in a way that depends on the clip.
void PaintDotOnPixels(QPainter& painter, int x, int y)
{
    const QTransform toDevice = painter.deviceTransform();
    if (!toDevice.isInvertible())
        return;
    const QPen& pen = painter.pen();
    QPainterPath path;
    path.addRect(DotOnPixels(x, y, pen.widthF(), toDevice, SizeOf(*painter.device())));
    painter.fillPath(path, pen.brush());
}

// Of a place far away or none, both are false.
bool IsPutBeside(const QPainter& painter, int x, int y)
{
    constexpr double kHalf = 0.5; // the nearest pixel is the one after the last
    const auto isBeside = [](double place, int pixels) {
        return place >= pixels - kHalf && IsWithin(place, pixels);
    };
    const QPointF point = painter.deviceTransform().map(QPointF(x, y));
    const QSize picture = SizeOf(*painter.device());
    return isBeside(point.x(), picture.width()) || isBeside(point.y(), picture.height());
}

void PaintDotOnPaper(QPainter& painter, int x, int y)
{
    const QPen pen = painter.pen();
    if (pen.widthF() > 0)
        painter.fillRect(Square(x, y, pen.widthF()), pen.brush());
    else
        painter.drawLine(QLineF(x - 0.5, y, x + 0.5, y));
}
