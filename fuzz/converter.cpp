// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Input: the words of a command line of plfconvert, one per line. It is read and planned; nothing
// is converted.
#include "fuzz/target.h"
#include "tools/common/filename.h"
#include "tools/convert/options.h"
#include "tools/convert/picturesize.h"
#include "tools/convert/plan.h"
#include "tools/convert/values.h"

#include <QCoreApplication>
#include <QSet>

#include <algorithm>
#include <optional>

namespace {

using convert::Options;
using convert::PictureSettings;
using convert::PlannedJob;
using fuzz::Require;

// A word ends at its zero byte, as in the arguments of a process.
QStringList Words(const uint8_t* data, size_t size)
{
    const QByteArray input(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    QStringList words = {QStringLiteral("plfconvert")};
    for (const QByteArray& word : input.split('\n'))
        words += tools::DecodeName(word.constData());
    return words;
}

template <typename Number> bool IsWithin(std::optional<Number> number, Number least, Number most)
{
    return !number || (*number >= least && *number <= most);
}

bool IsControl(char c)
{
    return static_cast<unsigned char>(c) < ' ' || c == '\x7f';
}

void CheckReply(const tools::Reply& reply)
{
    Require(!reply.text.isEmpty(), "a call is done or answered");
    const QByteArray printed = tools::VisibleText(reply.text);
    Require(!reply.isWrong || std::none_of(printed.begin(), printed.end(), IsControl),
            "a message stays on its line");
}

void CheckPicture(const PictureSettings& picture)
{
    using namespace convert;
    const QSize size = PictureSize(picture);
    Require(!size.isEmpty() && size.width() <= kMaxLength, "a picture has a possible size");
    Require(IsWithin(picture.dpi, 1, kMaxDpi), "a resolution is in its range");
    Require(IsWithin(picture.minLineWidth, 0, kMaxLineWidth), "a line width is in its range");
    Require(IsWithin(picture.quality, 1, kMaxQuality), "a quality is in its range");
    Require(!picture.lineScale || (*picture.lineScale > 0 && *picture.lineScale <= kMaxLineScale),
            "a line scale is in its range");
    const QRect whole(0, 0, kPlfWidth, kPlfHeight);
    Require(!picture.area || (!picture.area->isEmpty() && whole.contains(*picture.area)),
            "an area is a part of the graph");
}

void CheckPlan(const std::vector<PlannedJob>& plan)
{
    QSet<QByteArray> outputs;
    for (const auto& [job, problem, title] : plan) {
        if (!problem.isEmpty())
            continue;
        Require(!job.input.isEmpty() && !job.output.isEmpty(), "a graph and a picture have names");
        Require(!outputs.contains(job.output), "no picture replaces another one of the same call");
        outputs += job.output;
    }
}

void CheckOptions(const Options& options)
{
    CheckPicture(options.picture);
    Require(options.workers >= 1 && options.workers <= convert::kMaxJobs,
            "the number of workers is in its range");
    Require(options.timeout >= 0 && options.timeout <= convert::kMaxTimeout,
            "a time is in its range");
    Require(options.memory == 0 ||
                (options.memory >= convert::kMinMemory && options.memory <= convert::kMaxMemory),
            "a limit of memory is in its range");
    if (!options.listFile.isEmpty())
        return; // which may be any file, or the standard input
    const std::vector<PlannedJob> plan = MakePlan(options, QStringLiteral("bound"));
    Require(!plan.empty(), "there is something to do");
    CheckPlan(plan);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    fuzz::PrepareQt();
    new QCoreApplication(*argc, *argv); // as long as the process
    static const fuzz::Sandbox sandbox; // graphs without a directory are looked for there
    tools::SetProgramName("plfconvert");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const convert::CommandLine line = convert::ReadCommandLine(Words(data, size));
    if (line.options)
        CheckOptions(*line.options);
    else
        CheckReply(line.reply);
    return 0;
}
