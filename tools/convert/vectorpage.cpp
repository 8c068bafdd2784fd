// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/vectorpage.h"

#include "tools/convert/picturesize.h"

#include <QGuiApplication>

#include <algorithm>
#include <cmath>

namespace convert {

namespace {

// Pixels that may be missing at a corner where two lines are joined. Lines of one pixel then are
// joined at right angles and at all that are blunter.
constexpr double kMostMissing = 0.25;

} // namespace

QRectF AreaOf(const PlfPass& pass)
{
    const Rect& area = pass.Area();
    return {QPointF(static_cast<double>(area.left), static_cast<double>(area.top)),
            QPointF(static_cast<double>(area.right), static_cast<double>(area.bottom))};
}

QFont TextFont()
{
    QFont font = QGuiApplication::font();
    const double size = font.pointSizeF() * kScreenDpi / kPointsPerInch;
    font.setPixelSize(std::max(static_cast<int>(std::lround(size)), 1));
    return font;
}

bool MayTouch(const PlfPass& pass, const QFont& font, const QString& text, PlfPoint at)
{
    const double em = font.pixelSize();
    const double length = em * static_cast<double>(text.size());
    return AreaOf(pass).intersects(QRectF(at.x - em, at.y - 2 * em, length + 2 * em, 4 * em));
}

QTransform ToPage(const PlfPass& pass, const VectorPage& page)
{
    const QRectF area = AreaOf(pass);
    return QTransform::fromTranslate(-area.left(), -area.top()) *
           QTransform::fromScale(page.place.width() / area.width(),
                                 page.place.height() / area.height()) *
           QTransform::fromTranslate(page.place.left(), page.place.top());
}

PlfResult DrawJoined(const PlfPass& pass, const VectorPage& page, PolylineTarget& target)
{
    const double pixel = AreaOf(pass).width() / page.place.width();
    return JoinLines(pass, target, kMostMissing * pixel);
}

} // namespace convert
