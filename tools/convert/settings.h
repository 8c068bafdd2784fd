// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What the converter is asked for, once the command line is understood.
#pragma once

#include <QByteArray>
#include <QRect>
#include <QSize>

#include <optional>

/// Kinds of files that are written.
enum class Format { kPng, kJpeg, kSvg, kPdf, kEps };

/// What lies behind the lines.
enum class Background { kAllWhite, kFile, kTransparent };

/// The name that stands for the standard input, or as an output for the standard output.
constexpr char kStandardStream[] = "-";

/// How a picture looks; the same for every graph of a call. As made, it is the viewer's view of a
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
    int quality = 100;               // of a JPEG, 1..100
};

/// One graph and the picture to make of it.
struct Job {
    QByteArray input;  // local name, or kStandardStream
    QByteArray output; // local name, or kStandardStream
    Format format = Format::kPng;
};
