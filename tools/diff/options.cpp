// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/diff/options.h"

#include "meta/plfarea.h"
#include "tools/common/filename.h"
#include "tools/diff/format.h"
#include "tools/diff/place.h"
#include "tools/diff/values.h"

#include <limits>

namespace diff {

namespace {

using tools::OptionValues;

QString Text(const char* text)
{
    return QString::fromUtf8(text);
}

tools::ToolHelp Help()
{
    return {Text("Compares what PLF graphs draw, vector by vector. Needs no display.\n\n"
                 "  plfdiff [options] GRAPH GRAPH\n"
                 "  plfdiff [options] DIRECTORY DIRECTORY\n\n"
                 "Exit codes: 0 equal, 1 different, 2 trouble."),
            {{"FIRST", "PLF file, or a directory of them; - is the standard input."},
             {"SECOND", "What to compare with it."}}};
}

QString ReadIgnored(const OptionValues& values, Options* options)
{
    for (const QString& value : values.All()) {
        if (!ParseIgnored(value, &options->rules))
            return QStringLiteral("--ignore '%1': expected a list of %2")
                .arg(value, IgnoredNames());
    }
    return {};
}

QString ReadAreas(const OptionValues& values, Options* options)
{
    for (const QString& value : values.All()) {
        const auto area = ParseArea(value);
        if (!area) {
            return QStringLiteral(
                       "--ignore-area '%1': expected LEFT,TOP,RIGHT,BOTTOM within 0,0,%2,%3")
                .arg(value, QString::number(kPlfWidth), QString::number(kPlfHeight));
        }
        options->rules.ignoredAreas.push_back(*area);
    }
    return {};
}

QString ReadPageWidth(const OptionValues& values, Options* options)
{
    return values.Parsed(ParsePageWidth,
                         QStringLiteral("a width from 1 to %1 mm").arg(kMostPageWidth, 0, 'f', 0),
                         &options->pageWidth);
}

QString ReadOutput(const OptionValues& values, Options* options)
{
    if (FormatOfName(values.Last()))
        return values.Text(&options->output);
    return QStringLiteral("--output '%1': unknown extension; use %2")
        .arg(values.Last(), FormatNames());
}

// The options, in the order of the help. Each is known from here alone.
std::vector<tools::OptionRow<Options>> Rows()
{
    return {
        {"t tolerance", "DISTANCE",
         Text("Vectors as near as that are equal: drawing units, 1% of the width, or 0.5mm on "
              "paper (default 0)."),
         tools::ReadText<&Options::tolerance>},
        {"page", "MM",
         QStringLiteral("Width of a graph on paper, for a tolerance in mm (default %1).")
             .arg(kPrintedWidth),
         ReadPageWidth},
        {"i ignore", "LIST", QStringLiteral("What does not count: %1.").arg(IgnoredNames()),
         ReadIgnored},
        {"ignore-area", "L,T,R,B", Text("Part of the graph that does not count, in drawing units."),
         ReadAreas},
        {"max-changes", "NUMBER",
         Text("Graphs with at most so many changes are equal (default 0)."),
         [](const OptionValues& values, Options* options) {
             return values.Integer(0, std::numeric_limits<int>::max(), &options->maxChanges);
         }},
        {"o output", "FILE",
         QStringLiteral("Draw the differences: %1; of directories a PDF with a page for each pair.")
             .arg(FormatNames()),
         ReadOutput},
        {"side-by-side", nullptr, Text("Draw both graphs beside each other."),
         tools::ReadFlag<&Options::sideBySide>},
        {"strict", nullptr, Text("Do not compare damaged graphs."),
         tools::ReadFlag<&Options::strict>},
        {"r recursive", nullptr, Text("Compare the directories in directories too."),
         tools::ReadFlag<&Options::isRecursive>},
        {"j json", nullptr, Text("Print JSON."), tools::ReadFlag<&Options::asJson>},
        {"q quiet", nullptr, Text("Print only which graphs differ."),
         tools::ReadFlag<&Options::quiet>},
    };
}

QString FindTolerance(Options* options)
{
    if (options->tolerance.isEmpty())
        return {};
    const auto tolerance =
        ParseTolerance(options->tolerance, options->pageWidth.value_or(kPrintedWidth));
    if (!tolerance) {
        return QStringLiteral("--tolerance '%1': expected a distance of at most %2 units, such as "
                              "2, 1% or 0.5mm")
            .arg(options->tolerance, QString::number(kUnits));
    }
    options->rules.tolerance = *tolerance;
    return {};
}

QString Complete(const QStringList& arguments, Options* options)
{
    if (arguments.size() != 2)
        return Text("expected two graphs or two directories");
    if (arguments.contains(QString()))
        return Text("empty file name");
    options->first = arguments[0];
    options->second = arguments[1];
    const QLatin1StringView input(tools::kStandardStream);
    if (options->first == input && options->second == input)
        return Text("only one graph can be the standard input");
    if (options->asJson && options->quiet)
        return Text("--json and --quiet cannot be combined");
    if (options->sideBySide && options->output.isEmpty())
        return Text("--side-by-side needs --output");
    return FindTolerance(options);
}

} // namespace

tools::CommandLine<Options> ReadCommandLine(const QStringList& arguments)
{
    return tools::ReadCommandLine<Options>({Help(), Rows(), Complete}, arguments);
}

} // namespace diff
