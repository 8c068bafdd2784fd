// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A graph piece by piece, one on each line.
#pragma once

#include "tools/info/inspector.h"

#include <QByteArray>

namespace info {

/// The line for a piece, with its line end: both offsets, a word and what belongs to it, see the
/// manual page.
QByteArray DumpLine(const Item& item);

} // namespace info
