// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/polylinesink.h"

#include "meta/paintersink.h"
#include "meta/palette.h"
#include "meta/plftext.h"

#include <algorithm>
#include <cmath>

namespace {

bool IsSame(PlfPoint a, PlfPoint b)
{
    return a.x == b.x && a.y == b.y;
}

} // namespace

PolylineSink::PolylineSink(PolylineTarget& output, const PlfPass& drawnPass, int backgroundIndex,
                           double mostMissing)
    : target(output), pass(drawnPass), background(backgroundIndex), tolerance(mostMissing)
{
}

void PolylineSink::SetPen(int color, int width)
{
    Flush();
    penWidth = PenWidthOf(width, penWidth);
    const double units = std::max<double>(penWidth, pass.minPenWidth);
    standOut = tolerance / (units / 2);
    visible = BoundsAround(pass.Area(), units); // caps reach no farther
    target.SetPen(LineColor(color, background), units);
}

void PolylineSink::Text(std::string_view text, int x, int y)
{
    Flush();
    if (!text.empty())
        target.Text(TextFromFile(text), {x, y});
}

void PolylineSink::Finish()
{
    Flush();
    target.Finish();
}

void PolylineSink::Add(PlfPoint from, PlfPoint to)
{
    if (IsSame(from, to)) {
        target.Dot(from);
        return;
    }
    if (!Continues(from, to)) {
        Flush();
        points.push_back(from);
    }
    points.push_back(to);
    if (points.size() == kMostPoints)
        Flush();
}

// Around a corner that is sharper than a right angle the cap of the first line stands out in front,
// half as far as the pen is wide. Around others its outer edge does, beside the second line.
bool PolylineSink::Continues(PlfPoint from, PlfPoint to) const
{
    if (points.empty() || !IsSame(points.back(), from))
        return false;
    const PlfPoint& before = points[points.size() - 2];
    const double x1 = from.x - before.x;
    const double y1 = from.y - before.y;
    const double x2 = to.x - from.x;
    const double y2 = to.y - from.y;
    const double ahead = x1 * x2 + y1 * y2;
    const double aside = std::abs(x1 * y2 - y1 * x2);
    return ahead >= 0 &&
           ahead + aside <= (1 + standOut) * std::sqrt((x1 * x1 + y1 * y1) * (x2 * x2 + y2 * y2));
}

void PolylineSink::Flush()
{
    if (!points.empty())
        target.Polyline(points);
    points.clear();
}
