// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A paint device that writes down what is painted on it, one operation a line:
//   window L T W H             the painter's logical window, when it changes
//   viewport L T W H           its viewport, when it changes and viewports are asked for
//   fill L T W H #rrggbb       a filled rectangle
//   line X1 Y1 X2 Y2 #rrggbb W a line, its pen's color and width
//   text X Y #rrggbb TEXT      a text without its control characters; an empty one is left out
// Coordinates are logical.
#pragma once

#include <QPaintDevice>
#include <QPaintEngine>
#include <QPointF>
#include <QRect>
#include <QStringList>

class RecordingEngine : public QPaintEngine
{
public:
    explicit RecordingEngine(bool viewports) : QPaintEngine(AllFeatures), withViewports(viewports)
    {
    }

    bool begin(QPaintDevice* device) override;
    bool end() override { return true; }
    void updateState(const QPaintEngineState& change) override;
    void drawRects(const QRect* rects, int count) override;
    void drawRects(const QRectF* rects, int count) override;
    void drawLines(const QLine* lines, int count) override;
    void drawLines(const QLineF* lines, int count) override;
    void drawTextItem(const QPointF& at, const QTextItem& item) override;
    void drawPath(const QPainterPath& path) override;
    void drawPixmap(const QRectF& r, const QPixmap& pm, const QRectF& sr) override;
    [[nodiscard]] Type type() const override { return User; }

    /// Everything painted so far.
    [[nodiscard]] const QStringList& Operations() const { return operations; }

private:
    void RecordMapping(const QPainter& painter);

    bool withViewports;
    QStringList operations;
    QRect window;
    QRect viewport;
    QString penColor;
    int penWidth = 0;
    QString brushColor;
    QPointF textEnd; // where the next part of the same text would begin
    qsizetype lastText = -1;
};

class Recorder : public QPaintDevice
{
public:
    /// @param size       device pixels
    /// @param viewports  record viewports as well
    explicit Recorder(QSize size = {640, 487}, bool viewports = false);

    [[nodiscard]] QPaintEngine* paintEngine() const override { return &engine; }
    [[nodiscard]] const QStringList& Operations() const { return engine.Operations(); }

protected:
    [[nodiscard]] int metric(PaintDeviceMetric metric) const override;

private:
    QSize size;
    mutable RecordingEngine engine;
};
