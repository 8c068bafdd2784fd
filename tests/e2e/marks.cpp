// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/e2e/marks.h"

#include "tests/kit/script.h"

#include <cstdlib>

namespace {

// The screen point of a graph point, when the canvas shows that part of the graph.
QPoint OnScreen(QPoint graph, const QRect& canvas, const QRectF& part)
{
    const double x = (graph.x() - part.left()) * canvas.width() / part.width();
    const double y = (kGraphHeight - graph.y() - part.top()) * canvas.height() / part.height();
    return canvas.topLeft() + QPoint(static_cast<int>(x), static_cast<int>(y));
}

bool IsIn(const QRectF& part, const Mark& mark)
{
    return part.contains(QPointF(mark.at.x(), kGraphHeight - mark.at.y()));
}

// The canvas is measured each time: a window that was resized may not be painted yet.
QString FaultOfMark(const Viewer& viewer, const Mark& mark, const QRectF& part, QColor background)
{
    QPoint expected;
    QRect box;
    const bool drawn = Await([&] {
        const QRect canvas = viewer.Canvas(background);
        expected = OnScreen(mark.at, canvas, part);
        box = ColorBox(GrabScreen(), canvas, mark.color);
        const QPoint off = box.center() - expected;
        return IsIn(part, mark) ? !box.isEmpty() && std::abs(off.x()) <= 1 && std::abs(off.y()) <= 1
                                : box.isEmpty();
    });
    return drawn ? QString()
                 : QStringLiteral("%1 mark: from %2,%3 to %4,%5 instead of at %6,%7")
                       .arg(QString::fromLatin1(mark.name))
                       .arg(box.left())
                       .arg(box.top())
                       .arg(box.right())
                       .arg(box.bottom())
                       .arg(expected.x())
                       .arg(expected.y());
}

} // namespace

// The second "RA1" tells the background, and only after the first 100 bytes.
QByteArray MarkedGraph()
{
    return ScriptBytes(QStringLiteral(R"(ESC "TG14" #0 #0 #0 #0 ESC "TG14" #1 #0 #50 #100
        ESC "TG14" #2 #120 #50 #100 ESC "TG14" #3 #240 #50 #100 *100 GS
        ESC "RA1" "0" ESC "RA1" "7" ESC "GT" #120
        ESC "ML" #1 GS @400,500 @600,500
        ESC "ML" #2 GS @1700,1500 @1900,1500
        ESC "ML" #3 GS @3400,2500 @3600,2500 BEL)")
                           .simplified());
}

QString FaultOfMarks(const Viewer& viewer, const QRectF& part, QColor background)
{
    if (!Await([&] { return viewer.Canvas(background).height() > 0; }))
        return QStringLiteral("no background");
    for (const Mark& mark : kMarks) {
        QString fault = FaultOfMark(viewer, mark, part, background);
        if (!fault.isEmpty())
            return fault;
    }
    return {};
}
