// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The pixels that the view shows. They are painted by passes over the graph, and put on the screen
// again without one where a rubber band covered or uncovers them.
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

    /// Whether a painter paints on the widget's window. Others make a picture of the widget.
    [[nodiscard]] bool IsScreen(const QPainter& painter) const;
    /// Whether the picture has the widget's size, pixels and format: only then it can be shown.
    [[nodiscard]] bool Fits() const;
    /// Paints a part anew, on the widget's base color. Everything is painted unless it fits.
    /// @param part  in the widget's coordinates
    void Renew(const QRegion& part, const Paint& paint);
    /// Puts a part of the picture on the widget.
    void Show(QPainter* painter, const QRegion& part) const;

private:
    [[nodiscard]] QSize PixelSize() const;
    [[nodiscard]] QImage::Format Format() const;

    QWidget* widget;
    QImage image;
};
