// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// plfconvert: converts graphs into pictures, without a display.
#include "support/streams.h"
#include "tools/convert/environment.h"
#include "tools/convert/run.h"

int main(int argc, char** argv)
{
    TakeClosedStreams();
    convert::PrepareProcess();
    const convert::CommandLine line = convert::ReadCall(argc, argv);
    return line.options ? convert::Run(*line.options, argv) : tools::PrintReply(line.reply);
}
