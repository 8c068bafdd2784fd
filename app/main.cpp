// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "app/appwindow.h"
#include "app/cmdline.h"
#include "app/drawview.h"
#include "app/endsignals.h"
#include "app/filedrop.h"
#include "app/state/globals.h"
#include "support/paths.h"
#include "support/streams.h"
#include "support/text.h"

#include <QApplication>
#include <QPointer>

#include <cstdlib>

#include <unistd.h>

namespace {

void ReadWorkingDirectory()
{
    if (getcwd(gszCurdir, sizeof gszCurdir) == nullptr)
        gszCurdir[0] = 0; // missing or too long: relative names are then looked for in "/"
}

void ReadExePath()
{
    const QByteArray directory = QCoreApplication::applicationDirPath().toLocal8Bit();
    if (!CopyText(gszExePath, directory.constData()))
        ReportTooLong("the application's directory", static_cast<size_t>(directory.size()),
                      kPathSize - 1);
}

// Qt calls exit() when the connection to the window system breaks.
void LeaveInOrder()
{
    if (gpMainwnd != nullptr)
        gpMainwnd->LeaveFiles();
}

} // namespace

// The order of the steps is part of the program's behavior: the command line is read before the
// configuration and settings files, which the window's constructor reads.
int main(int argc, char** argv)
{
    TakeClosedStreams();
    ReadWorkingDirectory();
    GetTmpPath(gszTmppath);
    SetRect(&grWinPos, 200, 200, 840, 687);
    QApplication application(argc, argv);
    gpAppMain = &application;
    const EndSignals endSignals;
    ReadExePath();
    GetHomeDir(gszHomedir);
    if (ProcessCmdline(argc, argv, 1) == -1)
        return 0;
    // Both objects are deleted when the window is closed.
    gpMainwnd = new AppWindow;
    atexit(LeaveInOrder);
    new FileDrop(gpMainwnd);
    gpDraw = new DrawView(gpMainwnd);
    gpMainwnd->setCentralWidget(gpDraw);
    const QPointer<AppWindow> window(gpMainwnd);
    if (EndSignals::HaveCome()) {
        gpMainwnd->close();
    } else {
        gpMainwnd->show();
        gpDraw->show();
        gpDraw->PostCmdargDone(0);
    }
    // If the window has been closed meanwhile, it would not end an event loop that starts now.
    if (window.isNull() || !window->isVisible()) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return 0;
    }
    return QApplication::exec();
}
