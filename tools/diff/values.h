// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The values of the options of plfdiff. Each function takes a text as the user wrote it and gives
// nothing for one that means nothing; numbers have a decimal point in every locale.
#pragma once

#include "tools/diff/rules.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace diff {

/// The width of a graph on paper, as the viewer prints it: millimeters.
constexpr double kPrintedWidth = 228.6;
/// The widest paper that may be asked for, millimeters.
constexpr double kMostPageWidth = 100000;

/// A distance in drawing units, also from "1%" of the width of a graph or "0.5mm" on paper.
/// @param pageWidth  of a graph on paper, millimeters
std::optional<double> ParseTolerance(const QString& text, double pageWidth);
/// A width of a graph on paper in millimeters, also with "mm" after it.
std::optional<double> ParsePageWidth(const QString& text);
/// "LEFT,TOP,RIGHT,BOTTOM" in drawing units, not inverted; addresses reach above the visible area.
std::optional<Area> ParseArea(const QString& text);
/// Sets what names such as "color,width" say is ignored.
/// @return whether every name is known
bool ParseIgnored(const QString& text, Rules* rules);
/// Every name of what can be ignored, for messages.
QString IgnoredNames();

} // namespace diff
