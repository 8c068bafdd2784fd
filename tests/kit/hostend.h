// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A host in the test's own program, so that the test says when it sends what.
#pragma once

#include "hostlink/frame.h"
#include "tests/kit/appfixture.h"

#include <QLocalServer>
#include <QLocalSocket>

#include <optional>
#include <string>

namespace fixture {

/// What the viewer sends: its greeting, and each acknowledgement.
inline const QString kAccept = QStringLiteral("krv-accept-connect");

/// The host's end of the link. It must be there before the window.
class Host
{
public:
    explicit Host(const fixture::Directories& directories, const char* name = "socket")
    {
        const std::string path = directories.Path(name);
        server.setSocketOptions(
            QLocalServer::WorldAccessOption); // also for a viewer of another user
        QVERIFY(server.listen(QString::fromStdString(path)));
        QVERIFY(CopyText(gszKrvServerName, path.c_str()));
    }

    /// Takes the viewer's connection and its greeting.
    [[nodiscard]] bool AwaitViewer()
    {
        if (!QTest::qWaitFor([this] { return server.hasPendingConnections(); }))
            return false;
        socket = server.nextPendingConnection();
        return QTest::qWaitFor([this] { return Answers() == 1; });
    }

    /// Takes the viewer's connection, which the viewer closes without a word.
    [[nodiscard]] bool AwaitRefusal()
    {
        if (!QTest::qWaitFor([this] { return server.hasPendingConnections(); }))
            return false;
        socket = server.nextPendingConnection();
        return QTest::qWaitFor([this] { return !IsConnected(); }) && Answers() == 0;
    }

    void Send(const QString& message) { SendBytes(EncodeFrame(message)); }

    void SendBytes(const QByteArray& bytes)
    {
        Write(bytes);
        while (socket->bytesToWrite() > 0)
            QVERIFY(socket->waitForBytesWritten());
    }

    /// Sends without waiting until the viewer takes it.
    void Write(const QByteArray& bytes) { socket->write(bytes); }
    /// Bytes that wait for the viewer to take them.
    [[nodiscard]] qint64 NotTaken() const { return socket->bytesToWrite(); }

    /// How often the viewer has sent its word; -1 when it sent anything else.
    [[nodiscard]] qsizetype Answers()
    {
        received += socket->readAll();
        const QByteArray answer = EncodeFrame(kAccept);
        const qsizetype count = received.size() / answer.size();
        return received == answer.repeated(count) ? count : -1;
    }

    [[nodiscard]] bool IsConnected() const
    {
        return socket->state() == QLocalSocket::ConnectedState;
    }

private:
    QLocalServer server;
    QLocalSocket* socket = nullptr; // the server's
    QByteArray received;
};

/// A base of tests with a host and two graphs, which lie in the working directory "work" under
/// names that hold nothing that is an option.
class HostTest : public WindowTest
{
protected:
    /// What is to be printed goes nowhere, whatever printers there are.
    static void HidePrinters() { qputenv("CUPS_SERVER", "/nowhere/printers"); }

    void Begin()
    {
        WindowTest::Begin();
        graph = directories->Write("work/graph.plf", plf::Diagonal());
        other = Text(directories->Write("work/other.plf", plf::Diagonal()));
        host.emplace(*directories);
    }

    void End()
    {
        window.reset();
        host.reset();
        WindowTest::End();
    }

    std::optional<Host> host;
    std::optional<Window> window;
    std::string graph;
    QString other;
};

} // namespace fixture
