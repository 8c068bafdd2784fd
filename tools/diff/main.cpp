// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// plfdiff: compares what graphs draw, without a display.
#include "support/streams.h"
#include "tools/convert/environment.h"
#include "tools/diff/run.h"

#include <QCoreApplication>

namespace {

tools::CommandLine<diff::Options> ReadCall(int argc, char** argv)
{
    int count = 1; // Qt takes none of the arguments for itself
    const QCoreApplication application(count, argv);
    tools::SetProgramName("plfdiff");
    return diff::ReadCommandLine(tools::DecodeArguments(argc, argv));
}

} // namespace

int main(int argc, char** argv)
{
    TakeClosedStreams();
    convert::PrepareProcess();
    const auto line = ReadCall(argc, argv);
    if (line.options)
        return diff::Run(*line.options, argv);
    return tools::PrintReply(line.reply) == tools::kDone ? diff::kEqual : diff::kTrouble;
}
