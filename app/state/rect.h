// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The record of a rectangle, which the window's place is kept in.
#pragma once

#include <cstddef>
#include <cstdint>

/// A rectangle with its size beside its corners. Only SetRect keeps the two in step.
/// The settings file holds these 48 bytes as they are.
struct Rect {
    int64_t left;
    int64_t top;
    int64_t right;
    int64_t bottom;
    int64_t width;
    int64_t height;
};
static_assert(sizeof(Rect) == 48 && offsetof(Rect, width) == 32, "the settings file's layout");
