// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Input: a conversation over a real socket, one step per line:
//   >WORDS   the host sends a command line, in UTF-8
//   =BYTES   the host sends bytes; %XX is one byte
//   !N       the user chooses the N-th of the actions below
//   .        the graphs are restored, in case they were deleted
//   x        the host hangs up
// Every '/' becomes '_', so that no name is outside the sandbox.
#include "app/appwindow.h"
#include "app/drawview.h"
#include "app/state/globals.h"
#include "fuzz/target.h"
#include "hostlink/frame.h"
#include "support/text.h"
#include "tests/kit/globals.h"
#include "tests/kit/plf.h"

#include <QApplication>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>
#include <QPointer>
#include <QSet>

#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>

namespace {

// Files that the host may name. Some names are the beginning of others, to show names that were
// cut.
constexpr const char* kGraphs[] = {"a.plf", "a.plf.plf", "b", "ab.plf"};
// A file that it cannot name: every word that contains this requests a print.
constexpr const char* kOutOfReach = "keep-p.plf";
// Maximum number of steps of an input.
constexpr qsizetype kMostSteps = 24;
// Larger windows only cost time.
constexpr QSize kLargestWindow(320, 240);

constexpr const char* kActions[] = {"refresh",      "backclr",        "resetaspect",
                                    "savesettings", "fileProperties", "about",
                                    "choose",       "deleteSocket",   "close"};
constexpr size_t kChoose = 6; // takes ten times as long as the rest

QByteArray Graph()
{
    return QByteArray::fromStdString(plf::Diagonal());
}

// State that is kept between inputs.
struct World {
    fuzz::Sandbox sandbox;
    QTemporaryDir elsewhere;
    QLocalServer server;

    World()
    {
        fuzz::Require(server.listen(elsewhere.filePath(QStringLiteral("socket"))),
                      "a server can listen");
    }
};

World& TheWorld()
{
    static World world;
    return world;
}

void WriteGraphs()
{
    for (const char* name : kGraphs)
        TheWorld().sandbox.Write(name, Graph());
}

void Settle()
{
    for (int i = 0; i < 3; ++i) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }
}

class Conversation
{
public:
    Conversation();
    ~Conversation();
    Conversation(const Conversation&) = delete;
    Conversation& operator=(const Conversation&) = delete;

    void Step(const QByteArray& line);
    void CheckFiles() const;
    void CheckViewer() const;

private:
    void Send(const QByteArray& bytes);
    void SendCommand(const QByteArray& words);
    void Act(const QByteArray& number);

    QPointer<AppWindow> window;
    std::unique_ptr<QLocalSocket> host;
    bool choseFile = false;
    QSet<QByteArray> mayBeDeleted;
    bool anyMayBeDeleted = false; // bytes were sent that this test does not interpret
};

Conversation::Conversation()
{
    World& world = TheWorld();
    WriteGraphs();
    world.sandbox.Write(kOutOfReach, Graph());
    const QByteArray server = QFile::encodeName(world.server.fullServerName());
    fuzz::Require(CopyText(gszKrvServerName, server.constData()), "a short path fits");
    SetRect(&grWinPos, 0, 0, 160, 120);
    window = gpMainwnd = new AppWindow;
    window->setMaximumSize(kLargestWindow);
    fuzz::Require(world.server.waitForNewConnection(10000), "the viewer connects");
    host.reset(world.server.nextPendingConnection());
    static_cast<void>(CopyText(gszPlffileOrig, "a.plf"));
    gpDraw = new DrawView(window);
    window->setCentralWidget(gpDraw);
    window->show();
    Settle();
}

// The viewer's socket outlives its window, as a child of the application.
Conversation::~Conversation()
{
    delete window.data();
    host.reset();
    Settle();
    qDeleteAll(qApp->findChildren<QLocalSocket*>());
    ResetGlobals();
    TheWorld().sandbox.Clear();
}

void Conversation::Step(const QByteArray& line)
{
    if (line.startsWith('>')) {
        SendCommand(line.sliced(1));
    } else if (line.startsWith('=')) {
        anyMayBeDeleted = true;
        Send(QByteArray::fromPercentEncoding(line.sliced(1)).replace('/', '_'));
    } else if (line.startsWith('!')) {
        Act(line.sliced(1));
    } else if (line.startsWith('.')) {
        WriteGraphs();
    } else if (line.startsWith('x')) {
        host->abort();
    }
    Settle();
}

void Conversation::SendCommand(const QByteArray& words)
{
    const QString command = QString::fromUtf8(words).replace(u'/', u'_');
    if (command.contains(u"-tmp")) {
        for (const QString& word : command.split(u' '))
            mayBeDeleted += word.toUtf8();
    }
    Send(EncodeFrame(command));
}

void Conversation::Send(const QByteArray& bytes)
{
    if (host->state() != QLocalSocket::ConnectedState)
        return;
    host->write(bytes);
    host->flush();
}

void Conversation::Act(const QByteArray& number)
{
    const auto index = static_cast<size_t>(number.isEmpty() ? 0 : number.at(0) & 15);
    if (window.isNull() || index >= std::size(kActions))
        return;
    if (index != kChoose || !std::exchange(choseFile, true))
        QMetaObject::invokeMethod(window.data(), kActions[index]);
}

void Conversation::CheckFiles() const
{
    const fuzz::Sandbox& sandbox = TheWorld().sandbox;
    QFile kept(sandbox.Path(kOutOfReach));
    fuzz::Require(kept.open(QIODevice::ReadOnly) && kept.readAll() == Graph(),
                  "a file that nobody named stays as it is");
    for (const char* name : kGraphs) {
        if (!anyMayBeDeleted && !mayBeDeleted.contains(name))
            fuzz::Require(QFile::exists(sandbox.Path(name)),
                          "a file that was not handed over is not deleted");
    }
}

// Checks that the user can still open a file, whatever the host did.
void Conversation::CheckViewer() const
{
    if (window.isNull() || gpDraw == nullptr)
        return;
    TheWorld().sandbox.Write("last", Graph());
    window->load(QStringLiteral("last"));
    Settle();
    fuzz::Require(gpPlfmembuf != nullptr || window.isNull(), "the viewer works on");
}

void Converse(const QByteArray& input)
{
    Conversation conversation;
    const QByteArrayList steps = input.split('\n');
    for (const QByteArray& step : steps.first(std::min(steps.size(), kMostSteps)))
        conversation.Step(step);
    conversation.CheckFiles();
    conversation.CheckViewer();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    fuzz::PrepareQt();
    auto* application = new QApplication(*argc, *argv); // as long as the process
    application->installEventFilter(new fuzz::Refuser);
    TheWorld();
    return 0;
}

// Qt can only quit an event loop that is running.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray input(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto converse = [&input] {
        Converse(input);
        QCoreApplication::exit();
    };
    QMetaObject::invokeMethod(qApp, converse, Qt::QueuedConnection);
    QApplication::exec();
    return 0;
}
