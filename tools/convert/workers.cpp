// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/workers.h"

#include "tools/convert/pipes.h"

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
#include <vector>

namespace convert {

namespace {

constexpr std::array kInterrupts = {SIGINT, SIGTERM, SIGHUP};
constexpr int kNoJob = -1;
// What a worker sends for its first message, when it is ready for jobs.
constexpr int kReady = -1;

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

// A message of a worker: this and so many bytes of UTF-8.
struct MessageHead {
    int32_t kind; // kReady or an Outcome::Kind
    uint32_t bytes;
};

bool SendMessage(const Fd& fd, int kind, const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    const MessageHead head = {kind, static_cast<uint32_t>(bytes.size())};
    return WriteWhole(fd, &head, sizeof head) &&
           WriteWhole(fd, bytes.constData(), static_cast<size_t>(bytes.size()));
}

bool ReceiveMessage(const Fd& fd, int* kind, QString* text)
{
    MessageHead head = {};
    if (!ReadWhole(fd, &head, sizeof head))
        return false;
    QByteArray bytes(static_cast<qsizetype>(head.bytes), Qt::Uninitialized);
    *kind = head.kind;
    if (!ReadWhole(fd, bytes.data(), head.bytes))
        return false;
    *text = QString::fromUtf8(bytes);
    return true;
}

// The life of a worker. It ends with the process that started it, whose pipe then closes.
void Work(const Fd& jobs, const Fd& results, const WorkerTasks& tasks)
{
    const std::shared_ptr<void> alive = tasks.start();
    bool heard = SendMessage(results, kReady, {});
    int32_t job = 0;
    while (heard && ReadWhole(jobs, &job, sizeof job)) {
        const Outcome outcome = tasks.work(job);
        heard = SendMessage(results, outcome.kind, outcome.text);
    }
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
    int kind = kReady;
    QString text;
    if (!ReceiveMessage(worker.results, &kind, &text)) {
        Replace(index);
        return;
    }
    worker.isReady = true;
    if (kind != kReady)
        tasks.finished(worker.job, {static_cast<Outcome::Kind>(kind), text});
    worker.job = kNoJob;
    // One that was ended at the same time gets no other job.
    if (!worker.isLate)
        GiveJob(&worker);
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
    if (ended.job != kNoJob) {
        tasks.abandoned(ended.job);
        tasks.finished(ended.job,
                       {Outcome::kFailed, ended.isLate ? LateReason(limit) : DeathReason(status)});
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
