// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/run.h"

#include "meta/bands.h"
#include "tools/common/filename.h"
#include "tools/convert/environment.h"
#include "tools/convert/plan.h"
#include "tools/convert/progress.h"
#include "tools/convert/workers.h"

#include <QCoreApplication>
#include <QRandomGenerator>

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <vector>

namespace convert {

namespace {

// The jobs of a plan that can be tried, and how each goes on.
class Call
{
public:
    Call(const Options& callOptions, char** argv)
        : options(callOptions), picture(callOptions.picture), arguments(argv),
          plan(MakePlan(callOptions)), progress(static_cast<int>(plan.size()), callOptions.quiet)
    {
        rules.keepExisting = options.keepExisting;
        rules.makeFolders = options.output.isEmpty();
        rules.token = QByteArray::number(QRandomGenerator::system()->generate64(), 36);
    }

    WorkResult Run();
    [[nodiscard]] bool HasFailures() const { return progress.FailureCount() > 0; }

private:
    [[nodiscard]] const Job& JobAt(int index) const
    {
        return plan[todo[static_cast<size_t>(index)]].job;
    }
    [[nodiscard]] Outcome ConvertOne(int index) const;

    const Options& options;
    PictureSettings picture;
    char** arguments;
    std::vector<PlannedJob> plan;
    std::vector<size_t> todo; // indices of the plan
    Progress progress;
    OutputRules rules;
};

// What Qt and the interpreter say during a conversion becomes a part of its outcome.
Outcome Call::ConvertOne(int index) const
{
    const MessageKeeper keeper;
    Outcome outcome = Convert(JobAt(index), index, picture, rules);
    if (!keeper.Messages().isEmpty())
        outcome.text +=
            (outcome.text.isEmpty() ? QString() : QStringLiteral("\n")) + keeper.Messages();
    return outcome;
}

WorkResult Call::Run()
{
    for (size_t i = 0; i < plan.size(); ++i) {
        if (plan[i].problem.isEmpty())
            todo.push_back(i);
        else
            progress.Add(plan[i].job.input, {Outcome::kFailed, plan[i].problem});
    }
    const int jobs = static_cast<int>(todo.size());
    // Processors that no worker needs draw parts of the pictures.
    picture.threads =
        std::max(ThreadLimit() / std::clamp(jobs, 1, std::max(options.workers, 1)), 1);
    const WorkerTasks tasks = {
        [this] {
            LimitMemory(options.memory);
            return StartQt(arguments);
        },
        [this](int index) { return ConvertOne(index); },
        [this](int index, const Outcome& outcome) { progress.Add(JobAt(index).input, outcome); },
        [this](int index) { RemoveLeftovers(JobAt(index), index, rules); }};
    const WorkResult result =
        RunWorkers(jobs, options.workers, tasks, std::chrono::seconds(options.timeout));
    progress.Finish();
    return result;
}

bool WritesToTerminal(const Options& options)
{
    return IsBinary(options.format) &&
           options.output == QLatin1StringView(tools::kStandardStream) &&
           isatty(STDOUT_FILENO) == 1;
}

} // namespace

CommandLine ReadCall(int argc, char** argv)
{
    int count = 1; // Qt takes none of the arguments for itself
    QCoreApplication application(count, argv);
    tools::SetProgramName("plfconvert");
    CommandLine line = ReadCommandLine(tools::DecodeArguments(argc, argv));
    if (line.options && WritesToTerminal(*line.options))
        return {{}, {QStringLiteral("refusing to write a picture to a terminal"), true}};
    return line;
}

int Run(const Options& options, char** argv)
{
    Call call(options, argv);
    const WorkResult result = call.Run();
    const bool printed = tools::FinishOutput();
    if (result.signal != 0)
        raise(result.signal); // so that a script sees what ended it
    if (!result.started)
        return tools::Fail(tools::kNotStarted, QStringLiteral("cannot start any worker process"));
    return printed && !call.HasFailures() ? tools::kDone : tools::kFailed;
}

} // namespace convert
