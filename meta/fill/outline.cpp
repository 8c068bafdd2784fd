// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/fill/outline.h"

#include <QPainterPath>
#include <QPainterPathStroker>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace {

// QPainter rounds to 64ths of a pixel, and fills in parts of a quarter of that.
constexpr int kRoundedBits = 6;
constexpr double kRounded = 1 << kRoundedBits;
constexpr int kPartsInRounded = kPixel >> kRoundedBits;

// Farthest that an outline may lie from the device's origin, 64ths of a pixel.
constexpr double kFarthest = 1 << 26;
// Largest shift, 64ths of a pixel: with it, the order of a calculation changes the coordinates by
// less than 2^-19.
constexpr double kLargestShift = 1 << 30;

// Coordinates as whole numbers with this many bits for the fraction. A double has just these bits
// at its end when so large a number is added.
constexpr int kFractionBits = 19;
constexpr double kToFixed = 0x1.8p52 / (1 << kFractionBits);
constexpr uint64_t kHalf = 1 << (kFractionBits - 1);
constexpr uint64_t kFraction = (1 << kFractionBits) - 1;
// Closer to the middle between two whole numbers, another order of the same calculation might
// round to the other one.
constexpr uint64_t kTie = 2;

constexpr size_t kPoints = 8; // without the one that comes again

uint64_t ToFixed(double value)
{
    return std::bit_cast<uint64_t>(value + kToFixed);
}

int Round(uint64_t fixed)
{
    return static_cast<int>(static_cast<uint32_t>((fixed + kHalf) >> kFractionBits));
}

// Above 2^63 if the value is about in the middle between two whole numbers.
uint64_t TellTie(uint64_t fixed)
{
    return ((fixed + kHalf + kTie) & kFraction) - 2 * kTie;
}

// Sets out to the rounded values. Returns whether one of them was too close to call.
bool RoundAll(const std::array<double, kPoints>& values, std::array<int, kPoints>& out)
{
    uint64_t ties = 0;
    for (size_t i = 0; i < kPoints; ++i) {
        const uint64_t fixed = ToFixed(values[i]);
        out[i] = Round(fixed);
        ties |= TellTie(fixed);
    }
    return static_cast<int64_t>(ties) < 0;
}

} // namespace

// The outline's direction is that of QPainter, as areas are rounded down.
Outline OutlineOf(const QPointF& from, const QPointF& to)
{
    const auto rounded = [](double value) { return qRound(value * kRounded) * kPartsInRounded; };
    const Outline::Point a = {rounded(from.x()), rounded(from.y())};
    const Outline::Point b = {rounded(to.x()), rounded(to.y())};
    Outline outline = {};
    outline.points.fill({a.x, b.y});
    outline.points[0] = a;
    outline.points[1] = {b.x, a.y};
    outline.points[2] = b;
    outline.left = std::min(a.x, b.x) >> kPixelBits;
    outline.top = std::min(a.y, b.y) >> kPixelBits;
    outline.right = std::max(a.x, b.x) >> kPixelBits;
    outline.bottom = std::max(a.y, b.y) >> kPixelBits;
    return outline;
}

bool OutlineMaker::CanMap(const QTransform& toDevice)
{
    return toDevice.type() == QTransform::TxScale && toDevice.isInvertible() &&
           std::abs(toDevice.dx()) * kRounded < kLargestShift &&
           std::abs(toDevice.dy()) * kRounded < kLargestShift;
}

OutlineMaker::OutlineMaker(const QTransform& toDevice, double width)
    : mapping(toDevice), across{toDevice.m11() * kRounded, toDevice.dx() * kRounded},
      down{toDevice.m22() * kRounded, toDevice.dy() * kRounded}, halfWidth(width / 2)
{
}

bool OutlineMaker::Make(int x1, int y1, int x2, int y2, Outline& outline) const
{
    const double dx = static_cast<double>(x2) - x1;
    const double dy = static_cast<double>(y2) - y1;
    const double part = halfWidth / std::sqrt(dx * dx + dy * dy);
    // From an end of the line: sideways by half the width, and onward by as much.
    const double sideX = dy * part * across.scale;
    const double sideY = -dx * part * down.scale;
    const double onX = dx * part * across.scale;
    const double onY = dy * part * down.scale;
    const double aX = x1 * across.scale + across.shift;
    const double aY = y1 * down.scale + down.shift;
    const double bX = x2 * across.scale + across.shift;
    const double bY = y2 * down.scale + down.shift;

    const double reachX = std::abs(sideX) + std::abs(onX);
    const double reachY = std::abs(sideY) + std::abs(onY);
    const double lowX = std::min(aX, bX) - reachX;
    const double highX = std::max(aX, bX) + reachX;
    const double lowY = std::min(aY, bY) - reachY;
    const double highY = std::max(aY, bY) + reachY;
    if (!(lowX > -kFarthest && highX < kFarthest && lowY > -kFarthest && highY < kFarthest))
        return false;
    outline.left = (Round(ToFixed(lowX)) - 1) >> kRoundedBits;
    outline.top = (Round(ToFixed(lowY)) - 1) >> kRoundedBits;
    outline.right = (Round(ToFixed(highX)) + 1) >> kRoundedBits;
    outline.bottom = (Round(ToFixed(highY)) + 1) >> kRoundedBits;

    std::array<int, kPoints> xs;
    std::array<int, kPoints> ys;
    const bool xTies = RoundAll({aX + sideX, bX + sideX, bX + sideX + onX, bX - sideX + onX,
                                 bX - sideX, aX - sideX, aX - sideX - onX, aX + sideX - onX},
                                xs);
    const bool yTies = RoundAll({aY + sideY, bY + sideY, bY + sideY + onY, bY - sideY + onY,
                                 bY - sideY, aY - sideY, aY - sideY - onY, aY + sideY - onY},
                                ys);
    for (size_t i = 0; i < kPoints; ++i)
        outline.points[i] = {xs[i] * kPartsInRounded, ys[i] * kPartsInRounded};
    outline.points[kPoints] = outline.points[0];
    if (xTies || yTies)
        MakeWithStroker(x1, y1, x2, y2, outline);
    return true;
}

// Slower by far, and to the last bit what QPainter calculates.
void OutlineMaker::MakeWithStroker(int x1, int y1, int x2, int y2, Outline& outline) const
{
    QPainterPath line(QPointF(x1, y1));
    line.lineTo(x2, y2);
    QPainterPathStroker stroker;
    stroker.setWidth(halfWidth * 2);
    stroker.setCapStyle(Qt::SquareCap);
    const QPainterPath stroke = stroker.createStroke(line);
    const size_t count =
        std::min(outline.points.size(), static_cast<size_t>(stroke.elementCount()));
    for (size_t i = 0; i < count; ++i) {
        const QPointF point =
            mapping.map(QPointF(stroke.elementAt(static_cast<int>(i)))) * kRounded;
        outline.points[i] = {qRound(point.x()) * kPartsInRounded,
                             qRound(point.y()) * kPartsInRounded};
    }
}
