// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The loaded graph as a picture: every format gets what CPlfMeta::DrawPlf draws.
#pragma once

#include "tools/convert/settings.h"

#include <QString>

class QIODevice;

/// Draws the loaded graph into a device. initGraphics() must have been called.
/// @param name    the graph's local name, for reference
/// @param output  open for writing; its own failures are its owner's to notice
/// @return empty, or why there is no picture
QString DrawPicture(const QByteArray& name, Format format, const PictureSettings& settings,
                    QIODevice* output);
