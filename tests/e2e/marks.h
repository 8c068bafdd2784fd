// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A graph whose few strokes tell by their colors and places whether a window shows it, and which
// part of it.
#pragma once

#include "tests/e2e/viewer.h"

#include <QByteArray>
#include <QColor>
#include <QRectF>

constexpr double kGraphWidth = 4096;
constexpr double kGraphHeight = 3120;
constexpr QRectF kWholeGraph(0, 0, kGraphWidth, kGraphHeight);

constexpr QColor kWhite(255, 255, 255);
constexpr QColor kYellow(255, 255, 0); // the graph's own background

/// A short thick stroke of the graph.
struct Mark {
    const char* name;
    QPoint at; // of its middle, y upward
    QColor color;
};

constexpr Mark kMarks[] = {{"left", {500, 500}, {0, 0, 127}},
                           {"middle", {1800, 1500}, {127, 0, 0}},
                           {"right", {3500, 2500}, {0, 127, 0}}};

/// The marks in the colors of the lines 1, 2 and 3, on yellow.
QByteArray MarkedGraph();

/// Waits until the window's view shows the marks of a part of the graph where they belong, to the
/// pixel, and none of another part.
/// @param part  y downward
/// @return what is wrong; empty when it came to that
QString FaultOfMarks(const Viewer& viewer, const QRectF& part = kWholeGraph,
                     QColor background = kWhite);
