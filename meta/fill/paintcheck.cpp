// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/fill/paintcheck.h"

#include "meta/fill/dot.h"
#include "meta/fill/linefiller.h"

#include <QImage>
#include <QLine>
#include <QPainter>
#include <QPen>
#include <QSize>
#include <QTransform>

#include <algorithm>
#include <array>
#include <random>

namespace {

constexpr QSize kSize(48, 40);
constexpr int kLines = 8; // with each pen, and as many dots: 192 of each in all

// The same numbers with every library, which std::uniform_int_distribution does not promise.
int Between(std::minstd_rand& random, int low, int high)
{
    return low + static_cast<int>(random() % static_cast<unsigned>(high - low + 1));
}

QRgb AnyColor(std::minstd_rand& random)
{
    return qRgb(Between(random, 0, 255), Between(random, 0, 255), Between(random, 0, 255));
}

QImage AnyImage(QImage::Format format, std::minstd_rand& random)
{
    QImage image(kSize, format);
    for (int y = 0; y < image.height(); ++y) {
        auto* const row = reinterpret_cast<QRgb*>(image.scanLine(y));
        std::generate_n(row, image.width(), [&] { return AnyColor(random); });
    }
    return image;
}

// Most are short and some far longer than the image; a few are horizontal or vertical.
QLine AnyLine(const QTransform& toDevice, std::minstd_rand& random)
{
    const int beyond = Between(random, 0, 7) == 0 ? 2000 : 8;
    const auto point = [&] {
        return QPoint(Between(random, -beyond, kSize.width() + beyond),
                      Between(random, -beyond, kSize.height() + beyond));
    };
    QLine line = toDevice.inverted().map(QLine(point(), point()));
    if (Between(random, 0, 9) == 0)
        line.setP2({line.x1(), line.y2()});
    if (Between(random, 0, 9) == 0)
        line.setP2({line.x2(), line.y1()});
    return line;
}

bool AgreeOn(const QTransform& toDevice, QImage::Format format, std::minstd_rand& random)
{
    QImage filled = AnyImage(format, random);
    QImage painted = filled.copy();
    QPainter painter(&painted);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setTransform(toDevice);
    LineFiller filler(filled, filled.rect(), toDevice);
    for (const int width : {1, 3, 16, 80}) {
        const QPen pen(QColor(AnyColor(random)), width);
        painter.setPen(pen);
        filler.SetPen(pen);
        for (int i = 0; i < kLines; ++i) {
            const QLine line = AnyLine(toDevice, random);
            filler.Line(line.x1(), line.y1(), line.x2(), line.y2());
            if (line.isNull())
                PaintDotOnPixels(painter, line.x1(), line.y1());
            else
                painter.drawLine(line);
            filler.Line(line.x1(), line.y1(), line.x1(), line.y1());
            PaintDotOnPixels(painter, line.x1(), line.y1());
        }
    }
    return filled == painted;
}

bool Compare()
{
    std::minstd_rand random(1);
    const std::array mappings = {QTransform(0.15625, 0, 0, 0.14295, 0, 0),
                                 QTransform(0.5, 0, 0, 1.3, 3.7, -11.2),
                                 QTransform(-2.1, 0, 0, 4.9, 40, 0.4)};
    return std::all_of(mappings.begin(), mappings.end(), [&](const QTransform& toDevice) {
        return AgreeOn(toDevice, QImage::Format_RGB32, random) &&
               AgreeOn(toDevice, QImage::Format_ARGB32_Premultiplied, random);
    });
}

} // namespace

bool FillsLikePainter()
{
    static const bool agrees = Compare();
    return agrees;
}
