// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The result for people.
#pragma once

#include "tools/diff/pair.h"

#include <QByteArray>

namespace diff {

/// Lines about two graphs that differ, each with its line end.
QByteArray ReportText(const Pair& pair);

/// One line: which graphs differ.
QByteArray QuietText(const Pair& pair);

/// The heading of the table of pairs.
/// @param width  of the widest name, columns
QByteArray TableHead(qsizetype width);
/// A row of the table of pairs.
QByteArray TableRow(const Pair& pair, qsizetype width);

/// The line below the table.
/// @param counts  pairs that are equal, that differ, and that could not be compared
QByteArray SumText(const size_t (&counts)[3]);

/// "12" or "12.5": at most two decimals.
QByteArray Decimal(double value);
/// The same, rounded up.
QByteArray NotBelow(double value);

/// The changes in one line, such as "3 gone, 2 new".
QByteArray CountsText(const Counts& counts);

/// The rectangle in drawing units, "L,T,R,B".
QByteArray AreaText(const Area& area);

} // namespace diff
