// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/convert.h"

#include "meta/plfgraph.h"
#include "support/files.h"
#include "support/visible.h"
#include "tools/common/filename.h"
#include "tools/common/source.h"
#include "tools/convert/output.h"
#include "tools/convert/picture.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace convert {

namespace {

QByteArray Token(const OutputRules& rules, int number)
{
    return rules.token + '-' + QByteArray::number(number);
}

bool IsSameFile(const QByteArray& a, const QByteArray& b)
{
    struct stat first = {};
    struct stat second = {};
    return stat(a.constData(), &first) == 0 && stat(b.constData(), &second) == 0 &&
           first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

// Whoever names a graph as the output has most likely left one out.
bool IsGraph(const QByteArray& name)
{
    const FilePtr file(OpenForReading(name.constData()));
    char start[kPlfHeaderSize] = "";
    return file != nullptr && fread(start, sizeof start, 1, file.get()) == 1 &&
           memcmp(start, gszPlfhdr, sizeof start) == 0;
}

QString OutputProblem(const Job& job)
{
    if (job.output == tools::kStandardStream)
        return {};
    if (job.input != tools::kStandardStream && IsSameFile(job.input, job.output))
        return QStringLiteral("input and output are the same file");
    if (IsGraph(job.output))
        return QStringLiteral("output '%1' is a graph; graphs are never overwritten")
            .arg(QString::fromUtf8(VisibleName(job.output)));
    return {};
}

bool IsThere(const QByteArray& name)
{
    struct stat info = {};
    return name != tools::kStandardStream && lstat(name.constData(), &info) == 0;
}

// Another worker may create the same directory at the same time, which is no failure.
QString MakeFolder(const QByteArray& output)
{
    const std::filesystem::path folder = std::filesystem::path(output.toStdString()).parent_path();
    std::error_code error;
    if (!folder.empty())
        std::filesystem::create_directories(folder, error);
    if (!error || std::filesystem::is_directory(folder))
        return {};
    return QString::fromStdString(error.message());
}

QString About(const Job& job, const QString& reason)
{
    return QStringLiteral("%1: %2").arg(QString::fromUtf8(VisibleName(job.output)), reason);
}

// The graph's name, without its folder.
QString TitleOf(const QByteArray& input)
{
    if (input == tools::kStandardStream)
        return QStringLiteral("KORVEL graph");
    return QString::fromUtf8(VisibleName(input.sliced(input.lastIndexOf('/') + 1)));
}

QString WritePicture(const PlfGraph& graph, const Job& job, int number,
                     const PictureSettings& settings, const OutputRules& rules)
{
    Output output(job.output, Token(rules, number));
    QString problem = output.Open();
    if (!problem.isEmpty())
        return About(job, problem);
    problem = DrawPicture(graph.Bytes(), job.format, settings, TitleOf(job.input), &output);
    if (problem.isEmpty())
        problem = output.Commit(rules.keepExisting);
    return problem.isEmpty() ? problem : About(job, problem);
}

QString Run(const Job& job, int number, const PictureSettings& settings, const OutputRules& rules)
{
    PlfGraph graph;
    QString problem = OutputProblem(job);
    if (problem.isEmpty())
        problem = tools::LoadGraph(job.input, &graph);
    if (problem.isEmpty() && rules.makeFolders) {
        problem = MakeFolder(job.output);
        if (!problem.isEmpty())
            return About(job, problem);
    }
    return problem.isEmpty() ? WritePicture(graph, job, number, settings, rules) : problem;
}

} // namespace

Outcome Convert(const Job& job, int number, const PictureSettings& settings,
                const OutputRules& rules)
{
    if (rules.keepExisting && IsThere(job.output))
        return {Outcome::kSkipped, {}};
    const QString problem = Run(job, number, settings, rules);
    if (problem.isEmpty())
        return {Outcome::kConverted, {}};
    return {Outcome::kFailed, problem};
}

void RemoveLeftovers(const Job& job, int number, const OutputRules& rules)
{
    if (job.output != tools::kStandardStream)
        unlink(TemporaryName(job.output, Token(rules, number)).constData());
}

} // namespace convert
