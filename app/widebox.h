// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A message box that keeps the lines of its text.
#pragma once

#include <QMessageBox>

class QLabel;

/// Breaks lines only where the text does, if the screen is wide enough. A plain box breaks them at
/// a fixed width.
class WideBox : public QMessageBox
{
    Q_OBJECT

public:
    using QMessageBox::QMessageBox;

protected:
    bool event(QEvent* event) override;

private:
    void Widen(QLabel& label);
};
