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

/// Stands beside the window and filters its events. A file that is dropped is opened as with File,
/// Open. While anything but one local file is over the window, the cursor says that it cannot be
/// dropped, and so it does while a dialog keeps the user from the menus.
class FileDrop : public QObject
{
public:
    /// Lets the window take drops.
    /// @param mainWindow  becomes the parent of the object
    explicit FileDrop(AppWindow* mainWindow);

    /// The file that a drag holds.
    /// @return its local name; empty unless it is one regular file of this machine
    [[nodiscard]] static QByteArray LocalFile(const QMimeData* data);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    static bool Accept(QDropEvent* event);
    void Open(const QByteArray& path);

    AppWindow* window;
};
