// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The kinds of pictures that plfdiff draws.
#pragma once

#include <QString>

#include <optional>

namespace diff {

enum class Format { kPng, kSvg, kPdf };

/// The format that a file name's extension stands for.
std::optional<Format> FormatOfName(const QString& fileName);
/// Every extension, for messages.
QString FormatNames();

} // namespace diff
