// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/info/run.h"

#include "tools/common/filename.h"
#include "tools/common/graphsearch.h"
#include "tools/common/source.h"
#include "tools/info/output.h"

namespace info {

namespace {

using tools::EncodeName;
using tools::VisibleText;

// A folder counts as several graphs whatever it holds, so that the form of the output is known
// before.
bool IsForSeveral(const QStringList& names)
{
    return names.size() > 1 || tools::IsFolder(names.first());
}

// Goes through the graphs of one call.
class Call
{
public:
    explicit Call(const Options& callOptions)
        : options(callOptions), output(MakeOutput(options, IsForSeveral(options.names)))
    {
    }

    /// Returns the exit code.
    int Run();

private:
    void PrintFolder(const QString& folder);
    void Print(const QString& graph);
    void PrintProblem(const QString& graph, const QString& problem);

    const Options& options;
    std::unique_ptr<Output> output;
    bool hasFailed = false;
};

int Call::Run()
{
    output->Begin();
    for (const QString& name : options.names) {
        if (tools::IsFolder(name))
            PrintFolder(name);
        else
            Print(name);
    }
    output->End();
    hasFailed |= !tools::FinishOutput();
    return hasFailed ? tools::kFailed : tools::kDone;
}

void Call::PrintFolder(const QString& folder)
{
    for (const tools::FoundGraph& graph : tools::GraphsIn(folder, options.isRecursive)) {
        if (graph.problem.isEmpty())
            Print(graph.name);
        else
            PrintProblem(graph.name, graph.problem);
    }
}

void Call::Print(const QString& graph)
{
    PlfGraph loaded;
    const QString problem = tools::LoadGraph(EncodeName(graph), &loaded);
    if (!problem.isEmpty()) {
        PrintProblem(graph, problem);
        return;
    }
    const bool isDamaged = output->Graph(graph, loaded.Bytes());
    hasFailed |= isDamaged && options.isCheck;
}

void Call::PrintProblem(const QString& graph, const QString& problem)
{
    hasFailed = true;
    tools::PrintError(VisibleText(graph) + ": " + problem.toLocal8Bit());
    output->Problem(graph, problem);
}

} // namespace

int Run(const Options& options)
{
    return Call(options).Run();
}

} // namespace info
