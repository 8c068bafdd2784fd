// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/diff/load.h"

#include "tools/common/filename.h"
#include "tools/common/source.h"

#include <filesystem>
#include <system_error>

namespace diff {

namespace {

namespace fs = std::filesystem;

fs::path PathOf(const QString& name)
{
    return tools::EncodeName(name).toStdString();
}

bool IsGraphName(const fs::path& name)
{
    const QString extension = QString::fromStdString(name.extension().string());
    return extension.compare(QLatin1StringView(".plf"), Qt::CaseInsensitive) == 0;
}

QString AddGraphs(const QString& folder, QStringList* names)
{
    std::error_code error;
    fs::directory_iterator entry(PathOf(folder), error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const fs::path name = entry->path().filename();
        std::error_code ignored; // of what is no longer there
        if (IsGraphName(name) && !entry->is_directory(ignored))
            *names += tools::DecodeName(QByteArray::fromStdString(name.string()));
    }
    return error ? QStringLiteral("%1: %2").arg(folder, QString::fromStdString(error.message()))
                 : QString();
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
    for (const auto& [kind, noted] : input.damage) {
        if (IsLoss(kind))
            kinds +=
                QStringLiteral("%1: %2").arg(QLatin1StringView(DamageWord(kind))).arg(noted.count);
    }
    return kinds.join(QStringLiteral(", "));
}

bool IsFolder(const QString& name)
{
    std::error_code error;
    return fs::is_directory(PathOf(name), error);
}

bool IsThere(const QString& name)
{
    std::error_code error;
    return fs::symlink_status(PathOf(name), error).type() != fs::file_type::not_found;
}

QString GraphsInBoth(const QString& first, const QString& second, QStringList* names)
{
    QString problem = AddGraphs(first, names);
    if (problem.isEmpty())
        problem = AddGraphs(second, names);
    if (problem.isEmpty() && names->isEmpty())
        problem = QStringLiteral("neither directory contains a file whose name ends in .plf");
    names->sort();
    names->removeDuplicates();
    return problem;
}

} // namespace diff
