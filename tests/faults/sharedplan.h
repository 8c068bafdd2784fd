// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A fault plan for programs that a test starts.
#pragma once

#include "support/descriptor.h"
#include "tests/faults/faultplan.h"
#include "tests/kit/files.h"

#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <fcntl.h>
#include <sys/mman.h>

#include <new>

/// The plan and its file.
class SharedPlan
{
public:
    SharedPlan()
    {
        const Fd file(open(FileName().toLocal8Bit().constData(), O_RDWR | O_CREAT | O_CLOEXEC,
                           S_IRUSR | S_IWUSR));
        if (ftruncate(file.Get(), sizeof(FaultPlan)) == 0)
            memory =
                mmap(nullptr, sizeof(FaultPlan), PROT_READ | PROT_WRITE, MAP_SHARED, file.Get(), 0);
        if (memory != MAP_FAILED)
            plan = new (memory) FaultPlan;
    }
    ~SharedPlan() { munmap(memory, sizeof(FaultPlan)); }
    SharedPlan(const SharedPlan&) = delete;
    SharedPlan& operator=(const SharedPlan&) = delete;

    /// Null if the plan could not be made.
    [[nodiscard]] FaultPlan* Get() const { return plan; }
    /// Programs that are started with it follow the plan.
    void AddTo(QProcessEnvironment* environment) const
    {
        environment->insert(Text("LD_PRELOAD"), Text(PLOTVW_FAULTS));
        environment->insert(Text(kFaultVariable), FileName());
    }

private:
    [[nodiscard]] QString FileName() const { return folder.filePath(Text("plan")); }

    QTemporaryDir folder;
    void* memory = MAP_FAILED;
    FaultPlan* plan = nullptr;
};
