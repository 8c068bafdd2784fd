// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A label for the name of a file.
#pragma once

#include <QLabel>

/// Shows a name of any length within its width. One that does not fit has an ellipsis in its
/// middle, so that both ends can be read, and the whole name as its tooltip. The mouse selects the
/// name, for copying: any part of one that fits, and else the whole. The context menu copies the
/// whole also when nothing is selected.
///
/// It is a plain label for whoever looks: the text is the whole name, and the class has no
/// meta-object of its own.
class PathLabel : public QLabel
{
public:
    explicit PathLabel(QWidget* parent);

    /// Sets the text and the tooltip.
    void ShowName(const QString& name);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    void Copy() const;
    [[nodiscard]] QString ShownText() const;
    [[nodiscard]] bool IsCut() const { return ShownText() != text(); }
};
