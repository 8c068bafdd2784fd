// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/info/options.h"

namespace info {

namespace {

tools::ToolHelp Help()
{
    return {QStringLiteral("Prints what PLF graphs contain. Needs no display.\n\n") +
                tools::ExitCodeHelp("every graph was read", "some were not, or output failed"),
            {{"GRAPH...", "PLF files; - is the standard input."}}};
}

// The options, in the order of the help. Each is known from here alone.
std::vector<tools::OptionRow<Options>> Rows()
{
    return {
        {"j json", nullptr, QStringLiteral("Print JSON."), tools::ReadFlag<&Options::asJson>},
        {"d dump", nullptr,
         QStringLiteral("List every command and vector, with the offsets of its first byte and "
                        "after its last."),
         tools::ReadFlag<&Options::asDump>},
    };
}

QString Complete(const QStringList& arguments, Options* options)
{
    options->graphs = arguments;
    if (options->asJson && options->asDump)
        return QStringLiteral("--json and --dump cannot be combined");
    return arguments.isEmpty() ? QStringLiteral("no graph given") : QString();
}

} // namespace

tools::CommandLine<Options> ReadCommandLine(const QStringList& arguments)
{
    return tools::ReadCommandLine<Options>({Help(), Rows(), Complete}, arguments);
}

} // namespace info
