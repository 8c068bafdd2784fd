// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/pdfpicture.h"

#include "meta/palette.h"
#include "tools/convert/pdfhead.h"
#include "tools/convert/picturesize.h"

#include <QPageSize>
#include <QPainter>
#include <QPainterPath>
#include <QPdfWriter>

#include <algorithm>
#include <cmath>

namespace convert {

namespace {

// Points after which a path is written. The effort of some readers grows faster than the length of
// a path.
constexpr int kMostPoints = 1024;

// Paints what it gets, a path for many lines.
class PdfTarget final : public PolylineTarget
{
public:
    PdfTarget(const PlfPass& drawnPass, QPainter& target) : pass(drawnPass), painter(target)
    {
        dots.setFillRule(Qt::WindingFill); // dots may lie on each other
    }

    void SetPen(const QColor& color, double width) override
    {
        const QPen pen(color, width, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin);
        if (pen == painter.pen())
            return;
        Flush();
        painter.setPen(pen);
    }

    void Polyline(const std::vector<PlfPoint>& points) override
    {
        lines.moveTo(points.front().x, points.front().y);
        for (auto point = points.begin() + 1; point != points.end(); ++point)
            lines.lineTo(point->x, point->y);
        if (lines.elementCount() >= kMostPoints)
            Flush();
    }

    void Dot(PlfPoint at) override
    {
        const double width = painter.pen().widthF();
        dots.addRect(at.x - width / 2, at.y - width / 2, width, width);
        if (dots.elementCount() >= kMostPoints)
            Flush();
    }

    void Text(const QString& text, PlfPoint at) override
    {
        if (!MayTouch(pass, painter.font(), text, at))
            return;
        Flush();
        painter.drawText(QPoint(at.x, at.y), text);
    }

    void Finish() override { Flush(); }

private:
    // Lines and dots of one pen have one color, so that their order is not seen.
    void Flush()
    {
        if (!lines.isEmpty())
            painter.drawPath(lines);
        if (!dots.isEmpty())
            painter.fillPath(dots, painter.pen().color());
        lines.clear();
        dots.clear();
    }

    const PlfPass& pass;
    QPainter& painter;
    QPainterPath lines, dots;
};

QPageSize WholePoints(const QSizeF& points)
{
    const QSize whole(std::max(static_cast<int>(std::lround(points.width())), 1),
                      std::max(static_cast<int>(std::lround(points.height())), 1));
    return QPageSize(whole, QString(), QPageSize::ExactMatch);
}

void Prepare(const VectorPage& page, const QSizeF& points, QPdfWriter* writer)
{
    writer->setCreator(QStringLiteral("plfconvert"));
    writer->setTitle(page.title);
    writer->setResolution(page.dpi);
    writer->setPageSize(WholePoints(points));
    writer->setPageMargins(QMarginsF());
}

// From drawing units to the pixels of Qt's page, whose height is rounded: the origin of PDF is at
// the bottom.
QTransform ToQtPage(const PlfPass& pass, const VectorPage& page, const QPdfWriter& writer)
{
    const double pointsHigh = writer.pageLayout().fullRectPoints().height();
    const double rounded = pointsHigh * page.dpi / kPointsPerInch;
    return ToPage(pass, page) * QTransform::fromTranslate(0, rounded - page.size.height());
}

} // namespace

QString WritePdf(const PlfPass& pass, const VectorPage& page, QIODevice* output, PlfResult* result)
{
    const QSizeF points = page.size * (kPointsPerInch / page.dpi);
    PdfHead head(output, points);
    QPdfWriter writer(&head);
    Prepare(page, points, &writer);
    QPainter painter;
    if (!painter.begin(&writer))
        return QStringLiteral("cannot start drawing");
    painter.setTransform(ToQtPage(pass, page, writer));
    if (page.place.size() != page.size)
        painter.setClipRect(AreaOf(pass));
    painter.setFont(TextFont());
    if (pass.fillsBackground)
        painter.fillRect(AreaOf(pass), PaletteColor(pass.Background()));
    PdfTarget target(pass, painter);
    *result = DrawJoined(pass, page, target);
    return painter.end() ? QString() : QStringLiteral("cannot finish drawing");
}

} // namespace convert
