// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "app/endsignals.h"

#include <QApplication>
#include <QEvent>
#include <QSocketNotifier>
#include <QWidget>

#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr int kSignals[] = {SIGTERM, SIGINT, SIGHUP};

volatile sig_atomic_t hasCome = 0;
// A signal handler may do very little: it writes to this pipe, which the event loop reads.
int pipeEnds[2] = {-1, -1};

extern "C" void OnEndSignal(int signalNumber);

bool IsHandled(int signalNumber)
{
    struct sigaction action = {};
    sigaction(signalNumber, nullptr, &action);
    return action.sa_handler == OnEndSignal;
}

void RestoreDefaults()
{
    for (const int signalNumber : kSignals) {
        if (IsHandled(signalNumber))
            signal(signalNumber, SIG_DFL);
    }
}

extern "C" void OnEndSignal(int /*signalNumber*/)
{
    const int errorBefore = errno;
    hasCome = 1;
    RestoreDefaults();
    [[maybe_unused]] const ssize_t written = write(pipeEnds[1], "", 1);
    errno = errorBefore;
}

// The other signals are blocked while the handler runs.
void Handle()
{
    struct sigaction action = {};
    action.sa_handler = OnEndSignal;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (const int signalNumber : kSignals)
        sigaddset(&action.sa_mask, signalNumber);
    for (const int signalNumber : kSignals) {
        struct sigaction before = {};
        sigaction(signalNumber, nullptr, &before);
        if (before.sa_handler != SIG_IGN)
            sigaction(signalNumber, &action, nullptr);
    }
}

} // namespace

EndSignals::EndSignals()
{
    if (pipe2(pipeEnds, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    notifier = std::make_unique<QSocketNotifier>(pipeEnds[0], QSocketNotifier::Read);
    connect(notifier.get(), &QSocketNotifier::activated, this, [this] {
        notifier->setEnabled(false);
        qApp->installEventFilter(this);
        CloseWindows();
    });
    Handle();
}

EndSignals::~EndSignals()
{
    RestoreDefaults();
    notifier.reset();
    for (int& end : pipeEnds) {
        close(end);
        end = -1;
    }
}

bool EndSignals::HaveCome()
{
    return hasCome != 0;
}

// Queued: a dialog that is being shown has not started its event loop yet.
bool EndSignals::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Show && watched->isWidgetType() &&
        static_cast<QWidget*>(watched)->isWindow())
        QMetaObject::invokeMethod(
            this, [this] { CloseWindows(); }, Qt::QueuedConnection);
    return false;
}

void EndSignals::CloseWindows()
{
    QApplication::closeAllWindows();
}
