// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What tests of printing share: a graph, and a printer that writes PDF files.
#pragma once

#include "tests/kit/appfixture.h"
#include "tests/kit/printedpage.h"

#include <QLine>
#include <QPageLayout>
#include <QPageSize>
#include <QPointF>
#include <QPrintDialog>

#include <string>

namespace fixture {

constexpr double kPointsPerInch = 72.0;

/// A stroke of the printed graph, as the file has it: y upward.
struct PrintStroke {
    QLine line;
    int width;
};

inline const PrintStroke kPrintStrokes[] = {
    {{0, 0, 4095, 0}, 10},
    {{4095, 0, 4095, 3119}, 10},
    {{100, 200, 3000, 2500}, 40},
    {{700, 2900, 3900, 150}, 1},
};

/// The strokes in black, then a red one and a text; the file's own background is green.
std::string PrintGraph();

/// What the view's printer is made to be, and what it says of itself then.
struct Paper {
    QPointF corner;     // of the printable area, points
    int resolution = 0; // dots per inch
};

/// Presses the button that prints.
void PressPrint(QPrintDialog& dialog);

/// Prints into a file, as the user would say it where there is no printer.
void AcceptInto(QPrintDialog& dialog, const std::string& pdf);

/// A base of tests that print.
class PrintTest : public WindowTest
{
protected:
    /// The system's printers are none of these tests.
    static void HidePrinters();
    /// Shows the test graph in a view of a size.
    void Open(Window& window, QSize size = kUsualView)
    {
        OpenView(window, directories->Write("a.plf", PrintGraph()), size);
    }
    /// Lets the view's printer, which the print dialog gives away, write into a file. The paper is
    /// so large that nothing is cut off.
    Paper SetPrinter(const Window& window, const std::string& pdf, int resolution = 1200);
    /// The page that the graph makes; every test that uses it prints once, into "page.pdf".
    PrintedPage Printed();
    /// The paper of a page, which shows some of the strokes.
    static void CheckPage(const std::string& pdf, QPageSize::PageSizeId size,
                          QPageLayout::Orientation orientation);
};

} // namespace fixture
