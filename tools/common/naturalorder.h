// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The order in which people count files: "g2" comes before "g10".
#pragma once

#include <QByteArray>

namespace tools {

/// Whether a name comes before another one. Numbers in them are compared by their value, folder by
/// folder; everything else by bytes. Two names are equal only if their bytes are.
bool IsNaturallyBefore(const QByteArray& a, const QByteArray& b);

} // namespace tools
