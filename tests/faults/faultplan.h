// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Which call that touches a file is to fail, and how. The calls are counted by a library that
// stands between a program and the system; a plan in a shared file counts those of a process and of
// all its children together.
#pragma once

#include <atomic>

/// The variable of the environment that names the plan's file.
constexpr char kFaultVariable[] = "PLOTVW_FAULT_PLAN";

/// How a call fails.
enum class Fault : int {
    kNone,
    kDiskError, // this call, with EIO
    kFullDisk,  // this call and all after it, with ENOSPC; of a write the first half is written
    kNoName,    // each call that gives a file a name, with EINVAL; the number does not count
    kKill,      // the process is killed instead of making the call
    kKillGroup  // all the processes of its group are
};

struct FaultPlan {
    std::atomic<Fault> fault = Fault::kNone;
    std::atomic<long> failAt = 0; // the number of the call, from 1
    std::atomic<long> calls = 0;  // so many were made

    void Arm(Fault kind, long call)
    {
        calls = 0;
        failAt = call;
        fault = kind;
    }
    /// @return whether the planned call was made
    bool Disarm()
    {
        fault = Fault::kNone;
        return calls >= failAt;
    }
};
static_assert(std::atomic<Fault>::is_always_lock_free && std::atomic<long>::is_always_lock_free,
              "processes share it");

/// The plan of this process, for programs that are linked with the library.
extern "C" FaultPlan* CurrentFaultPlan();
