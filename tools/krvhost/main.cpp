// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// krvhost: plays the KORVEL process. Starts the viewer, sends it command lines over a local server
// and prints how long each acknowledgement took.
#include "support/streams.h"
#include "tools/krvhost/run.h"

#include <QCoreApplication>

#include <csignal>
#include <cstdio>

int main(int argc, char** argv)
{
    TakeClosedStreams();
    signal(SIGPIPE, SIG_IGN); // a viewer that goes away while it is written to is an exit code
    setvbuf(stdout, nullptr, _IOLBF, BUFSIZ); // each line is there as soon as it is true
    int count = 1;                            // Qt takes none of the arguments for itself
    QCoreApplication application(count, argv);
    tools::SetProgramName("krvhost");
    const auto line = krvhost::ReadCommandLine(tools::DecodeArguments(argc, argv));
    return line.options ? krvhost::Run(*line.options) : tools::PrintReply(line.reply);
}
