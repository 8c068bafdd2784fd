// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Says what graphs hold, without a display.
#include "tools/convert/names.h"
#include "tools/convert/source.h"
#include "tools/info/dump.h"
#include "tools/info/inspector.h"
#include "tools/info/report.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {

enum ExitCode { kAllRead = 0, kSomeFailed = 1, kWrongUsage = 2 };

constexpr char kDescription[] =
    "Says what PLF graphs hold. Needs no display.\n\n"
    "Exit codes: 0 all were read, 1 some were not or the output failed, 2 wrong usage.";

struct Options {
    bool asJson = false;
    bool asDump = false;
    QStringList graphs;
};

void Write(const QByteArray& text)
{
    fwrite(text.constData(), 1, static_cast<size_t>(text.size()), stdout);
}

void Complain(const QByteArray& text)
{
    fprintf(stderr, "plfinfo: %s\n", text.constData());
}

[[noreturn]] void Refuse(const QString& reason)
{
    Complain(VisibleName(EncodeName(reason)) + "\nTry 'plfinfo --help'.");
    exit(kWrongUsage);
}

// The toolkit may have no locale for the bytes of an argument, so they are decoded here.
QStringList Arguments(int argc, char** argv)
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments += DecodeName(argv[i]);
    return arguments;
}

Options ReadOptions(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QLatin1StringView(kDescription));
    const QCommandLineOption json({QStringLiteral("j"), QStringLiteral("json")},
                                  QStringLiteral("Say it for programs."));
    const QCommandLineOption dump({QStringLiteral("d"), QStringLiteral("dump")},
                                  QStringLiteral("List every command and vector, with the offsets "
                                                 "of its first byte and behind its last."));
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Print this help."));
    parser.addOptions({json, dump, help});
    const QCommandLineOption version = parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("GRAPH..."),
                                 QStringLiteral("PLF files; - is the standard input."));
    if (!parser.parse(arguments))
        Refuse(parser.errorText());
    if (parser.isSet(help)) {
        Write(parser.helpText().toUtf8());
        exit(kAllRead);
    }
    if (parser.isSet(version))
        parser.showVersion();
    Options options = {parser.isSet(json), parser.isSet(dump), parser.positionalArguments()};
    if (options.asJson && options.asDump)
        Refuse(QStringLiteral("--json and --dump exclude each other"));
    if (options.graphs.isEmpty())
        Refuse(QStringLiteral("no graph is given"));
    return options;
}

// Goes through the graphs of one call.
class Call
{
public:
    explicit Call(const Options& callOptions) : options(callOptions) {}

    /// Returns the exit code.
    int Run();

private:
    void Tell(const QString& graph);
    void TellFailure(const QString& graph, const QString& problem);
    void Dump(const QByteArray& name, const PlfBytes& graph) const;

    const Options& options;
    QJsonArray objects;
    bool hasFailed = false;
};

int Call::Run()
{
    for (const QString& graph : options.graphs)
        Tell(graph);
    if (options.asJson)
        Write(QJsonDocument(objects).toJson());
    if (fflush(stdout) != 0 || ferror(stdout) != 0) {
        Complain(QByteArray("the output cannot be written: ") + strerror(errno));
        hasFailed = true;
    }
    return hasFailed ? kSomeFailed : kAllRead;
}

void Call::Tell(const QString& graph)
{
    PlfGraph loaded;
    const QString problem = LoadGraph(EncodeName(graph), &loaded);
    if (!problem.isEmpty()) {
        TellFailure(graph, problem);
        return;
    }
    const QByteArray name = VisibleName(EncodeName(graph));
    if (options.asDump) {
        Dump(name, loaded.Bytes());
        return;
    }
    const Summary summary = Inspector().Inspect(loaded.Bytes());
    if (!options.asJson) {
        Write(SummaryText(name, summary));
        return;
    }
    QJsonObject object = SummaryJson(summary);
    object[QStringLiteral("file")] = QString::fromUtf8(EncodeName(graph));
    objects += object;
}

void Call::TellFailure(const QString& graph, const QString& problem)
{
    hasFailed = true;
    Complain(VisibleName(EncodeName(graph)) + ": " + problem.toLocal8Bit());
    if (options.asJson)
        objects += QJsonObject{{QStringLiteral("file"), QString::fromUtf8(EncodeName(graph))},
                               {QStringLiteral("error"), problem}};
}

void Call::Dump(const QByteArray& name, const PlfBytes& graph) const
{
    if (options.graphs.size() > 1)
        Write("# " + name + '\n');
    Inspector([](const Item& item) { Write(DumpLine(item)); }).Inspect(graph);
}

// What Qt may say of a system without fonts is of no use here.
void SayNothing(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& /*text*/)
{
}

} // namespace

int main(int argc, char** argv)
{
    int count = 1; // the toolkit takes none of the arguments for itself
    QCoreApplication application(count, argv);
    QCoreApplication::setApplicationName(QStringLiteral("plfinfo"));
    QCoreApplication::setApplicationVersion(QStringLiteral(PLOTVW_VERSION));
    qInstallMessageHandler(SayNothing);
    const Options options = ReadOptions(Arguments(argc, argv));
    return Call(options).Run();
}
