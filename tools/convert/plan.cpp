// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/plan.h"

#include "support/visible.h"
#include "tools/common/filename.h"
#include "tools/convert/namepattern.h"

#include <QDir>
#include <QSet>

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace convert {

namespace {

namespace fs = std::filesystem;

struct Input {
    QString name;
    QString problem;
};

bool HasGraphName(const QString& name)
{
    return name.endsWith(QLatin1StringView(".plf"), Qt::CaseInsensitive);
}

fs::path PathOf(const QString& name)
{
    return tools::EncodeName(name).toStdString();
}

// Sorted by name: the system has them in any order.
std::vector<Input> GraphsIn(const QString& folder)
{
    std::vector<Input> graphs;
    std::error_code error;
    fs::directory_iterator entry(PathOf(folder), error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const QString name = tools::DecodeName(QByteArray::fromStdString(entry->path().string()));
        if (HasGraphName(name) && !entry->is_directory(error))
            graphs.push_back({name, {}});
    }
    if (error)
        return {{folder, QString::fromStdString(error.message())}};
    if (graphs.empty())
        return {{folder, QStringLiteral("contains no file whose name ends in .plf")}};
    std::sort(graphs.begin(), graphs.end(),
              [](const Input& a, const Input& b) { return a.name < b.name; });
    return graphs;
}

std::vector<Input> AllInputs(const QStringList& names)
{
    std::vector<Input> inputs;
    for (const QString& name : names) {
        std::error_code error;
        if (!fs::is_directory(PathOf(name), error)) {
            inputs.push_back({name, {}});
            continue;
        }
        for (Input& graph : GraphsIn(name))
            inputs.push_back(std::move(graph));
    }
    return inputs;
}

// A picture whose name begins with '/', from the pattern, is not moved into the directory.
QString InFolder(const QString& folder, const QString& name)
{
    return folder.isEmpty() ? name : QDir(folder).filePath(name);
}

PlannedJob MakeJob(const Options& options, const Input& input, const NameParts& parts,
                   QSet<QByteArray>* taken)
{
    const QString output = InFolder(options.outputFolder, ExpandPattern(options.Pattern(), parts));
    PlannedJob planned = {
        {tools::EncodeName(input.name), tools::EncodeName(output), options.format}, input.problem};
    // Bytes: the same ones can come from characters that differ, see DecodeName().
    const QByteArray cleaned =
        tools::EncodeName(QDir::cleanPath(QDir::current().absoluteFilePath(output)));
    if (planned.problem.isEmpty() && taken->contains(cleaned))
        planned.problem = QStringLiteral("output '%1' already used by an earlier graph")
                              .arg(QString::fromUtf8(VisibleName(planned.job.output)));
    if (planned.problem.isEmpty())
        taken->insert(cleaned);
    return planned;
}

} // namespace

std::vector<PlannedJob> MakePlan(const Options& options)
{
    if (!options.output.isEmpty()) {
        return {{{tools::EncodeName(options.inputs.first()), tools::EncodeName(options.output),
                  options.format},
                 {}}};
    }
    const std::vector<Input> inputs = AllInputs(options.inputs);
    std::vector<PlannedJob> plan;
    QSet<QByteArray> taken;
    for (const Input& input : inputs) {
        const NameParts parts = {input.name, options.format, static_cast<int>(plan.size()) + 1,
                                 static_cast<int>(inputs.size())};
        plan.push_back(MakeJob(options, input, parts, &taken));
    }
    return plan;
}

} // namespace convert
