// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Tells where to cut a picture into bands of rows, from a look at some of the graph.
#pragma once

#include "meta/pass.h"

#include <vector>

class QRect;

/// The rows of an image, in pixels, at which one band ends and the next begins: ascending. None =
/// one band.
using RowCuts = std::vector<int>;

/// Where to cut a picture so that its bands take about as long. None where that would take longer;
/// only its end where a single band is worth while, because many lines are hidden by later ones.
/// @param painter  as PaintInBands takes it; gets mapped to the area
RowCuts FindCuts(const PlfPass& pass, QPainter& painter);

/// Whether the pixels of each line are the same in every clip.
/// @param painter  mapped to the area
/// @param pixels   of its image that are drawn
bool IsExactInBands(const PlfPass& pass, const QPainter& painter, const QRect& pixels);
