// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/krvhost/connection.h"

#include "hostlink/frame.h"

#include <QDeadlineTimer>
#include <QLocalSocket>

namespace krvhost {

void Connection::Send(const QString& message)
{
    socket->write(EncodeFrame(message));
    socket->flush();
}

bool Connection::AwaitEnd(int milliseconds)
{
    return socket->state() == QLocalSocket::UnconnectedState ||
           socket->waitForDisconnected(milliseconds);
}

Arrival Connection::Receive(int milliseconds, QString* message)
{
    const QDeadlineTimer deadline(milliseconds);
    while (!TakeFrame(received, message)) {
        if (socket->state() == QLocalSocket::UnconnectedState)
            return Arrival::kClosed;
        if (!socket->waitForReadyRead(static_cast<int>(deadline.remainingTime())) &&
            deadline.hasExpired())
            return Arrival::kLate;
        received += socket->readAll();
    }
    return Arrival::kCame;
}

} // namespace krvhost
