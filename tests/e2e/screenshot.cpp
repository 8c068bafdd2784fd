// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Takes a picture of the viewer's window, frame included: see screenshot.sh.
#include "tests/e2e/viewer.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>

#include <cstdio>

namespace {

int Fail(const char* what)
{
    fprintf(stderr, "screenshot: %s\n", what);
    return 1;
}

// The steps go to xdotool in one call; the word WINDOW stands for the viewer's window.
void TakeSteps(QStringList steps, const WindowId& window)
{
    steps.replaceInStrings(QStringLiteral("WINDOW"), window);
    if (!steps.isEmpty())
        RunTool(QStringLiteral("xdotool"), steps);
}

} // namespace

int main(int argc, char** argv)
{
    QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() < 3)
        return Fail("usage: screenshot FILE PICTURE [STEP...]");
    // Copied, so that the window shows the file's name alone.
    const QString name = QFileInfo(arguments[1]).fileName();
    if (!QFile::copy(arguments[1], QDir::home().filePath(name)))
        return Fail("the graph cannot be read");
    Viewer viewer(QDir::homePath());
    if (!viewer.Start({name}) || !viewer.AwaitWindow(QStringLiteral("KORVEL Viewer - ") + name) ||
        !viewer.AwaitStillPicture())
        return Fail("the viewer does not show the graph");
    TakeSteps(arguments.mid(3), viewer.Window());
    if (!viewer.AwaitStillPicture())
        return Fail("the window does not come to rest");
    const QImage picture = GrabScreen().copy(viewer.Frame());
    return picture.save(arguments[2]) ? 0 : Fail("the picture cannot be written");
}
