// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/picturesize.h"

#include "meta/plfarea.h"

#include <QRectF>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>

namespace convert {

namespace {

QSizeF ShapeOf(const PictureSettings& settings)
{
    return settings.area ? QSizeF(settings.area->size()) : QSizeF(kPlfWidth, kPlfHeight);
}

bool IsLengthOnPaper(const PictureSettings& settings)
{
    return settings.page || (settings.width && !settings.width->isPixels);
}

QSizeF PageSize(const PictureSettings& settings)
{
    const QSizeF size = settings.page->size;
    const QSizeF shape = ShapeOf(settings);
    const bool isAcross = shape.width() > shape.height();
    return settings.page->turns && isAcross != (size.width() > size.height()) ? size.transposed()
                                                                              : size;
}

// The part of the page, in points, that the graph fills: as large as the margin leaves it, in the
// middle.
QRectF PlaceOnPage(const PictureSettings& settings)
{
    const QRectF page(QPointF(), PageSize(settings));
    const double margin = settings.margin.value_or(0);
    QRectF place(QPointF(), ShapeOf(settings).scaled(page.size() - QSizeF(2 * margin, 2 * margin),
                                                     Qt::KeepAspectRatio));
    place.moveCenter(page.center());
    return place;
}

int Rounded(double pixels)
{
    return static_cast<int>(std::lround(pixels));
}

} // namespace

int Dpi(const PictureSettings& settings)
{
    return settings.dpi.value_or(kScreenDpi);
}

QSizeF PaperSize(const PictureSettings& settings)
{
    if (settings.page)
        return PageSize(settings);
    if (!IsLengthOnPaper(settings))
        return QSizeF(PictureSize(settings)) * (kPointsPerInch / Dpi(settings));
    const QSizeF shape = ShapeOf(settings);
    const double width = settings.width->number;
    return {width, width * shape.height() / shape.width()};
}

QSize PictureSize(const PictureSettings& settings)
{
    if (settings.size)
        return *settings.size;
    if (IsLengthOnPaper(settings)) {
        const QSizeF pixels = PaperSize(settings) * (Dpi(settings) / kPointsPerInch);
        return QSize(Rounded(pixels.width()), Rounded(pixels.height())).expandedTo({1, 1});
    }
    const QSize shape = ShapeOf(settings).toSize();
    const int width = settings.width ? Rounded(settings.width->number) : kDefaultWidth;
    const int64_t height = int64_t{width} * shape.height() / shape.width();
    return {width, static_cast<int>(std::clamp<int64_t>(height, 1, INT_MAX))};
}

QRect GraphPlace(const PictureSettings& settings)
{
    if (!settings.page)
        return {QPoint(), PictureSize(settings)};
    const double pixels = Dpi(settings) / kPointsPerInch;
    const QRectF place = PlaceOnPage(settings);
    const QPoint at(Rounded(place.x() * pixels), Rounded(place.y() * pixels));
    const QSize size(Rounded(place.width() * pixels), Rounded(place.height() * pixels));
    return {at, size.expandedTo({1, 1})};
}

double GraphWidth(const PictureSettings& settings)
{
    return settings.page ? PlaceOnPage(settings).width() : PaperSize(settings).width();
}

double ViewerLineScale(const PictureSettings& settings)
{
    const double width = IsLengthOnPaper(settings)
                             ? GraphWidth(settings) / kPointsPerInch * kScreenDpi
                             : PictureSize(settings).width();
    return width / kUnscaledWidth * (kPlfWidth / ShapeOf(settings).width());
}

bool HasSpace(const PictureSettings& settings)
{
    const double margins = 2 * settings.margin.value_or(0);
    const QSizeF page = PageSize(settings);
    return page.width() - margins >= 1 && page.height() - margins >= 1;
}

bool IsPossible(QSize size)
{
    return size.width() <= kMaxSide && size.height() <= kMaxSide &&
           int64_t{size.width()} * size.height() <= kMaxPixels;
}

} // namespace convert
