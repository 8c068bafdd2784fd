// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A paint device that passes on what is painted: without the background, or with thin lines made
// thicker. So the interpreter need not know that someone wants its drawing changed.
#pragma once

#include <QPaintDevice>
#include <QPaintEngine>

/// What is changed on the way.
struct LineFilterRules {
    bool withoutBackground = false; // filled rectangles are left out; only the background is one
    double minPenWidth = 0.0;       // thinner pens become that wide, drawing units
};

class LineFilterEngine : public QPaintEngine
{
public:
    LineFilterEngine(QPainter* painter, const LineFilterRules& rules)
        : QPaintEngine(AllFeatures), target(painter), filter(rules)
    {
    }

    bool begin(QPaintDevice* device) override;
    bool end() override { return true; }
    void updateState(const QPaintEngineState& change) override;
    void drawRects(const QRect* rects, int count) override;
    void drawRects(const QRectF* rects, int count) override;
    void drawLines(const QLine* lines, int count) override;
    void drawLines(const QLineF* lines, int count) override;
    void drawPath(const QPainterPath& path) override;
    void drawTextItem(const QPointF& at, const QTextItem& item) override;
    void drawPixmap(const QRectF& place, const QPixmap& picture, const QRectF& part) override;
    [[nodiscard]] Type type() const override { return User; }

private:
    [[nodiscard]] QPen Filtered(QPen pen) const;

    QPainter* target;
    LineFilterRules filter;
};

class LineFilter : public QPaintDevice
{
public:
    /// @param painter  what to pass on to; active, and outlives the filter
    LineFilter(QPainter* painter, const LineFilterRules& rules);

    [[nodiscard]] QPaintEngine* paintEngine() const override { return &engine; }

protected:
    /// The target's: texts are laid out for it.
    [[nodiscard]] int metric(PaintDeviceMetric metric) const override;

private:
    const QPaintDevice* device;
    mutable LineFilterEngine engine;
};
