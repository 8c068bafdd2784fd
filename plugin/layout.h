// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Where a graph lies in a picture of it or of a part of it.
#pragma once

#include <QRect>
#include <QRectF>
#include <QSize>

#include <optional>

namespace imageformat {

/// The size of a graph that is not scaled, pixels: of all sizes that have the graph's shape
/// exactly, the largest that a common screen shows whole.
constexpr QSize kDefaultSize(1280, 975);

/// What a program asks for. Each step applies to the picture of the one before, as QImageReader
/// defines them.
struct Wishes {
    QRect clip;       // of the unscaled graph, pixels; null = all of it
    QSize scaledSize; // of what the clip leaves; invalid = not scaled
    QRect scaledClip; // of the scaled picture, pixels; null = all of it
};

/// Where the graph lies in the picture.
struct Layout {
    QRectF graph; // the whole graph, in pixels of the picture
    QSize size;   // of the picture, pixels
};

/// @return none if the picture has no pixel or more than Qt paints in a direction, or if the graph
/// around it is too
///         large to compute with
std::optional<Layout> LayOut(const Wishes& wishes);

} // namespace imageformat
