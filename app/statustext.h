// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The texts of the main window's status bar.
#pragma once

#include <QObject>
#include <QString>

class QMainWindow;

/// How long a text about a graph that was opened stays, milliseconds.
constexpr int kSuccessTime = 2000;
/// How long a text about saving stays, milliseconds.
constexpr int kSavedTime = 5000;

/// Shows the program's own texts, and no others: a text stays until its time is over or until the
/// next one. The time counts from when the text can be seen.
class StatusText : public QObject
{
    Q_OBJECT

public:
    /// @param mainWindow  the parent, on whose status bar the texts appear
    explicit StatusText(QMainWindow* mainWindow);

    /// Shows a text in place of the last one.
    /// @param milliseconds  how long; 0 = until the next text
    void Show(const QString& newText, int milliseconds = 0);

    /// The same for a text whose view is about to be painted anew. The screen shows nothing new
    /// during the pass: when it ends, the text's time starts again.
    void ShowBeforePass(const QString& newText, int milliseconds);

    /// To be called at the end of each pass that paints the view.
    void PassEnded();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Restart();

    QMainWindow* window;
    QString text;
    int time = 0;          // milliseconds; 0 = no end
    bool isUnseen = false; // the window was not visible when the text came
    bool isFresh = false;  // the pass that comes with the text has not ended
};
