// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// How a picture looks.
#pragma once

#include <QRect>
#include <QSize>
#include <QSizeF>

#include <optional>

namespace convert {

/// What is behind the lines.
enum class Background { kAllWhite, kFile, kTransparent };

/// How long something is: so many pixels, or so many points where it was said in a unit of lengths.
struct Length {
    double number;
    bool isPixels;
};

/// A page of paper, in points.
struct Page {
    QSizeF size;
    bool turns; // it lies as the graph does, upright or across
};

/// How a picture looks; the same for every graph of a call. By default it is the viewer's view of a
/// whole graph, 640 pixels wide.
struct PictureSettings {
    std::optional<QSize> size; // pixels; without it the area's shape gives the height
    std::optional<Length> width;
    std::optional<Page> page;     // on which the graph is fitted
    std::optional<double> margin; // of the page, points
    std::optional<int> dpi;       // pixels per inch
    std::optional<QRect> area;    // drawing units; without it the whole graph
    Background background = Background::kAllWhite;
    std::optional<double> lineScale; // factor on the file's line widths; without it the viewer's
    std::optional<int> minLineWidth; // thinnest line, in the file's line widths
    bool black = false;              // all lines are black
    bool dots = false;               // of EPS, which has none otherwise
    std::optional<int> quality;      // of a JPEG, 1..kMaxQuality
    int threads = 1;                 // that may draw one image at once
};

} // namespace convert
