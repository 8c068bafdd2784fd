// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Painters that paint on an image, and what Qt does there.
#pragma once

#include <QRect>

#include <optional>

class QImage;
class QPainter;
class QPen;
class QTransform;

/// Whether a painter draws pixels, on the screen or in an image. Other engines only record what is
/// painted, and a painter that could not begin has none.
bool IsRaster(const QPainter& painter);

/// The image that a painter draws on without any detour, or null.
QImage* ImageOf(const QPainter& painter);

/// Whether a painter is antialiased and lays opaque colors over what is there.
bool PaintsPlainly(const QPainter& painter);

/// Whether the scales across and down are the same, compared as Qt does it.
bool HasSameScales(const QTransform& toDevice);

/// Whether lines of a pen have the same pixels with a clip of a rectangle as without one.
bool IsExactInClip(const QPainter& painter, const QPen& pen);

/// The pixels of the image that a painter may change, if they are a rectangle and known for
/// certain.
std::optional<QRect> PixelClip(const QPainter& painter, const QImage& image);

/// Another image of the same pixels, for another painter. The pixels remain those of the image.
QImage SharedPixels(QImage& image);

/// Limits a painter on an image to some pixels of it, however it is mapped.
void ClipToPixels(QPainter& painter, const QRect& pixels);
