// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Tells which lines cannot change an image, because all that they may touch has their color
// already. The image is looked at in tiles: only those that lines have touched a few times, and
// only as long as that pays.
#pragma once

#include <QRect>
#include <QRgb>
#include <QTransform>

#include <cstddef>
#include <cstdint>
#include <vector>

class FullTiles
{
public:
    /// Pixels of a tile's side.
    static constexpr int kSide = 4;

    /// @param bits      of an image with 32 bits a pixel; must outlive the object
    /// @param pixels    of the image that lines may change
    /// @param toDevice  from drawing units to pixels: scales and shifts, no more
    FullTiles(const uchar* bits, qsizetype bytesPerLine, const QRect& pixels,
              const QTransform& toDevice);

    /// Sets the pen of the lines that follow.
    /// @param width  drawing units
    void SetPen(QRgb rgb, double width);

    /// Whether a line, in drawing units, need not be drawn. If it is drawn, Draw() must follow.
    bool Hides(int x1, int y1, int x2, int y2);
    /// Notes that the line which was asked about has been drawn.
    void Draw();

    /// Forgets what is full: something else may have been painted.
    void Forget();

private:
    // What is known of a tile: the color of the last line, and how many of that color, one after
    // the other, have touched it.
    struct Tile {
        uint8_t color = 0;
        uint8_t touches = 0;

        bool operator==(const Tile&) const = default;
    };
    // One axis, in tiles.
    struct Axis {
        double scale;
        double shift;
        int count;
        double reach = 0; // of a pen, from the line's middle

        [[nodiscard]] double At(int units) const { return units * scale + shift; }
        [[nodiscard]] int From(double place) const;
        [[nodiscard]] int To(double place) const;
    };
    struct Place {
        double x, y; // in tiles
    };
    struct Columns {
        int first, last;
    };
    struct Known {
        QRgb color;
        bool keepsItself;
    };
    static constexpr uint8_t kFull = 255;
    static constexpr uint8_t kNoColor = 0;
    static constexpr size_t kMostColors = 255;
    static constexpr uint8_t kFirstLook =
        4; // touches before the pixels are looked at; then doubled
    static constexpr uint8_t kLastLook = 64;
    static constexpr int kTrial = 2048;        // lines after which it is known whether this pays
    static constexpr int kWorthWhile = 8;      // one of so many should have been hidden
    static constexpr int kShortestRest = 4096; // lines; each time that it does not pay, doubled
    static constexpr int kLongestRest = 65536;

    [[nodiscard]] uint8_t Number(QRgb rgb);
    bool Locate(int x1, int y1, int x2, int y2);
    [[nodiscard]] Columns Near(double fromX, double toX) const;
    [[nodiscard]] bool AreFull() const;
    void Touch(Tile& tile, int row, int column) const;
    [[nodiscard]] bool IsFull(int row, int column) const;
    void EndTrial();
    void EndRest();

    const uchar* bits;
    qsizetype bytesPerLine;
    QRect pixels;
    Axis across;
    Axis down;
    std::vector<Tile> tiles;
    std::vector<Known> colors; // by number, from 1
    QRgb color = 0;
    uint8_t number = kNoColor; // of the color, if it keeps itself
    int firstRow = 0;          // of the line that was asked about
    int lastRow = -1;
    std::vector<Columns> columns; // by row
    int tried = 0;
    int hidden = 0;
    int rest = 0; // lines that are not looked at
    int nextRest = kShortestRest;
    bool isOutdated = false; // another color was drawn with during the rest
};
