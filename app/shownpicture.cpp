// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "app/shownpicture.h"

#include "meta/imagepainter.h"

#include <QBackingStore>
#include <QPaintEngine>
#include <QPainter>
#include <QTransform>
#include <QWidget>
#include <QWindow>

#include <cmath>

namespace {

// A rectangle is worth telling from other regions: lines are painted faster in one.
void ClipTo(QPainter& painter, const QRegion& part)
{
    if (part.rectCount() == 1)
        painter.setClipRect(part.boundingRect());
    else
        painter.setClipRegion(part);
}

} // namespace

// Before the window system shows the window, its backing store has no device yet, and with scaled
// pixels Qt crashes if asked for it.
bool ShownPicture::IsScreen(const QPainter& painter) const
{
    const QWindow* window = widget->window()->windowHandle();
    QBackingStore* store = widget->backingStore();
    return store != nullptr && window != nullptr && window->isExposed() && painter.isActive() &&
           painter.paintEngine()->paintDevice() == store->paintDevice();
}

QSize ShownPicture::PixelSize() const
{
    const double ratio = widget->devicePixelRatioF();
    const auto pixels = [ratio](int size) { return static_cast<int>(std::ceil(size * ratio)); };
    return {pixels(widget->width()), pixels(widget->height())};
}

// The format of the window's own pixels, so that texts look the same.
QImage::Format ShownPicture::Format() const
{
    QPaintDevice* device = widget->backingStore()->paintDevice();
    return device->devType() == QInternal::Image ? static_cast<QImage*>(device)->format()
                                                 : QImage::Format_ARGB32_Premultiplied;
}

bool ShownPicture::Fits() const
{
    return image.size() == PixelSize() && image.devicePixelRatio() == widget->devicePixelRatioF() &&
           image.format() == Format();
}

void ShownPicture::Renew(const QRegion& part, const Paint& paint)
{
    const bool isWhole = !Fits() || (QRegion(widget->rect()) - part).isEmpty();
    if (!Fits()) {
        image = QImage(PixelSize(), Format());
        image.setDevicePixelRatio(widget->devicePixelRatioF());
    }
    QPainter painter(&image);
    if (!isWhole)
        ClipTo(painter, part);
    painter.fillRect(widget->rect(), widget->palette().brush(widget->backgroundRole()));
    SetUp(painter);
    paint(&painter);
}

void ShownPicture::SetUp(QPainter& painter) const
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(widget->font());
    painter.setViewport(widget->rect()); // an image is measured in device pixels
    painter.setWindow(widget->rect());
}

// Whether a painter maps the widget to all of the pixels. With a clip or a move, Qt may paint other
// pixels, for it cuts wide lines there.
bool ShownPicture::IsOfAll(const QPainter& painter, const QImage& pixels) const
{
    const double ratio = widget->devicePixelRatioF();
    const QRegion clip = painter.paintEngine()->systemClip();
    return !painter.hasClipping() && (QRegion(pixels.rect()) - clip).isEmpty() &&
           pixels.devicePixelRatio() == ratio &&
           painter.deviceTransform() == QTransform::fromScale(ratio, ratio);
}

bool ShownPicture::PaintOnPixels(const QPainter& painter, const Paint& paint) const
{
    if (!IsRaster(painter) || !PaintsPlainly(painter))
        return false;
    auto* pixels = dynamic_cast<QImage*>(painter.paintEngine()->paintDevice());
    if (pixels == nullptr || !IsOfAll(painter, *pixels))
        return false;
    QImage same = SharedPixels(*pixels); // that one has a painter
    QPainter direct(&same);
    SetUp(direct);
    paint(&direct);
    return true;
}

void ShownPicture::Show(QPainter* painter, const QRegion& part) const
{
    const double ratio = image.devicePixelRatio();
    for (const QRect& rect : part & widget->rect()) {
        const QRectF pixels(rect.x() * ratio, rect.y() * ratio, rect.width() * ratio,
                            rect.height() * ratio);
        painter->drawImage(QRectF(rect), image, pixels);
    }
}
