// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/fill/dot.h"

#include <QLineF>
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

Extent Along(int at, double width, double scale, double shift)
{
    if (width * std::abs(scale) >= 1)
        return {at - width / 2, at + width / 2};
    const double pixel = std::floor(at * scale + shift);
    const double one = (pixel - shift) / scale;
    const double other = (pixel + 1 - shift) / scale;
    return {std::min(one, other), std::max(one, other)};
}

QRectF Square(double x, double y, double side)
{
    return {x - side / 2, y - side / 2, side, side};
}

} // namespace

QRectF DotOnPixels(int x, int y, double width, const QTransform& toDevice)
{
    // Turned, it has the area of a pixel at least.
    if (toDevice.type() > QTransform::TxScale)
        return Square(x, y, std::max(width, 1 / std::sqrt(std::abs(toDevice.determinant()))));
    const Extent across = Along(x, width, toDevice.m11(), toDevice.dx());
    const Extent down = Along(y, width, toDevice.m22(), toDevice.dy());
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
    path.addRect(DotOnPixels(x, y, pen.widthF(), toDevice));
    painter.fillPath(path, pen.brush());
}

void PaintDotOnPaper(QPainter& painter, int x, int y)
{
    const QPen pen = painter.pen();
    if (pen.widthF() > 0)
        painter.fillRect(Square(x, y, pen.widthF()), pen.brush());
    else
        painter.drawLine(QLineF(x - 0.5, y, x + 0.5, y));
}
