// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Handles SIGTERM, SIGINT and SIGHUP: the first one ends the program as File, Quit does. If that
// takes long, a later one kills it.
#pragma once

#include <QObject>

#include <memory>

class QSocketNotifier;

/// Closes all windows, dialogs first, when one of the signals arrives, and also every window that
/// is shown later. Signals that were ignored when the program started stay ignored. Create one
/// object, after the QApplication.
class EndSignals : public QObject
{
public:
    EndSignals();
    ~EndSignals() override;

    /// Whether one has arrived. A window that is not shown yet must then be closed instead of
    /// shown.
    [[nodiscard]] static bool HaveCome();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void CloseWindows();

    std::unique_ptr<QSocketNotifier> notifier; // null if there is no pipe
};
