// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Fills wide lines on an image: each pixel gets the color that QPainter would give it, antialiased,
// in a fraction of the time.
#pragma once

#include "meta/fill/coverage.h"
#include "meta/fill/fulltiles.h"
#include "meta/fill/outline.h"

#include <QImage>
#include <QPen>
#include <QRect>
#include <QTransform>

#include <optional>

class LineFiller
{
public:
    /// Whether LineFiller draws what QPainter would: on images of 32 bits a pixel, lines with
    /// square ends in one opaque color, with a mapping that has one scale across and another down.
    /// With other mappings QPainter takes other ways, is as fast, and paints other pixels.
    /// @param toDevice  from drawing units to pixels
    static bool CanFill(const QPen& pen, const QTransform& toDevice, QImage::Format format);

    /// @param image     must outlive the object, with its pixels where they are
    /// @param clip      the pixels that may be changed
    /// @param toDevice  CanFill() holds for it
    LineFiller(QImage& image, const QRect& clip, const QTransform& toDevice);

    /// Whether that is what the object was made with.
    [[nodiscard]] bool IsFor(QImage& image, const QRect& clip, const QTransform& toDevice) const;

    /// Sets the pen of the lines that follow; CanFill() holds for it. To be called first.
    void SetPen(const QPen& pen);

    /// Draws a line, or a dot, in drawing units. What cannot change a pixel is left out.
    /// @return false if an edge of it that crosses the image reaches too far from there to be drawn
    ///         here: nothing is drawn then
    bool Line(int x1, int y1, int x2, int y2);

    /// To be called after something else has painted on the image.
    void ForgetPixels();

private:
    bool FarLine(int x1, int y1, int x2, int y2);
    void Dot(int x, int y);
    [[nodiscard]] QPointF Near(const QPointF& point) const;
    void Fill(const Outline& outline);
    void FillAll();

    uchar* bits;
    qsizetype bytesPerLine;
    QRect asked;   // as the object was made
    QSize picture; // all pixels that there are
    QRect pixels;  // of those asked for
    QTransform mapping;
    QRgb color = 0;
    OutlineMaker outlines;
    Coverage coverage;
    FullTiles tiles;
    QRectF aroundPixels;      // and a few more
    QRectF around;            // that, in drawing units
    double width = 0;         // drawing units
    std::optional<QRgb> only; // the color of all pixels, if there is one that keeps itself
};
