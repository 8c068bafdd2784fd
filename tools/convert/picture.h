// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A graph as a picture: every format gets what a pass draws.
#pragma once

#include "meta/plfgraph.h"
#include "tools/convert/format.h"
#include "tools/convert/picturesettings.h"

#include <QImage>
#include <QString>

class QIODevice;

namespace convert {

/// Draws a graph into an image, RGB32, or premultiplied ARGB32 if the background is transparent.
/// @return null if there is not enough memory
QImage DrawnImage(const PlfBytes& graph, const PictureSettings& settings);

/// Draws a graph into a device.
/// @param title   names the graph where a format has room for that
/// @param output  open for writing; its own failures are its owner's to notice
/// @return empty, or why there is no picture
QString DrawPicture(const PlfBytes& graph, Format format, const PictureSettings& settings,
                    const QString& title, QIODevice* output);

} // namespace convert
