// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The values of the converter's options. Each function takes a text as the user wrote it and gives
// nothing for one that means nothing; numbers have a decimal point in every locale.
#pragma once

#include "tools/convert/picturesettings.h"

#include <QString>

#include <optional>

namespace convert {

/// Highest resolution in pixels per inch.
constexpr int kMaxDpi = 9600;
/// Thickest line that may be asked for, drawing units: the whole width of a graph.
constexpr int kMaxLineWidth = 4096;
/// Largest factor on line widths.
constexpr int kMaxLineScale = 1000;
/// Best quality of a JPEG.
constexpr int kMaxQuality = 100;
/// That of a JPEG that nobody asked another one for: its file has half the size of the best one,
/// and nobody sees the difference.
constexpr int kUsualQuality = 90;
/// Most columns and most rows of a contact sheet.
constexpr int kMaxGrid = 100;
/// Width of the pictures on it unless another one is asked for, pixels.
constexpr int kSheetPictureWidth = 320;
/// Most worker processes.
constexpr int kMaxJobs = 256;
/// Longest limit of time, seconds: a day.
constexpr int kMaxTimeout = 24 * 60 * 60;
/// Limits of memory, megabytes. With less, a worker with its fonts does not start.
constexpr int kMinMemory = 64;
constexpr int kMaxMemory = 1 << 20;

/// "WIDTHxHEIGHT" in pixels, 1..kMaxLength each.
std::optional<QSize> ParseSize(const QString& text);
/// A number of pixels up to kMaxLength, or a length such as "160mm", in mm, cm, in or pt.
std::optional<Length> ParseLength(const QString& text);
/// A length, not in pixels and possibly 0, in points.
std::optional<double> ParseMargin(const QString& text);
/// "a4", "letter", or "WIDTHxHEIGHT" with units, as in "210mmx99mm" or "8.5x11in".
std::optional<Page> ParsePage(const QString& text);
/// "COLUMNSxROWS", 1..kMaxGrid each.
std::optional<QSize> ParseGrid(const QString& text);
/// "LEFT,TOP,RIGHT,BOTTOM" in drawing units within the graph, neither empty nor inverted.
std::optional<QRect> ParseArea(const QString& text);
/// A positive number up to kMaxLineScale.
std::optional<double> ParseLineScale(const QString& text);
/// "white", "file" or "transparent".
std::optional<Background> ParseBackground(const QString& text);
/// Every name of a background, for messages.
QString BackgroundNames();

} // namespace convert
