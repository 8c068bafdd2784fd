// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The pixels that the view shows. Passes over the graph paint them; where a rubber band covers or
// uncovers them, they are copied to the screen without a pass.
#pragma once

#include <QImage>
#include <QRegion>

#include <functional>

class QColor;
class QPainter;
class QWidget;

class ShownPicture
{
public:
    /// Paints with a painter that is mapped to the widget, with its font, antialiased.
    using Paint = std::function<void(QPainter*)>;

    /// @param shown  the widget; must outlive the object
    explicit ShownPicture(QWidget* shown) : widget(shown) {}

    /// Whether a painter paints on the widget's window. Other painters make a picture of the
    /// widget.
    [[nodiscard]] bool IsScreen(const QPainter& painter) const;
    /// Whether the picture has the widget's size, pixel ratio and format. Only then can it be
    /// shown.
    [[nodiscard]] bool Fits() const;
    /// Repaints a part, on the widget's base color, or everything if the picture does not fit.
    /// @param part  in the widget's coordinates
    void Renew(const QRegion& part, const Paint& paint);
    /// Paints on the pixels of a picture that a painter makes of the whole widget: there lines are
    /// painted faster than with a painter that Qt redirects.
    /// @return false where the painter makes something else. Then nothing is painted
    [[nodiscard]] bool PaintOnPixels(const QPainter& painter, const Paint& paint) const;
    /// Copies a part of the picture to the widget.
    void Show(QPainter* painter, const QRegion& part) const;

private:
    [[nodiscard]] QSize PixelSize() const;
    [[nodiscard]] QImage::Format Format() const;
    void SetUp(QPainter& painter) const;
    [[nodiscard]] bool IsOfAll(const QPainter& painter, const QImage& pixels) const;

    QWidget* widget;
    QImage image;
};
