// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/palettize.h"

#include <QList>

#include <array>
#include <cstddef>
#include <cstdint>

namespace convert {

namespace {

constexpr int kMaxColors = 256;
// Four places for each color keep the searches short.
constexpr size_t kPlaceBits = 10;
constexpr size_t kPlaces = size_t{1} << kPlaceBits;
// The golden ratio in 32 bits: spreads colors that differ little over the places.
constexpr uint32_t kSpread = 2654435769U;
constexpr int kNone = -1;

// The colors met so far and their indices.
class ColorTable
{
public:
    ColorTable() { indices.fill(kNone); }

    // kNone when there is no room for another color.
    int IndexOf(QRgb color)
    {
        if (lastIndex != kNone && color == lastColor)
            return lastIndex; // of most pixels it is that of the one before
        size_t place = (color * kSpread) >> (32 - kPlaceBits);
        while (indices[place] != kNone && colors[place] != color)
            place = (place + 1) % kPlaces;
        if (indices[place] == kNone && !Add(color, place))
            return kNone;
        lastColor = color;
        lastIndex = indices[place];
        return lastIndex;
    }

    [[nodiscard]] const QList<QRgb>& Colors() const { return table; }

private:
    bool Add(QRgb color, size_t place)
    {
        if (table.size() == kMaxColors)
            return false;
        colors[place] = color;
        indices[place] = static_cast<int>(table.size());
        table += color;
        return true;
    }

    std::array<QRgb, kPlaces> colors = {};
    std::array<int, kPlaces> indices = {};
    QList<QRgb> table;
    QRgb lastColor = 0;
    int lastIndex = kNone;
};

bool IndexRow(const QRgb* row, int width, ColorTable* table, uchar* indices)
{
    for (int x = 0; x < width; ++x) {
        const int index = table->IndexOf(row[x]);
        if (index == kNone)
            return false;
        indices[x] = static_cast<uchar>(index);
    }
    return true;
}

} // namespace

QImage Palettized(const QImage& image)
{
    QImage indexed(image.size(), QImage::Format_Indexed8);
    if (indexed.isNull())
        return image; // no memory for it; the picture can do without
    ColorTable table;
    for (int y = 0; y < image.height(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        if (!IndexRow(row, image.width(), &table, indexed.scanLine(y)))
            return image;
    }
    indexed.setColorTable(table.Colors());
    indexed.setDotsPerMeterX(image.dotsPerMeterX());
    indexed.setDotsPerMeterY(image.dotsPerMeterY());
    return indexed;
}

} // namespace convert
