// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A progress bar in the last line of a terminal.
#pragma once

#include <QByteArray>
#include <QElapsedTimer>

namespace convert {

/// The bar as a line: "[###.......]  3/10  30%  0:07 left". It is shorter than the terminal is
/// wide, and without the bar where only the numbers fit.
/// @param seconds  since the beginning
/// @param columns  of the terminal
QByteArray BarLine(int done, int count, double seconds, int columns);

/// Draws on standard error, if that is a terminal that can take a line back.
class Bar
{
public:
    /// @param wanted  false = never draw
    Bar(int total, bool wanted);

    /// Draws the bar, unless that was done a moment ago.
    void Draw(int done);
    /// Takes it back; what is printed next has the line for itself.
    void Clear() const;

private:
    int count;
    bool isShown;
    QElapsedTimer begin;
    QElapsedTimer lastDrawn;
};

} // namespace convert
