// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// plfinfo: prints what graphs contain, without a display.
#include "support/streams.h"
#include "tools/info/run.h"

#include <QCoreApplication>

namespace {

// What Qt may say of a system without fonts is of no use here.
void Ignore(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& /*text*/) {}

} // namespace

int main(int argc, char** argv)
{
    TakeClosedStreams();
    int count = 1; // Qt takes none of the arguments for itself
    QCoreApplication application(count, argv);
    tools::SetProgramName("plfinfo");
    qInstallMessageHandler(Ignore);
    const auto line = info::ReadCommandLine(tools::DecodeArguments(argc, argv));
    return line.options ? info::Run(*line.options) : tools::PrintReply(line.reply);
}
