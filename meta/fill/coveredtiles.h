// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Tells which lines nothing will be left of, because those that are drawn after them cover them.
// Lines are looked at from the last to the first.
#pragma once

#include "meta/fill/tilegrid.h"

#include <QRect>
#include <QTransform>

#include <vector>

class CoveredTiles
{
public:
    /// @param pixels    of the image that lines may change
    /// @param toDevice  from drawing units to pixels: scales and shifts, no more
    CoveredTiles(const QRect& pixels, const QTransform& toDevice);

    /// Whether a line of that width, in drawing units, can be wide enough to cover a tile.
    static bool CanCover(double width, const QTransform& toDevice);
    /// Sets the width of the lines that follow, in drawing units.
    void SetWidth(double width);
    /// Takes the line before those that were taken until now, in drawing units.
    /// @return whether it need not be drawn: they cover all that it may touch, or it touches
    /// nothing
    bool Take(int x1, int y1, int x2, int y2);

private:
    [[nodiscard]] bool IsCovered() const;
    [[nodiscard]] bool IsFar(int x, int y) const;
    void Cover(int x1, int y1, int x2, int y2);
    void CoverRow(int row, double fromX, double toX);

    TileGrid grid;
    QRect pixels;
    QTransform mapping;
    QRectF around; // the pixels and a few more, in drawing units
    double halfWidth = 0;
    bool canCover = false;
    std::vector<char> covered;
    bool isAllCovered = false;
};
