// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/kit/plainpainter.h"

#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QTransform>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

// Whether a place is just after the last pixel.
bool OnEdge(double place, int pixels)
{
    return place >= pixels && place - pixels < 1e-6;
}

// From where to where a dot reaches along an axis, in units.
std::pair<double, double> DotSide(int at, double width, double scale, double shift, int pixels)
{
    if (width * std::abs(scale) >= 1.0)
        return {at - width / 2, at + width / 2};
    double pixel = std::floor(at * scale + shift);
    if (OnEdge(at * scale + shift, pixels))
        pixel = pixels - 1;
    return std::minmax({(pixel - shift) / scale, (pixel + 1 - shift) / scale});
}

void PaintDot(QPainter& painter, const QPoint& at)
{
    const QTransform toDevice = painter.deviceTransform();
    const double width = painter.pen().widthF();
    const auto [left, right] =
        DotSide(at.x(), width, toDevice.m11(), toDevice.dx(), painter.device()->width());
    const auto [top, bottom] =
        DotSide(at.y(), width, toDevice.m22(), toDevice.dy(), painter.device()->height());
    QPainterPath path;
    path.addPolygon(QPolygonF(QRectF(QPointF(left, top), QPointF(right, bottom))));
    painter.fillPath(path, painter.pen().brush());
}

void PaintOperation(QPainter* painter, const QString& operation)
{
    const QStringList words = operation.split(u' ');
    const auto number = [&words](int at) { return words[at].toInt(); };
    if (words[0] == u"window")
        painter->setWindow(number(1), number(2), number(3), number(4));
    if (words[0] == u"fill")
        painter->fillRect(number(1), number(2), number(3), number(4), QColor(words[5]));
    if (words[0] == u"line") {
        painter->setPen(QPen(QColor(words[5]), number(6)));
        PaintVector(*painter, QLine(number(1), number(2), number(3), number(4)));
    }
    if (words[0] == u"text") {
        painter->setPen(QColor(words[3]));
        painter->drawText(number(1), number(2), operation.section(u' ', 4));
    }
}

// Whether the pixel nearest to a point is just beside the picture, but the point is not.
bool IsLost(const QPainter& painter, const QPoint& at)
{
    const QPointF place = QPointF(at) * painter.deviceTransform();
    const auto isLost = [](double along, int pixels) {
        return along >= pixels - 0.5 && (along < pixels || OnEdge(along, pixels));
    };
    return isLost(place.x(), painter.device()->width()) ||
           isLost(place.y(), painter.device()->height());
}

} // namespace

void PaintVector(QPainter& painter, const QLine& vector)
{
    // Qt paints those of the thinnest pen as one pixel, the nearest one, if the picture has it.
    if (vector.isNull() && (painter.pen().widthF() > 0.0 || IsLost(painter, vector.p1())))
        PaintDot(painter, vector.p1());
    else
        painter.drawLine(vector);
}

QImage PaintPlainly(const QStringList& operations, QSize size, QImage::Format format,
                    bool antialiased)
{
    QImage image(size, format);
    image.fill(image.hasAlphaChannel() ? Qt::transparent : Qt::red);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing, antialiased);
    PaintPlainly(operations, painter);
    return image;
}

void PaintPlainly(const QStringList& operations, QPainter& painter)
{
    for (const QString& operation : operations)
        PaintOperation(&painter, operation);
}
