// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// File names between the system, where they are bytes, and Qt, where they are characters.
#pragma once

#include <QByteArray>
#include <QString>

namespace tools {

/// The name that stands for the standard input, or as an output for the standard output.
constexpr char kStandardStream[] = "-";

/// What follows the extension of a packed file.
constexpr char kPackedExtension[] = ".gz";

/// A name from the system. Bytes that are not UTF-8 become lone surrogates, which EncodeName turns
/// back: graphs older than UTF-8 have such names.
QString DecodeName(const QByteArray& name);

/// The bytes of a name.
QByteArray EncodeName(const QString& name);

/// A name, or a text with names in it, for a message; see VisibleName.
QByteArray VisibleText(const QString& text);

/// The name without its directory and without the last extension, or the last two of a packed file;
/// "stdin" for kStandardStream.
QString BaseName(const QString& name);

/// The directory in a name, without a '/' at its end unless it is the root; "." without one.
QString FolderOf(const QString& name);

} // namespace tools
