// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/plan.h"

#include "support/visible.h"
#include "tools/common/filename.h"
#include "tools/common/naturalorder.h"
#include "tools/convert/inputs.h"
#include "tools/convert/namepattern.h"

#include <QDir>
#include <QSet>

#include <algorithm>

namespace convert {

namespace {

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
        {tools::EncodeName(input.name), tools::EncodeName(output), options.format},
        input.problem,
        {}};
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

// Small pictures have no losses, so that those of a sheet are drawn as they are.
Format BoundFormat(const Options& options)
{
    return options.grid ? Format::kPng : options.format;
}

// The order of a list is its writer's, that of other names is for people.
std::vector<PlannedJob> MakeBoundPlan(const Options& options, const QString& folder)
{
    std::vector<Input> inputs = CollectInputs(options);
    if (options.listFile.isEmpty())
        std::stable_sort(inputs.begin(), inputs.end(), [](const Input& a, const Input& b) {
            return tools::IsNaturallyBefore(tools::EncodeName(a.name), tools::EncodeName(b.name));
        });
    std::vector<PlannedJob> plan;
    for (const Input& input : inputs) {
        const QString output = InFolder(folder, QString::number(plan.size()));
        const QByteArray title = tools::VisibleText(input.subfolder + tools::BaseName(input.name));
        plan.push_back(
            {{tools::EncodeName(input.name), tools::EncodeName(output), BoundFormat(options)},
             input.problem,
             QString::fromUtf8(title)});
    }
    return plan;
}

} // namespace

std::vector<PlannedJob> MakePlan(const Options& options, const QString& folder)
{
    if (options.IsBound())
        return MakeBoundPlan(options, folder);
    if (!options.output.isEmpty()) {
        return {{{tools::EncodeName(options.inputs.first()), tools::EncodeName(options.output),
                  options.format},
                 {},
                 {}}};
    }
    const std::vector<Input> inputs = CollectInputs(options);
    std::vector<PlannedJob> plan;
    QSet<QByteArray> taken;
    for (const Input& input : inputs) {
        const NameParts parts = {input.name, options.format, static_cast<int>(plan.size()) + 1,
                                 static_cast<int>(inputs.size()), input.subfolder};
        plan.push_back(MakeJob(options, input, parts, &taken));
    }
    return plan;
}

} // namespace convert
