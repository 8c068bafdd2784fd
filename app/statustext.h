// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The texts of the main window's status bar.
#pragma once

#include <QObject>
#include <QString>

class QMainWindow;

/// Duration of a text about a graph that was opened, milliseconds.
constexpr int kSuccessTime = 2000;
/// Duration of a text about saving, milliseconds.
constexpr int kSavedTime = 5000;

/// Shows only the program's own texts. A text stays until its time is over or until the next one;
/// the time counts from when the text is visible.
class StatusText : public QObject
{
    Q_OBJECT

public:
    /// @param mainWindow  the parent, whose status bar shows the texts
    explicit StatusText(QMainWindow* mainWindow);

    /// Shows a text in place of the last one.
    /// @param milliseconds  how long; 0 = until the next text
    void Show(const QString& newText, int milliseconds = 0);

    /// The same for a text that is set before a pass repaints the view. The screen does not change
    /// during the pass, so the text's time restarts when the pass ends.
    void ShowBeforePass(const QString& newText, int milliseconds);

    /// To be called at the end of each pass that paints the view.
    void PassEnded();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Restart();

    QMainWindow* window;
    QString text;
    int time = 0;          // milliseconds; 0 = no end
    bool isUnseen = false; // the window was not visible when the text was set
    bool isFresh = false;  // the pass after the text has not ended
};
