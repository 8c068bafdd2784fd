// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Pictures of graphs, painted in bands and by one call of Qt for each line, to be compared.
#pragma once

#include "meta/bands.h"
#include "meta/pass.h"
#include "meta/plfgraph.h"

#include <QImage>
#include <QRegion>
#include <QSize>

#include <string>

class QPainter;

/// The bytes that a seeded graph begins with, with an end of the header's last color. More such
/// digits change nothing.
std::string SeededStart();

/// Lines and dots all over the area and beyond, in some colors.
/// @param width     of the lines, as a file says it
/// @param hasTexts  a text now and then as well
std::string SeededGraph(unsigned seed, int width, bool hasTexts, int lines = 100);

/// The graph that the bytes are.
PlfGraph GraphOf(const std::string& bytes);

/// How a graph is looked at.
struct Look {
    QSize size;
    Rect zoom = {};
    double widthScale = 1.0;
    double ratio = 1.0;
    QRegion part = {}; // of the picture; empty = all of it
    bool fillsBackground = true;
    QSize viewport = {}; // empty = as many units as the image has pixels
    double minPenWidth = 0.0;
};

/// The pass that looks so, for three threads.
PlfPass PassOf(const PlfGraph& graph, const Look& look);

/// An image of the size, with pixels of any colors, the same for the same size.
QImage AnyGround(const Look& look);

/// Sets an antialiased painter up for the look.
void SetUp(QPainter& painter, const Look& look);

/// The picture by one call of Qt for each line.
QImage PaintPlain(const PlfPass& pass, const Look& look);

/// Where to cut the picture so that its bands are about as high.
RowCuts EvenCuts(const Look& look, int bands);

/// The picture in such bands.
QImage PaintBands(const PlfPass& pass, const Look& look, int bands);
