// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/report.h"

#include "tools/common/filename.h"
#include "tools/common/graphfile.h"
#include "tools/common/json.h"

#include <QJsonDocument>

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace convert {

namespace {

const char* StatusWord(Outcome::Kind kind)
{
    switch (kind) {
    case Outcome::kConverted:
        return "converted";
    case Outcome::kSkipped:
        return "skipped";
    case Outcome::kFailed:
        break;
    }
    return "failed";
}

// Milliseconds are enough, and short.
double Rounded(double seconds)
{
    constexpr double kSteps = 1000;
    return std::round(seconds * kSteps) / kSteps;
}

QString Reason(int error)
{
    return QString::fromLocal8Bit(strerror(error));
}

} // namespace

QByteArray ReportLine(const Job& job, const Outcome& outcome)
{
    const bool isOk = outcome.kind != Outcome::kFailed;
    QJsonObject object = {{QStringLiteral("ok"), isOk},
                          {QStringLiteral("status"), QLatin1StringView(StatusWord(outcome.kind))},
                          {QStringLiteral("reason"), outcome.text},
                          {QStringLiteral("bytes"), outcome.bytes},
                          {QStringLiteral("seconds"), Rounded(outcome.seconds)},
                          {QStringLiteral("damage"), tools::DamageArray(outcome.damage)}};
    tools::PutName("input", tools::DecodeName(job.input), &object);
    tools::PutName("output", tools::DecodeName(job.output), &object);
    return tools::VisibleJson(QJsonDocument(object).toJson(QJsonDocument::Compact)) + '\n';
}

QString Report::Open(const QByteArray& name)
{
    if (name == tools::kStandardStream) {
        stream = stdout;
        return {};
    }
    if (tools::IsGraph(name))
        return QStringLiteral("is a graph; graphs are never overwritten");
    file.reset(fopen(name.constData(), "we"));
    stream = file.get();
    return stream == nullptr ? Reason(errno) : QString();
}

// A reader sees every graph that is done, also while the next ones take their time.
void Report::Add(const Job& job, const Outcome& outcome)
{
    if (stream == nullptr)
        return;
    const QByteArray line = ReportLine(job, outcome);
    const auto size = static_cast<size_t>(line.size());
    const bool isWritten = fwrite(line.constData(), 1, size, stream) == size && fflush(stream) == 0;
    if (!isWritten && error == 0)
        error = errno;
}

QString Report::Close()
{
    if (file == nullptr)
        return {};
    if (fclose(file.release()) != 0 && error == 0)
        error = errno;
    return error == 0 ? QString() : Reason(error);
}

} // namespace convert
