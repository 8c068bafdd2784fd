// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/pass.h"

#include "meta/bands.h"
#include "meta/bytesink.h"
#include "meta/epssink.h"
#include "meta/paintersink.h"
#include "meta/palette.h"
#include "meta/passrun.h"
#include "meta/polylinesink.h"

#include <QPainter>
#include <QtGlobal>

int LineColors::Map(int index) const
{
    if (index < 1 || index > kPaletteSize)
        return 0;
    if (whiteToBlack)
        return index == kWhite ? 0 : index;
    if (rule == kAllBlack)
        return 0;
    if (rule == kThroughMap && index < kPaletteSize)
        return map[static_cast<size_t>(index)];
    return index;
}

int PlfPass::Background() const
{
    return whiteBackground ? kWhite : NamedBackground(graph);
}

PlfResult PaintGraph(const PlfPass& pass, QPainter& painter)
{
    if (!painter.isActive())
        return CountVectors(pass);
    return PaintInBands(pass, painter, FindCuts(pass, painter));
}

PlfResult WriteEps(const PlfPass& pass, ByteSink& output)
{
    PassRun run(pass);
    EpsSink sink(output, pass, run.background, run.epsItems);
    if (!pass.eps.areaOnly || !pass.IsZoomed())
        return run.Into(sink);
    EpsAreaSink part(sink, pass);
    return run.Into(part);
}

PlfResult JoinLines(const PlfPass& pass, PolylineTarget& target, double tolerance)
{
    PassRun run(pass);
    PolylineSink sink(target, pass, run.background, tolerance);
    return run.Into(sink);
}

PlfResult FollowGraph(const PlfPass& pass, PlfObserver& observer, QPainter* painter)
{
    PassRun run(pass);
    if (painter == nullptr || !painter->isActive()) {
        NoSink sink;
        return run.Into(sink, observer);
    }
    PainterSink sink(*painter, pass, run.background, run.values.pen);
    return run.Into(sink, observer);
}

PlfResult CountVectors(const PlfPass& pass)
{
    PassRun run(pass);
    NoSink sink;
    return run.Into(sink);
}

void TellRefusedTexts(const PlfResult& result)
{
    if (result.textsRefused > 0)
        qWarning("plotvw: ignored %d %s longer than %zu bytes", result.textsRefused,
                 result.textsRefused == 1 ? "text or font name" : "texts or font names",
                 kTextSize - 1);
}
