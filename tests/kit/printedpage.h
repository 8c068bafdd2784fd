// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What a printed page shows, read back from its PDF file by another program. Everything is in
// points, from the top left corner of the paper.
#pragma once

#include <QColor>
#include <QImage>
#include <QLineF>
#include <QList>
#include <QRectF>
#include <QSizeF>
#include <QString>

/// A straight line, and how wide its pen is across.
struct PrintedLine {
    QLineF line;
    double width;
    QColor color;
};

/// A filled shape; of shapes that are not rectangles the box around them.
struct PrintedArea {
    QRectF box;
    QColor color;
};

struct PrintedPage {
    QSizeF paper;
    QList<PrintedLine> lines;
    QList<PrintedArea> areas;
    qsizetype letters = 0; // characters of texts
};

/// Reads the only page of a PDF file. Fails the test when the file cannot be read or has another
/// number of pages.
PrintedPage ReadPage(const QString& pdf);

/// The title that a PDF file says it has. Fails the test when the file cannot be read.
QString ReadTitle(const QString& pdf);

/// The only page of a PDF file as a picture. Fails the test when the file cannot be read.
QImage RenderPage(const QString& pdf, int pixelsPerInch);
