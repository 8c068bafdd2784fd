// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A message box for a text that has lines of its own.
#pragma once

#include <QMessageBox>

class QLabel;

/// Breaks lines only where its text does, as long as the screen is wide enough. A plain box breaks
/// them at a width of its own.
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
