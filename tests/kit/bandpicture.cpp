// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/kit/bandpicture.h"

#include "tests/kit/plainpainter.h"
#include "tests/kit/plf.h"
#include "tests/kit/recorder.h"

#include <QPainter>

#include <algorithm>
#include <random>

namespace {

constexpr int kThreads = 3;

} // namespace

std::string SeededStart()
{
    return plf::Header() + "0000";
}

std::string SeededGraph(unsigned seed, int width, bool hasTexts, int lines)
{
    constexpr int kColors = 4;
    std::mt19937 random(seed);
    const auto below = [&random](int end) {
        return static_cast<int>(random() % static_cast<unsigned>(end));
    };
    std::string graph = SeededStart();
    for (int i = 0; i < kColors; ++i)
        graph += plf::ColorMapEntry(i, below(360), below(100), 50 + below(51));
    graph += plf::Width(width);
    for (int i = 0; i < lines; ++i) {
        if (below(10) == 0)
            graph += plf::LineIndex(below(kColors));
        if (hasTexts && below(20) == 0)
            graph += plf::Text(below(4096), below(3120), "Tog ");
        const int x = below(4096);
        const int y = below(4096);
        const int reach = below(4) == 0 ? 4000 : 200;
        const auto near = [&](int at) {
            return std::clamp(at + below(reach) - reach / 2, 0, 4095);
        };
        const int toX = near(x);
        const int toY = near(y);
        const bool isDot = below(8) == 0;
        graph += plf::Line(x, y, isDot ? x : toX, isDot ? y : toY);
    }
    return graph + plf::End();
}

PlfGraph GraphOf(const std::string& bytes)
{
    const char* problem = nullptr;
    return PlfGraph::FromBytes(bytes, &problem);
}

PlfPass PassOf(const PlfGraph& graph, const Look& look)
{
    PlfPass pass;
    pass.graph = graph.Bytes();
    pass.zoom = look.zoom;
    pass.widthScale = look.widthScale;
    pass.whiteBackground = false;
    pass.fillsBackground = look.fillsBackground;
    pass.minPenWidth = look.minPenWidth;
    pass.threads = kThreads;
    return pass;
}

QImage AnyGround(const Look& look)
{
    QImage image(look.size, QImage::Format_RGB32);
    std::mt19937 random(1);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, static_cast<QRgb>(random()) | 0xFF000000);
    }
    image.setDevicePixelRatio(look.ratio);
    return image;
}

void SetUp(QPainter& painter, const Look& look)
{
    painter.setRenderHint(QPainter::Antialiasing);
    if (!look.viewport.isEmpty()) {
        painter.setViewport(QRect(QPoint(0, 0), look.viewport));
        painter.setWindow(painter.viewport());
    }
    if (look.part.rectCount() > 1)
        painter.setClipRegion(look.part);
    else if (!look.part.isEmpty())
        painter.setClipRect(look.part.boundingRect());
}

QImage PaintPlain(const PlfPass& pass, const Look& look)
{
    Recorder recorder;
    QPainter recording(&recorder);
    PaintGraph(pass, recording);
    QImage image = AnyGround(look);
    QPainter painter(&image);
    SetUp(painter, look);
    PaintPlainly(recorder.Operations(), painter);
    return image;
}

RowCuts EvenCuts(const Look& look, int bands)
{
    RowCuts cuts;
    for (int i = 1; i < bands; ++i)
        cuts.push_back(look.size.height() * i / bands);
    return cuts;
}

QImage PaintBands(const PlfPass& pass, const Look& look, int bands)
{
    QImage image = AnyGround(look);
    QPainter painter(&image);
    SetUp(painter, look);
    PaintInBands(pass, painter, EvenCuts(look, bands));
    return image;
}
