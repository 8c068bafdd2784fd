// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Draws the lines of one pass: skips those that cannot touch a visible pixel, fills wide ones on an
// image itself, and draws the others in batches. The picture is the same, pixel for pixel, as with
// one call per line. Vectors of no length become dots.
#pragma once

#include "meta/unitbounds.h"

#include <QLine>
#include <QRect>

#include <array>
#include <cstddef>
#include <memory>
#include <optional>

class LineFiller;
class PassWatch;
class QPainter;
class QPen;

class LinePainter
{
public:
    /// @param target  active; outlives the object. While it does, a painter on an image that has no
    ///                clip gets that of the whole image.
    explicit LinePainter(QPainter& target);
    ~LinePainter();
    LinePainter(const LinePainter&) = delete;
    LinePainter& operator=(const LinePainter&) = delete;

    /// Lets a watch know when drawing takes long.
    /// @param passWatch  must outlive the drawing; null = none
    void Watch(PassWatch* passWatch) { watch = passWatch; }
    /// Draws only on some pixels of an image: clips the painter to them. To be called first.
    void LimitTo(const QRect& pixels);
    /// Draws the waiting lines and sets the pen of the following ones. After a change of the
    /// painter's mapping, clip or other state it must be called again before the next line.
    void SetPen(const QPen& pen);
    /// Draws a line, or keeps it waiting. In drawing units.
    void Line(int x1, int y1, int x2, int y2)
    {
        // Rejecting a line here is 5 to 15 times cheaper than in QPainter.
        if (!visible.Misses(x1, y1, x2, y2))
            Add(x1, y1, x2, y2);
    }
    /// Whether all lines within a rectangle, in drawing units, are left out.
    [[nodiscard]] bool Misses(int left, int top, int right, int bottom) const
    {
        return visible.Misses(left, top, right, bottom);
    }
    /// Whether none within it is.
    [[nodiscard]] bool Holds(int left, int top, int right, int bottom) const
    {
        return visible.Holds(left, top, right, bottom);
    }
    /// As Line(), for one within a rectangle that Holds() is true of.
    void HeldLine(int x1, int y1, int x2, int y2) { Add(x1, y1, x2, y2); }
    /// Draws the waiting lines; must be called before anything else is painted.
    void Flush();

private:
    // How dots are drawn: as the lines that they are, by whoever gets them; so where Qt puts them
    // into the picture; on pixels; in a file.
    enum class DotWay { kAsLines, kAsLinesInside, kOnPixels, kOnPaper };

    void Add(int x1, int y1, int x2, int y2);
    void Dot(int x, int y);
    [[nodiscard]] bool IsLine(int x, int y) const;
    void CountFilled();
    void DrawWaiting();
    void HavePainted();
    void FindVisible(const QPen& pen);
    [[nodiscard]] DotWay FindDotWay(const QPen& pen) const;
    [[nodiscard]] bool MayBatch(const QPen& pen) const;
    void FindFiller(const QPen& pen);
    void ClipToDevice(const QPen& pen);

    // Saves Qt's set-up for each line; larger batches gain nothing.
    static constexpr size_t kBatchSize = 256;
    // Parts of the visible area that are worth distinguishing: those around a moving rubber band.
    static constexpr size_t kMostParts = 8;

    UnitBounds visible; // where lines with this pen can touch a visible pixel
    QPainter* painter;
    PassWatch* watch = nullptr;
    bool isRaster;
    std::optional<QRect> clip; // pixels that may be changed, where that is known
    bool clipsDevice = false;  // the painter has it for as long as this object
    std::array<UnitBounds, kMostParts> parts;
    ptrdiff_t partCount = 0; // 0 = all of it is visible
    DotWay dots = DotWay::kAsLines;
    size_t batchSize = 1; // lines per call
    size_t waiting = 0;
    std::array<QLine, kBatchSize> batch;
    std::unique_ptr<LineFiller> filler; // null until there is a pen for it
    bool fills = false;                 // lines of the pen are for the filler
    size_t filled = 0;                  // lines since the watch was told
};
