// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What the formats have in common that keep lines as lines.
#pragma once

#include "meta/pass.h"
#include "meta/polylinesink.h"

#include <QFont>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QTransform>

namespace convert {

/// The page that a graph is drawn on.
struct VectorPage {
    QSizeF size;   // pixels
    int dpi = 0;   // pixels per inch
    QString title; // the graph's name
    QRectF place;  // of the graph, pixels; nothing is drawn on the rest of the page
};

/// The area of a pass, in drawing units.
QRectF AreaOf(const PlfPass& pass);
/// The font of texts; its size is in drawing units.
QFont TextFont();
/// Whether a text with that font may touch the area of a pass, also when a reader replaces the font
/// by one that is wider: few letters are wider than a font is high.
bool MayTouch(const PlfPass& pass, const QFont& font, const QString& text, PlfPoint at);
/// From drawing units to the pixels of a page that shows the area of a pass.
QTransform ToPage(const PlfPass& pass, const VectorPage& page);
/// Draws a pass into a target that shows it on a page.
PlfResult DrawJoined(const PlfPass& pass, const VectorPage& page, PolylineTarget& target);

} // namespace convert
