// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "app/endsignals.h"

#include <QApplication>
#include <QEvent>
#include <QSocketNotifier>
#include <QWidget>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <ctime>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr int kSignals[] = {SIGTERM, SIGINT, SIGHUP};

// Signals within this time are one request: "timeout" sends its own twice, a session that ends
// sends TERM and HUP, and a terminal that closes may send HUP along with its shell. Milliseconds.
constexpr int64_t kTogether = 500;

// Time of the first signal, milliseconds; 0 = none yet. Any thread may receive a signal.
std::atomic<int64_t> firstCame = 0;
static_assert(std::atomic<int64_t>::is_always_lock_free);
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

int64_t Now()
{
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1'000'000;
}

extern "C" void OnEndSignal(int signalNumber)
{
    const int errorBefore = errno;
    const int64_t now = Now();
    int64_t first = 0;
    if (firstCame.compare_exchange_strong(first, now)) {
        [[maybe_unused]] const ssize_t written = write(pipeEnds[1], "", 1);
    } else if (now - first >= kTogether) {
        RestoreDefaults();
        raise(signalNumber);
    }
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
    return firstCame != 0;
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
