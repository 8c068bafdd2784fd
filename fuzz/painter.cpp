// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Input: a graph file. It is drawn into a small picture, with options selected by its last byte;
// most graphs end before that byte, so it can have any value.
#include "app/state/globals.h"
#include "fuzz/target.h"
#include "meta/plfarea.h"
#include "meta/plfmeta.h"
#include "tests/kit/globals.h"

#include <QImage>
#include <QPainter>
#include <QPrinter>

#include <iterator>
#include <limits>

namespace {

constexpr double kInfinite = std::numeric_limits<double>::infinity();
constexpr int kMost = std::numeric_limits<int>::max();

struct View {
    bool whiteBackground = true;
    double widthScale = 1.0;
    Rect zoom = {};
    bool onPaper = false;
};

constexpr View kViews[] = {
    {},
    {false, 0.1},
    {false, 2.5, {1000, 800, 1800, 1500, 800, 700}},
    {true, kInfinite, {2000, 1500, 2001, 1500, 1, 0}},  // a selection without a height
    {true, -3.0, {3000, 2500, 100, 200, -2900, -2300}}, // dragged to the left and up
    {false, 1.0, {-kMost - 1, -kMost - 1, kMost, kMost, 1, 1}},
    {true, 1.0, {}, true},
    {false, -kInfinite, {100, 100, 200, 200, 100, 100}, true},
};

QPrinter& Printer()
{
    static QPrinter printer;
    printer.setOutputFormat(QPrinter::PdfFormat);
    return printer;
}

void Draw(const View& view)
{
    gbBkClrWhite = view.whiteBackground;
    QImage image(64, 48, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    Rect zoom = view.zoom;
    Rect whole = kWholeArea;
    char name[] = "fuzz.plf";
    CPlfMeta meta(name, &painter, view.onPaper ? &Printer() : nullptr, view.widthScale, 0);
    meta.DrawPlf(&zoom, &whole);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    return fuzz::PrepareGui(argc, argv);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (fuzz::LoadGraph(data, size)) {
        Draw(kViews[data[size - 1] % std::size(kViews)]);
        fuzz::Require(gdwVectorCnt < size, "every vector takes a byte");
    }
    ResetGlobals();
    return 0;
}
