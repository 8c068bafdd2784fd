// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/info/options.h"

namespace info {

namespace {

using tools::OptionValues;
using tools::ReadFlag;

tools::ToolHelp Help()
{
    return {QStringLiteral("Prints what PLF graphs contain. Needs no display.\n\n") +
                tools::ExitCodeHelp("every graph was read",
                                    "some were not, or are damaged (with --check), or output "
                                    "failed"),
            {{"GRAPH...", "PLF files, and folders with PLF files; - is the standard input."}}};
}

// There is one table so far.
QString ReadTable(const OptionValues& values, Options* options)
{
    if (values.Last() != u"vectors")
        return values.Wrong(QStringLiteral("vectors"));
    return values.Flag(&options->asVectors);
}

// The options, in the order of the help. Each is known from here alone.
std::vector<tools::OptionRow<Options>> Rows()
{
    return {
        {"c check", nullptr,
         QStringLiteral("End with 1 if a graph is damaged. Without another kind of output, print a "
                        "line for each damaged graph and nothing for the others."),
         ReadFlag<&Options::isCheck>},
        {"r recursive", nullptr, QStringLiteral("Search the folders in folders too."),
         ReadFlag<&Options::isRecursive>},
        {"j json", nullptr, QStringLiteral("Print JSON."), ReadFlag<&Options::asJson>},
        {"json-lines", nullptr, QStringLiteral("Print JSON, one line for each graph."),
         ReadFlag<&Options::asJsonLines>},
        {"csv", "TABLE",
         QStringLiteral("Print a table as CSV: vectors, with their ends, colors and widths."),
         ReadTable},
        {"d dump", nullptr,
         QStringLiteral("List every command and vector, with the offsets of its first byte and "
                        "after its last."),
         ReadFlag<&Options::asDump>},
    };
}

// The kinds of output that were asked for.
QStringList Outputs(const Options& options)
{
    QStringList outputs;
    const auto add = [&outputs](bool isSet, const QString& name) {
        if (isSet)
            outputs += name;
    };
    add(options.asJson, QStringLiteral("--json"));
    add(options.asJsonLines, QStringLiteral("--json-lines"));
    add(options.asVectors, QStringLiteral("--csv"));
    add(options.asDump, QStringLiteral("--dump"));
    return outputs;
}

QString Complete(const QStringList& arguments, Options* options)
{
    options->names = arguments;
    const QStringList outputs = Outputs(*options);
    if (outputs.size() > 1)
        return QStringLiteral("%1 and %2 cannot be combined").arg(outputs[0], outputs[1]);
    return arguments.isEmpty() ? QStringLiteral("no graph given") : QString();
}

} // namespace

tools::CommandLine<Options> ReadCommandLine(const QStringList& arguments)
{
    return tools::ReadCommandLine<Options>({Help(), Rows(), Complete}, arguments);
}

} // namespace info
