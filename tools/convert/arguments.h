// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The values of the converter's options. Each reader takes a text as the user wrote it and gives
// nothing for one that means nothing; numbers have a decimal point in every locale.
#pragma once

#include "tools/convert/settings.h"

#include <QString>
#include <QStringList>

#include <optional>

/// Longest side of a picture in pixels: the toolkit paints no farther.
constexpr int kMaxSide = 32767;
/// Most pixels of a picture; as an image they take 1 GB.
constexpr int kMaxPixels = 1 << 28;
/// Highest resolution in pixels per inch.
constexpr int kMaxDpi = 9600;
/// Thickest line that may be asked for, drawing units: the whole width of a graph.
constexpr int kMaxLineWidth = 4096;
/// Largest factor on line widths.
constexpr double kMaxLineScale = 1000.0;
/// Most worker processes.
constexpr int kMaxJobs = 256;

/// Decimal digits alone, with a value from least to most.
std::optional<int> ParseInteger(const QString& text, int least, int most);
/// "WIDTHxHEIGHT" in pixels, 1..kMaxSide each and at most kMaxPixels together.
std::optional<QSize> ParseSize(const QString& text);
/// "LEFT,TOP,RIGHT,BOTTOM" in drawing units within the graph, neither empty nor inverted.
std::optional<QRect> ParseArea(const QString& text);
/// A positive number up to kMaxLineScale.
std::optional<double> ParseLineScale(const QString& text);
/// "white", "file" or "transparent".
std::optional<Background> ParseBackground(const QString& text);
/// "png", "jpeg", "jpg", "svg", "pdf" or "eps", in any case.
std::optional<Format> ParseFormat(const QString& text);
/// The format that a file name's extension stands for.
std::optional<Format> FormatOfName(const QString& name);
/// The extension of a format, without its dot.
QString ExtensionOf(Format format);
/// The size of the picture in pixels: what is asked for, or the shape of the area.
QSize PictureSize(const PictureSettings& settings);
/// Whether a picture of that size can be made.
bool IsPossible(QSize size);
