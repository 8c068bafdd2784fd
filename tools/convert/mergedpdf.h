// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Many PDF files as one.
#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

class QIODevice;

namespace convert {

/// A picture that goes into a document.
struct BoundPicture {
    QByteArray file; // local name
    QString title;   // printable
};

/// Writes a document with the pages of the files in their order, and their titles in its outline.
/// The same files and date make the same document.
/// @param date    of its making, as PdfDate writes it
/// @param output  open for writing; its own failures are its owner's to notice
/// @return empty, or why there is no document
QString MergePdfs(const std::vector<BoundPicture>& files, const QByteArray& date,
                  QIODevice* output);

} // namespace convert
