// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Whether two pictures of a graph look the same, and what other programs make of its vector files.
#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>
#include <QStringList>

/// Two renderers put the edges of a line on the pixels each in its own way: a pixel may differ from
/// its counterpart, or one beside it, by so much of 255.
constexpr int kEdgeTolerance = 64;
/// A JPEG has one color for four pixels.
constexpr int kJpegTolerance = 96;
/// Poppler moves thin lines onto whole pixels, where an image has two pixels of half the color.
constexpr int kPopplerTolerance = 144;

/// A graph from a seed. It has no texts: those in seeded streams hold control characters, which
/// each program draws in its own way.
QByteArray SeededGraph(unsigned seed);

/// A picture file, without what distinguishes equal pictures.
QImage Loaded(const QString& name);

/// Whether two pictures have the same size, and of a hundred pixels of each at most one has nothing
/// like its color in the other, there or beside it. Says so if not.
bool LookAlike(const QImage& a, const QImage& b, int tolerance);

/// What a program prints; says so if it fails.
QByteArray RunTool(const QString& program, const QStringList& arguments);

/// An SVG as rsvg-convert shows it, without options that let it read more than usual.
QImage RenderedSvg(const QString& name);
/// A page of PDF as pdftocairo shows it, at that width in pixels.
QImage RenderedPdf(const QString& name, QSize size);
