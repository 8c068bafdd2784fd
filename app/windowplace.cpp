// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "app/windowplace.h"

#include <QPoint>
#include <QRegion>
#include <QSize>

#include <algorithm>
#include <cstdint>

namespace {

// Largest distance of a window from the origin: window systems count pixels in 16 bits.
constexpr int64_t kMaxPlace = 32767;
// Longest side, and largest area: a window needs four bytes per pixel.
constexpr int64_t kMaxSide = 16384;
constexpr int64_t kMaxArea = 100'000'000;
// Smallest window: the three menus are together about 130 pixels wide, and menu bar and status bar
// leave about 75 pixels of this height to the graph.
constexpr int64_t kMinWidth = 160;
constexpr int64_t kMinHeight = 120;
// Height of the strip by which the window is moved, about that of a title bar. A window without a
// title bar has its menus there, which can at least close it.
constexpr int kStrip = 30;
// Visible width and height of the strip that a user needs to find and hit it.
constexpr int kGrip = 16;

int PlaceInLimits(int64_t value)
{
    return static_cast<int>(std::clamp(value, -kMaxPlace, kMaxPlace));
}

QSize SizeInLimits(int64_t width, int64_t height)
{
    width = std::clamp(width, kMinWidth, kMaxSide);
    height = std::clamp(height, kMinHeight, std::min(kMaxSide, kMaxArea / width));
    return {static_cast<int>(width), static_cast<int>(height)};
}

QRect TopStrip(const QRect& window)
{
    return {window.topLeft(), QSize(window.width(), kStrip)};
}

bool IsReachable(const QRect& window, const QList<QRect>& screens)
{
    return std::any_of(screens.begin(), screens.end(), [&](const QRect& screen) {
        const QRect seen = TopStrip(window) & screen;
        return seen.width() >= kGrip && seen.height() >= kGrip;
    });
}

// Even if it is larger than each of them.
bool IsWhollySeen(const QRect& window, const QList<QRect>& screens)
{
    QRegion rest(window);
    for (const QRect& screen : screens)
        rest -= screen;
    return rest.isEmpty();
}

// Distance of a point from a rectangle: the sum of the horizontal and the vertical one.
int Distance(const QPoint& point, const QRect& area)
{
    const int x = std::clamp(point.x(), area.left(), area.right());
    const int y = std::clamp(point.y(), area.top(), area.bottom());
    return (point - QPoint(x, y)).manhattanLength();
}

QRect NearestScreen(const QRect& window, const QList<QRect>& screens)
{
    const QPoint corner = window.topLeft();
    return *std::min_element(screens.begin(), screens.end(), [&](const QRect& a, const QRect& b) {
        return Distance(corner, a) < Distance(corner, b);
    });
}

// The nearest position at which the window is inside, with its title bar; a window that is too
// large starts at the corner.
QPoint PlaceInside(const QRect& window, const QRect& screen)
{
    const auto inside = [](int at, int length, int from, int room) {
        return std::clamp(at, from, from + std::max(room - length, 0));
    };
    return {inside(window.x(), window.width(), screen.x(), screen.width()),
            inside(window.y(), window.height() + kStrip, screen.y(), screen.height())};
}

} // namespace

QRect UsableWindow(const Rect& wanted, bool isStored, const QList<QRect>& screens)
{
    QRect window(QPoint(PlaceInLimits(wanted.left), PlaceInLimits(wanted.top)),
                 SizeInLimits(wanted.width, wanted.height));
    if (screens.isEmpty())
        return window;
    const QRect screen = NearestScreen(window, screens);
    const QSize fitting = window.size().boundedTo(screen.size());
    const bool isTooLarge = isStored && fitting != window.size() && !IsWhollySeen(window, screens);
    if (isTooLarge)
        window.setSize(fitting);
    if (isTooLarge || !IsReachable(window, screens))
        window.moveTopLeft(PlaceInside(window, screen));
    return window;
}
