// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A graph as a page of PDF.
#pragma once

#include "tools/convert/vectorpage.h"

class QIODevice;

namespace convert {

/// Draws a pass into a device.
/// @param output  open for writing; its own failures are its owner's to notice
/// @param result  of the pass
/// @return empty, or why there is no picture
QString WritePdf(const PlfPass& pass, const VectorPage& page, QIODevice* output, PlfResult* result);

} // namespace convert
