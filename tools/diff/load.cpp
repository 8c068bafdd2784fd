// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/diff/load.h"

#include "tools/common/filename.h"
#include "tools/common/graphsearch.h"
#include "tools/common/naturalorder.h"
#include "tools/common/source.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace diff {

namespace {

// The same bytes give the same name, whatever the folder is called.
QString NameBelow(const tools::FoundGraph& graph)
{
    const QString file = graph.name.sliced(graph.name.lastIndexOf(u'/') + 1);
    return tools::DecodeName(tools::EncodeName(graph.subfolder + file));
}

void AddGraphs(const QString& folder, bool isRecursive, FolderGraphs* graphs)
{
    for (const tools::FoundGraph& graph : tools::FindGraphs(folder, isRecursive)) {
        if (graph.problem.isEmpty())
            graphs->names += NameBelow(graph);
        else
            graphs->problems += QStringLiteral("%1: %2").arg(graph.name, graph.problem);
    }
}

} // namespace

QString Load(Input* input)
{
    input->drawing = {};
    input->drawing.background = NamedBackground({});
    const QByteArray name = tools::EncodeName(input->name);
    if (name.isEmpty() || name == kNoGraph)
        return {};
    PlfGraph graph;
    const QString problem = tools::LoadGraph(name, &graph);
    if (!problem.isEmpty())
        return problem;
    DamageObserver damage;
    damage.Begin(graph.Bytes());
    input->drawing = ReadDrawing(graph.Bytes(), damage);
    input->damage = damage.Damage();
    return {};
}

QString DamageText(const Input& input)
{
    QStringList kinds;
    for (const auto& [kind, noted] : LossesOf(input.damage))
        kinds += QStringLiteral("%1: %2").arg(QLatin1StringView(DamageWord(kind))).arg(noted.count);
    return kinds.join(QStringLiteral(", "));
}

bool IsThere(const QString& name)
{
    std::error_code error;
    const std::filesystem::path path = tools::EncodeName(name).toStdString();
    return symlink_status(path, error).type() != std::filesystem::file_type::not_found;
}

FolderGraphs GraphsInBoth(const QString& first, const QString& second, bool isRecursive)
{
    FolderGraphs graphs;
    AddGraphs(first, isRecursive, &graphs);
    AddGraphs(second, isRecursive, &graphs);
    graphs.names.removeDuplicates();
    std::sort(graphs.names.begin(), graphs.names.end(), [](const QString& a, const QString& b) {
        return tools::IsNaturallyBefore(tools::EncodeName(a), tools::EncodeName(b));
    });
    return graphs;
}

} // namespace diff
