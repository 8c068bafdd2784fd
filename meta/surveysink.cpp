// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/surveysink.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

// What a line costs, as it was measured of the filler and of Qt's thin lines: nanoseconds.
constexpr double kEachLine = 100;
constexpr double kEachPixel = 10; // of its length, and of its area

constexpr int kWidthsInUnit = 2; // a pen is half as wide as the file says

} // namespace

SurveySink::Range SurveySink::Range::In(const Range& other) const
{
    return {std::max(first, other.first), std::min(last, other.last)};
}

SurveySink::SurveySink(const QRect& pixels, const QTransform& toDevice, double minPenWidth)
    : scaleX(toDevice.m11()), scaleY(toDevice.m22()), shiftX(toDevice.dx()),
      shiftY(toDevice.dy()), across{0.0 + pixels.x(), 0.0 + pixels.x() + pixels.width()},
      down{0.0 + pixels.y(), 0.0 + pixels.y() + pixels.height()}, minWidth(minPenWidth),
      steps(static_cast<size_t>(pixels.height()) + 1)
{
}

void SurveySink::SetWidth(int width, int /*color*/)
{
    const int whole = width / kWidthsInUnit; // as pens are
    const double units = std::max<double>(whole, minWidth);
    hasWidth = hasWidth || units != 0;
    widest = std::max(widest, units);
    halfWidth = std::abs(units * scaleY) / 2;
}

// The pixels beside a line are touched too.
SurveySink::Range SurveySink::Reached(double from, double to) const
{
    return {std::min(from, to) - halfWidth - 1, std::max(from, to) + halfWidth + 1};
}

void SurveySink::Vector(bool /*continues*/, int x1, int y1, int x2, int y2)
{
    const Range x = Reached(x1 * scaleX + shiftX, x2 * scaleX + shiftX);
    const Range y = Reached(y1 * scaleY + shiftY, y2 * scaleY + shiftY);
    const Range shownX = x.In(across);
    const Range shownY = y.In(down);
    if (shownX.Length() <= 0 || shownY.Length() <= 0)
        return;
    const double part = std::min(shownX.Length() / x.Length(), shownY.Length() / y.Length());
    const double length = part * std::max(x.Length(), y.Length());
    const auto top = static_cast<size_t>(shownY.first - down.first);
    const auto bottom = std::min(static_cast<size_t>(shownY.last - down.first), steps.size() - 2);
    const double work = kEachLine + kEachPixel * length * (1 + 2 * halfWidth);
    const double each = work / static_cast<double>(bottom - top + 1);
    steps[top] += each;
    steps[bottom + 1] -= each;
}

std::vector<double> SurveySink::Rows() const
{
    std::vector<double> rows(steps.size() - 1);
    std::partial_sum(steps.begin(), steps.end() - 1, rows.begin());
    return rows;
}
