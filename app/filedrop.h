// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Opens a graph that is dropped on the main window.
#pragma once

#include <QByteArray>
#include <QObject>

class AppWindow;
class QDropEvent;
class QMimeData;

/// Filters the events of the window. A dropped file is opened as with File, Open. The cursor shows
/// that dropping is not possible while anything but one local file is over the window, or while a
/// dialog blocks the menus.
class FileDrop : public QObject
{
public:
    /// Lets the window accept drops.
    /// @param mainWindow  becomes the parent of the object
    explicit FileDrop(AppWindow* mainWindow);

    /// The file of a drag.
    /// @return its local name; empty unless the drag consists of one regular file of this machine
    [[nodiscard]] static QByteArray LocalFile(const QMimeData* data);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    static bool Accept(QDropEvent* event);
    void Open(const QByteArray& path);

    AppWindow* window;
};
