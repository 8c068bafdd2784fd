// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The words for what was found, the same in every kind of output.
#pragma once

#include "tools/info/summary.h"

#include <QByteArray>

namespace info {

/// "bel", "byte-255", "zero-byte" or "end-of-file".
const char* EndWord(PlfEnd reason);

/// How the background was found: "file", "default" or "unknown".
const char* BackgroundWord(const Background& background);

/// A text of the file in UTF-8 and in quotation marks. Quotation marks and backslashes in it get a
/// backslash; control characters are "\xNN".
QByteArray Quoted(std::string_view text);

} // namespace info
