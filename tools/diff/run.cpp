// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/diff/run.h"

#include "meta/plfgraph.h"
#include "tools/common/filename.h"
#include "tools/common/graphsearch.h"
#include "tools/common/json.h"
#include "tools/convert/environment.h"
#include "tools/diff/compare.h"
#include "tools/diff/load.h"
#include "tools/diff/picturefile.h"
#include "tools/diff/reportjson.h"
#include "tools/diff/reporttext.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <cstdio>
#include <new>
#include <stdexcept>

namespace diff {

namespace {

using tools::VisibleText;

void Write(const QByteArray& text)
{
    fwrite(text.constData(), 1, static_cast<size_t>(text.size()), stdout);
}

// Goes through the pairs of one call.
class Call
{
public:
    explicit Call(const Options& callOptions) : options(callOptions) {}

    /// Returns the exit code.
    int Run();

private:
    QString FindPairs();
    QString OpenPicture();
    [[nodiscard]] Pair PairAt(qsizetype number) const;
    void Handle(Pair* pair);
    QString LoadAndCompare(Pair* pair) const;
    QString LoadOne(Input* input) const;
    void Print(const Pair& pair);
    void Draw(const Pair& pair);
    void Complain(const QByteArray& name, const QString& problem);
    void ClosePicture();

    const Options& options;
    bool isOfFolders = false;
    QStringList names;       // of the graphs in directories
    qsizetype nameWidth = 0; // columns
    std::unique_ptr<PictureFile> picture;
    QJsonArray objects;
    size_t counts[3] = {}; // of the pairs, by outcome
    bool hasTrouble = false;
};

int Call::Run()
{
    QString problem = FindPairs();
    if (problem.isEmpty())
        problem = OpenPicture();
    if (!problem.isEmpty()) {
        tools::PrintError(VisibleText(problem));
        return kTrouble;
    }
    const bool hasTable = isOfFolders && !options.asJson && !options.quiet;
    if (hasTable)
        Write(TableHead(nameWidth));
    for (qsizetype i = 0; i < (isOfFolders ? names.size() : 1); ++i) {
        Pair pair = PairAt(i);
        Handle(&pair);
    }
    if (hasTable)
        Write(SumText(counts));
    if (options.asJson)
        Write(tools::VisibleJson(
            QJsonDocument(QJsonObject{{QStringLiteral("version"), kJsonVersion},
                                      {QStringLiteral("tolerance"), options.rules.tolerance},
                                      {QStringLiteral("pairs"), objects}})
                .toJson()));
    ClosePicture();
    hasTrouble |= !tools::FinishOutput();
    if (hasTrouble)
        return kTrouble;
    return counts[static_cast<size_t>(Outcome::kDifferent)] > 0 ? kDifferent : kEqual;
}

QString Call::FindPairs()
{
    isOfFolders = tools::IsFolder(options.first) && tools::IsFolder(options.second);
    if (!isOfFolders)
        return {};
    FolderGraphs graphs = GraphsInBoth(options.first, options.second, options.isRecursive);
    for (const QString& problem : graphs.problems)
        tools::PrintError(VisibleText(problem));
    hasTrouble |= !graphs.problems.isEmpty();
    names = std::move(graphs.names);
    for (const QString& name : names)
        nameWidth = std::max(nameWidth, QString::fromUtf8(VisibleText(name)).size());
    nameWidth = std::max<qsizetype>(nameWidth, 5);
    return names.isEmpty() ? QStringLiteral("neither directory contains a graph") : QString();
}

QString Call::OpenPicture()
{
    if (options.output.isEmpty())
        return {};
    const Format format = *FormatOfName(options.output);
    if (isOfFolders && format != Format::kPdf)
        return QStringLiteral("the report on directories must be a PDF");
    const char* problemOfGraph = nullptr;
    if (PlfGraph::FromFile(tools::EncodeName(options.output).constData(), &problemOfGraph)
            .IsLoaded())
        return QStringLiteral("output '%1' is a graph; graphs are never overwritten")
            .arg(options.output);
    picture = std::make_unique<PictureFile>(tools::EncodeName(options.output), format,
                                            options.sideBySide);
    const QString problem = picture->Open();
    return problem.isEmpty() ? problem : QStringLiteral("%1: %2").arg(options.output, problem);
}

// A directory beside a graph means the graph of the same name in it.
Pair Call::PairAt(qsizetype number) const
{
    Pair pair;
    const auto inFolder = [](const QString& folder, const QString& name) {
        return folder.endsWith(u'/') ? folder + name : folder + u'/' + name;
    };
    const auto fileName = [](const QString& name) {
        return name.sliced(name.lastIndexOf(u'/') + 1);
    };
    pair.inputs[0].name = options.first;
    pair.inputs[1].name = options.second;
    if (isOfFolders) {
        pair.title = names[number];
        for (Input& input : pair.inputs) {
            const QString name = inFolder(input.name, pair.title);
            input.name = IsThere(name) ? name : QString();
        }
    } else if (tools::IsFolder(options.first)) {
        pair.inputs[0].name = inFolder(options.first, fileName(options.second));
    } else if (tools::IsFolder(options.second)) {
        pair.inputs[1].name = inFolder(options.second, fileName(options.first));
    }
    return pair;
}

void Call::Handle(Pair* pair)
{
    try {
        pair->problem = LoadAndCompare(pair);
    } catch (const std::length_error& error) {
        pair->problem = QString::fromLatin1(error.what());
        tools::PrintError(VisibleText(pair->inputs[0].name) + ": " + error.what());
    } catch (const std::bad_alloc&) {
        pair->problem = QStringLiteral("not enough memory");
        tools::PrintError(VisibleText(pair->inputs[0].name) + ": not enough memory");
    }
    if (!pair->problem.isEmpty())
        pair->outcome = Outcome::kTrouble;
    else if (pair->IsMissing() ||
             pair->comparison.Changes() > static_cast<size_t>(options.maxChanges))
        pair->outcome = Outcome::kDifferent;
    hasTrouble |= pair->outcome == Outcome::kTrouble;
    ++counts[static_cast<size_t>(pair->outcome)];
    Print(*pair);
    Draw(*pair);
}

QString Call::LoadAndCompare(Pair* pair) const
{
    for (Input& input : pair->inputs) {
        const QString problem = LoadOne(&input);
        if (!problem.isEmpty())
            return problem;
    }
    pair->comparison = Compare(pair->inputs[0].drawing, pair->inputs[1].drawing, options.rules);
    return {};
}

QString Call::LoadOne(Input* input) const
{
    QString problem = Load(input);
    const QByteArray name = VisibleText(input->name);
    const QString damage = DamageText(*input);
    if (!problem.isEmpty()) {
        tools::PrintError(name + ": " + VisibleText(problem));
    } else if (!damage.isEmpty()) {
        const QString text = QStringLiteral("damaged (%1)").arg(damage);
        tools::PrintError(name + ": " + text.toUtf8());
        if (options.strict)
            problem = text;
    }
    return problem;
}

void Call::Print(const Pair& pair)
{
    if (options.asJson)
        objects += PairJson(pair);
    else if (isOfFolders && !options.quiet)
        Write(TableRow(pair, nameWidth));
    else if (pair.outcome == Outcome::kDifferent)
        Write(options.quiet ? QuietText(pair) : ReportText(pair));
}

void Call::Draw(const Pair& pair)
{
    if (picture == nullptr || pair.outcome == Outcome::kTrouble)
        return;
    const QString problem = picture->Add(pair);
    if (!problem.isEmpty())
        Complain(VisibleText(options.output), problem);
}

void Call::Complain(const QByteArray& name, const QString& problem)
{
    hasTrouble = true;
    tools::PrintError(name + ": " + VisibleText(problem));
}

// Without a pair that could be drawn there is no picture.
void Call::ClosePicture()
{
    if (picture == nullptr || counts[0] + counts[1] == 0)
        return;
    const QString problem = picture->Commit();
    if (!problem.isEmpty())
        Complain(VisibleText(options.output), problem);
}

} // namespace

int Run(const Options& options, char** argv)
{
    const std::shared_ptr<void> qt = options.output.isEmpty() ? nullptr : convert::StartQt(argv);
    return Call(options).Run();
}

} // namespace diff
