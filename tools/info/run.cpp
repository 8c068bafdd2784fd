// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/info/run.h"

#include "tools/common/filename.h"
#include "tools/common/json.h"
#include "tools/common/source.h"
#include "tools/info/dump.h"
#include "tools/info/inspector.h"
#include "tools/info/summaryjson.h"
#include "tools/info/summarytext.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <cstdio>

namespace info {

namespace {

using tools::EncodeName;
using tools::VisibleText;

void Write(const QByteArray& text)
{
    fwrite(text.constData(), 1, static_cast<size_t>(text.size()), stdout);
}

// Goes through the graphs of one call.
class Call
{
public:
    explicit Call(const Options& callOptions) : options(callOptions) {}

    /// Returns the exit code.
    int Run();

private:
    void Print(const QString& graph);
    void PrintProblem(const QString& graph, const QString& problem);
    void Dump(const QByteArray& name, const PlfBytes& graph) const;

    const Options& options;
    QJsonArray objects;
    bool hasFailed = false;
};

int Call::Run()
{
    for (const QString& graph : options.graphs)
        Print(graph);
    if (options.asJson)
        Write(tools::VisibleJson(QJsonDocument(objects).toJson()));
    hasFailed |= !tools::FinishOutput();
    return hasFailed ? tools::kFailed : tools::kDone;
}

void Call::Print(const QString& graph)
{
    PlfGraph loaded;
    const QString problem = tools::LoadGraph(EncodeName(graph), &loaded);
    if (!problem.isEmpty()) {
        PrintProblem(graph, problem);
        return;
    }
    const QByteArray name = VisibleText(graph);
    if (options.asDump) {
        Dump(name, loaded.Bytes());
        return;
    }
    const Summary summary = Inspector().Inspect(loaded.Bytes());
    if (!options.asJson) {
        Write(SummaryText(name, summary));
        return;
    }
    QJsonObject object = SummaryJson(summary);
    tools::PutName("file", graph, &object);
    objects += object;
}

void Call::PrintProblem(const QString& graph, const QString& problem)
{
    hasFailed = true;
    tools::PrintError(VisibleText(graph) + ": " + problem.toLocal8Bit());
    if (!options.asJson)
        return;
    QJsonObject object = {{QStringLiteral("error"), problem}};
    tools::PutName("file", graph, &object);
    objects += object;
}

void Call::Dump(const QByteArray& name, const PlfBytes& graph) const
{
    if (options.graphs.size() > 1)
        Write("# " + name + '\n');
    Inspector([](const Item& item) { Write(DumpLine(item)); }).Inspect(graph);
}

} // namespace

int Run(const Options& options)
{
    return Call(options).Run();
}

} // namespace info
