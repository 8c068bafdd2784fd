// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Draws the lines of one pass: leaves out those that cannot touch a visible pixel and hands the
// others over in batches. The picture is, pixel for pixel, that of one call per line.
#pragma once

#include <QLine>

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>

class QPainter;
class QPen;
class PassWatch;

/// Whether a painter, which may be null, makes pixels: the screen's, or an image's. Other engines
/// keep what is painted for a place and time of their own.
bool IsRaster(const QPainter* painter);

class LinePainter
{
public:
    /// @param target  null to draw nothing; must be active and outlive the object
    explicit LinePainter(QPainter* target);
    ~LinePainter();
    LinePainter(const LinePainter&) = delete;
    LinePainter& operator=(const LinePainter&) = delete;

    /// Lets somebody know when drawing takes long.
    /// @param passWatch  must outlive the drawing; null = nobody
    void Watch(PassWatch* passWatch) { watch = passWatch; }
    /// Draws what is waiting and sets the pen of the lines that follow. The painter's mapping and
    /// clip are those of its next lines: they must not change without another call.
    void SetPen(const QPen& pen);
    /// Draws a line, or keeps it waiting. Drawing units.
    void Line(int x1, int y1, int x2, int y2)
    {
        // The second saves what the toolkit needs to find out the same: 5 to 15 times as long.
        if (painter != nullptr && !visible.Misses(x1, y1, x2, y2))
            Add(x1, y1, x2, y2);
    }
    /// Draws what is waiting; to be called before anything else is painted.
    void Flush();

private:
    // A rectangle in drawing units. The one to begin with holds every line.
    struct Bounds {
        int left = std::numeric_limits<int>::min();
        int top = std::numeric_limits<int>::min();
        int right = std::numeric_limits<int>::max();
        int bottom = std::numeric_limits<int>::max();

        // All four sides at once: which one a line lies beyond cannot be predicted.
        [[nodiscard]] bool Misses(int x1, int y1, int x2, int y2) const
        {
            const int beyond = int{std::max(x1, x2) < left} | int{std::min(x1, x2) > right} |
                               int{std::max(y1, y2) < top} | int{std::min(y1, y2) > bottom};
            return beyond != 0;
        }
    };

    void Add(int x1, int y1, int x2, int y2);
    void FindVisible(const QPen& pen);
    [[nodiscard]] bool MayBatch(const QPen& pen) const;

    // Saves the toolkit's set-up for each line; more in a call gain nothing.
    static constexpr size_t kBatchSize = 256;
    // Parts of the visible area that are worth telling apart: those around a moving rubber band.
    static constexpr size_t kMostParts = 8;

    QPainter* painter;
    PassWatch* watch = nullptr;
    bool isRaster;
    Bounds visible; // where lines of the pen can touch a visible pixel
    std::array<Bounds, kMostParts> parts;
    ptrdiff_t partCount = 0; // 0 = all of it is visible
    size_t batchSize = 1;    // lines in a call
    size_t waiting = 0;
    std::array<QLine, kBatchSize> batch;
};
