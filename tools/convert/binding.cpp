// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/binding.h"

#include "support/visible.h"
#include "tools/common/filename.h"
#include "tools/common/graphfile.h"
#include "tools/convert/contactsheet.h"
#include "tools/convert/environment.h"
#include "tools/convert/mergedpdf.h"
#include "tools/convert/output.h"
#include "tools/convert/pdfhead.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>

namespace convert {

namespace {

using Pictures = std::vector<BoundPicture>;

// The files of a document, of which each takes some of the pictures.
class Document
{
public:
    Document(const Pictures& boundPictures, const Options& callOptions)
        : pictures(boundPictures), options(callOptions)
    {
    }

    [[nodiscard]] int FileCount() const
    {
        const int all = static_cast<int>(pictures.size());
        return options.grid ? (all + PerSheet() - 1) / PerSheet() : 1;
    }
    [[nodiscard]] QByteArray NameOf(int file) const
    {
        return tools::EncodeName(options.grid ? SheetName(options.output, file + 1, FileCount())
                                              : options.output);
    }
    // Returns what is wrong.
    [[nodiscard]] QString Write(int file, const QByteArray& token) const;

private:
    [[nodiscard]] int PerSheet() const { return options.grid->width() * options.grid->height(); }
    [[nodiscard]] QString Draw(int file, QIODevice* output) const;

    const Pictures& pictures;
    const Options& options;
};

QString Document::Draw(int file, QIODevice* output) const
{
    if (!options.grid)
        return MergePdfs(pictures, PdfDate(SourceDate().value_or(QDateTime::currentDateTimeUtc())),
                         output);
    const size_t begin = static_cast<size_t>(file) * static_cast<size_t>(PerSheet());
    const size_t end = std::min(begin + static_cast<size_t>(PerSheet()), pictures.size());
    const auto at = [this](size_t index) {
        return pictures.begin() + static_cast<std::ptrdiff_t>(index);
    };
    return DrawContactSheet({Pictures(at(begin), at(end)), *options.grid, file + 1, FileCount()},
                            options.format, options.picture, output);
}

QString Document::Write(int file, const QByteArray& token) const
{
    if (tools::IsGraph(NameOf(file)))
        return QStringLiteral("is a graph; graphs are never overwritten");
    Output output(NameOf(file), token);
    QString problem = output.Open();
    if (problem.isEmpty())
        problem = Draw(file, &output);
    return problem.isEmpty() ? output.Commit(false) : problem;
}

QByteArray TokenOf(const QByteArray& token, int file)
{
    return token + "-document-" + QByteArray::number(file);
}

void PrintProblem(const QByteArray& name, const QString& problem)
{
    tools::PrintError(VisibleName(name) + ": " + problem.toLocal8Bit());
}

} // namespace

bool BindPictures(const Pictures& pictures, const Options& options,
                  const std::function<std::shared_ptr<void>()>& start, const QByteArray& token,
                  WorkResult* result)
{
    const Document document(pictures, options);
    bool isWritten = true;
    const WorkerTasks tasks = {
        start,
        [&](int file) -> Outcome {
            const QString problem = document.Write(file, TokenOf(token, file));
            return {problem.isEmpty() ? Outcome::kConverted : Outcome::kFailed, problem};
        },
        [&](int file, const Outcome& outcome) {
            if (outcome.kind == Outcome::kConverted)
                return;
            isWritten = false;
            PrintProblem(document.NameOf(file), outcome.text);
        },
        [&](int file) {
            unlink(TemporaryName(document.NameOf(file), TokenOf(token, file)).constData());
        },
        options.WritesToOutput()};
    *result = RunWorkers(document.FileCount(), options.workers, tasks);
    return isWritten && result->started && result->signal == 0;
}

QString SheetName(const QString& name, int number, int count)
{
    if (count == 1 || name == QLatin1StringView(tools::kStandardStream))
        return name;
    const auto digits = static_cast<int>(QString::number(count).size());
    const QString suffix = QStringLiteral("-%1").arg(number, digits, 10, QLatin1Char('0'));
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot > name.lastIndexOf(u'/') + 1 ? name.left(dot) + suffix + name.mid(dot)
                                            : name + suffix;
}

} // namespace convert
