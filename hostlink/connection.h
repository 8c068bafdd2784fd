// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The viewer's end of the host link: receives command lines and sends acknowledgements. The owner
// runs the command lines.
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
    /// Does not delete the socket, which may be in use further up the call stack; the application
    /// does.
    ~HostConnection();
    HostConnection(const HostConnection&) = delete;
    HostConnection& operator=(const HostConnection&) = delete;

    /// Connects to the host's local server and sends the greeting. Does not wait for the
    /// connection: a listening server takes it immediately, or as soon as its queue has room. Does
    /// nothing if there is no server. A server of another user, except root, could be anybody who
    /// came before the host: it is reported on standard error and treated as missing.
    /// @param server   name or path
    /// @param owner    arrived is not called after the owner is destroyed
    /// @param arrived  called whenever bytes arrive
    void Connect(const QString& server, QObject* owner, std::function<void()> arrived);

    /// Whether the socket still exists.
    [[nodiscard]] bool HasSocket() const { return socket != nullptr; }

    /// Returns one command line, if one has arrived. A second one that arrived with it waits for
    /// the next call.
    std::optional<QString> Receive();
    /// Acknowledges the last command line; the next one begins with its length.
    void Acknowledge();
    /// Sends a message, if the link is open.
    void Send(const QString& message);

    /// Ends the connection.
    void DeleteSocket();

private:
    void Greet();

    QLocalSocket* socket = nullptr; // null before Connect() and after DeleteSocket()
    qint16 blockSize = 0;           // length of the frame being read; 0 = not read yet
};
