// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/likeness.h"

#include "tests/converter.h"
#include "tests/reference/streams.h"

#include <QColorSpace>
#include <QProcess>

#include <algorithm>
#include <cstdlib>

namespace {

int Difference(QRgb a, QRgb b)
{
    return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                     std::abs(qBlue(a) - qBlue(b))});
}

const QRgb* Row(const QImage& picture, int y)
{
    return reinterpret_cast<const QRgb*>(picture.constScanLine(y));
}

bool IsNear(const QImage& picture, int x, int y, QRgb color, int tolerance)
{
    for (int row = std::max(y - 1, 0); row <= std::min(y + 1, picture.height() - 1); ++row) {
        const QRgb* pixels = Row(picture, row);
        for (int column = std::max(x - 1, 0); column <= std::min(x + 1, picture.width() - 1);
             ++column) {
            if (Difference(pixels[column], color) <= tolerance)
                return true;
        }
    }
    return false;
}

// The share of a picture's pixels that have nothing like their color in the other picture, there or
// beside it.
double Strays(const QImage& picture, const QImage& other, int tolerance)
{
    int strays = 0;
    for (int y = 0; y < picture.height(); ++y) {
        const QRgb* pixels = Row(picture, y);
        const QRgb* others = Row(other, y);
        for (int x = 0; x < picture.width(); ++x) {
            if (pixels[x] != others[x] && !IsNear(other, x, y, pixels[x], tolerance))
                ++strays;
        }
    }
    return strays / (1.0 * picture.width() * picture.height());
}

} // namespace

QByteArray SeededGraph(unsigned seed)
{
    return QByteArray::fromStdString(streams::Make(seed))
        .replace("\x1bZD", "\x1bZF")
        .replace(";ZD", ";ZF");
}

QImage Loaded(const QString& name)
{
    const QImage stored(name);
    QImage image = stored.convertToFormat(stored.hasAlphaChannel() ? QImage::Format_ARGB32
                                                                   : QImage::Format_RGB32);
    image.setColorSpace({}); // two pictures with different color spaces are never equal
    return image;
}

bool LookAlike(const QImage& a, const QImage& b, int tolerance)
{
    constexpr double kMostStrays = 0.01;
    if (a.size() != b.size()) {
        qWarning() << "sizes differ" << a.size() << b.size();
        return false;
    }
    const double strays = std::max(Strays(a, b, tolerance), Strays(b, a, tolerance));
    if (strays > kMostStrays)
        qWarning("%.2f percent of the pixels differ", strays * 100.0);
    return strays <= kMostStrays;
}

QByteArray RunTool(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(kTimeout) || process.exitCode() != 0)
        qWarning("%s: %s", qPrintable(program), process.readAllStandardError().constData());
    return process.readAllStandardOutput();
}

QImage RenderedSvg(const QString& name)
{
    const QString picture = name + Text(".rsvg.png");
    RunTool(Text("rsvg-convert"), {Text("--output"), picture, name});
    return Loaded(picture);
}

QImage RenderedPdf(const QString& name, QSize size)
{
    const QString base = name + Text(".page");
    RunTool(Text("pdftocairo"),
            {Text("-png"), Text("-singlefile"), Text("-scale-to-x"), QString::number(size.width()),
             Text("-scale-to-y"), QString::number(size.height()), name, base});
    return Loaded(base + Text(".png"));
}
