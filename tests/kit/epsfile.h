// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Writing the loaded graph as EPS in a test. initGraphics() must have been called.
#pragma once

#include "tests/kit/globals.h"
#include "tests/kit/graph.h"

#include <QByteArray>
#include <QString>

class QPainter;

/// Draws the loaded file with EPS going to a file of that name.
/// @param painter  what the same pass paints on, or null
void WriteEps(const QString& path, const Pass& pass = {}, QPainter* painter = nullptr);

/// The EPS of the loaded file.
QByteArray Eps(const Pass& pass = {}, QPainter* painter = nullptr);
