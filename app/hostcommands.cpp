// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The main window's side of the host link: it receives command lines, runs each and acknowledges
// it.
#include "app/appwindow.h"
#include "app/cmdline.h"
#include "app/drawview.h"
#include "app/jobs.h"
#include "app/messages.h"
#include "app/state/globals.h"

#include <QCoreApplication>
#include <QDebug>
#include <QPointer>

#include <cstdlib>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include <unistd.h>

namespace {

// In the program's 8-bit texts a zero would cut the line, and half a surrogate pair would become
// another character: a word would name another file, which "-tmp" would then delete.
bool FitsIntoBytes(const QString& line)
{
    if (!line.contains(QChar(u'\0')) && QString::fromLocal8Bit(line.toLocal8Bit()) == line)
        return true;
    ShowError(
        nullptr, AppWindow::tr("Error"),
        AppWindow::tr("The host sent a command line with invalid characters; it was ignored."));
    return false;
}

// The words of a command line, split at every blank: two blanks in a row give an empty word, which
// is a file name like any other. There is no program name.
class Words
{
public:
    explicit Words(const QString& commandLine)
    {
        for (const QString& word : commandLine.split(u' '))
            words.append(word.toLocal8Bit());
        argv.reserve(static_cast<size_t>(words.size()));
        for (QByteArray& word : words)
            argv.push_back(word.data());
    }

    /// Whether all words fit their buffers; shows a box if not.
    bool Fit() { return CmdlineFits(Count(), argv.data(), 0); }

    /// Returns whether the words place the window; gfCmdlineWndpos remains set if earlier ones did.
    /// May show the usage box.
    bool Apply()
    {
        const int placedBefore = std::exchange(gfCmdlineWndpos, 0);
        ProcessCmdline(Count(), argv.data(), 0);
        const bool places = gfCmdlineWndpos != 0;
        gfCmdlineWndpos |= placedBefore;
        return places;
    }

private:
    [[nodiscard]] int Count() const { return static_cast<int>(argv.size()); }

    QList<QByteArray> words;
    std::vector<char*> argv;
};

} // namespace

// If there is no server, the viewer runs without a host.
void AppWindow::ConnectHost()
{
    host.Connect(QString::fromLocal8Bit(gszKrvServerName), this, [this] { readData(); });
}

// Runs one command line per call.
void AppWindow::readData()
{
    if (!host.HasSocket())
        return;
    // The window may be closed in the events that are processed here and below.
    const QPointer<AppWindow> self(this);
    QCoreApplication::processEvents();
    if (self.isNull())
        return;
    const std::optional<QString> commandLine = host.Receive();
    if (!commandLine)
        return;
    checkDeleteTempFile(); // the file of the previous command
    const bool isAnswered = RunCommand(*commandLine);
    if (!self.isNull() && isAnswered)
        host.Acknowledge();
}

// Runs a command line. Returns whether to acknowledge it.
bool AppWindow::RunCommand(const QString& commandLine)
{
    Words words(commandLine);
    // A command line is used as a whole or not at all: a part of it could delete or overwrite
    // another file. While the box is open, no file is marked as temporary.
    gbIsTempFile = false;
    if (!FitsIntoBytes(commandLine) || !words.Fit())
        return true;
    BeginCommand();
    const QPointer<AppWindow> self(this);
    const bool places = words.Apply();
    if (self.isNull())
        return false;
    if (places)
        PlaceWindow();
    // Without a file there is no answer and the length is kept, so the length of the next frame is
    // read as the start of its string. Deliberate: hosts do not send such commands and expect no
    // answer to them.
    if (gszPlffileOrig[0] == 0) {
        Turn::LeaveJobs();
        return false;
    }
    load(QString::fromLocal8Bit(gszPlffileOrig));
    if (!self.isNull())
        QCoreApplication::processEvents(); // draws the graph
    if (!self.isNull() && view != nullptr)
        view->PostCmdargDone(0);
    return true;
}

void AppWindow::writeData(const QString& message)
{
    host.Send(message);
}

void AppWindow::deleteSocket()
{
    host.DeleteSocket();
}

// Only a file that the host named in full, with "-tmp", is ever deleted. The name is used byte by
// byte: decoded as text, an invalid one could name another file. The flag and the name are kept;
// the next command line resets them.
void AppWindow::checkDeleteTempFile()
{
    qDebug() << "Existing file name: " << QString::fromLocal8Bit(gszPlffileOrig);
    if (!gbIsTempFile)
        return;
    const std::unique_ptr<char, decltype(&free)> path(realpath(gszPlffileOrig, nullptr), &free);
    if (path != nullptr && unlink(path.get()) != 0)
        qDebug() << "Could not delete file";
}
