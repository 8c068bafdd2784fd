// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The viewer's connection: whole frames in, frames out.
#pragma once

#include <QByteArray>
#include <QString>

class QLocalSocket;

namespace krvhost {

/// What came of waiting for a message.
enum class Arrival { kCame, kLate, kClosed };

class Connection
{
public:
    explicit Connection(QLocalSocket* connected) : socket(connected) {}

    void Send(const QString& message);
    /// Waits for the viewer to close the connection.
    /// @return whether it has
    bool AwaitEnd(int milliseconds);
    /// Waits for one frame.
    Arrival Receive(int milliseconds, QString* message);

private:
    QLocalSocket* socket;
    QByteArray received;
};

} // namespace krvhost
