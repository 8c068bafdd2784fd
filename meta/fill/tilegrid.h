// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A part of an image in square tiles, and which of them a line may touch.
#pragma once

#include <QRect>
#include <QTransform>

#include <cstddef>
#include <vector>

class TileGrid
{
public:
    /// Pixels of a tile's side. Of larger ones, fewer are full; smaller ones are too many.
    static constexpr int kSide = 4;

    /// Tiles next to each other in a row; last is before first when there are none.
    struct Columns {
        int first, last;
    };
    struct Place {
        double x, y; // in tiles
    };

    /// @param pixels    the part of the image
    /// @param toDevice  from drawing units to pixels: scales and shifts, no more
    /// @param beyond    pixels by which what is drawn may reach beyond a line's width
    TileGrid(const QRect& pixels, const QTransform& toDevice, double beyond);

    /// Sets the width of the lines that follow, in drawing units.
    void SetWidth(double width);
    /// Finds the tiles that a line, in drawing units, may touch.
    /// @return false if there are none
    bool Locate(int x1, int y1, int x2, int y2);
    /// Finds the tiles of these pixels.
    /// @return false if there are none
    bool Locate(const QRect& touched);
    /// Those in a row, of the line that was looked for.
    [[nodiscard]] Columns In(int row) const { return columns.data()[row]; }
    [[nodiscard]] int FirstRow() const { return firstRow; }
    [[nodiscard]] int LastRow() const { return lastRow; }

    [[nodiscard]] size_t Count() const
    {
        return columns.size() * static_cast<size_t>(across.count);
    }
    /// The number of a row's first tile.
    [[nodiscard]] ptrdiff_t StartOf(int row) const { return ptrdiff_t{row} * across.count; }
    /// The pixels of a tile.
    [[nodiscard]] QRect PixelsOf(int row, int column) const;

private:
    // One axis, in tiles.
    struct Axis {
        double scale;
        double shift;
        int count;
        double reach; // of a pen, from the line's middle

        [[nodiscard]] double At(int units) const { return units * scale + shift; }
        [[nodiscard]] int From(double place) const;
        [[nodiscard]] int To(double place) const;
    };

    [[nodiscard]] Columns Near(double fromX, double toX) const;

    QRect pixels;
    double margin; // tiles
    Axis across;
    Axis down;
    int firstRow = 0;
    int lastRow = -1;
    std::vector<Columns> columns; // by row
};
