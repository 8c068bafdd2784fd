// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/pdfpicture.h"

#include "meta/palette.h"

#include <QPageSize>
#include <QPainter>
#include <QPainterPath>
#include <QPdfWriter>

namespace convert {

namespace {

constexpr double kPointsPerInch = 72.0;
constexpr int kMostPoints = 4096;

class PdfTarget final : public PolylineTarget
{
public:
    PdfTarget(const PlfPass& drawnPass, QPainter& target) : pass(drawnPass), painter(target) {}
    ~PdfTarget() override { Flush(); }

    void SetPen(const QColor& color, double width) override
    {
        Flush();
        painter.setPen(QPen(color, width, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
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
    }
    void Text(const QString& text, PlfPoint at) override
    {
        Flush();
        if (MayTouch(pass, painter.font(), text, at))
            painter.drawText(QPoint(at.x, at.y), text);
    }

private:
    void Flush()
    {
        if (!lines.isEmpty())
            painter.drawPath(lines);
        if (!dots.isEmpty())
            painter.fillPath(dots, painter.pen().color());
        lines = {};
        dots = {};
    }
    const PlfPass& pass;
    QPainter& painter;
    QPainterPath lines, dots;
};

} // namespace

QString WritePdf(const PlfPass& pass, const VectorPage& page, QIODevice* output, PlfResult* result)
{
    QPdfWriter writer(output);
    writer.setCreator(QStringLiteral("plfconvert"));
    writer.setTitle(page.title);
    writer.setResolution(static_cast<int>(page.dpi));
    const QSizeF points = page.size * (kPointsPerInch / page.dpi);
    writer.setPageSize(QPageSize(points, QPageSize::Point, QString(), QPageSize::ExactMatch));
    writer.setPageMargins(QMarginsF());
    QPainter painter;
    if (!painter.begin(&writer))
        return QStringLiteral("cannot start drawing");
    painter.setFont(TextFont());
    if (pass.fillsBackground)
        painter.fillRect(QRectF(QPointF(), page.size), PaletteColor(pass.Background()));
    painter.setTransform(ToPage(pass, page));
    {
        PdfTarget target(pass, painter);
        *result = DrawJoined(pass, page, target);
    }
    return painter.end() ? QString() : QStringLiteral("cannot finish drawing");
}

} // namespace convert
