// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Keeps track of loads, commands and jobs that overlap: while a message box is open, the host may
// send the next command, and code that runs after the box must not undo it.
#pragma once

#include <bit>

/// Each load and each command from the host starts a new turn. A Turn object remembers the turn in
/// which it was created, for example before a box is shown.
class Turn
{
public:
    Turn();
    /// Starts a new turn.
    static Turn Begin();
    /// Leaves all pending jobs to the next command that names a file.
    static void LeaveJobs();

    /// Another turn has started since.
    [[nodiscard]] bool IsOver() const;
    /// LeaveJobs() was called since.
    [[nodiscard]] bool JobsWait() const;

private:
    unsigned long number;
    unsigned long left;
};

/// All bits of giCmdArg that are jobs.
constexpr int kMostJobs = 31;

/// The number that reports the end of a job to DrawView::PostCmdargDone: 1 print, 2 JPEG, 3 EPS.
/// @param job  its bit of giCmdArg
constexpr int JobNumber(int job)
{
    return std::countr_zero(static_cast<unsigned>(job)) + 1;
}
/// The bit of giCmdArg of a job, by its number; 0 if there is no such job.
constexpr int JobOf(int number)
{
    return number > 0 && number <= kMostJobs ? 1 << (number - 1) : 0;
}

/// Marks jobs as done while their bits of giCmdArg are still set, so that a command that arrives
/// before ClearDone() does not run them again.
/// @param jobs  bits of giCmdArg
void MarkDone(int jobs);

/// Clears the bits of jobs that are marked as done, except those that a command has set since.
void ClearDone(int jobs);

/// Starts the turn of a command from the host; to be called before its words are applied.
void BeginCommand();
