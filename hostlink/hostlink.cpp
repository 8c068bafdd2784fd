// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The main window's side of the host link: command lines come in, each is carried out and
// acknowledged.
#include "app/appwindow.h"
#include "app/cmdline.h"
#include "app/drawview.h"
#include "app/globals.h"
#include "app/messages.h"
#include "hostlink/frame.h"

#include <QCoreApplication>
#include <QDebug>
#include <QLocalSocket>
#include <QPointer>

#include <cstdlib>
#include <memory>
#include <utility>
#include <vector>

#include <unistd.h>

namespace {

// The greeting, and the acknowledgement of each command that named a file.
const QString kAccept = QStringLiteral("krv-accept-connect");

// Bytes that wait to be read; what a host sends beyond them waits on its side. A frame has 32769 at
// most as far as its length can tell, and far longer ones are taken too.
constexpr qint64 kMostWaiting = 1'048'576;

// In the program's own texts a zero would cut the line, and half a surrogate pair would become
// another character: either way a word would name another file, which "-tmp" then deletes.
bool FitsIntoBytes(const QString& line)
{
    return !line.contains(QChar(u'\0')) && QString::fromLocal8Bit(line.toLocal8Bit()) == line;
}

// Like a command line that names nothing: what was set for the command before no longer counts.
void RefuseCommand()
{
    ProcessCmdline(0, nullptr, 0);
    ShowError(nullptr, AppWindow::tr("Error"),
              AppWindow::tr("A command line from the host holds characters that no name can hold. "
                            "It is not used."));
}

// Applies the words of a command line, split at every blank: two blanks in a row give an empty
// word, which is a file name like any other. There is no program name in front. Returns whether
// the words place the window; that earlier ones did stays known.
bool ApplyWords(const QString& commandLine)
{
    if (!FitsIntoBytes(commandLine)) {
        RefuseCommand();
        return false;
    }
    const int placedBefore = std::exchange(gfCmdlineWndpos, 0);
    QList<QByteArray> words;
    for (const QString& word : commandLine.split(u' '))
        words.append(word.toLocal8Bit());
    std::vector<char*> argv;
    argv.reserve(static_cast<size_t>(words.size()));
    for (QByteArray& word : words)
        argv.push_back(word.data());
    ProcessCmdline(static_cast<int>(argv.size()), argv.data(), 0);
    const bool places = gfCmdlineWndpos != 0;
    gfCmdlineWndpos |= placedBefore;
    return places;
}

} // namespace

// The connection is not waited for: on this platform a local server that listens takes it at once.
// Without one the viewer runs alone.
void AppWindow::ConnectHost()
{
    socket = new QLocalSocket;
    socket->setReadBufferSize(kMostWaiting);
    socket->connectToServer(QString::fromLocal8Bit(gszKrvServerName), QIODevice::ReadWrite);
    connect(socket, &QLocalSocket::readyRead, this, &AppWindow::readData);
    if (socket->isOpen())
        writeData(kAccept);
}

// One frame a call. A second one that came with the first waits for the next signal.
void AppWindow::readData()
{
    if (socket == nullptr)
        return;
    // The window may be closed in the events that are processed here and below.
    const QPointer<AppWindow> self(this);
    QCoreApplication::processEvents();
    if (self.isNull() || socket == nullptr)
        return;
    QString commandLine;
    if (!ReadFrame(socket, &blockSize, &commandLine))
        return;
    checkDeleteTempFile();                       // the file of the command before
    const bool places = ApplyWords(commandLine); // may show a box
    if (self.isNull())
        return;
    if (places)
        PlaceWindow();
    // Without a file the length stays as it is, and the next frame's own is taken for the start of
    // its string. Deliberate: hosts send no such command and expect no answer to one.
    if (gszPlffileOrig[0] == 0)
        return;
    load(QString::fromLocal8Bit(gszPlffileOrig));
    if (!self.isNull())
        QCoreApplication::processEvents(); // draws the graph
    if (!self.isNull() && view != nullptr)
        view->PostCmdargDone(0);
    if (self.isNull())
        return;
    writeData(kAccept);
    blockSize = 0;
}

void AppWindow::writeData(const QString& message)
{
    if (socket == nullptr || !socket->isOpen())
        return;
    socket->write(EncodeFrame(message));
    socket->flush();
}

void AppWindow::deleteSocket()
{
    if (socket != nullptr)
        socket->deleteLater();
    socket = nullptr;
}

// Only a file that the host handed over whole, by name and with "-tmp", is ever deleted. The name
// is used byte by byte: one that is no text would be another file's after a conversion to text. The
// flag and the name stay; the next command line resets them.
void AppWindow::checkDeleteTempFile()
{
    qDebug() << "Existing file name: " << QString::fromLocal8Bit(gszPlffileOrig);
    if (!gbIsTempFile)
        return;
    const std::unique_ptr<char, decltype(&free)> path(realpath(gszPlffileOrig, nullptr), &free);
    if (path != nullptr && unlink(path.get()) != 0)
        qDebug() << "Could not delete file";
}
