// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Where a pass can be cut into bands of rows, and what the painters of all bands have in common.
#pragma once

#include <QFont>
#include <QPainter>
#include <QRect>
#include <QTransform>

#include <optional>

class QImage;
struct PlfPass;

/// An image that a pass may be painted on in bands.
struct BandTarget {
    QImage* image;
    QRect pixels; // that may be changed
};

/// What a painter paints on, if it is an image on which each clip gives the same pixels, but for
/// lines wider than 0 where the scales are the same.
/// @param painter  gets mapped to the pass's area
std::optional<BandTarget> FindBandTarget(const PlfPass& pass, QPainter& painter);

/// What the painter of each band has in common with the caller's.
struct PainterState {
    explicit PainterState(const QPainter& painter);
    void ApplyTo(QPainter& painter) const;

    QFont font;
    QPainter::RenderHints hints;
    QRect window, viewport;
    QTransform world;
    bool isViewed, isMapped;
};
