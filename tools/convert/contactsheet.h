// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Many small pictures in rows and columns, with their names.
#pragma once

#include "tools/convert/binding.h"
#include "tools/convert/format.h"
#include "tools/convert/picturesettings.h"

#include <QSize>
#include <QString>

#include <vector>

class QIODevice;

namespace convert {

/// One sheet of a series.
struct ContactSheet {
    std::vector<BoundPicture> pictures; // row by row
    QSize grid;                         // columns and rows; a sheet may have less
    int number = 1;
    int count = 1; // of sheets; with more than one, each shows its number
};

/// Draws a sheet.
/// @param format  PNG or JPEG
/// @param output  open for writing; its own failures are its owner's to notice
/// @return empty, or why there is no sheet
QString DrawContactSheet(const ContactSheet& sheet, Format format, const PictureSettings& settings,
                         QIODevice* output);

} // namespace convert
