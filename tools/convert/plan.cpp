// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/plan.h"

#include "support/visible.h"
#include "tools/common/filename.h"
#include "tools/convert/inputs.h"
#include "tools/convert/namepattern.h"

#include <QDir>
#include <QSet>

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
