// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/options.h"

#include "meta/pass.h"
#include "meta/plfarea.h"
#include "tools/common/filename.h"
#include "tools/convert/namepattern.h"
#include "tools/convert/picturesize.h"
#include "tools/convert/values.h"

#include <QThread>

#include <algorithm>

namespace convert {

namespace {

using tools::OptionValues;

QString Text(const char* text)
{
    return QString::fromUtf8(text);
}

tools::ToolHelp Help()
{
    return {QStringLiteral("Converts PLF graphs into pictures: %1. Needs no display.\n\n")
                    .arg(FormatNames()) +
                Text("  plfconvert [options] GRAPH PICTURE\n"
                     "  plfconvert [options] --output-dir DIRECTORY GRAPH...\n\n") +
                tools::ExitCodeHelp("every graph was converted or skipped", "some failed",
                                    "could not start"),
            {{"GRAPH", "PLF file; - is the standard input."},
             {"PICTURE", "File to write; - is the standard output."}}};
}

QString WholeArea()
{
    return QStringLiteral("0,0,%1,%2").arg(kPlfWidth).arg(kPlfHeight);
}

// The limits of a picture's size, for messages.
QString SizeLimits()
{
    return QStringLiteral("at most %1 pixels in width and height and %2 in total")
        .arg(kMaxSide)
        .arg(kMaxPixels);
}

QString ReadSize(const OptionValues& values, Options* options)
{
    return values.Parsed(ParseSize,
                         QStringLiteral("WIDTHxHEIGHT in pixels, 1 to %1 each").arg(kMaxLength),
                         &options->picture.size);
}

QString ReadWidth(const OptionValues& values, Options* options)
{
    return values.Parsed(
        ParseLength,
        QStringLiteral("1 to %1 pixels, or a length in mm, cm, in or pt").arg(kMaxLength),
        &options->picture.width);
}

QString ReadPage(const OptionValues& values, Options* options)
{
    return values.Parsed(ParsePage, Text("a3, a4, a5, letter, legal, or a size such as 210mmx99mm"),
                         &options->picture.page);
}

QString ReadMargin(const OptionValues& values, Options* options)
{
    return values.Parsed(ParseMargin, Text("a length in mm, cm, in or pt"),
                         &options->picture.margin);
}

QString ReadArea(const OptionValues& values, Options* options)
{
    return values.Parsed(
        ParseArea,
        QStringLiteral("LEFT,TOP,RIGHT,BOTTOM within %1, with LEFT < RIGHT and TOP < BOTTOM")
            .arg(WholeArea()),
        &options->picture.area);
}

QString ReadLineScale(const OptionValues& values, Options* options)
{
    return values.Parsed(ParseLineScale,
                         QStringLiteral("a number above 0 and up to %1").arg(kMaxLineScale),
                         &options->picture.lineScale);
}

QString NonEmpty(const OptionValues& values, const char* expected, QString* target)
{
    return values.Last().isEmpty() ? values.Wrong(Text(expected)) : values.Text(target);
}

QString ReadOutputFolder(const OptionValues& values, Options* options)
{
    return NonEmpty(values, "a directory", &options->outputFolder);
}

QString ReadReport(const OptionValues& values, Options* options)
{
    return values.Last() == u"json" ? values.Flag(&options->report) : values.Wrong(Text("json"));
}

QString ReadPattern(const OptionValues& values, Options* options)
{
    const QString problem = PatternProblem(values.Last());
    return problem.isEmpty() ? values.Text(&options->pattern)
                             : QStringLiteral("--pattern '%1': %2").arg(values.Last(), problem);
}

// The options, in the order of the help. Each is known from here alone.
std::vector<tools::OptionRow<Options>> Rows()
{
    return {
        {"f format", "FORMAT", FormatNames() + Text(" (default: from the output's extension)."),
         [](const OptionValues& values, Options* options) {
             return values.Parsed(ParseFormat, FormatNames(), &options->namedFormat);
         }},
        {"d output-dir", "DIRECTORY", Text("Output directory, created if missing."),
         ReadOutputFolder},
        {"pattern", "PATTERN",
         QStringLiteral(
             "File name pattern, of {name}, {dir}, {sub}, {ext} and {number}; default %1.")
             .arg(Text(kDefaultPattern)),
         ReadPattern},
        {"merge", "FILE", Text("Make one PDF of all graphs, with a page for each."),
         [](const OptionValues& values, Options* options) {
             options->merge = true;
             return NonEmpty(values, "a file", &options->output);
         }},
        {"contact-sheet", "COLUMNSxROWS",
         Text("Make sheets of small pictures with names, PNG or JPEG; PICTURE names them."),
         [](const OptionValues& values, Options* options) {
             return values.Parsed(ParseGrid,
                                  QStringLiteral("COLUMNSxROWS, at most %1 of each").arg(kMaxGrid),
                                  &options->grid);
         }},
        {"r recursive", nullptr, Text("Search folders for graphs with all their subfolders."),
         tools::ReadFlag<&Options::recursive>},
        {"files-from", "FILE",
         Text("Read names of graphs from FILE, one a line; - is the standard input."),
         [](const OptionValues& values, Options* options) {
             return NonEmpty(values, "a file", &options->listFile);
         }},
        {"0 null", nullptr, Text("Names of --files-from end with a zero byte."),
         tools::ReadFlag<&Options::nullSeparated>},
        {"size", "WIDTHxHEIGHT", Text("Size in pixels; the graph is stretched to it."), ReadSize},
        {"width", "LENGTH",
         QStringLiteral(
             "Width in pixels, or with mm, cm, in or pt, as in 160mm; the height follows "
             "from the graph's shape (default %1).")
             .arg(kDefaultWidth),
         ReadWidth},
        {"page", "PAGE",
         Text("Fit the graph on a page: a3, a4, a5, letter, legal, or WIDTHxHEIGHT with units."),
         ReadPage},
        {"margin", "LENGTH", Text("Margin of the page (default 0mm)."), ReadMargin},
        {"dpi", "NUMBER",
         QStringLiteral("Pixels per inch, for the size on paper (default %1).").arg(kScreenDpi),
         [](const OptionValues& values, Options* options) {
             return values.Integer(1, kMaxDpi, &options->picture.dpi);
         }},
        {"area", "L,T,R,B",
         QStringLiteral("Part of the graph, in drawing units (default %1).").arg(WholeArea()),
         ReadArea},
        {"background", "KIND", Text("white (default), file (the graph's own) or transparent."),
         [](const OptionValues& values, Options* options) {
             return values.Parsed(ParseBackground, BackgroundNames(), &options->picture.background);
         }},
        {"line-scale", "FACTOR",
         Text("Factor on line widths (default: that of a window as wide, zoomed to the area)."),
         ReadLineScale},
        {"min-line-width", "WIDTH",
         QStringLiteral("Minimum line width (default %1 for EPS, else 0).")
             .arg(EpsOptions().minLineWidth),
         [](const OptionValues& values, Options* options) {
             return values.Integer(0, kMaxLineWidth, &options->picture.minLineWidth);
         }},
        {"black", nullptr, Text("Draw all lines black."),
         [](const OptionValues& values, Options* options) {
             return values.Flag(&options->picture.black);
         }},
        {"dots", nullptr, Text("Draw vectors of no length in EPS, as in all other formats."),
         [](const OptionValues& values, Options* options) {
             return values.Flag(&options->picture.dots);
         }},
        {"quality", "NUMBER",
         QStringLiteral("Quality of a JPEG, 1 to %1 (default %2).")
             .arg(kMaxQuality)
             .arg(kUsualQuality),
         [](const OptionValues& values, Options* options) {
             return values.Integer(1, kMaxQuality, &options->picture.quality);
         }},
        {"n no-clobber", nullptr, Text("Skip graphs whose output exists."),
         tools::ReadFlag<&Options::keepExisting>},
        {"u update", nullptr, Text("Skip graphs whose output is newer."),
         tools::ReadFlag<&Options::onlyNewer>},
        {"strict", nullptr, Text("Damaged graphs fail, instead of a warning."),
         tools::ReadFlag<&Options::strict>},
        {"j jobs", "NUMBER",
         QStringLiteral("Worker processes, 1 to %1 (default: one per processor).").arg(kMaxJobs),
         [](const OptionValues& values, Options* options) {
             return values.Integer(1, kMaxJobs, &options->workers);
         }},
        {"timeout", "SECONDS", Text("Give up a graph that takes longer."),
         [](const OptionValues& values, Options* options) {
             return values.Integer(1, kMaxTimeout, &options->timeout);
         }},
        {"memory", "MEGABYTES", Text("Memory limit of each worker process."),
         [](const OptionValues& values, Options* options) {
             return values.Integer(kMinMemory, kMaxMemory, &options->memory);
         }},
        {"report", "FORMAT", Text("Print a report with a line for each graph; FORMAT is json."),
         ReadReport},
        {"report-file", "FILE", Text("Write the report to FILE."),
         [](const OptionValues& values, Options* options) {
             options->report = true;
             return NonEmpty(values, "a file", &options->reportFile);
         }},
        {"q quiet", nullptr, Text("Print errors only."), tools::ReadFlag<&Options::quiet>},
    };
}

// The sheet is named last, as a picture is.
QString TakeBoundNames(Options* options)
{
    if (options->merge && options->grid)
        return Text("--merge and --contact-sheet cannot be combined");
    if (!options->outputFolder.isEmpty() || options->pattern)
        return Text("one output for all graphs needs neither --output-dir nor --pattern");
    if (options->keepExisting || options->onlyNewer)
        return Text(
            "one output for all graphs is always made; leave out --no-clobber and --update");
    if (options->grid && !options->inputs.isEmpty())
        options->output = options->inputs.takeLast();
    const bool hasGraphs = !options->inputs.isEmpty() || !options->listFile.isEmpty();
    if (options->output.isEmpty() || !hasGraphs)
        return options->grid ? Text("expected graphs and, as the last name, a picture")
                             : Text("no graph given");
    if (options->grid && !options->picture.width && !options->picture.size &&
        !options->picture.page)
        options->picture.width = Length{kSheetPictureWidth, true};
    return {};
}

QString TakeNames(const QStringList& arguments, Options* options)
{
    options->inputs = arguments;
    if (arguments.contains(QString()))
        return Text("empty file name");
    const bool hasList = !options->listFile.isEmpty();
    if (options->nullSeparated && !hasList)
        return Text("--null needs --files-from");
    if (options->IsBound())
        return TakeBoundNames(options);
    if (!options->outputFolder.isEmpty() || options->pattern)
        return arguments.isEmpty() && !hasList ? Text("no graph given") : QString();
    if (hasList || options->recursive)
        return Text("many graphs need --output-dir or --pattern");
    if (arguments.size() != 2)
        return Text("expected a graph and a picture, or --output-dir and any number of graphs");
    options->output = options->inputs.takeLast();
    return {};
}

QString FindFormat(Options* options)
{
    if (options->merge && !options->namedFormat)
        options->namedFormat = FormatOfName(options->output).value_or(Format::kPdf);
    const QString name =
        options->output.isEmpty() ? ExpandPattern(options->Pattern(), {}) : options->output;
    const auto format = options->namedFormat ? options->namedFormat : FormatOfName(name);
    if (!format)
        return QStringLiteral("'%1': unknown extension; use %2, or --format")
            .arg(name, FormatNames());
    options->format = *format;
    return {};
}

QString CheckFormat(const Options& options)
{
    const PictureSettings& picture = options.picture;
    if (options.merge && options.format != Format::kPdf)
        return Text("--merge makes PDF files only");
    if (options.grid && options.format != Format::kPng && options.format != Format::kJpeg)
        return Text("--contact-sheet makes PNG and JPEG files only");
    if (options.grid && options.WritesToOutput())
        return Text("--contact-sheet needs the name of a file");
    if (options.format == Format::kJpeg && picture.background == Background::kTransparent)
        return Text("a JPEG cannot be transparent");
    if (options.format != Format::kJpeg && picture.quality)
        return Text("--quality applies to JPEG only");
    if (options.format != Format::kEps && picture.dots)
        return Text("--dots applies to EPS only; other formats always have dots");
    if (options.format == Format::kEps && picture.size)
        return Text("EPS keeps the graph's shape; use --width instead of --size");
    return {};
}

QString CheckSize(const Options& options)
{
    if (options.picture.size && options.picture.width)
        return Text("--size and --width cannot be combined");
    if (options.picture.page && (options.picture.size || options.picture.width))
        return Text("--page cannot be combined with --size or --width");
    if (options.picture.margin && !options.picture.page)
        return Text("--margin applies to --page only");
    if (options.picture.page && !HasSpace(options.picture))
        return Text("the margin leaves no space on the page");
    if (HasPixels(options.format) && !IsPossible(PictureSize(options.picture)))
        return Text("picture too large: ") + SizeLimits();
    return {};
}

bool WritesReportOverPicture(const Options& options)
{
    return options.report && options.ReportsToOutput() && options.WritesToOutput();
}

QString Complete(const QStringList& arguments, Options* options)
{
    if (options->workers == 0)
        options->workers = std::clamp(QThread::idealThreadCount(), 1, kMaxJobs);
    QString problem = TakeNames(arguments, options);
    if (problem.isEmpty())
        problem = FindFormat(options);
    if (problem.isEmpty() && WritesReportOverPicture(*options))
        problem = Text("the picture goes to the standard output; use --report-file");
    if (problem.isEmpty())
        problem = CheckFormat(*options);
    return problem.isEmpty() ? CheckSize(*options) : problem;
}

} // namespace

QString Options::Pattern() const
{
    return pattern.value_or(Text(kDefaultPattern));
}

bool Options::WritesToOutput() const
{
    return output == QLatin1StringView(tools::kStandardStream);
}

bool Options::ReportsToOutput() const
{
    return reportFile.isEmpty() || reportFile == QLatin1StringView(tools::kStandardStream);
}

CommandLine ReadCommandLine(const QStringList& arguments)
{
    return tools::ReadCommandLine<Options>({Help(), Rows(), Complete}, arguments);
}

} // namespace convert
