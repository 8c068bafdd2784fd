// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The record of a rectangle, such as the window position.
#pragma once

#include <cstddef>
#include <cstdint>

/// A rectangle with its corners and its size. Only SetRect keeps the two consistent. The settings
/// file contains these 48 bytes.
struct Rect {
    int64_t left;
    int64_t top;
    int64_t right;
    int64_t bottom;
    int64_t width;
    int64_t height;
};
static_assert(sizeof(Rect) == 48 && offsetof(Rect, width) == 32, "the settings file's layout");
