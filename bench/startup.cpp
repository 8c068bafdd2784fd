// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Time of programs from their start to their first painted frame, and their memory at that moment,
// in an X server that shows nothing else (../tests/e2e/with-xserver.sh).
//
//   startup RUNS COMMAND...
//
// A command is one argument, with its words separated by blanks. The commands run alternately; for
// each, the medians of the runs are printed in a line: milliseconds, kilobytes and the command.
#include <QColor>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QProcess>
#include <QScreen>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

// Across a window of the viewer's usual place and size, its margins included.
constexpr QRect kLookedAt(210, 400, 620, 2);
constexpr int kLongest = 60'000; // milliseconds

struct Run {
    double milliseconds = 0;
    long kilobytes = 0;
};

// The screen is black where there is no window, or one that has not been painted.
bool IsPainted()
{
    const QRect& r = kLookedAt;
    const QImage image = QGuiApplication::primaryScreen()
                             ->grabWindow(0, r.x(), r.y(), r.width(), r.height())
                             .toImage();
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if ((image.pixel(x, y) & RGB_MASK) != 0)
                return true;
        }
    }
    return false;
}

long PeakMemory(qint64 process)
{
    QFile status(QStringLiteral("/proc/%1/status").arg(process));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').constFirst().toLong();
    }
    return 0;
}

template <typename Condition> bool Await(Condition condition)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > kLongest)
            return false;
    }
    return true;
}

Run Measure(const QString& command)
{
    QStringList words = command.split(u' ', Qt::SkipEmptyParts);
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.setProgram(words.takeFirst());
    process.setArguments(words);
    QElapsedTimer timer;
    timer.start();
    process.start();
    Run run;
    if (!process.waitForStarted() || !Await(IsPainted)) {
        fprintf(stderr, "startup: %s shows nothing.\n", qPrintable(command));
        exit(1);
    }
    run.milliseconds = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    run.kilobytes = PeakMemory(process.processId());
    process.kill();
    process.waitForFinished();
    if (!Await([] { return !IsPainted(); }))
        exit(1);
    return run;
}

template <typename Value> Value Median(std::vector<Run> runs, Value Run::*member)
{
    std::sort(runs.begin(), runs.end(),
              [member](const Run& a, const Run& b) { return a.*member < b.*member; });
    return runs[runs.size() / 2].*member;
}

} // namespace

int main(int argc, char** argv)
{
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    const int runs = arguments.value(1).toInt();
    const QStringList commands = arguments.mid(2);
    if (runs < 1 || commands.isEmpty()) {
        fprintf(stderr, "usage: startup RUNS COMMAND...\n");
        return 2;
    }
    std::vector<std::vector<Run>> all(static_cast<size_t>(commands.size()));
    for (int run = 0; run < runs; ++run) {
        for (size_t i = 0; i < all.size(); ++i)
            all[i].push_back(Measure(commands[static_cast<qsizetype>(i)]));
    }
    for (size_t i = 0; i < all.size(); ++i)
        printf("%.1f %ld %s\n", Median(all[i], &Run::milliseconds), Median(all[i], &Run::kilobytes),
               qPrintable(commands[static_cast<qsizetype>(i)]));
    return 0;
}
