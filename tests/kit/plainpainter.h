// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Painting the operations of a recording one by one, in the plainest way there is, to compare
// pictures with.
#pragma once

#include <QImage>
#include <QLine>
#include <QSize>
#include <QStringList>

class QPainter;

/// What the operations (see recorder.h) look like on an image of that format, which is transparent
/// if it can be and red if not, so that what the background leaves uncovered is seen.
QImage PaintPlainly(const QStringList& operations, QSize size,
                    QImage::Format format = QImage::Format_RGB32, bool antialiased = true);

/// Paints a vector with the painter's pen: a line by one call of Qt, and one of no length as a
/// square as wide as the pen, or a pixel wide if the pen is thinner.
void PaintVector(QPainter& painter, const QLine& vector);

/// Paints the operations with a painter.
void PaintPlainly(const QStringList& operations, QPainter& painter);
