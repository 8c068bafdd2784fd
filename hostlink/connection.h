// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The viewer's end of the host link: command lines come in, acknowledgements go out. What a command
// line does is its owner's business.
#pragma once

#include <QString>

#include <functional>
#include <optional>

class QLocalSocket;
class QObject;

class HostConnection
{
public:
    HostConnection() = default;
    /// Leaves the socket, which may be in use further up the call stack, to the application.
    ~HostConnection();
    HostConnection(const HostConnection&) = delete;
    HostConnection& operator=(const HostConnection&) = delete;

    /// Connects to the host's local server and sends the greeting. Does not wait for the
    /// connection: a listening server takes it immediately, or as soon as its queue has room.
    /// Without a server nothing happens.
    /// @param server   name or path
    /// @param owner    ends the calls of arrived when it is destroyed
    /// @param arrived  called each time that bytes arrive
    void Connect(const QString& server, QObject* owner, std::function<void()> arrived);

    /// Whether the socket is still there.
    [[nodiscard]] bool HasSocket() const { return socket != nullptr; }

    /// One command line, when it has come. A second one that came with it waits for the next call.
    std::optional<QString> Receive();
    /// Answers the command line that was received last; the next one begins with its length.
    void Acknowledge();
    /// Sends a message, if the link is open.
    void Send(const QString& message);

    /// Ends the connection.
    void DeleteSocket();

private:
    QLocalSocket* socket = nullptr; // null before Connect() and after DeleteSocket()
    qint16 blockSize = 0;           // length of the frame being read; 0 = not read yet
};
