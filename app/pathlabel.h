// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A label for the name of a file.
#pragma once

#include <QLabel>

/// Shows a name of any length within its width. A name that does not fit is shortened in the
/// middle, so both ends can be read, and has the whole name as its tooltip. The mouse selects any
/// part of a name that fits, and otherwise the whole name, for copying. The context menu copies the
/// whole name if nothing is selected.
///
/// To other code it is a plain label: its text is the whole name, and the class has no meta-object
/// of its own.
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
