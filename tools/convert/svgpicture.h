// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A graph as SVG, written while it is read: no more than a few thousand points are in memory.
#pragma once

#include "tools/convert/vectorpage.h"

class QIODevice;

namespace convert {

/// Draws a pass into a device.
/// @param output  open for writing; its own failures are its owner's to notice
PlfResult WriteSvg(const PlfPass& pass, const VectorPage& page, QIODevice* output);

} // namespace convert
