// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "python/pictures.h"

#include "python/failure.h"
#include "tools/common/filename.h"
#include "tools/convert/convert.h"
#include "tools/convert/environment.h"
#include "tools/convert/output.h"
#include "tools/convert/picture.h"

#include <QBuffer>
#include <QRandomGenerator>
#include <QRegularExpression>

#include <new>
#include <stdexcept>
#include <utility>

namespace python {

namespace {

// What the converter calls an input; there is none.
const QString kInput = QStringLiteral("graph");

void CheckProblem(const QString& problem)
{
    if (!problem.isEmpty())
        throw std::runtime_error(problem.toStdString());
}

void DrawOn(const Graph& graph, const convert::Options& options, QIODevice* output)
{
    const QString title = convert::TitleOf(QByteArray::fromStdString(graph.name));
    CheckProblem(
        convert::DrawPicture(graph.source.Bytes(), options.format, options.picture, title, output));
}

void CheckError(int error, const std::string& name)
{
    if (error != 0)
        throw SystemFailure{error, name};
}

// The converter's words about an option, with the name that the setting has here.
std::string InOurNames(const QString& problem)
{
    static const QRegularExpression option(QStringLiteral("--([a-z-]+)"));
    QString text = problem;
    for (auto found = option.match(text); found.hasMatch(); found = option.match(text)) {
        const QString name = found.captured(1).replace(u'-', u'_');
        text.replace(found.capturedStart(), found.capturedLength(), name);
    }
    return text.toStdString();
}

void CheckSourceDate()
{
    const QString problem = convert::SourceDateProblem();
    if (!problem.isEmpty())
        throw SettingsFailure{problem.toStdString()};
}

// A file may have the name that stands for the standard output.
QByteArray LocalName(const std::string& name)
{
    const QByteArray local = QByteArray::fromStdString(name);
    return local == tools::kStandardStream ? "./" + local : local;
}

} // namespace

convert::Options ReadSettings(const std::vector<std::string>& words, const std::string& output)
{
    QStringList arguments = {QStringLiteral("plotvw")};
    for (const std::string& word : words)
        arguments += QString::fromStdString(word);
    arguments += {QStringLiteral("--"), kInput, tools::DecodeName(LocalName(output))};
    convert::CommandLine line = convert::ReadCommandLine(arguments);
    if (!line.options)
        throw SettingsFailure{InOurNames(line.reply.text)};
    return std::move(*line.options);
}

QImage Render(const Graph& graph, const convert::PictureSettings& settings)
{
    QImage image = convert::DrawnImage(graph.source.Bytes(), settings);
    image.convertTo(QImage::Format_RGBA8888);
    if (image.isNull())
        throw std::bad_alloc();
    return image;
}

QByteArray Draw(const Graph& graph, const convert::Options& options)
{
    CheckSourceDate();
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    DrawOn(graph, options, &buffer);
    return buffer.data();
}

void Save(const Graph& graph, const convert::Options& options, const std::string& name)
{
    CheckSourceDate();
    const QByteArray local = LocalName(name);
    const QString problem = convert::OutputProblem({{}, local, options.format});
    if (!problem.isEmpty())
        throw OutputFailure{problem.toStdString(), name};
    const quint64 token = QRandomGenerator::system()->generate64();
    convert::Output output(local, QByteArray::number(token, 36));
    output.Open();
    CheckError(output.Error(), name);
    DrawOn(graph, options, &output);
    output.Commit(false);
    CheckError(output.Error(), name);
}

} // namespace python
