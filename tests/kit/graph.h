// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Loading and drawing a graph in a test.
#pragma once

#include "support/rect.h"

#include <QByteArray>
#include <QStringList>

/// What a drawing pass is asked for.
struct Pass {
    bool whiteBackground = true;
    double widthScale = 1.0;
    Rect zoom = {}; // empty = the whole graph
};

/// The rectangle between two corners.
Rect MakeRect(int left, int top, int right, int bottom);

/// The header that every file begins with.
QByteArray PlfHeader();

/// Makes the bytes the loaded graph. Fails the test when that fails.
void LoadBytes(const QByteArray& file);

/// Draws the loaded file onto a recording device.
QStringList Record(const Pass& pass = {});

/// The drawing operations of such a recording alone: its lines and texts.
QStringList Drawn(const QStringList& operations);
