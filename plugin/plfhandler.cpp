// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "plugin/plfhandler.h"

#include "meta/packed/gunzip.h"
#include "meta/pass.h"
#include "meta/plfarea.h"
#include "meta/plfgraph.h"

#include <QGuiApplication>
#include <QIODevice>
#include <QImage>
#include <QImageReader>
#include <QPainter>
#include <QTransform>
#include <QVariant>

#include <algorithm>
#include <new>

namespace imageformat {

namespace {

// Without such an application object Qt ends the program when it looks for a font.
bool HasFonts()
{
    return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr;
}

// In one thread: the program decides how many it uses, and others may be reading more images. The
// background is there already. As without any, the lines are those on white, since the graph's
// colors do not know another one.
PlfPass MakePass(const PlfBytes& graph, const QRectF& place)
{
    PlfPass pass;
    pass.graph = graph;
    pass.fillsBackground = false;
    pass.widthScale = place.width() / kUnscaledWidth; // as in a window of that width
    pass.drawsTexts = HasFonts();
    return pass;
}

// Units of drawing become pixels.
QTransform ToPixels(const QRectF& graph)
{
    return {graph.width() / kPlfWidth, 0, 0, graph.height() / kPlfHeight, graph.x(), graph.y()};
}

void Paint(const PlfBytes& graph, const QRectF& place, QImage* image)
{
    QPainter painter(image);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRect inside = place.toAlignedRect();
    if (!inside.contains(image->rect()))
        painter.setClipRect(inside); // lines outside the graph belong to no picture of it
    painter.setViewport(0, 0, kPlfWidth, kPlfHeight);
    painter.setWorldTransform(ToPixels(place));
    PaintGraph(MakePass(graph, place), painter);
}

// Whether the whole graph has whole pixels, and so few that it can be drawn for a part of it.
bool IsCheap(const QRectF& place)
{
    constexpr double kMostPixels = 1 << 24; // 64 megabytes
    return place == QRectF(place.toRect()) && place.width() * place.height() <= kMostPixels;
}

// Qt steps along lines from where they enter the image: a part that is drawn alone has other
// shades than the same part of the whole, and parts of a mosaic would not fit together.
bool PaintPart(const PlfBytes& graph, const QRect& place, const QColor& background, QImage* image)
{
    QImage whole(place.size(), image->format());
    if (whole.isNull())
        return false;
    whole.fill(background);
    Paint(graph, QRectF(QPointF(), place.size()), &whole);
    QPainter painter(image);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawImage(place.topLeft(), whole);
    return true;
}

void PaintLayout(const PlfBytes& graph, const Layout& layout, const QColor& background,
                 QImage* image)
{
    const QRectF& place = layout.graph;
    const bool isWhole = place == QRectF(image->rect());
    if (isWhole || !IsCheap(place) || !PaintPart(graph, place.toRect(), background, image))
        Paint(graph, place, image);
}

bool IsAtPackedGraph(QIODevice* device)
{
    const QByteArray start = device->peek(kPackedStartSize);
    return IsPackedGraph({start.constData(), static_cast<size_t>(start.size())});
}

// A packed file says nothing of its size: what is unpacked has the limit that the program sets for
// images.
size_t MostUnpacked()
{
    constexpr size_t kMegabyte = size_t{1} << 20;
    const auto limit = static_cast<size_t>(QImageReader::allocationLimit()) * kMegabyte;
    return limit == 0 ? kMostUnpacked : std::min(limit, kMostUnpacked);
}

PlfGraph Load(QIODevice* device)
{
    // Qt's pipes say that they end as they say that they failed: what came before counts.
    const auto read = [device](char* block, size_t size) -> ssize_t {
        return std::max<qint64>(device->read(block, static_cast<qint64>(size)), 0);
    };
    PlfGraph graph;
    if (IsAtPackedGraph(device)) {
        LoadPacked(read, &graph, MostUnpacked());
        return graph;
    }
    const qint64 expected = device->isSequential() ? 0 : device->size() - device->pos();
    const char* problem = nullptr;
    return PlfGraph::FromReader(read, static_cast<size_t>(std::max<qint64>(expected, 0)), &problem);
}

} // namespace

// No exception reaches the program, which may not know any.
bool PlfHandler::IsAtGraph(QIODevice* device)
{
    if (device == nullptr)
        return false;
    if (device->peek(kPlfHeaderSize) == QByteArrayView(gszPlfhdr, kPlfHeaderSize))
        return true;
    try {
        return IsAtPackedGraph(device);
    } catch (const std::bad_alloc&) {
        return false;
    }
}

bool PlfHandler::canRead() const
{
    const bool isAtGraph = IsAtGraph(device());
    wasAtGraph = wasAtGraph || isAtGraph;
    return isAtGraph;
}

bool PlfHandler::read(QImage* image)
{
    try {
        return canRead() && Draw(image);
    } catch (const std::bad_alloc&) {
        return false;
    }
}

bool PlfHandler::Draw(QImage* image)
{
    const std::optional<Layout> layout = LayOut(wishes);
    QImage drawn;
    if (!layout || !allocateImage(layout->size, Format(), &drawn))
        return false;
    const PlfGraph graph = Load(device());
    if (!graph.IsLoaded())
        return false;
    drawn.fill(background);
    PaintLayout(graph.Bytes(), *layout, background, &drawn);
    *image = drawn;
    return true;
}

QImage::Format PlfHandler::Format() const
{
    const bool isOpaque = background.alpha() == 255;
    return isOpaque ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied;
}

bool PlfHandler::supportsOption(ImageOption option) const
{
    switch (option) {
    case Size:
    case ClipRect:
    case ScaledSize:
    case ScaledClipRect:
    case BackgroundColor:
    case ImageFormat:
        return true;
    default:
        return false;
    }
}

QVariant PlfHandler::option(ImageOption option) const
{
    switch (option) {
    case Size:
        return canRead() || wasAtGraph ? kDefaultSize : QSize();
    case ClipRect:
        return wishes.clip;
    case ScaledSize:
        return wishes.scaledSize;
    case ScaledClipRect:
        return wishes.scaledClip;
    case BackgroundColor:
        return background;
    case ImageFormat:
        return Format();
    default:
        return {};
    }
}

void PlfHandler::setOption(ImageOption option, const QVariant& value)
{
    switch (option) {
    case ClipRect:
        wishes.clip = value.toRect();
        break;
    case ScaledSize:
        wishes.scaledSize = value.toSize();
        break;
    case ScaledClipRect:
        wishes.scaledClip = value.toRect();
        break;
    case BackgroundColor:
        background = value.value<QColor>();
        if (!background.isValid())
            background = Qt::white;
        break;
    default:
        break;
    }
}

} // namespace imageformat
