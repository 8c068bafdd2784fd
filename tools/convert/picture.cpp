// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/picture.h"

#include "meta/bytesink.h"
#include "meta/pass.h"
#include "tools/convert/palettize.h"
#include "tools/convert/pdfpicture.h"
#include "tools/convert/picturesize.h"
#include "tools/convert/svgpicture.h"
#include "tools/convert/values.h"
#include "tools/convert/vectorpage.h"

#include <QImage>
#include <QImageWriter>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace convert {

namespace {

constexpr double kMetersPerInch = 0.0254;
// On a screen a line is half as many units wide as the file has it.
constexpr int kScreenWidths = 2;
// Of 100. More takes twice the time and saves a few bytes of a hundred.
constexpr int kPngCompression = 40;

double AreaWidth(const PictureSettings& settings)
{
    return settings.area ? settings.area->width() : kPlfWidth;
}

Rect ZoomOf(const PictureSettings& settings)
{
    Rect zoom = {};
    if (settings.area) {
        const QRect& area = *settings.area;
        SetRect(&zoom, area.x(), area.y(), area.x() + area.width(), area.y() + area.height());
    }
    return zoom;
}

// A transparent picture has the lines of one on white, as that is what it will most likely lie on.
PlfPass MakePass(const PlfBytes& graph, const PictureSettings& settings)
{
    PlfPass pass;
    pass.graph = graph;
    pass.zoom = ZoomOf(settings);
    pass.whiteBackground = settings.background != Background::kFile;
    pass.fillsBackground = settings.background != Background::kTransparent;
    pass.widthScale = settings.lineScale.value_or(ViewerLineScale(settings));
    const int minPenWidth = settings.minLineWidth.value_or(0) / kScreenWidths;
    pass.minPenWidth = minPenWidth;
    pass.threads = settings.threads;
    pass.colors.rule = settings.black ? LineColors::kAllBlack : LineColors::kFileColors;
    return pass;
}

// In an image no line is thinner than a pixel. Without pixels such a line, or one of no width,
// would look different in each program that shows it, and vanish on paper.
PlfPass MakeVectorPass(const PlfBytes& graph, const PictureSettings& settings)
{
    PlfPass pass = MakePass(graph, settings);
    const double pixel = AreaWidth(settings) / GraphPlace(settings).width();
    pass.minPenWidth = std::max(pass.minPenWidth, pixel);
    return pass;
}

QPainterPath Outline(char16_t letter, const QFont& font)
{
    QPainterPath path;
    path.addText(QPointF(), font, QChar(letter));
    return path;
}

// Without a font Qt draws each letter as the same box, and says nothing. It lists families anyway.
bool HasFont(const QFont& font)
{
    return Outline(u'i', font) != Outline(u'W', font);
}

void TellMissingFonts(const PlfResult& result, const QFont& font)
{
    if (result.texts > 0 && !HasFont(font))
        qWarning("no fonts found; texts are drawn as boxes");
}

void Paint(const PlfPass& pass, QPainter& painter)
{
    painter.setRenderHint(QPainter::Antialiasing);
    const PlfResult result = PaintGraph(pass, painter);
    TellRefusedTexts(result);
    TellMissingFonts(result, painter.font());
}

// Nothing is drawn on the rest of the page.
void PlaceOnPage(const PictureSettings& settings, QPainter& painter)
{
    if (!settings.page)
        return;
    const QRect place = GraphPlace(settings);
    painter.setClipRect(place);
    painter.setViewport(place);
}

// With texts as large as the screen's resolution makes them; the image gets its own only
// afterwards.
void PaintImage(const PlfBytes& graph, const PictureSettings& settings, QImage* image)
{
    image->fill(image->hasAlphaChannel() ? Qt::transparent : Qt::white);
    QPainter painter(image);
    PlaceOnPage(settings, painter);
    Paint(MakePass(graph, settings), painter);
    painter.end();
    const int dotsPerMeter = static_cast<int>(std::lround(Dpi(settings) / kMetersPerInch));
    image->setDotsPerMeterX(dotsPerMeter);
    image->setDotsPerMeterY(dotsPerMeter);
}

QString WritePng(const QImage& image, const PictureSettings& /*settings*/, QIODevice* output)
{
    QImageWriter writer(output, "png");
    writer.setCompression(kPngCompression);
    const bool alpha = image.hasAlphaChannel();
    const QImage plain = alpha ? image.convertToFormat(QImage::Format_ARGB32) : image;
    return writer.write(Palettized(plain)) ? QString() : writer.errorString();
}

QString WriteJpeg(const QImage& image, const PictureSettings& settings, QIODevice* output)
{
    QImageWriter writer(output, "jpeg");
    writer.setQuality(settings.quality.value_or(kUsualQuality));
    return writer.write(image) ? QString() : writer.errorString();
}

// Writes an image in one of the formats; returns what is wrong.
using ImageWriter = QString(const QImage& image, const PictureSettings& settings,
                            QIODevice* output);

QString DrawImage(const PlfBytes& graph, const PictureSettings& settings, QIODevice* output,
                  ImageWriter* write)
{
    const QImage image = DrawnImage(graph, settings);
    if (image.isNull()) {
        const QSize size = PictureSize(settings);
        return QStringLiteral("not enough memory for %1 x %2 pixels")
            .arg(size.width())
            .arg(size.height());
    }
    return write(image, settings, output);
}

VectorPage PageOf(const PictureSettings& settings, const QString& title)
{
    const int dpi = Dpi(settings);
    return {PaperSize(settings) * (dpi / kPointsPerInch), dpi, title, GraphPlace(settings)};
}

// Its texts are texts, whose fonts are the reader's to find.
QString DrawSvg(const PlfBytes& graph, const PictureSettings& settings, const QString& title,
                QIODevice* output)
{
    const VectorPage page = PageOf(settings, title);
    TellRefusedTexts(WriteSvg(MakeVectorPass(graph, settings), page, output));
    return {};
}

QString DrawPdf(const PlfBytes& graph, const PictureSettings& settings, const QString& title,
                QIODevice* output)
{
    PlfResult result;
    const VectorPage page = PageOf(settings, title);
    QString problem = WritePdf(MakeVectorPass(graph, settings), page, output, &result);
    TellRefusedTexts(result);
    TellMissingFonts(result, TextFont());
    return problem;
}

// Hands on what is written to a device, which notices its failures itself.
class DeviceSink final : public ByteSink
{
public:
    explicit DeviceSink(QIODevice* target) : device(target) {}

    void Write(const char* bytes, size_t count) override
    {
        device->write(bytes, static_cast<qint64>(count));
    }

private:
    QIODevice* device;
};

// Without a size the scale is the viewer's own, written as the viewer does. An EPS is as large as
// the graph on a page, and has no page.
void ScaleEps(const PictureSettings& settings, EpsOptions& eps)
{
    eps.isExact = settings.width || settings.dpi || settings.page;
    if (eps.isExact)
        eps.scale = GraphWidth(settings) / AreaWidth(settings);
}

QString DrawEps(const PlfBytes& graph, const PictureSettings& settings, QIODevice* output)
{
    PlfPass pass = MakePass(graph, settings);
    pass.colors = {}; // black lines are an option of EPS
    ScaleEps(settings, pass.eps);
    pass.eps.dots = settings.dots;
    pass.eps.areaOnly = true;
    pass.eps.minLineWidth = settings.minLineWidth.value_or(pass.eps.minLineWidth);
    pass.eps.allBlack = settings.black;
    pass.eps.fillsBackground = settings.background == Background::kFile;
    pass.eps.backgroundIndex =
        pass.eps.fillsBackground ? static_cast<unsigned long>(pass.Background()) : 0;
    DeviceSink sink(output);
    TellRefusedTexts(WriteEps(pass, sink));
    return {};
}

} // namespace

QImage DrawnImage(const PlfBytes& graph, const PictureSettings& settings)
{
    const bool transparent = settings.background == Background::kTransparent;
    QImage image(PictureSize(settings),
                 transparent ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    if (!image.isNull())
        PaintImage(graph, settings, &image);
    return image;
}

QString DrawPicture(const PlfBytes& graph, Format format, const PictureSettings& settings,
                    const QString& title, QIODevice* output)
{
    switch (format) {
    case Format::kPng:
        return DrawImage(graph, settings, output, WritePng);
    case Format::kJpeg:
        return DrawImage(graph, settings, output, WriteJpeg);
    case Format::kSvg:
        return DrawSvg(graph, settings, title, output);
    case Format::kPdf:
        return DrawPdf(graph, settings, title, output);
    case Format::kEps:
        return DrawEps(graph, settings, output);
    }
    return {};
}

} // namespace convert
