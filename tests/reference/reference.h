// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors

// A second, deliberately plain interpreter of PLF files. It shares no code with the viewer and
// paints nothing: it only lists what a pass would ask of a painter, one text per operation, or the
// EPS that a pass would write, so that the viewer's own interpreter can be compared with it
// operation by operation and byte by byte.

#pragma once

#include <string>
#include <vector>

namespace reference {

// Longer texts are not drawn, in bytes.
constexpr int kLongestText = 1023;

// How a pass is asked for.
struct View {
    bool whiteBackground = true;
    double widthScale = 1.0;

    // A zoom counts only when it is more than nothing wide; all zeros ask for the whole graph.
    bool zoomed() const;
    long zoomLeft = 0;
    long zoomTop = 0;
    long zoomRight = 0;
    long zoomBottom = 0;

    bool printing = false;
    int dpiX = 600;
    int dpiY = 600;
    int minPrintWidth = 2;
    int pageX = 0;
    int pageY = 0;
    double pageSizeX = 1.0;
    double pageSizeY = 1.0;
};

// What a pass does. The operations are, in the order of painting:
//   window L T W H               the logical window, each time it is set
//   viewport L T W H             only when printing
//   fill L T W H #rrggbb         the background
//   line X1 Y1 X2 Y2 #rrggbb W   one vector, with the color and the width of the pen in force
//   text X Y #rrggbb TEXT        TEXT in UTF-8, without control characters, never empty
struct Result {
    std::vector<std::string> operations;
    unsigned long vectors = 0;
    int background = 15;
};

// fileBytes is a whole file with its header; it is read as if zero bytes followed it.
Result Draw(const std::string& fileBytes, const View& view);

// How EPS is asked for.
struct EpsOptions {
    double scale = 0.25;
    int minLineWidth = 5;
    bool linesToBlack = false;
    bool fillBackground = false;
    unsigned long backgroundIndex = 0; // of the palette; any index without a row is white
};

// The bytes of the EPS file that a pass with neither painter nor printer writes. Of the view only
// the background, the factor on widths and the zoom count.
std::string DrawEps(const std::string& fileBytes, const View& view, const EpsOptions& options);

} // namespace reference
