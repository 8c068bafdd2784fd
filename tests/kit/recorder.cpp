// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/kit/recorder.h"

#include <QPainter>
#include <QPixmap>

#include <cmath>

namespace {

constexpr int kDpi = 96;
constexpr double kMmPerInch = 25.4;

QString Place(const char* what, const QRect& r)
{
    return QStringLiteral("%1 %2 %3 %4 %5")
        .arg(QLatin1StringView(what))
        .arg(r.x())
        .arg(r.y())
        .arg(r.width())
        .arg(r.height());
}

QString WithoutControls(const QString& text)
{
    QString kept;
    for (const QChar c : text) {
        if (c.category() != QChar::Other_Control)
            kept += c;
    }
    return kept;
}

} // namespace

bool RecordingEngine::begin(QPaintDevice* /*device*/)
{
    return true;
}

void RecordingEngine::updateState(const QPaintEngineState& change)
{
    if (change.state().testFlag(DirtyPen)) {
        penColor = change.pen().color().name();
        penWidth = change.pen().width();
    }
    if (change.state().testFlag(DirtyBrush))
        brushColor = change.brush().color().name();
    if (change.state().testFlag(DirtyTransform) && painter() != nullptr)
        RecordMapping(*painter());
}

void RecordingEngine::RecordMapping(const QPainter& target)
{
    if (target.window() != window) {
        window = target.window();
        operations += Place("window", window);
    }
    if (withViewports && target.viewport() != viewport) {
        viewport = target.viewport();
        operations += Place("viewport", viewport);
    }
}

void RecordingEngine::drawRects(const QRect* rects, int count)
{
    for (int i = 0; i < count; ++i)
        operations += Place("fill", rects[i]) + u' ' + brushColor;
}

void RecordingEngine::drawRects(const QRectF* rects, int count)
{
    for (int i = 0; i < count; ++i)
        operations += Place("fill", rects[i].toRect()) + u' ' + brushColor;
}

void RecordingEngine::drawLines(const QLine* lines, int count)
{
    for (int i = 0; i < count; ++i) {
        const QLine& line = lines[i];
        operations += QStringLiteral("line %1 %2 %3 %4 %5 %6")
                          .arg(line.x1())
                          .arg(line.y1())
                          .arg(line.x2())
                          .arg(line.y2())
                          .arg(penColor)
                          .arg(penWidth);
    }
}

void RecordingEngine::drawLines(const QLineF* lines, int count)
{
    for (int i = 0; i < count; ++i) {
        const QLine line = lines[i].toLine();
        drawLines(&line, 1);
    }
}

// Qt hands over a text in parts of one script each; those that follow each other without
// a gap are joined again.
void RecordingEngine::drawTextItem(const QPointF& at, const QTextItem& item)
{
    const QString text = WithoutControls(item.text());
    const bool continues = lastText == operations.size() - 1 && lastText >= 0 &&
                           std::abs(at.x() - textEnd.x()) < 0.01 && at.y() == textEnd.y();
    textEnd = at + QPointF(item.width(), 0);
    if (!continues)
        lastText = -1;
    if (text.isEmpty())
        return;
    if (continues) {
        operations.last() += text;
        return;
    }
    operations += QStringLiteral("text %1 %2 %3 %4")
                      .arg(static_cast<int>(at.x()))
                      .arg(static_cast<int>(at.y()))
                      .arg(penColor, text);
    lastText = operations.size() - 1;
}

void RecordingEngine::drawPath(const QPainterPath& /*path*/)
{
    operations += QStringLiteral("path");
}

void RecordingEngine::drawPixmap(const QRectF& /*r*/, const QPixmap& /*pm*/, const QRectF& /*sr*/)
{
    operations += QStringLiteral("pixmap");
}

Recorder::Recorder(QSize deviceSize, bool viewports) : size(deviceSize), engine(viewports) {}

int Recorder::metric(PaintDeviceMetric metric) const
{
    switch (metric) {
    case PdmWidth:
        return size.width();
    case PdmHeight:
        return size.height();
    case PdmWidthMM:
        return static_cast<int>(std::lround(size.width() * kMmPerInch / kDpi));
    case PdmHeightMM:
        return static_cast<int>(std::lround(size.height() * kMmPerInch / kDpi));
    case PdmDpiX:
    case PdmDpiY:
    case PdmPhysicalDpiX:
    case PdmPhysicalDpiY:
        return kDpi;
    case PdmDepth:
        return 32;
    case PdmDevicePixelRatio:
        return 1;
    case PdmDevicePixelRatioScaled:
        return static_cast<int>(devicePixelRatioFScale());
    default:
        return QPaintDevice::metric(metric);
    }
}
