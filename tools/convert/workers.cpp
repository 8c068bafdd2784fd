// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/workers.h"

#include "tools/convert/pipes.h"

#include <QDataStream>
#include <QIODevice>

#include <poll.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace convert {

namespace {

constexpr std::array kInterrupts = {SIGINT, SIGTERM, SIGHUP};
constexpr int kNoJob = -1;

volatile sig_atomic_t interrupted = 0;

void NoteInterrupt(int signal)
{
    interrupted = signal;
}

// Takes the signals for as long as it lives. They arrive only while the process waits for workers,
// so that none is missed between a look at the note and the waiting.
class InterruptWatch
{
public:
    InterruptWatch()
    {
        interrupted = 0;
        sigset_t set;
        sigemptyset(&set);
        for (const int signal : kInterrupts) {
            struct sigaction action = {};
            action.sa_handler = NoteInterrupt;
            sigaction(signal, nullptr, &oldActions.emplace_back());
            // One that is ignored, as under nohup, stays ignored.
            if (oldActions.back().sa_handler != SIG_IGN)
                sigaction(signal, &action, nullptr);
            sigaddset(&set, signal);
        }
        sigprocmask(SIG_BLOCK, &set, &oldMask);
        oldPipe = std::signal(SIGPIPE, SIG_IGN); // of a worker that died
    }
    InterruptWatch(const InterruptWatch&) = delete;
    InterruptWatch& operator=(const InterruptWatch&) = delete;
    ~InterruptWatch() { Restore(); }

    void Restore()
    {
        for (size_t i = 0; i < kInterrupts.size(); ++i)
            sigaction(kInterrupts[i], &oldActions[i], nullptr);
        std::signal(SIGPIPE, oldPipe);
        sigprocmask(SIG_SETMASK, &oldMask, nullptr);
    }

    // As the process was before. A worker leaves the keys of the terminal to the process that
    // started it, which ends it.
    void RestoreInWorker()
    {
        Restore();
        std::signal(SIGINT, SIG_IGN);
        std::signal(SIGHUP, SIG_IGN);
    }

    [[nodiscard]] const sigset_t* Mask() const { return &oldMask; }

private:
    std::vector<struct sigaction> oldActions;
    sigset_t oldMask = {};
    void (*oldPipe)(int) = SIG_DFL;
};

// A message of a worker: so many bytes follow, which are an outcome; none says that it is ready.
using MessageSize = uint32_t;

QDataStream& operator<<(QDataStream& stream, const Outcome& outcome)
{
    stream << static_cast<int>(outcome.kind) << outcome.text << outcome.bytes
           << static_cast<quint32>(outcome.damage.size());
    for (const auto& [kind, noted] : outcome.damage)
        stream << static_cast<int>(kind) << static_cast<quint64>(noted.offset)
               << static_cast<quint64>(noted.count);
    return stream;
}

QDataStream& operator>>(QDataStream& stream, Outcome& outcome)
{
    quint32 kinds = 0;
    stream >> outcome.kind >> outcome.text >> outcome.bytes >> kinds;
    for (; kinds > 0; --kinds) {
        PlfDamage kind = {};
        quint64 offset = 0;
        quint64 count = 0;
        stream >> kind >> offset >> count;
        outcome.damage[kind] = {offset, count};
    }
    return stream;
}

// With one write: the other end waits for the rest of what it sees the beginning of.
bool SendMessage(const Fd& fd, const QByteArray& bytes)
{
    const auto size = static_cast<MessageSize>(bytes.size());
    QByteArray message(reinterpret_cast<const char*>(&size), sizeof size);
    message += bytes;
    return WriteWhole(fd, message.constData(), static_cast<size_t>(message.size()));
}

bool SendOutcome(const Fd& fd, const Outcome& outcome)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << outcome;
    return SendMessage(fd, bytes);
}

// An outcome, or nothing from a worker that is ready.
bool ReceiveMessage(const Fd& fd, std::optional<Outcome>* outcome)
{
    MessageSize size = 0;
    if (!ReadWhole(fd, &size, sizeof size))
        return false;
    QByteArray bytes(static_cast<qsizetype>(size), Qt::Uninitialized);
    if (!ReadWhole(fd, bytes.data(), size))
        return false;
    QDataStream stream(bytes);
    if (size > 0)
        stream >> outcome->emplace();
    return true;
}

// The life of a worker. It ends with the process that started it, whose pipe then closes.
void Work(const Fd& jobs, const Fd& results, const WorkerTasks& tasks)
{
    const std::shared_ptr<void> alive = tasks.start();
    bool heard = SendMessage(results, {});
    int32_t job = 0;
    while (heard && ReadWhole(jobs, &job, sizeof job))
        heard = SendOutcome(results, tasks.work(job));
}

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

struct Worker {
    pid_t pid = -1;
    Fd jobs;    // for writing
    Fd results; // for reading
    int job = kNoJob;
    bool isReady = false;
    Clock::time_point begin = Clock::now(); // of its start or its job
    bool isLate = false;                    // and was ended therefore
};

QString DeathReason(int status)
{
    if (WIFSIGNALED(status)) {
        return QStringLiteral("conversion killed by signal %1 (%2)")
            .arg(WTERMSIG(status))
            .arg(QString::fromLocal8Bit(strsignal(WTERMSIG(status))));
    }
    return QStringLiteral("conversion exited with code %1").arg(WEXITSTATUS(status));
}

QString LateReason(milliseconds limit)
{
    constexpr double kMillisecondsPerSecond = 1000;
    return QStringLiteral("took longer than %1 s")
        .arg(static_cast<double>(limit.count()) / kMillisecondsPerSecond);
}

timespec Timespec(milliseconds time)
{
    const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
    return {seconds.count(), std::chrono::nanoseconds(time - seconds).count()};
}

class Pool
{
public:
    Pool(int jobCount, const WorkerTasks& workerTasks, milliseconds timeLimit)
        : count(jobCount), tasks(workerTasks), limit(timeLimit)
    {
    }

    WorkResult Run(int workerCount);

private:
    bool AddWorker();
    [[noreturn]] void BeWorker(Fd jobs, Fd results);
    void GiveJob(Worker* worker);
    void AwaitMessages();
    [[nodiscard]] milliseconds TimeLeft() const;
    void EndLateWorkers();
    void Listen(size_t index);
    void Finish(const Worker& worker, Outcome outcome) const;
    static int Bury(const Worker& worker);
    void Replace(size_t index);
    void EndAll();

    int count;
    const WorkerTasks& tasks;
    milliseconds limit; // 0 = none
    std::vector<Worker> workers;
    InterruptWatch watch;
    int next = 0; // the first job that no worker has had
    bool startFailed = false;
};

bool Pool::AddWorker()
{
    Fd jobsRead;
    Fd resultsWrite;
    Worker worker;
    if (!MakePipe(&jobsRead, &worker.jobs) || !MakePipe(&worker.results, &resultsWrite))
        return false;
    fflush(nullptr); // or a worker would have what is not printed yet a second time
    worker.pid = fork();
    if (worker.pid == 0) {
        worker.jobs.Close();
        worker.results.Close();
        BeWorker(std::move(jobsRead), std::move(resultsWrite));
    }
    if (worker.pid < 0)
        return false;
    workers.push_back(std::move(worker));
    return true;
}

void Pool::BeWorker(Fd jobs, Fd results)
{
    // The ends that belong to other workers: while they are open here, those would not see them
    // closed there.
    workers.clear();
    watch.RestoreInWorker();
    Work(jobs, results, tasks);
    _exit(0);
}

// Without a job left, the worker's pipe is closed, which ends it.
void Pool::GiveJob(Worker* worker)
{
    worker->begin = Clock::now();
    worker->job = next < count ? next++ : kNoJob;
    if (worker->job == kNoJob)
        worker->jobs.Close();
    else
        WriteWhole(worker->jobs, &worker->job, sizeof worker->job);
}

void Pool::AwaitMessages()
{
    std::vector<pollfd> waits;
    for (const Worker& worker : workers)
        waits.push_back({worker.results.Get(), POLLIN, 0});
    const timespec patience = Timespec(TimeLeft());
    const timespec* timeout = limit.count() > 0 ? &patience : nullptr;
    if (ppoll(waits.data(), waits.size(), timeout, watch.Mask()) < 0)
        return;
    // Backwards: a worker that ended is taken out.
    for (size_t i = waits.size(); i-- > 0;) {
        if (waits[i].revents != 0)
            Listen(i);
    }
    EndLateWorkers();
}

// Until the first worker is late; rounded up, so that it is late then.
milliseconds Pool::TimeLeft() const
{
    const auto oldest = std::min_element(workers.begin(), workers.end(),
                                         [](auto& a, auto& b) { return a.begin < b.begin; });
    const auto left = std::chrono::ceil<milliseconds>(oldest->begin + limit - Clock::now());
    return std::max(left, milliseconds(0));
}

// Their pipes then end, which is heard as from a worker that dies by itself. Until then they have
// as long again, so that the waiting goes on.
void Pool::EndLateWorkers()
{
    const Clock::time_point now = Clock::now();
    for (Worker& worker : workers) {
        if (limit.count() == 0 || now - worker.begin < limit)
            continue;
        kill(worker.pid, SIGKILL);
        worker.isLate = true;
        worker.begin = now;
    }
}

void Pool::Listen(size_t index)
{
    Worker& worker = workers[index];
    std::optional<Outcome> outcome;
    if (!ReceiveMessage(worker.results, &outcome)) {
        Replace(index);
        return;
    }
    worker.isReady = true;
    if (outcome)
        Finish(worker, std::move(*outcome));
    worker.job = kNoJob;
    // One that was ended at the same time gets no other job.
    if (!worker.isLate)
        GiveJob(&worker);
}

void Pool::Finish(const Worker& worker, Outcome outcome) const
{
    const milliseconds before = worker.isLate ? limit : milliseconds(0);
    outcome.seconds = std::chrono::duration<double>(Clock::now() - worker.begin + before).count();
    tasks.finished(worker.job, outcome);
}

int Pool::Bury(const Worker& worker)
{
    int status = 0;
    while (waitpid(worker.pid, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

// A worker ended. One without a job had nothing left to do, or never began, or was late at the end
// of its last one.
void Pool::Replace(size_t index)
{
    const Worker ended = std::move(workers[index]);
    workers.erase(workers.begin() + static_cast<std::ptrdiff_t>(index));
    const int status = Bury(ended);
    startFailed = startFailed || !ended.isReady;
    if (tasks.writesOutput && WIFSIGNALED(status) && WTERMSIG(status) == SIGPIPE) {
        interrupted = SIGPIPE;
        return;
    }
    if (ended.job != kNoJob) {
        tasks.abandoned(ended.job);
        Finish(ended, {Outcome::kFailed, ended.isLate ? LateReason(limit) : DeathReason(status)});
    }
    if (next < count && !startFailed && !AddWorker() && workers.empty())
        startFailed = true;
}

void Pool::EndAll()
{
    for (Worker& worker : workers) {
        kill(worker.pid, SIGKILL);
        Bury(worker);
        if (worker.job != kNoJob)
            tasks.abandoned(worker.job);
    }
    workers.clear();
}

WorkResult Pool::Run(int workerCount)
{
    for (int i = 0; i < std::min(workerCount, count) && AddWorker(); ++i) {
    }
    startFailed = workers.empty() && count > 0;
    while (!workers.empty() && interrupted == 0 && !startFailed)
        AwaitMessages();
    EndAll();
    return {!startFailed, interrupted};
}

} // namespace

WorkResult RunWorkers(int count, int workers, const WorkerTasks& tasks, milliseconds limit)
{
    return Pool(count, tasks, limit).Run(workers);
}

} // namespace convert
