// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What tests of the viewer and its host share. The host is the test's own program: it sees every
// byte.
#pragma once

#include "tests/e2e/viewer.h"
#include "tests/kit/files.h"
#include "tests/kit/plf.h"

#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTemporaryDir>

#include <sys/ioctl.h>
#include <sys/socket.h>

#include <optional>
#include <string>

/// Hues of the color map.
constexpr int kRedHue = 120;
constexpr int kGreenHue = 240;

/// What the viewer sends, byte for byte: the length, the byte count, the characters.
inline const QByteArray kAnswer =
    QByteArray::fromHex("002800000024006b00720076002d006100630063006500700074002d0063006f006e006e"
                        "006500630074");

/// What the viewer writes to its standard error output when it is done with a file.
inline const QByteArray kDoneWith = "[debug] Existing file name:  ";

/// What Qt writes for each graph that is to be printed: the tests have no printer.
inline const QByteArray kNotPrinted = "[warning] plotvw: no printer found\n";

/// A graph that is a line across the middle, as wide as an eighth of the window.
std::string HostGraph(int hue);

/// A big-endian number of so many bytes.
QByteArray Number(qint64 value, int size);

/// A message without the length in front.
QByteArray StringBytes(const QString& message);

/// A message as it is sent.
QByteArray FrameBytes(const QString& message);

/// The value of a line of /proc/PID/status, kilobytes; 0 when the process is gone.
qint64 MemoryOf(qint64 process, const QByteArray& line);

/// The host's end of the link.
class Host
{
public:
    explicit Host(const QString& name)
    {
        server.setSocketOptions(QLocalServer::UserAccessOption);
        QVERIFY2(server.listen(name), qPrintable(server.errorString()));
    }

    [[nodiscard]] bool AwaitViewer()
    {
        if (!Await([this] { return socket != nullptr || server.hasPendingConnections(); }))
            return false;
        TakeViewer();
        return true;
    }

    /// Sends a command line as soon as the viewer connects.
    void GreetWith(const QString& words)
    {
        QObject::connect(&server, &QLocalServer::newConnection, &server, [this, words] {
            TakeViewer();
            Send(words);
        });
    }

    [[nodiscard]] bool HasViewer() const { return server.hasPendingConnections(); }

    void SendBytes(const QByteArray& bytes)
    {
        QVERIFY(socket != nullptr);
        socket->write(bytes);
        socket->flush();
    }
    void Send(const QString& message) { SendBytes(FrameBytes(message)); }

    /// All that the viewer sent so far.
    [[nodiscard]] const QByteArray& Received() const { return received; }
    [[nodiscard]] bool AwaitBytes(qsizetype size)
    {
        return Await([this, size] { return received.size() >= size; });
    }
    /// The same without a look at anything else meanwhile: for thousands of answers.
    [[nodiscard]] bool AwaitBytesAlone(qsizetype size)
    {
        while (received.size() < size) {
            if (!socket->waitForReadyRead(kPatience))
                return false;
        }
        return true;
    }

    /// From now on the viewer's answers stay where they are, until there is no room for more.
    void StopReading()
    {
        reading = false;
        socket->setReadBufferSize(1);
    }
    /// Bytes that the viewer sent and nobody has read.
    [[nodiscard]] qsizetype Unread() const
    {
        int size = 0;
        const auto descriptor = static_cast<int>(socket->socketDescriptor());
        return ioctl(descriptor, FIONREAD, &size) == 0 ? size + socket->bytesAvailable() : -1;
    }
    void ReadOn()
    {
        reading = true;
        socket->setReadBufferSize(0);
        Take();
    }

    /// Closes the link and the server.
    void Die()
    {
        server.close();
        socket->abort();
    }

    /// The process at the other end.
    [[nodiscard]] qint64 Peer() const
    {
        ucred peer = {};
        socklen_t size = sizeof peer;
        const auto descriptor = static_cast<int>(socket->socketDescriptor());
        return getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 ? peer.pid : 0;
    }

private:
    void TakeViewer()
    {
        if (socket != nullptr)
            return;
        socket = server.nextPendingConnection();
        QObject::connect(socket, &QLocalSocket::readyRead, &server, [this] { Take(); });
        Take(); // the greeting may have come already
    }

    void Take()
    {
        if (reading)
            received += socket->readAll();
    }

    QByteArray received;
    bool reading = true;
    QLocalServer server;
    QLocalSocket* socket = nullptr; // the server's
};

/// A base of tests with a directory that holds two graphs, a host, and a viewer that is not
/// started.
class HostLinkTest
{
protected:
    void Begin();
    void End();

    QString Path(const QString& name) const { return home->filePath(name); }
    bool Exists(const QString& name) const { return QFile::exists(Path(name)); }
    /// Starts the viewer and awaits its greeting.
    void Start(const QStringList& arguments);
    /// The same with a command that arrives before the viewer first processes events, which it does
    /// before its first job: reading the slow configuration file takes longer than sending.
    void StartWithCommand(const QStringList& arguments, const QString& words);
    /// Starts it with a graph.
    void Open(const QStringList& more = {});
    void PressInWindow(const QString& keys);
    void Quit();
    /// Sends a command line that the viewer answers.
    void Command(const QString& words);
    /// Awaits so many more answers.
    void ExpectAnswers(int count);
    void ExpectTitle(const QString& name);
    void CloseBox(const QString& title);
    /// Waits until the viewer has taken so many messages in all, with a file or without.
    bool AwaitCommands(qsizetype count);
    void ReadMessages();
    /// The viewer does what its user wants, and has taken what came before.
    void ExpectStillAlive();

    std::optional<QTemporaryDir> home;
    std::optional<Viewer> viewer;
    std::optional<Host> host;
    int answers = 0;          // that must have come
    QByteArray messages;      // what the viewer wrote to its standard error output
    qsizetype notDeleted = 0; // how often it must say that it could not delete a file
    qsizetype notPrinted = 0; // how often it must have printed
};
