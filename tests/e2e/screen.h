// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The X server's screen, mouse and keyboard, as a user has them: windows are found by their process
// and title, texts by how they look. Points and areas are in screen pixels.
#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QList>
#include <QRect>
#include <QString>
#include <QStringList>
#include <QTest>

#include <optional>

/// Longest that anything may take to show, milliseconds: also for a program with sanitizers on a
/// busy machine.
constexpr int kPatience = 20'000;

/// Waits until a condition holds. Returns whether it came to that; a test that has failed already
/// waits for nothing more.
template <typename Condition> [[nodiscard]] bool Await(Condition condition)
{
    return !QTest::currentTestFailed() && QTest::qWaitFor(condition, kPatience);
}

/// Runs a program and returns its standard output without the white space at both ends; empty when
/// it fails, as it does when it asks for a window that has just gone.
QString RunTool(const QString& program, const QStringList& arguments);

/// Fails the test when there is no X server, or no tool to drive it.
void CheckTools();

/// An X window; empty when there is none.
using WindowId = QString;

/// Keeps the window ids of programs that have ended from being given to the next one, with a
/// connection that lasts as long as the test: the window manager may not have noticed yet that the
/// window of a killed program is gone, and leaves a new one with its id alone.
void TakeFreeWindowIds();

/// The visible windows of a process, popup menus included, in no particular order.
QList<WindowId> VisibleWindows(qint64 process);
QString WindowTitle(const WindowId& window);
/// The window that the keyboard writes to.
WindowId ActiveWindow();
/// Where a window's content is, without its frame.
QRect ContentArea(const WindowId& window);
/// Where a window is, with the frame that the window manager gave it.
QRect FrameArea(const WindowId& window);

/// @param keys  names as xdotool has them, such as "ctrl+b"
void PressKeys(const QString& keys);
void TypeText(const QString& text);
void Click(QPoint at);
/// Presses the left button at one point and moves the mouse to the other, over some points on the
/// way.
void Drag(QPoint from, QPoint to);
/// Releases the left button.
void Drop();

QImage GrabScreen();
QColor ScreenColor(QPoint at);
/// How many pixels of an area have just that color.
qsizetype CountColor(const QImage& screen, const QRect& area, QColor color);
/// The smallest rectangle around them.
QRect ColorBox(const QImage& screen, const QRect& area, QColor color);

/// Looks for dark text on a light background, in the font that programs have by default, with free
/// space at its left and right.
/// @param text  may mark a letter with '&' as menus do
/// @return the text's box, without the free space
std::optional<QRect> FindText(const QImage& screen, const QRect& area, const QString& text);
