// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "plugin/layout.h"

#include "meta/plfarea.h"

#include <algorithm>
#include <cmath>

namespace imageformat {

namespace {

static_assert(kDefaultSize.width() * kPlfHeight == kDefaultSize.height() * kPlfWidth);

// Sides and positions of the whole graph in pixels. The viewer's deepest zoom, a unit as wide as
// the window, has 2.6 million.
constexpr double kMostPixels = 1 << 24;

bool IsPossible(QSize size)
{
    return !size.isEmpty() && std::max(size.width(), size.height()) <= kMaxPictureSide;
}

bool IsPossible(const QRectF& graph)
{
    const double all[] = {graph.left(), graph.top(), graph.right(), graph.bottom()};
    return std::all_of(std::begin(all), std::end(all),
                       [](double side) { return std::abs(side) <= kMostPixels; });
}

// What remains of a clip of the picture, moved to its corner.
void Clip(const QRect& clip, Layout* layout)
{
    if (clip.isNull())
        return;
    layout->graph.translate(-static_cast<double>(clip.left()), -static_cast<double>(clip.top()));
    layout->size = clip.size();
}

void Scale(QSize size, Layout* layout)
{
    if (!size.isValid() || layout->size.isEmpty())
        return;
    const double across = double{1.0} * size.width() / layout->size.width();
    const double down = double{1.0} * size.height() / layout->size.height();
    const QRectF& graph = layout->graph;
    layout->graph = {graph.x() * across, graph.y() * down, graph.width() * across,
                     graph.height() * down};
    layout->size = size;
}

} // namespace

std::optional<Layout> LayOut(const Wishes& wishes)
{
    Layout layout = {QRectF(QPointF(), kDefaultSize), kDefaultSize};
    Clip(wishes.clip, &layout);
    Scale(wishes.scaledSize, &layout);
    Clip(wishes.scaledClip, &layout);
    if (!IsPossible(layout.size) || !IsPossible(layout.graph))
        return std::nullopt;
    return layout;
}

} // namespace imageformat
