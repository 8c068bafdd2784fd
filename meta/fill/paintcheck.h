// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Whether LineFiller and QPainter agree: how QPainter rounds is not promised, and another version
// of Qt may do it in another way.
#pragma once

/// Draws some two hundred lines and dots both ways, the first time that it is called, and compares
/// the pixels. Takes about two milliseconds. Any thread may call it.
bool FillsLikePainter();
