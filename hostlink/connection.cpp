// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "hostlink/connection.h"

#include "hostlink/frame.h"
#include "hostlink/protocol.h"
#include "support/visible.h"

#include <QCoreApplication>
#include <QLocalSocket>

#include <utility>

#include <sys/socket.h>
#include <unistd.h>

namespace {

// Limit of unread bytes; the rest waits on the host's side. A frame has at most 32769 bytes
// according to its length field, but much longer ones are accepted too.
constexpr qint64 kMostWaiting = 1'048'576;

// Whether a server listens for the viewer's own user or for root.
bool IsTrusted(const QLocalSocket& socket)
{
    ucred server = {};
    socklen_t size = sizeof server;
    const int fd = static_cast<int>(socket.socketDescriptor());
    return getsockopt(fd, SOL_SOCKET, SO_PEERCRED, &server, &size) == 0 &&
           (server.uid == geteuid() || server.uid == 0);
}

} // namespace

HostConnection::~HostConnection()
{
    if (socket != nullptr)
        socket->setParent(QCoreApplication::instance());
}

void HostConnection::Connect(const QString& server, QObject* owner, std::function<void()> arrived)
{
    socket = new QLocalSocket;
    socket->setReadBufferSize(kMostWaiting);
    socket->connectToServer(server, QIODevice::ReadWrite);
    QObject::connect(socket, &QLocalSocket::readyRead, owner, std::move(arrived));
    if (socket->isOpen())
        Greet();
    else
        QObject::connect(socket, &QLocalSocket::connected, owner, [this] { Greet(); });
}

void HostConnection::Greet()
{
    if (IsTrusted(*socket)) {
        Send(kAccept);
        return;
    }
    qWarning("plotvw: the server '%s' belongs to another user and was ignored",
             VisibleName(socket->serverName().toLocal8Bit()).constData());
    socket->abort();
}

std::optional<QString> HostConnection::Receive()
{
    QString commandLine;
    if (socket == nullptr || !ReadFrame(socket, &blockSize, &commandLine))
        return std::nullopt;
    return commandLine;
}

void HostConnection::Acknowledge()
{
    Send(kAccept);
    blockSize = 0;
}

void HostConnection::Send(const QString& message)
{
    if (socket == nullptr || !socket->isOpen())
        return;
    socket->write(EncodeFrame(message));
    socket->flush();
}

void HostConnection::DeleteSocket()
{
    if (socket != nullptr)
        socket->deleteLater();
    socket = nullptr;
}
