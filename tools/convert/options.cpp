// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/options.h"

#include "tools/convert/arguments.h"
#include "tools/convert/naming.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QThread>

#include <algorithm>

namespace {

constexpr int kMaxQuality = 100;

constexpr char kDescription[] =
    "Converts PLF graphs into pictures: PNG, JPEG, SVG, PDF or EPS. Needs no display.\n\n"
    "  plfconvert [options] GRAPH PICTURE\n"
    "  plfconvert [options] --output-dir FOLDER GRAPH...\n\n"
    "Exit codes: 0 all converted, 1 some were not, 2 wrong usage, 3 the work could not be started.";

struct OptionRow {
    const char* names; // separated by blanks, the long one last
    const char* value; // what stands for the value; null = it has none
    const char* text;
};

constexpr OptionRow kOptions[] = {
    {"f format", "FORMAT", "png, jpeg, svg, pdf or eps; otherwise the extension says it."},
    {"d output-dir", "FOLDER", "Write pictures of any number of graphs there; it is made."},
    {"pattern", "PATTERN", "Their names, of {name}, {dir}, {ext} and {number}; {name}.{ext}."},
    {"size", "WIDTHxHEIGHT", "Size in pixels; the graph is stretched to it."},
    {"width", "PIXELS", "Width; the height follows from the graph's shape. 640."},
    {"dpi", "NUMBER", "Pixels per inch, for the size on paper. 96."},
    {"area", "L,T,R,B", "Part of the graph, in drawing units: 0,0,4096,3120 is all of it."},
    {"background", "KIND", "white, file (the graph's own) or transparent. white."},
    {"line-scale", "FACTOR", "Factor on line widths. 1."},
    {"min-line-width", "WIDTH", "Draw thinner lines as wide as that; EPS: 5, others: 0."},
    {"black", nullptr, "Draw all lines black."},
    {"quality", "NUMBER", "Quality of a JPEG, 1 to 100. 100."},
    {"n no-clobber", nullptr, "Leave pictures alone that are there already."},
    {"j jobs", "NUMBER", "Worker processes. As many as there are processors."},
    {"q quiet", nullptr, "Print errors only."},
    {"h help", nullptr, "Print this help."},
};

QString Text(const char* text)
{
    return QString::fromUtf8(text);
}

void AddOptions(QCommandLineParser* parser)
{
    parser->setApplicationDescription(Text(kDescription));
    for (const OptionRow& row : kOptions) {
        QCommandLineOption option(Text(row.names).split(u' '), Text(row.text));
        if (row.value != nullptr)
            option.setValueName(Text(row.value));
        parser->addOption(option);
    }
    parser->addVersionOption();
    parser->addPositionalArgument(Text("GRAPH"), Text("PLF file; - is the standard input."));
    parser->addPositionalArgument(Text("PICTURE"),
                                  Text("File to write; - is the standard output."));
}

// Reads one command line. The first thing that is wrong is kept.
class Reader
{
public:
    explicit Reader(const QCommandLineParser& parsed) : parser(parsed) {}

    Options Read();
    [[nodiscard]] const QString& Problem() const { return problem; }

private:
    void Complain(const QString& text);
    [[nodiscard]] bool Has(const char* name) const { return parser.isSet(Text(name)); }
    [[nodiscard]] QString Value(const char* name) const { return parser.value(Text(name)); }
    template <typename Parse> auto Get(const char* name, Parse parse, const char* expected);
    std::optional<int> GetInteger(const char* name, int least, int most);
    void ReadPicture(PictureSettings* picture);
    void ReadNames(Options* options);
    void ReadFormat(Options* options);
    void CheckFormat(const Options& options);
    void CheckSize(const Options& options);

    const QCommandLineParser& parser;
    QString problem;
};

void Reader::Complain(const QString& text)
{
    if (problem.isEmpty())
        problem = text;
}

// Nothing when the option is not given.
template <typename Parse> auto Reader::Get(const char* name, Parse parse, const char* expected)
{
    if (!Has(name))
        return decltype(parse(QString())){};
    const auto value = parse(Value(name));
    if (!value)
        Complain(QStringLiteral("--%1 '%2': it must be %3")
                     .arg(Text(name), Value(name), Text(expected)));
    return value;
}

std::optional<int> Reader::GetInteger(const char* name, int least, int most)
{
    const auto parse = [=](const QString& text) { return ParseInteger(text, least, most); };
    const QString expected = QStringLiteral("a whole number from %1 to %2").arg(least).arg(most);
    return Get(name, parse, expected.toLatin1().constData());
}

Options Reader::Read()
{
    Options options;
    ReadPicture(&options.picture);
    ReadNames(&options);
    ReadFormat(&options);
    CheckFormat(options);
    CheckSize(options);
    options.keepExisting = Has("no-clobber");
    options.quiet = Has("quiet");
    const int processors = std::clamp(QThread::idealThreadCount(), 1, kMaxJobs);
    options.workers = GetInteger("jobs", 1, kMaxJobs).value_or(processors);
    return options;
}

void Reader::ReadPicture(PictureSettings* picture)
{
    picture->size = Get("size", ParseSize,
                        "WIDTHxHEIGHT in pixels, each from 1 to 32767 and not "
                        "more than 268435456 together");
    picture->width = GetInteger("width", 1, kMaxSide);
    picture->dpi = GetInteger("dpi", 1, kMaxDpi);
    picture->area = Get("area", ParseArea,
                        "LEFT,TOP,RIGHT,BOTTOM within 0,0,4096,3120, with the "
                        "left edge left of the right one and the top above "
                        "the bottom");
    picture->background = Get("background", ParseBackground, "white, file or transparent")
                              .value_or(Background::kAllWhite);
    picture->lineScale =
        Get("line-scale", ParseLineScale, "a number above 0, not above 1000").value_or(1.0);
    picture->minLineWidth = GetInteger("min-line-width", 0, kMaxLineWidth);
    picture->quality = GetInteger("quality", 1, kMaxQuality).value_or(kMaxQuality);
    picture->black = Has("black");
}

void Reader::ReadNames(Options* options)
{
    options->inputs = parser.positionalArguments();
    options->outputFolder = Value("output-dir");
    options->pattern = Has("pattern") ? Value("pattern") : Text(kDefaultPattern);
    if (options->inputs.contains(QString()))
        Complain(Text("a file name is empty"));
    if (Has("output-dir") && options->outputFolder.isEmpty())
        Complain(Text("--output-dir names no folder"));
    const QString wrong = PatternProblem(options->pattern);
    if (!wrong.isEmpty())
        Complain(QStringLiteral("--pattern '%1': %2").arg(options->pattern, wrong));
    if (Has("output-dir") || Has("pattern")) {
        if (options->inputs.isEmpty())
            Complain(Text("no graph is given"));
    } else if (options->inputs.size() != 2) {
        Complain(Text("a graph and a picture are expected, or --output-dir for any number of "
                      "graphs"));
    } else {
        options->output = options->inputs.takeLast();
    }
}

void Reader::ReadFormat(Options* options)
{
    if (!problem.isEmpty())
        return;
    const QString name =
        options->output.isEmpty() ? ExpandPattern(options->pattern, {}) : options->output;
    const auto format = Has("format") ? Get("format", ParseFormat, "png, jpeg, svg, pdf or eps")
                                      : FormatOfName(name);
    if (!format) {
        Complain(QStringLiteral("'%1': its extension is no known format; there are png, jpg, svg, "
                                "pdf and eps, or give --format")
                     .arg(name));
    }
    options->format = format.value_or(Format::kPng);
}

void Reader::CheckFormat(const Options& options)
{
    if (options.format == Format::kJpeg && options.picture.background == Background::kTransparent)
        Complain(Text("a JPEG cannot be transparent"));
    if (options.format != Format::kJpeg && Has("quality"))
        Complain(Text("--quality is for JPEG alone"));
    if (options.format == Format::kEps && Has("size"))
        Complain(Text("EPS keeps the graph's shape: give --width instead of --size"));
}

void Reader::CheckSize(const Options& options)
{
    if (Has("size") && Has("width"))
        Complain(Text("--size and --width exclude each other"));
    if (!IsPossible(PictureSize(options.picture)))
        Complain(Text("the picture would be too large: it may have 32767 pixels in width and "
                      "height, and 268435456 together"));
}

QString VersionText()
{
    return QCoreApplication::applicationName() + u' ' + QCoreApplication::applicationVersion() +
           u'\n';
}

} // namespace

CommandLine ReadCommandLine(const QStringList& arguments)
{
    QCommandLineParser parser;
    AddOptions(&parser);
    if (!parser.parse(arguments))
        return {{}, parser.errorText(), true};
    if (parser.isSet(Text("help")))
        return {{}, parser.helpText(), false};
    if (parser.isSet(Text("version")))
        return {{}, VersionText(), false};
    Reader reader(parser);
    Options options = reader.Read();
    if (!reader.Problem().isEmpty())
        return {{}, reader.Problem(), true};
    return {std::move(options), {}, false};
}
