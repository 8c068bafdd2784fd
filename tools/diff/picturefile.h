// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The file that pictures of differences go into.
#pragma once

#include "tools/convert/output.h"
#include "tools/diff/format.h"
#include "tools/diff/pair.h"

#include <QPainter>
#include <QPdfWriter>

#include <memory>
#include <optional>

namespace diff {

class PictureFile
{
public:
    /// @param name        local name
    /// @param sideBySide  both graphs beside each other
    PictureFile(const QByteArray& name, Format pictureFormat, bool sideBySide);

    /// @return empty, or why nothing can be written
    QString Open();
    /// Paints a pair: the only one, unless the format is PDF.
    /// @return empty, or why that failed
    QString Add(const Pair& pair);
    /// @return empty, or why there is no file
    QString Commit();

private:
    void AddImage(const Pair& pair);
    void AddDrawing(const Pair& pair);
    QString AddPage(const Pair& pair);

    Format format;
    bool isSideBySide;
    convert::Output output;
    std::unique_ptr<QPdfWriter> writer;
    QPainter pages;
};

} // namespace diff
