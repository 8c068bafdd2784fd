// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Worker processes: what ends one costs the graph that it was at, and no other.
#pragma once

#include "tools/convert/convert.h"

#include <chrono>
#include <functional>
#include <memory>

namespace convert {

/// What a worker does. Each function but Work is called in the starting process.
struct WorkerTasks {
    /// In a new worker, before its first job, for instance to make the application object. What it
    /// returns lives as long as the worker.
    std::function<std::shared_ptr<void>()> start;
    /// In a worker: does a job.
    std::function<Outcome(int job)> work;
    /// A job is done, or its worker died of it.
    std::function<void(int job, const Outcome& outcome)> finished;
    /// A worker was ended in the middle of a job; called before finished.
    std::function<void(int job)> abandoned;
    /// Whether the jobs write to the standard output: SIGPIPE then means that nobody reads it, and
    /// ends the work.
    bool writesOutput = false;
};

/// How the work as a whole ended.
struct WorkResult {
    bool started = true; // false: no worker came to its first job
    int signal = 0;      // the signal that interrupted the work, 0 = none
};

/// Does jobs 0..count-1, each in one of up to so many workers. A worker that dies costs the job it
/// was at, and another takes its place. SIGINT, SIGTERM and SIGHUP end the workers; the
/// caller decides about itself. Must be called without any other thread.
/// @param limit  a worker that takes longer for its start or for a job is ended; 0 = none is
WorkResult RunWorkers(int count, int workers, const WorkerTasks& tasks,
                      std::chrono::milliseconds limit = {});

} // namespace convert
