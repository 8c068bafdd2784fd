// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/bar.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace convert {

namespace {

constexpr int kMostCells = 60;    // of the bar, characters; longer ones are hard to read
constexpr int kFewestCells = 5;   // with less, a bar shows nothing
constexpr int kFrame = 3;         // "[" and "] "
constexpr int kInterval = 100;    // milliseconds; drawing costs a write
constexpr int kUsualColumns = 80; // of a terminal that does not say
constexpr double kFirstGuess = 1; // seconds before which the remaining time means nothing
constexpr int kPercent = 100;
constexpr int kMinute = 60; // seconds
constexpr int kHour = 60 * kMinute;

QByteArray TwoDigits(int64_t number)
{
    return QByteArray::number(static_cast<qlonglong>(number)).rightJustified(2, '0');
}

// "0:07", "12:34" or "1:02:03".
QByteArray Duration(int64_t seconds)
{
    const QByteArray end = TwoDigits(seconds % kMinute);
    const int64_t minutes = seconds / kMinute;
    if (seconds < kHour)
        return QByteArray::number(static_cast<qlonglong>(minutes)) + ':' + end;
    return QByteArray::number(static_cast<qlonglong>(seconds / kHour)) + ':' +
           TwoDigits(minutes % kMinute) + ':' + end;
}

QByteArray Remaining(int done, int count, double seconds)
{
    if (done == 0 || seconds < kFirstGuess)
        return {};
    return "  " + Duration(std::llround(seconds / done * (count - done))) + " left";
}

QByteArray Numbers(int done, int count)
{
    const QByteArray total = QByteArray::number(count);
    const int percent = static_cast<int>(int64_t{done} * kPercent / count);
    return QByteArray::number(done).rightJustified(total.size()) + '/' + total +
           QByteArray::number(percent).rightJustified(5) + '%';
}

int TerminalColumns()
{
    winsize size = {};
    return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col
                                                                           : kUsualColumns;
}

bool CanTakeBack()
{
    const QByteArray kind = qgetenv("TERM");
    return isatty(STDERR_FILENO) == 1 && !kind.isEmpty() && kind != "dumb";
}

} // namespace

// A character in the last column would move some terminals to the next line.
QByteArray BarLine(int done, int count, double seconds, int columns)
{
    const QByteArray words = Numbers(done, count) + Remaining(done, count, seconds);
    const int room = columns - 1 - kFrame - static_cast<int>(words.size());
    const int cells = std::min(room, kMostCells);
    if (cells < kFewestCells)
        return words.left(std::max(columns - 1, 0));
    const auto filled = static_cast<int>(int64_t{done} * cells / count);
    return '[' + QByteArray(filled, '#').leftJustified(cells, '.') + "] " + words;
}

Bar::Bar(int total, bool wanted) : count(total), isShown(wanted && CanTakeBack())
{
    begin.start();
}

void Bar::Draw(int done)
{
    if (!isShown || (lastDrawn.isValid() && !lastDrawn.hasExpired(kInterval)))
        return;
    lastDrawn.start();
    constexpr double kMillisecondsPerSecond = 1000;
    const double seconds = static_cast<double>(begin.elapsed()) / kMillisecondsPerSecond;
    // The rest of a longer line before it is erased.
    fprintf(stderr, "\r%s\033[K", BarLine(done, count, seconds, TerminalColumns()).constData());
}

void Bar::Clear() const
{
    if (isShown)
        fputs("\r\033[K", stderr);
}

} // namespace convert
