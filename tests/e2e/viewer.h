// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A running viewer as its user meets it: a process, its windows and what is drawn in them.
#pragma once

#include "tests/e2e/screen.h"

#include <QProcess>

#include <string>

/// A configuration file that takes so long to read that a test can do something between the start
/// of the program and its first graph.
std::string SlowConfiguration();

/// The title of the main window with a graph of that name.
QString TitleOf(const QString& name);

class Viewer
{
public:
    /// @param home  directory that is the program's home directory and its working directory
    explicit Viewer(const QString& home);
    ~Viewer();
    Q_DISABLE_COPY_MOVE(Viewer)

    /// Starts a copy of the program in place of the one that was built.
    void SetProgram(const QString& path) { process.setProgram(path); }
    /// Adds a variable to the program's environment, before it starts.
    void SetEnvironment(const QString& name, const QString& value);
    /// Takes a variable out of it, before it starts.
    void UnsetEnvironment(const QString& name);
    /// Sets what the child process does before it executes the program.
    void BeforeStart(void (*action)()) { process.setChildProcessModifier(action); }
    /// Starts the program. Returns whether it came up.
    [[nodiscard]] bool Start(const QStringList& arguments);

    /// Waits for a window with that title that has the keyboard; the functions below then look at
    /// it.
    [[nodiscard]] bool AwaitWindow(const QString& title);
    /// Waits until just so many windows are visible, menus included.
    [[nodiscard]] bool AwaitWindowCount(qsizetype count) const;
    /// Waits until a text stands in the window.
    [[nodiscard]] bool AwaitText(const QString& text) const;
    /// Waits until the program has been idle and the window's picture the same for a while.
    [[nodiscard]] bool AwaitStillPicture() const;
    [[nodiscard]] bool HasEnded() const;
    /// Waits for the program's end. Returns its exit code, or -1 when it did not end or crashed.
    [[nodiscard]] int AwaitEnd();

    /// Waits until a signal has killed the program. Returns whether one has.
    [[nodiscard]] bool AwaitCrash();
    void Signal(int number) const;
    /// Waits until the program handles a signal.
    [[nodiscard]] bool AwaitHandler(int number) const;

    /// Opens a menu and chooses one of its items with the mouse. Texts are as in the menu, with
    /// '&'.
    /// @return false when either is not there
    [[nodiscard]] bool Choose(const QString& menu, const QString& item);

    [[nodiscard]] const WindowId& Window() const { return window; }
    [[nodiscard]] QRect Frame() const { return FrameArea(window); }
    [[nodiscard]] QRect Content() const { return ContentArea(window); }
    /// The area that shows the graph: the part of the window's left edge that has the background's
    /// color. Empty when it has not.
    [[nodiscard]] QRect Canvas(QColor background) const;
    /// What the program wrote to its standard error output, without its line about each file.
    [[nodiscard]] QByteArray Errors();

private:
    [[nodiscard]] bool IsAsleep() const;

    QProcess process;
    WindowId window;
};
