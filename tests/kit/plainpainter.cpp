// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/kit/plainpainter.h"

#include <QPainter>
#include <QPen>

namespace {

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
        painter->drawLine(number(1), number(2), number(3), number(4));
    }
    if (words[0] == u"text") {
        painter->setPen(QColor(words[3]));
        painter->drawText(number(1), number(2), operation.section(u' ', 4));
    }
}

} // namespace

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
