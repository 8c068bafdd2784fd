// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/kit/window.h"

#include "app/state/globals.h"
#include "support/text.h"

#include <QCoreApplication>
#include <QEvent>
#include <QImage>
#include <QPaintEvent>
#include <QPainter>
#include <QStatusBar>
#include <QTimer>
#include <QtTest>

namespace fixture {

Window::Window() : window(new AppWindow)
{
    gpMainwnd = window;
}

Window::~Window()
{
    delete window.data();
    gpMainwnd = nullptr;
    gpDraw = nullptr;
}

void Window::AddView()
{
    gpDraw = new DrawView(window);
    window->setCentralWidget(gpDraw);
}

void Window::AddViewOf(const std::string& path)
{
    QVERIFY(CopyText(gszPlffileOrig, path.c_str()));
    AddView();
}

bool Window::Show()
{
    window->show();
    window->activateWindow();
    return QTest::qWaitForWindowActive(window);
}

void Window::ResizeView(QSize size)
{
    window->resize(window->size() + size - window->view->size());
    QTRY_COMPARE(window->view->size(), size);
}

QString Status(const Window& window)
{
    return window->statusBar()->currentMessage();
}

int StatusTime(const Window& window)
{
    const auto* timer = window->statusBar()->findChild<QTimer*>();
    return timer != nullptr && timer->isActive() ? timer->interval() : 0;
}

void EndStatusTime(const Window& window)
{
    auto* timer = window->statusBar()->findChild<QTimer*>();
    QVERIFY(timer != nullptr && timer->isActive());
    QTimerEvent end(timer->timerId());
    QCoreApplication::sendEvent(timer, &end);
}

void Settle()
{
    for (int i = 0; i < 3; ++i) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }
}

bool PaintLog::eventFilter(QObject* /*object*/, QEvent* event)
{
    if (event->type() == QEvent::Paint)
        painted += static_cast<QPaintEvent*>(event)->region();
    return false;
}

QRect ShownArea(DrawView& view)
{
    QImage image(view.size().expandedTo(QSize(1, 1)), QImage::Format_RGB32);
    QPainter painter(&image);
    view.drawIt(&painter);
    return gszPlffileOrig[0] != 0 ? painter.window() : QRect();
}

QStringList OwnMethods(const QMetaObject& meta, QMetaMethod::MethodType kind)
{
    QStringList signatures;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == kind)
            signatures.append(QString::fromLatin1(meta.method(i).methodSignature()));
    }
    return signatures;
}

} // namespace fixture
