// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// How a new window finds its host: greeted at once, later, or not at all.
#include "tests/kit/hostend.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <vector>

using fixture::kAccept;
using fixture::Settle;
using fixture::Window;

namespace {

constexpr uid_t kRoot = 0;
constexpr uid_t kUser = 65'534;
constexpr uid_t kOtherUser = 65'533;

// A socket in a folder that anybody can write to, with a name that a terminal would obey.
constexpr char kSharedName[] = "shared\x1b[2J";

// Acts as another user while it lives. For root only.
class AsUser
{
public:
    explicit AsUser(uid_t user)
    {
        if (seteuid(user) != 0)
            qFatal("root cannot be another user");
    }
    ~AsUser()
    {
        if (seteuid(kRoot) != 0)
            qFatal("root cannot be root again");
    }
    AsUser(const AsUser&) = delete;
    AsUser& operator=(const AsUser&) = delete;
};

// What a viewer says that finds a server of another user.
QByteArray OfAnotherUser(const fixture::Directories& directories)
{
    return "plotvw: the server '" + QByteArray::fromStdString(directories.Path("shared\\x1b[2J")) +
           "' belongs to another user and was ignored";
}

// Calls a slot that is not public.
void Call(const Window& window, const char* slot)
{
    QVERIFY(QMetaObject::invokeMethod(window.Get(), slot));
}

// A host whose queue of connections is full.
class BusyHost
{
public:
    explicit BusyHost(const fixture::Directories& directories, const char* name = "busy")
    {
        const std::string path = directories.Path(name);
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        QVERIFY(CopyText(address.sun_path, path.c_str()) &&
                CopyText(gszKrvServerName, path.c_str()));
        const auto* where = reinterpret_cast<const sockaddr*>(&address);
        server = NewSocket();
        QCOMPARE(bind(server, where, sizeof address), 0);
        QCOMPARE(listen(server, 0), 0);
        do
            others.push_back(NewSocket());
        while (connect(others.back(), where, sizeof address) == 0);
        QCOMPARE(errno, EAGAIN);
    }
    ~BusyHost()
    {
        close(server);
        for (const int other : others)
            close(other);
    }
    BusyHost(const BusyHost&) = delete;
    BusyHost& operator=(const BusyHost&) = delete;

    /// Empties the queue and accepts the viewer's connection.
    void AwaitViewer()
    {
        for (size_t in = others.size() - 1; in > 0; --in) // the last one did not get in
            others.push_back(accept(server, nullptr, nullptr));
        QVERIFY(QTest::qWaitFor([this] {
            viewer = accept(server, nullptr, nullptr);
            return viewer >= 0;
        }));
        others.push_back(viewer);
    }

    /// Bytes received since the last call.
    [[nodiscard]] QByteArray Received() const
    {
        QByteArray bytes(1000, '\0');
        const ssize_t size =
            recv(viewer, bytes.data(), static_cast<size_t>(bytes.size()), MSG_DONTWAIT);
        return bytes.left(std::max<ssize_t>(size, 0));
    }

    /// Whether the viewer has closed the connection.
    [[nodiscard]] bool IsLeft() const
    {
        char byte = 0;
        return recv(viewer, &byte, 1, MSG_DONTWAIT | MSG_PEEK) == 0;
    }

    void Send(const QString& message) const
    {
        const QByteArray frame = EncodeFrame(message);
        QCOMPARE(write(viewer, frame.constData(), static_cast<size_t>(frame.size())), frame.size());
    }

private:
    static int NewSocket() { return socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0); }

    int server = -1;
    int viewer = -1;
    std::vector<int> others;
};

} // namespace

class TestHostGreeting : public QObject, protected fixture::HostTest
{
    Q_OBJECT

private slots:
    void initTestCase() { HidePrinters(); }
    void init() { Begin(); }
    void cleanup() { End(); }

    void constructor_greetsTheHost();
    void constructor_hostWithoutRoom_isGreetedOnceWhenItHasSome();
    void constructor_hostWithoutRoom_windowThatGoes_isSurvived();
    void constructor_serverNameOutsideAscii_isFound();
    void constructor_hostOfAUser_isTrusted_data();
    void constructor_hostOfAUser_isTrusted();
    void constructor_hostWithRoomLater_ofAnotherUser_isIgnored();
    void constructor_withoutAServer_isAlone_data();
    void constructor_withoutAServer_isAlone();

private:
    void OpenDirectories() const;
};

// Lets every user write there.
void TestHostGreeting::OpenDirectories() const
{
    for (const char* name : {".", "home", "work", "tmp"})
        QCOMPARE(chmod(directories->Path(name).c_str(), 0777), 0);
}

void TestHostGreeting::constructor_greetsTheHost()
{
    window.emplace();
    QVERIFY(host->AwaitViewer());
    QCOMPARE(host->Answers(), 1);
}

void TestHostGreeting::constructor_hostWithoutRoom_isGreetedOnceWhenItHasSome()
{
    BusyHost busy(*directories);
    window.emplace();
    window->AddViewOf(graph);
    QVERIFY(window->Show());
    busy.AwaitViewer();
    const QByteArray answer = EncodeFrame(kAccept);
    QByteArray received;
    QTRY_VERIFY((received += busy.Received()).size() >= answer.size());
    QCOMPARE(received, answer);
    busy.Send(QStringLiteral("other.plf"));
    QTRY_VERIFY((received += busy.Received()).size() >= 2 * answer.size());
    QCOMPARE(Text(gszPlffileOrig), other);
    QCOMPARE(received, answer.repeated(2));
}

// The socket outlives the window, and connects later.
void TestHostGreeting::constructor_hostWithoutRoom_windowThatGoes_isSurvived()
{
    BusyHost busy(*directories);
    window.emplace();
    window.reset();
    busy.AwaitViewer();
    Settle();
    QCOMPARE(busy.Received(), QByteArray());
}

void TestHostGreeting::constructor_serverNameOutsideAscii_isFound()
{
    host.emplace(*directories, "Ger\u00e4t");
    window.emplace();
    QVERIFY(host->AwaitViewer());
}

void TestHostGreeting::constructor_hostOfAUser_isTrusted_data()
{
    QTest::addColumn<uid_t>("hostUser");
    QTest::addColumn<uid_t>("viewerUser");
    QTest::addColumn<bool>("isTrusted");
    QTest::newRow("root's, for root") << kRoot << kRoot << true;
    QTest::newRow("root's, for a user") << kRoot << kUser << true;
    QTest::newRow("the user's own") << kUser << kUser << true;
    QTest::newRow("a user's, for root") << kUser << kRoot << false;
    QTest::newRow("another user's") << kOtherUser << kUser << false;
}

void TestHostGreeting::constructor_hostOfAUser_isTrusted()
{
    QFETCH(uid_t, hostUser);
    QFETCH(uid_t, viewerUser);
    QFETCH(bool, isTrusted);
    if (geteuid() != kRoot)
        QSKIP("only root can act as other users");
    OpenDirectories();
    {
        const AsUser acting(hostUser);
        host.emplace(*directories, kSharedName);
    }
    if (!isTrusted)
        QTest::ignoreMessage(QtWarningMsg, OfAnotherUser(*directories).constData());
    const AsUser acting(viewerUser);
    window.emplace();
    window->AddViewOf(graph);
    QVERIFY(window->Show());
    if (isTrusted) {
        QVERIFY(host->AwaitViewer());
        return;
    }
    QVERIFY(host->AwaitRefusal());
    Call(*window, "readData");
    QCOMPARE(Text(gszPlffileOrig), Text(graph));
}

void TestHostGreeting::constructor_hostWithRoomLater_ofAnotherUser_isIgnored()
{
    if (geteuid() != kRoot)
        QSKIP("only root can act as other users");
    OpenDirectories();
    std::optional<BusyHost> busy;
    {
        const AsUser acting(kOtherUser);
        busy.emplace(*directories, kSharedName);
    }
    window.emplace();
    QTest::ignoreMessage(QtWarningMsg, OfAnotherUser(*directories).constData());
    busy->AwaitViewer();
    QTRY_VERIFY(busy->IsLeft());
    QCOMPARE(busy->Received(), QByteArray());
}

void TestHostGreeting::constructor_withoutAServer_isAlone_data()
{
    QTest::addColumn<QString>("server");
    QTest::newRow("no name") << QString();
    QTest::newRow("nobody listens") << QStringLiteral("/nowhere/socket");
    QTest::newRow("a name that is too long for a socket") << u'/' + QString(1000, u'x');
}

void TestHostGreeting::constructor_withoutAServer_isAlone()
{
    QFETCH(QString, server);
    QVERIFY(CopyText(gszKrvServerName, server.toLocal8Bit().constData()));
    window.emplace();
    window->AddViewOf(graph);
    QVERIFY(window->Show());
    Call(*window, "readData");
    QCOMPARE(Text(gszPlffileOrig), Text(graph));
}

QTEST_MAIN(TestHostGreeting)
#include "test_hostgreeting.moc"
