// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "app/statustext.h"

#include <QEvent>
#include <QMainWindow>
#include <QStatusBar>

StatusText::StatusText(QMainWindow* mainWindow) : QObject(mainWindow), window(mainWindow)
{
    window->installEventFilter(this);
}

void StatusText::Show(const QString& newText, int milliseconds)
{
    text = newText;
    time = milliseconds;
    isUnseen = !window->isVisible();
    isFresh = isUnseen;
    Restart();
}

void StatusText::ShowBeforePass(const QString& newText, int milliseconds)
{
    Show(newText, milliseconds);
    isFresh = true;
}

void StatusText::Restart()
{
    window->statusBar()->showMessage(text, time);
}

// A text whose time ended before the pass is not shown again.
void StatusText::PassEnded()
{
    if (isFresh && window->statusBar()->currentMessage() == text)
        Restart();
    isFresh = false;
}

bool StatusText::eventFilter(QObject* watched, QEvent* event)
{
    // A menu item sends its status tip when it is highlighted. These items have none, so Qt would
    // clear the status bar.
    if (watched == window && event->type() == QEvent::StatusTip)
        return true;
    if (watched == window && event->type() == QEvent::Show && isUnseen) {
        isUnseen = false;
        Restart();
    }
    return QObject::eventFilter(watched, event);
}
