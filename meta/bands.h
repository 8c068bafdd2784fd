// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Draws a pass with several threads: the picture is cut into bands of rows, and each band is a pass
// of its own. What a thread does not take, because there is none or because it cannot start, the
// caller draws. The pixels are those of one pass.
#pragma once

#include "meta/pass.h"
#include "meta/rowcuts.h"

struct PassValues;

/// Threads that may draw a picture at once: one for each processor that this process may use, or as
/// many as PLOTVW_THREADS in the environment says.
int ThreadLimit();

/// As PaintGraph(), in bands where they give the same pixels: on an image, with a clip that is a
/// rectangle, for lines that Qt paints alike with any such clip.
/// @param values  what an earlier pass left; becomes what this one leaves. Null = nobody asks
PlfResult PaintInBands(const PlfPass& pass, QPainter& painter, const RowCuts& cuts,
                       PassValues* values = nullptr);
