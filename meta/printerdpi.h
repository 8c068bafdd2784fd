// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A printer's resolution, for code that does not link printing.
#pragma once

class QPrinter;

/// Logical resolution in dots per inch, horizontal and vertical.
struct Resolution {
    int x;
    int y;
};

/// The printer's logical resolution.
Resolution PrinterResolution(const QPrinter* printer);
