// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Tells which lines cannot change an image, because all that they may touch has their color
// already. The image is looked at in tiles: only those that lines have touched a few times, and
// only as long as that pays.
#pragma once

#include "meta/fill/tilegrid.h"

#include <QRect>
#include <QRgb>
#include <QTransform>

#include <cstdint>
#include <vector>

class FullTiles
{
public:
    /// @param bits      of an image with 32 bits a pixel; must outlive the object
    /// @param pixels    of the image that lines may change
    /// @param toDevice  from drawing units to pixels: scales and shifts, no more
    FullTiles(const uchar* bits, qsizetype bytesPerLine, const QRect& pixels,
              const QTransform& toDevice);

    /// Sets the pen of the lines that follow.
    /// @param width  drawing units
    void SetPen(QRgb rgb, double width);

    /// Whether a line, in drawing units, need not be drawn: what it may touch is full, or there is
    /// nothing that it may touch. If it is drawn, Draw() must follow.
    bool Hides(int x1, int y1, int x2, int y2);
    /// The same of something else, which is drawn on these pixels.
    bool Hides(const QRect& touched);
    /// Notes that the line which was asked about has been drawn.
    void Draw();

    /// Forgets what is full: something else may have been painted.
    void Forget();

private:
    // What is known of a tile: the color of the last line, and how many of that color, one after
    // the other, have touched it since it was looked at.
    struct Tile {
        uint8_t color = 0;
        uint8_t touches = 0;

        bool operator==(const Tile&) const = default;
    };
    struct Known {
        QRgb color;
        bool keepsItself;
    };
    static constexpr uint8_t kFull = 255;
    static constexpr uint8_t kNoColor = 0;
    static constexpr size_t kMostColors = 255;
    static constexpr uint8_t kTouches = 4;     // before the pixels are looked at, each time
    static constexpr int kTrial = 1024;        // lines after which it is known whether this pays
    static constexpr int kWorthWhile = 8;      // one of so many should have been hidden
    static constexpr int kShortestRest = 2048; // lines; each time that it does not pay, doubled
    static constexpr int kLongestRest = 8192;

    [[nodiscard]] uint8_t Number(QRgb rgb);
    [[nodiscard]] bool Looks();
    [[nodiscard]] bool HidesLocated(bool isLocated);
    [[nodiscard]] bool AreFull() const;
    void Touch(Tile& tile, int row, int column) const;
    [[nodiscard]] bool IsFull(const QRect& tile) const;
    void EndTrial();
    void EndRest();

    const uchar* bits;
    qsizetype bytesPerLine;
    TileGrid grid;
    std::vector<Tile> tiles;
    std::vector<Known> colors; // by number, from 1
    QRgb color = 0;
    uint8_t number = kNoColor; // of the color, if it keeps itself
    int tried = 0;
    int hidden = 0;
    int rest = 0; // lines that are not looked at
    int nextRest = kShortestRest;
    bool isOutdated = false; // another color was drawn with during the rest
};
