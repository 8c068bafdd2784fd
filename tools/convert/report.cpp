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

QString SystemReason()
{
    return QString::fromLocal8Bit(strerror(errno));
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
    return stream == nullptr ? SystemReason() : QString();
}

// A reader sees every graph that is done, also while the next ones take their time.
void Report::Add(const Job& job, const Outcome& outcome)
{
    if (stream == nullptr)
        return;
    const QByteArray line = ReportLine(job, outcome);
    fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stream);
    fflush(stream);
}

QString Report::Close()
{
    const bool failed = file != nullptr && ferror(file.get()) != 0;
    if (file != nullptr && fclose(file.release()) != 0)
        return SystemReason();
    return failed ? QStringLiteral("not everything could be written") : QString();
}

} // namespace convert
