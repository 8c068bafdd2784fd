// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// How a picture looks.
#pragma once

#include <QRect>
#include <QSize>

#include <optional>

namespace convert {

/// What is behind the lines.
enum class Background { kAllWhite, kFile, kTransparent };

/// How a picture looks; the same for every graph of a call. By default it is the viewer's view of a
/// whole graph, 640 pixels wide.
struct PictureSettings {
    std::optional<QSize> size; // pixels; without it the area's shape gives the height
    std::optional<int> width;  // pixels
    std::optional<int> dpi;    // pixels per inch
    std::optional<QRect> area; // drawing units; without it the whole graph
    Background background = Background::kAllWhite;
    double lineScale = 1.0;          // factor on the file's line widths
    std::optional<int> minLineWidth; // thinnest line, in the file's line widths
    bool black = false;              // all lines are black
    std::optional<int> quality;      // of a JPEG, 1..kMaxQuality
    int threads = 1;                 // that may draw one image at once
};

} // namespace convert
