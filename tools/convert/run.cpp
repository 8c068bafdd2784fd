// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/run.h"

#include "meta/bands.h"
#include "tools/common/filename.h"
#include "tools/convert/binding.h"
#include "tools/convert/environment.h"
#include "tools/convert/plan.h"
#include "tools/convert/progress.h"
#include "tools/convert/report.h"
#include "tools/convert/workers.h"

#include <QCoreApplication>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <memory>
#include <vector>

namespace convert {

namespace {

constexpr char kNoWorker[] = "cannot start any worker process";

// The jobs of a plan that can be tried, and how each goes on.
class Call
{
public:
    Call(const Options& callOptions, char** argv);

    /// Returns why there is no report, if one was asked for.
    QString OpenReport();
    WorkResult Run();
    QString CloseReport();
    /// The errno of a report to the standard output that failed; 0 without one.
    [[nodiscard]] int ReportError() const { return options.ReportsToOutput() ? report.Error() : 0; }
    void RemoveTemporary() { temporary.reset(); }
    [[nodiscard]] bool HasFailures() const { return progress.FailureCount() > 0 || !isBound; }

private:
    [[nodiscard]] const Job& JobAt(int index) const
    {
        return plan[todo[static_cast<size_t>(index)]].job;
    }
    [[nodiscard]] Outcome ConvertOne(int index) const;
    void Add(const Job& job, const Outcome& outcome);
    void ReportNeverBegun();
    [[nodiscard]] std::shared_ptr<void> Start() const;
    WorkResult Bind();

    const Options& options;
    PictureSettings picture;
    char** arguments;
    std::unique_ptr<QTemporaryDir> temporary; // of pictures that are bound
    std::vector<PlannedJob> plan;
    std::vector<size_t> todo;    // indices of the plan
    std::vector<bool> done;      // of them
    std::vector<bool> converted; // of the plan
    Progress progress;
    Report report;
    OutputRules rules;
    bool isBound = true; // if that was asked for
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

Progress::End EndOf(const WorkResult& result)
{
    if (result.signal == SIGPIPE)
        return Progress::End::kUnread;
    if (result.signal != 0)
        return Progress::End::kInterrupted;
    return result.started ? Progress::End::kDone : Progress::End::kNotStarted;
}

// Where the count does not disturb a program that reads the report or a document.
Progress::CountTo CountTarget(const Options& options)
{
    return options.WritesToOutput() || (options.report && options.ReportsToOutput())
               ? Progress::CountTo::kErrors
               : Progress::CountTo::kOutput;
}

Call::Call(const Options& callOptions, char** argv)
    : options(callOptions), picture(callOptions.picture), arguments(argv),
      temporary(callOptions.IsBound() ? std::make_unique<QTemporaryDir>() : nullptr),
      plan(MakePlan(callOptions, temporary ? temporary->path() : QString())),
      progress(static_cast<int>(plan.size()), callOptions.quiet, CountTarget(callOptions))
{
    rules.keepExisting = options.keepExisting;
    rules.onlyNewer = options.onlyNewer;
    rules.strict = options.strict;
    rules.makeFolders = options.output.isEmpty();
    rules.token = QByteArray::number(QRandomGenerator::system()->generate64(), 36);
}

QString Call::OpenReport()
{
    if (!options.report)
        return {};
    const QByteArray name = options.ReportsToOutput() ? QByteArray(tools::kStandardStream)
                                                      : tools::EncodeName(options.reportFile);
    const QString problem = report.Open(name);
    return problem.isEmpty() ? problem : options.reportFile + QStringLiteral(": ") + problem;
}

QString Call::CloseReport()
{
    const QString problem = report.Close();
    return problem.isEmpty() ? problem : options.reportFile + QStringLiteral(": ") + problem;
}

void Call::Add(const Job& job, const Outcome& outcome)
{
    progress.Add(job.input, outcome);
    report.Add(options.IsBound() ? Job{job.input, tools::EncodeName(options.output), job.format}
                                 : job,
               outcome);
}

// They have failed: the count says so, and the reason is said once.
void Call::ReportNeverBegun()
{
    for (size_t i = 0; i < done.size(); ++i) {
        if (!done[i])
            report.Add(plan[todo[i]].job, {Outcome::kFailed, QString::fromLatin1(kNoWorker)});
    }
}

std::shared_ptr<void> Call::Start() const
{
    LimitMemory(options.memory);
    return StartQt(arguments);
}

// Graphs that failed are left out. Without any there is nothing to bind.
WorkResult Call::Bind()
{
    std::vector<BoundPicture> pictures;
    for (size_t i = 0; i < plan.size(); ++i) {
        if (converted[i])
            pictures.push_back({plan[i].job.output, plan[i].title});
    }
    WorkResult result;
    if (!pictures.empty())
        isBound = BindPictures(
            pictures, options, [this] { return Start(); }, rules.token, &result);
    return result;
}

WorkResult Call::Run()
{
    for (size_t i = 0; i < plan.size(); ++i) {
        if (plan[i].problem.isEmpty())
            todo.push_back(i);
        else
            Add(plan[i].job, {Outcome::kFailed, plan[i].problem});
    }
    done.resize(todo.size());
    converted.resize(plan.size());
    const int jobs = static_cast<int>(todo.size());
    // Processors that no worker needs draw parts of the pictures.
    picture.threads =
        std::max(ThreadLimit() / std::clamp(jobs, 1, std::max(options.workers, 1)), 1);
    const WorkerTasks tasks = {[this] {
                                   LimitMemory(options.memory);
                                   return StartQt(arguments);
                               },
                               [this](int index) { return ConvertOne(index); },
                               [this](int index, const Outcome& outcome) {
                                   done[static_cast<size_t>(index)] = true;
                                   converted[todo[static_cast<size_t>(index)]] =
                                       outcome.kind == Outcome::kConverted;
                                   Add(JobAt(index), outcome);
                               },
                               [this](int index) { RemoveLeftovers(JobAt(index), index, rules); },
                               options.WritesToOutput() && !options.IsBound()};
    WorkResult result =
        RunWorkers(jobs, options.workers, tasks, std::chrono::seconds(options.timeout));
    if (options.IsBound() && EndOf(result) == Progress::End::kDone)
        result = Bind();
    if (EndOf(result) == Progress::End::kNotStarted)
        ReportNeverBegun();
    progress.Finish(EndOf(result));
    return result;
}

bool WritesToTerminal(const Options& options)
{
    return IsBinary(options.format) && options.WritesToOutput() && isatty(STDOUT_FILENO) == 1;
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
    const QString problem = SourceDateProblem();
    if (line.options && !problem.isEmpty())
        return {{}, {problem, true}};
    return line;
}

int Run(const Options& options, char** argv)
{
    Call call(options, argv);
    const QString problem = call.OpenReport();
    if (!problem.isEmpty())
        return tools::Fail(tools::kFailed, problem);
    const WorkResult result = call.Run();
    const QString reportProblem = call.CloseReport();
    if (!reportProblem.isEmpty())
        tools::Fail(tools::kFailed, reportProblem);
    call.RemoveTemporary(); // before the output, whose reader may have gone
    const bool printed = tools::FinishOutput(call.ReportError()) && reportProblem.isEmpty();
    if (result.signal != 0)
        raise(result.signal); // so that a script sees what ended it
    if (!result.started)
        return tools::Fail(tools::kNotStarted, QString::fromLatin1(kNoWorker));
    return printed && !call.HasFailures() ? tools::kDone : tools::kFailed;
}

} // namespace convert
