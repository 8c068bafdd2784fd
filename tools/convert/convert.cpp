// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/convert.h"

#include "meta/plfgraph.h"
#include "support/visible.h"
#include "tools/common/filename.h"
#include "tools/common/graphfile.h"
#include "tools/common/source.h"
#include "tools/convert/output.h"
#include "tools/convert/picture.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <system_error>
#include <utility>

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

// Of the same age counts as older: it may be of the moment before the last change.
bool IsNewer(const QByteArray& output, const QByteArray& input)
{
    struct stat newer = {};
    struct stat older = {};
    const auto time = [](const struct stat& file) {
        return std::pair(file.st_mtim.tv_sec, file.st_mtim.tv_nsec);
    };
    return stat(output.constData(), &newer) == 0 && stat(input.constData(), &older) == 0 &&
           S_ISREG(older.st_mode) && time(newer) > time(older);
}

// Why there is nothing to do; empty when there is.
QString SkipReason(const Job& job, const OutputRules& rules)
{
    struct stat output = {};
    if (job.output == tools::kStandardStream || lstat(job.output.constData(), &output) != 0)
        return {};
    if (rules.keepExisting)
        return QStringLiteral("output exists");
    return rules.onlyNewer && IsNewer(job.output, job.input) ? QStringLiteral("output is newer")
                                                             : QString();
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

// The conversion of one graph, step by step; each step returns what is wrong.
class Conversion
{
public:
    Conversion(const Job& askedJob, int number, const PictureSettings& pictureSettings,
               const OutputRules& outputRules)
        : job(askedJob), token(Token(outputRules, number)), settings(pictureSettings),
          rules(outputRules)
    {
    }

    QString Run();
    [[nodiscard]] const PlfDamageMap& Damage() const { return damage; }
    [[nodiscard]] qint64 Bytes() const { return bytes; }

private:
    QString Load();
    QString PrepareFolder() const;
    QString Write();

    const Job& job;
    QByteArray token;
    const PictureSettings& settings;
    const OutputRules& rules;
    PlfGraph graph;
    PlfDamageMap damage;
    qint64 bytes = 0;
};

QString Conversion::Run()
{
    QString problem = OutputProblem(job);
    if (problem.isEmpty())
        problem = Load();
    if (problem.isEmpty())
        problem = PrepareFolder();
    return problem.isEmpty() ? Write() : problem;
}

QString Conversion::Load()
{
    const QString problem = tools::LoadGraph(job.input, &graph);
    if (!problem.isEmpty())
        return problem;
    damage = LossesOf(FindDamage(graph.Bytes()));
    return rules.strict && !damage.empty() ? DamageText(damage) : QString();
}

QString Conversion::PrepareFolder() const
{
    const QString problem = rules.makeFolders ? MakeFolder(job.output) : QString();
    return problem.isEmpty() ? problem : About(job, problem);
}

QString Conversion::Write()
{
    Output output(job.output, token);
    QString problem = output.Open();
    if (problem.isEmpty())
        problem = DrawPicture(graph.Bytes(), job.format, settings, TitleOf(job.input), &output);
    if (problem.isEmpty())
        problem = output.Commit(rules.keepExisting);
    bytes = output.WrittenBytes();
    return problem.isEmpty() ? problem : About(job, problem);
}

} // namespace

QString TitleOf(const QByteArray& input)
{
    if (input == tools::kStandardStream)
        return QStringLiteral("KORVEL graph");
    return QString::fromUtf8(VisibleName(input.sliced(input.lastIndexOf('/') + 1)));
}

// Whoever names a graph as the output has most likely left one out.
QString OutputProblem(const Job& job)
{
    if (job.output == tools::kStandardStream)
        return {};
    if (job.input != tools::kStandardStream && IsSameFile(job.input, job.output))
        return QStringLiteral("input and output are the same file");
    if (tools::IsGraph(job.output))
        return QStringLiteral("output '%1' is a graph; graphs are never overwritten")
            .arg(QString::fromUtf8(VisibleName(job.output)));
    return {};
}

QString DamageText(const PlfDamageMap& damage)
{
    QStringList kinds;
    for (const auto& [kind, noted] : damage)
        kinds += QStringLiteral("%1 at byte %2")
                     .arg(QLatin1StringView(DamageWord(kind)))
                     .arg(noted.offset);
    return QStringLiteral("damaged: ") + kinds.join(QStringLiteral(", "));
}

Outcome Convert(const Job& job, int number, const PictureSettings& settings,
                const OutputRules& rules)
{
    const QString skipped = SkipReason(job, rules);
    if (!skipped.isEmpty())
        return {Outcome::kSkipped, skipped};
    Conversion conversion(job, number, settings, rules);
    const QString problem = conversion.Run();
    if (problem.isEmpty())
        return {Outcome::kConverted, {}, conversion.Damage(), conversion.Bytes()};
    return {Outcome::kFailed, problem, conversion.Damage()};
}

void RemoveLeftovers(const Job& job, int number, const OutputRules& rules)
{
    if (job.output != tools::kStandardStream)
        unlink(TemporaryName(job.output, Token(rules, number)).constData());
}

} // namespace convert
