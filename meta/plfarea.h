// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The area that a graph is drawn in, in drawing units: x to the right, y downward.
#pragma once

#include "support/rect.h"

/// Height of the visible file area; the file's y points up, drawing y is kPlfHeight - y.
constexpr int kPlfHeight = 3120;
/// Width of the file area: one 12-bit address per unit.
constexpr int kPlfWidth = 4096;
/// The file's area.
constexpr Rect kWholeArea = {0, 0, kPlfWidth, kPlfHeight, kPlfWidth, kPlfHeight};
/// Width of a picture in pixels on which lines have the widths that the file gives them; on others
/// they are wider or narrower in proportion. That of the default window.
constexpr int kUnscaledWidth = 640;
/// Longest side of a picture in pixels: Qt paints no farther.
constexpr int kMaxPictureSide = 32767;
