// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The cursor of a busy program.
#pragma once

#include <QCursor>
#include <QGuiApplication>

/// Shows it from Show() until the end of the scope.
class WaitCursor
{
public:
    WaitCursor() = default;
    ~WaitCursor()
    {
        if (isShown)
            QGuiApplication::restoreOverrideCursor();
    }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;

    void Show()
    {
        if (!isShown)
            QGuiApplication::setOverrideCursor(Qt::WaitCursor);
        isShown = true;
    }

private:
    bool isShown = false;
};
