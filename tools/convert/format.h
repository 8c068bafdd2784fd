// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The kinds of files that the converter writes, and their names.
#pragma once

#include <QString>

#include <optional>

namespace convert {

enum class Format { kPng, kJpeg, kSvg, kPdf, kEps };

/// The format that a name stands for, in any case.
std::optional<Format> ParseFormat(const QString& name);
/// The format that a file name's extension stands for.
std::optional<Format> FormatOfName(const QString& fileName);
/// The extension of a format, without its dot.
QString ExtensionOf(Format format);
/// Every name of a format, for messages: "png, jpg, ... or eps".
QString FormatNames();
/// Whether a picture of that format is made of pixels.
bool HasPixels(Format format);
/// Whether a file of that format is bytes that no terminal should get.
bool IsBinary(Format format);

} // namespace convert
