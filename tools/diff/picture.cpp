// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/diff/picture.h"

#include "meta/palette.h"
#include "meta/plfarea.h"
#include "meta/plftext.h"
#include "tools/common/filename.h"
#include "tools/diff/reporttext.h"

#include <QGuiApplication>
#include <QList>
#include <QPainter>

#include <algorithm>
#include <functional>

namespace diff {

namespace {

// The layout, in pixels.
constexpr int kMargin = 24;
constexpr int kPanelWidth = 1024;
constexpr int kPanelHeight = kPanelWidth * kPlfHeight / kPlfWidth;
constexpr int kLineHeight = 22;
constexpr int kTitleSize = 15;
constexpr int kFontSize = 13;
constexpr int kLabelSize = 11; // of texts of the graphs
constexpr int kSwatch = 28;
constexpr int kLegendLines = 2;
constexpr int kFrameGap = 6; // between an area and its frame

// Colors that people tell apart whatever colors they see, as Okabe and Ito chose them.
constexpr QRgb kGoneColor = 0xFFD55E00; // vermillion
constexpr QRgb kNewColor = 0xFF0072B2;  // blue
constexpr QRgb kLookColor = 0xFF009E73; // bluish green
constexpr QRgb kCommonColor = 0xFFB8B8B8;
constexpr QRgb kFrameColor = 0xFF303030;
// What is gone is wider: it shows on both sides where something new lies on it.
constexpr double kCommonWidth = 1;
constexpr double kNewWidth = 2;
constexpr double kGoneWidth = 4;

constexpr double kScale = static_cast<double>(kPanelWidth) / kPlfWidth; // pixels of a unit
constexpr qsizetype kBatch = 4096; // lines that are painted at once

QString Visible(const QString& name)
{
    return QString::fromUtf8(tools::VisibleText(name));
}

QString NameOf(const Input& input)
{
    return input.name.isEmpty() ? QStringLiteral("(none)") : Visible(input.name);
}

QFont FontOf(int size, bool isBold = false)
{
    QFont font = QGuiApplication::font();
    font.setPixelSize(size);
    font.setBold(isBold);
    return font;
}

QPointF PointAt(int x, int y)
{
    return {x * kScale, (kPlfHeight - y) * kScale};
}

// Paints vectors in one color, each as wide as its pen but not thinner than a width.
class Lines
{
public:
    Lines(QPainter& target, QRgb lineColor, double leastWidth)
        : painter(target), color(lineColor), least(leastWidth)
    {
    }

    void Add(const VectorRecord& v)
    {
        const double width = std::max(least, std::min(v.width, kPlfWidth) / 2.0 * kScale);
        if (width != current || lines.size() == kBatch)
            Flush();
        current = width;
        lines += QLineF(PointAt(v.x1, v.y1), PointAt(v.x2, v.y2));
    }
    void Flush()
    {
        painter.setPen(QPen(QColor(color), current, Qt::SolidLine, Qt::SquareCap));
        painter.drawLines(lines);
        lines.clear();
    }

private:
    QPainter& painter;
    QRgb color;
    double least;
    double current = 0;
    QList<QLineF> lines;
};

// One graph above the other, or one alone.
class Panel
{
public:
    Panel(QPainter& target, const Pair& shown) : painter(target), pair(shown) {}

    /// @param left, top          pixels
    /// @param hasGone, hasNew    whether the first and the second graph are painted
    void Paint(int left, int top, bool hasGone, bool hasNew)
    {
        painter.save();
        painter.translate(left, top);
        painter.setClipRect(QRect(0, 0, kPanelWidth, kPanelHeight));
        PaintVectors(hasGone ? 0 : 1, kCommonColor, kCommonWidth, IsCommon);
        if (hasGone)
            PaintVectors(0, kGoneColor, kGoneWidth, HasPlace);
        if (hasNew)
            PaintVectors(1, kNewColor, kNewWidth, HasPlace);
        PaintVectors(hasNew ? 1 : 0, kLookColor, hasNew ? kNewWidth : kGoneWidth, HasLook);
        PaintTexts(hasGone, hasNew);
        PaintAreas();
        painter.setClipping(false);
        painter.setPen(QPen(QColor(kCommonColor), 1));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(QRectF(-0.5, -0.5, kPanelWidth + 1, kPanelHeight + 1));
        painter.restore();
    }

private:
    using Test = bool(Fate fate);

    static bool IsCommon(Fate fate) { return fate == Fate::kFound; }
    static bool HasPlace(Fate fate) { return fate == Fate::kAlone || fate == Fate::kMoved; }
    static bool HasLook(Fate fate) { return fate == Fate::kRecolored || fate == Fate::kRewidened; }

    void PaintVectors(size_t side, QRgb color, double width, Test* isWanted)
    {
        const std::vector<VectorRecord>& vectors = pair.inputs[side].drawing.vectors;
        Lines lines(painter, color, width);
        for (size_t i = 0; i < vectors.size(); ++i) {
            if (isWanted(pair.comparison.fates[side][i]))
                lines.Add(vectors[i]);
        }
        lines.Flush();
    }

    void PaintText(const TextRecord& text, QRgb color)
    {
        painter.setPen(QColor(color));
        painter.drawText(PointAt(text.x, text.y), TextFromFile(text.text));
    }

    // Unchanged ones first, those of the second graph last.
    void PaintTexts(bool hasGone, bool hasNew)
    {
        painter.setFont(FontOf(kLabelSize));
        const size_t side = hasGone ? 0 : 1;
        const std::vector<TextRecord>& texts = pair.inputs[side].drawing.texts;
        std::vector<bool> isChanged(texts.size());
        for (const TextChange& change : pair.comparison.texts) {
            if (change.kind != (side == 0 ? TextChange::kNew : TextChange::kGone))
                isChanged[side == 0 ? change.first : change.second] = true;
        }
        for (size_t i = 0; i < texts.size(); ++i) {
            if (!isChanged[i])
                PaintText(texts[i], kCommonColor);
        }
        for (const TextChange& change : pair.comparison.texts) {
            if (hasGone && change.kind != TextChange::kNew)
                PaintText(pair.inputs[0].drawing.texts[change.first], kGoneColor);
            if (hasNew && change.kind != TextChange::kGone)
                PaintText(pair.inputs[1].drawing.texts[change.second], kNewColor);
        }
    }

    void PaintAreas()
    {
        QPen pen(QColor(kFrameColor), 1, Qt::DashLine);
        painter.setPen(pen);
        painter.setBrush(Qt::NoBrush);
        const QRectF inside(1, 1, kPanelWidth - 2, kPanelHeight - 2);
        for (const ChangedArea& each : pair.comparison.areas) {
            const QRectF frame(PointAt(each.area.left, each.area.top),
                               PointAt(each.area.right, each.area.bottom));
            const QRectF wide = frame.adjusted(-kFrameGap, -kFrameGap, kFrameGap, kFrameGap);
            // What is above the visible area has its frame at the edge.
            painter.drawRect(wide.intersects(inside) ? wide.intersected(inside)
                                                     : QRectF(wide.left(), 1, wide.width(), 1));
        }
    }

    QPainter& painter;
    const Pair& pair;
};

class Legend
{
public:
    Legend(QPainter& target, int left, int top) : painter(target), x(left), y(top)
    {
        painter.setFont(FontOf(kFontSize));
    }

    void AddLine(QRgb color, double width, const QString& text)
    {
        painter.setPen(QPen(QColor(color), width));
        painter.drawLine(QPointF(x, y + kLineHeight / 2.0),
                         QPointF(x + kSwatch, y + kLineHeight / 2.0));
        AddText(text);
    }
    void AddFrame(const QString& text)
    {
        painter.setPen(QPen(QColor(kFrameColor), 1, Qt::DashLine));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(QRectF(x + 0.5, y + 4.5, kSwatch - 1, kLineHeight - 9));
        AddText(text);
    }

private:
    void AddText(const QString& text)
    {
        painter.setPen(Qt::black);
        const QRect box(x + kSwatch + 8, y, 1000, kLineHeight);
        painter.drawText(box, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, text);
        x += kSwatch + 8 + painter.fontMetrics().horizontalAdvance(text) + kMargin;
    }

    QPainter& painter;
    int x;
    int y;
};

QString Counted(const char* word, size_t count)
{
    return QStringLiteral("%1: %2").arg(QLatin1StringView(word)).arg(count);
}

void PaintLegend(QPainter& painter, const Pair& pair, int left, int top)
{
    const Counts& counts = pair.comparison.counts;
    const auto& fates = pair.comparison.fates[0];
    Legend legend(painter, left, top);
    legend.AddLine(kCommonColor, 2,
                   Counted("in both", static_cast<size_t>(
                                          std::count(fates.begin(), fates.end(), Fate::kFound))));
    legend.AddLine(kGoneColor, kGoneWidth, Counted("gone", counts.gone));
    legend.AddLine(kNewColor, kNewWidth, Counted("new", counts.come));
    if (counts.Looks() > 0)
        legend.AddLine(kLookColor, kNewWidth, Counted("other look", counts.Looks()));
    if (!pair.comparison.areas.empty())
        legend.AddFrame(QStringLiteral("area with changes"));
}

// What colors do not say.
QString RestText(const Comparison& result)
{
    QStringList words;
    const Counts& counts = result.counts;
    if (result.Changes() == 0)
        words += QStringLiteral("no differences");
    if (counts.moved > 0)
        words += QStringLiteral("%1 moved (gone and new), at most %2 units, median %3")
                     .arg(counts.moved)
                     .arg(QString::fromLatin1(NotBelow(result.farthest)),
                          QString::fromLatin1(Decimal(result.medianMove)));
    if (counts.texts > 0)
        words += Counted("changed texts", counts.texts);
    if (counts.reordered > 0)
        words += Counted("square units covered differently", counts.reordered);
    if (result.hasOtherBackground)
        words += QStringLiteral("background: %1 and %2")
                     .arg(PaletteColor(result.backgrounds[0]).name(),
                          PaletteColor(result.backgrounds[1]).name());
    return words.join(QStringLiteral("; "));
}

void PaintTitle(QPainter& painter, const QRect& box, const QString& title)
{
    painter.setFont(FontOf(kTitleSize, true));
    painter.setPen(Qt::black);
    painter.drawText(box, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                     painter.fontMetrics().elidedText(title, Qt::ElideMiddle, box.width()));
}

} // namespace

QSize PictureSize(bool sideBySide)
{
    const int panels = sideBySide ? 2 : 1;
    return {panels * (kPanelWidth + kMargin) + kMargin,
            3 * kMargin + kPanelHeight + (1 + kLegendLines) * kLineHeight};
}

void PaintPicture(const Pair& pair, bool sideBySide, QPainter& painter)
{
    const QSize size = PictureSize(sideBySide);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(QRect(QPoint(), size), Qt::white);
    const int top = kMargin + kLineHeight;
    const QString first = NameOf(pair.inputs[0]);
    const QString second = NameOf(pair.inputs[1]);
    Panel panel(painter, pair);
    if (sideBySide) {
        const int right = 2 * kMargin + kPanelWidth;
        PaintTitle(painter, QRect(kMargin, kMargin / 2, kPanelWidth, kLineHeight), first);
        PaintTitle(painter, QRect(right, kMargin / 2, kPanelWidth, kLineHeight), second);
        panel.Paint(kMargin, top, true, false);
        panel.Paint(right, top, false, true);
    } else {
        PaintTitle(painter, QRect(kMargin, kMargin / 2, kPanelWidth, kLineHeight),
                   QStringLiteral("%1 \u2192 %2").arg(first, second));
        panel.Paint(kMargin, top, true, true);
    }
    const int below = top + kPanelHeight + kMargin / 2;
    PaintLegend(painter, pair, kMargin, below);
    painter.setPen(Qt::black);
    painter.drawText(QRect(kMargin, below + kLineHeight, size.width() - 2 * kMargin, kLineHeight),
                     Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                     RestText(pair.comparison));
}

} // namespace diff
