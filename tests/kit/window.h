// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The main window in a test, and what it shows.
#pragma once

#include "app/appwindow.h"
#include "app/drawview.h"

#include <QMetaMethod>
#include <QObject>
#include <QPointer>
#include <QRect>
#include <QRegion>
#include <QString>
#include <QStringList>

#include <string>

namespace fixture {

/// The main window as the program makes it. The window goes with the object unless it was closed.
class Window
{
public:
    Window();
    ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    /// Adds the view, which loads gszPlffileOrig or asks for a file.
    void AddView();
    /// The same, with a file to load.
    void AddViewOf(const std::string& path);
    /// Shows the window and waits until it takes keys.
    [[nodiscard]] bool Show();
    /// Gives the view a size.
    void ResizeView(QSize size);

    AppWindow* operator->() const { return window; }
    [[nodiscard]] AppWindow* Get() const { return window; }
    [[nodiscard]] bool IsGone() const { return window.isNull(); }

private:
    QPointer<AppWindow> window;
};

/// What the status bar says.
QString Status(const Window& window);

/// How long the text that the status bar shows was to stay when it came, milliseconds; 0 = until
/// the next one. Nothing is waited for: the status bar keeps a timer while a text has a time.
int StatusTime(const Window& window);

/// Lets that time be over now.
void EndStatusTime(const Window& window);

/// Lets everything happen that waits to happen: paints, timers that are due, deletions.
void Settle();

/// Remembers what the paint events of a widget covered.
class PaintLog : public QObject
{
public:
    explicit PaintLog(QWidget* widget) { widget->installEventFilter(this); }
    void Clear() { painted = QRegion(); }
    /// Everything inside area was painted.
    [[nodiscard]] bool Covers(const QRect& area) const
    {
        return QRegion(area).subtracted(painted).isEmpty();
    }
    /// Something inside area was painted.
    [[nodiscard]] bool Touches(const QRect& area) const { return painted.intersects(area); }

    bool eventFilter(QObject* object, QEvent* event) override;

private:
    QRegion painted;
};

/// The part of the file that a view shows, in drawing units; a null rectangle without a file.
QRect ShownArea(DrawView& view);

/// The signatures of a class's own methods of one kind, in the order of their indices.
QStringList OwnMethods(const QMetaObject& meta, QMetaMethod::MethodType kind);

/// What a view that is not zoomed shows.
constexpr QRect kWholeArea(0, 0, 4096, 3120);

} // namespace fixture
