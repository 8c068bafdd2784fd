// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Integer rectangles: the window position (also in the settings file), the drawing area and the
// rubber band.
#pragma once

#include "app/state/rect.h"

#include <cstdint>

/// A 16-byte rectangle record; the target of one CopyRect.
struct RECT {
    int32_t left;
    int32_t top;
    int32_t right;
    int32_t bottom;
};
static_assert(sizeof(RECT) == 16, "CopyRect fills exactly these bytes");

/// Sets the corners (widened with sign) and width = rt - l, height = b - t, each difference in
/// 32-bit arithmetic (it wraps) and then widened. Returns r.
Rect* SetRect(Rect* r, int l, int t, int rt, int b);

/// Adds dx to left and right, dy to top and bottom; width and height are unchanged. Returns r.
Rect* MoveRect(Rect* r, int dx, int dy);

/// Swaps left and right if left > right. If top > bottom, top becomes bottom and bottom becomes
/// LEFT, not the old top: established behavior, kept on purpose. Width and height are unchanged.
/// Returns r.
Rect* NormalizeRect(Rect* r);

/// Copies all six fields. Returns dst.
Rect* CopyRect(Rect* dst, Rect* src);

/// Copies the first 16 bytes of src (left and top, as raw 64-bit values) over dst, without
/// converting fields: deliberate. Returns dst.
RECT* CopyRect(RECT* dst, Rect* src);
