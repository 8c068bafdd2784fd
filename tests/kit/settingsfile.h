// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The settings file in a test.
#pragma once

#include "support/rect.h"

#include <cstdint>

namespace fixture {

/// A window's place.
Rect Place(int64_t left, int64_t top, int64_t width, int64_t height);

/// Writes a settings file and resets the globals.
[[nodiscard]] bool WriteSettings(const Rect& place, bool white);

/// Reads the settings that the file holds into the globals.
[[nodiscard]] bool ReadBackSettings();

} // namespace fixture
