// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The chain of command-line jobs, and how commands that arrive meanwhile affect it.
#include "app/jobs.h"

#include "app/appwindow.h"
#include "app/drawview.h"
#include "app/state/globals.h"

#include <QCoreApplication>
#include <QPointer>

namespace {

unsigned long currentTurn = 0;
unsigned long timesLeft = 0; // calls of LeaveJobs()
int doneJobs = 0;            // bits of giCmdArg that are still set although the job is done

} // namespace

Turn::Turn() : number(currentTurn), left(timesLeft) {}

Turn Turn::Begin()
{
    ++currentTurn;
    return {};
}

void Turn::LeaveJobs()
{
    ++timesLeft;
}

bool Turn::JobsWait() const
{
    return left != timesLeft;
}

bool Turn::IsOver() const
{
    return number != currentTurn;
}

void MarkDone(int jobs)
{
    doneJobs |= jobs;
}

void ClearDone(int jobs)
{
    giCmdArg &= ~(doneJobs & jobs);
    doneJobs &= ~jobs;
}

void BeginCommand()
{
    Turn::Begin();
    ClearDone(doneJobs);
}

void DrawView::PostCmdargDone(int iNotval)
{
    const Turn turn;
    const int done = JobOf(iNotval);
    MarkDone(done);
    // The user may close the window in the events that are processed, or during a job.
    const QPointer<DrawView> self(this);
    QCoreApplication::processEvents(); // paints the window before anything else happens
    ClearDone(done);
    // Qt ignores the request outside the event loop; it is sent anyway.
    if (giCmdArg == 0 && gbCmdQuit)
        QCoreApplication::quit();
    // Each job ends with a call of this function that clears its bit and runs the rest, so giCmdArg
    // is read again for each test.
    const auto isPending = [&](int job) {
        return !self.isNull() && !turn.JobsWait() && (giCmdArg & job) != 0;
    };
    if (isPending(kJobPrint))
        cmdPrint();
    if (isPending(kJobJpeg))
        gpMainwnd->ExportJpeg();
    if (isPending(kJobEps))
        gpMainwnd->ExportEPS();
}
