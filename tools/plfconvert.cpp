// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Converts graphs into pictures, without a display.
#include "tools/convert/arguments.h"
#include "tools/convert/convert.h"
#include "tools/convert/names.h"
#include "tools/convert/options.h"
#include "tools/convert/plan.h"
#include "tools/convert/report.h"
#include "tools/convert/workers.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QRandomGenerator>

#include <fcntl.h>
#include <langinfo.h>
#include <unistd.h>

#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

namespace {

enum ExitCode { kAllDone = 0, kSomeFailed = 1, kWrongUsage = 2, kNotStarted = 3 };

// What the toolkit and the interpreter say during a conversion becomes a part of its outcome.
QString* messages = nullptr;

void KeepMessage(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& text)
{
    // A conversion has no use for the user's runtime directory.
    if (text.startsWith(QLatin1StringView("QStandardPaths: ")))
        return;
    if (messages == nullptr)
        fprintf(stderr, "plfconvert: %s\n", qPrintable(text));
    else
        *messages += (messages->isEmpty() ? QString() : QStringLiteral("\n")) + text;
}

// The toolkit warns of any other character set and uses this one.
void UseUtf8()
{
    std::setlocale(LC_CTYPE, "");
    if (strcmp(nl_langinfo(CODESET), "UTF-8") != 0)
        qputenv("LC_ALL", "C.UTF-8");
}

// A stream that the caller closed would give its number to one of the pipes between the processes,
// and pictures would be written into that. Here its number is taken, by what can only fail.
void TakeClosedStreams()
{
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        const int how = stream == STDIN_FILENO ? O_WRONLY : O_RDONLY;
        // The lowest free number is given first, and those before this one are taken.
        if (fcntl(stream, F_GETFD) == -1)
            open("/dev/null", how);
    }
}

void SetDefault(const char* variable, const char* value)
{
    if (qEnvironmentVariableIsEmpty(variable))
        qputenv(variable, value);
}

CommandLine ReadArguments(int argc, char** argv)
{
    int count = 1; // the toolkit takes none of the arguments for itself
    QCoreApplication application(count, argv);
    QCoreApplication::setApplicationName(QStringLiteral("plfconvert"));
    QCoreApplication::setApplicationVersion(QStringLiteral(PLOTVW_VERSION));
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments += DecodeName(argv[i]);
    CommandLine line = ReadCommandLine(arguments);
    const bool binary = line.options && line.options->format != Format::kSvg &&
                        line.options->format != Format::kEps;
    if (binary && line.options->output == QLatin1StringView(kStandardStream) &&
        isatty(STDOUT_FILENO) == 1)
        return {{}, QStringLiteral("the picture is not written to a terminal"), true};
    return line;
}

int PrintInstead(const CommandLine& line)
{
    if (!line.isWrong) {
        fputs(qPrintable(line.text), stdout);
        return kAllDone;
    }
    fprintf(stderr, "plfconvert: %s\nTry 'plfconvert --help'.\n",
            VisibleName(EncodeName(line.text)).constData());
    return kWrongUsage;
}

// Fonts need the application object, and it a platform, of which the offscreen one asks for no
// display.
std::shared_ptr<void> StartToolkit(char** argv)
{
    SetDefault("QT_QPA_PLATFORM", "offscreen");
    SetDefault("XDG_RUNTIME_DIR", "/dev/null"); // or the toolkit makes one in /tmp
    static int count = 1;
    auto application = std::make_shared<QGuiApplication>(count, argv);
    return application;
}

// The jobs of a plan that can be tried, and how each goes on.
class Call
{
public:
    Call(const Options& callOptions, char** argv)
        : options(callOptions), arguments(argv), plan(MakePlan(callOptions)),
          report(static_cast<int>(plan.size()), callOptions.quiet)
    {
        rules.keepExisting = options.keepExisting;
        rules.makeFolders = options.output.isEmpty();
        rules.token = QByteArray::number(QRandomGenerator::system()->generate64(), 36);
    }

    WorkResult Run();
    [[nodiscard]] bool HasFailures() const { return report.FailureCount() > 0; }

private:
    [[nodiscard]] const Job& JobAt(int index) const
    {
        return plan[todo[static_cast<size_t>(index)]].job;
    }
    [[nodiscard]] Outcome ConvertOne(int index) const;

    const Options& options;
    char** arguments;
    std::vector<PlannedJob> plan;
    std::vector<size_t> todo; // indices of the plan
    Report report;
    OutputRules rules;
};

Outcome Call::ConvertOne(int index) const
{
    QString said;
    messages = &said;
    Outcome outcome = Convert(JobAt(index), index, options.picture, rules);
    messages = nullptr;
    if (!said.isEmpty())
        outcome.text += (outcome.text.isEmpty() ? QString() : QStringLiteral("\n")) + said;
    return outcome;
}

WorkResult Call::Run()
{
    for (size_t i = 0; i < plan.size(); ++i) {
        if (plan[i].problem.isEmpty())
            todo.push_back(i);
        else
            report.Add(plan[i].job.input, {Outcome::kFailed, plan[i].problem});
    }
    const WorkResult result = RunWorkers(
        static_cast<int>(todo.size()), options.workers,
        {[this] { return StartToolkit(arguments); },
         [this](int index) { return ConvertOne(index); },
         [this](int index, const Outcome& outcome) { report.Add(JobAt(index).input, outcome); },
         [this](int index) { RemoveLeftovers(JobAt(index), index, rules); }});
    report.Finish();
    return result;
}

int ExitCodeOf(const WorkResult& result, bool hasFailures)
{
    if (result.signal != 0)
        raise(result.signal); // so that a script sees what ended it
    if (!result.started) {
        fputs("plfconvert: no worker process could be started\n", stderr);
        return kNotStarted;
    }
    return hasFailures ? kSomeFailed : kAllDone;
}

} // namespace

int main(int argc, char** argv)
{
    TakeClosedStreams();
    UseUtf8();
    qInstallMessageHandler(KeepMessage);
    const CommandLine line = ReadArguments(argc, argv);
    if (!line.options)
        return PrintInstead(line);
    Call call(*line.options, argv);
    const WorkResult result = call.Run();
    return ExitCodeOf(result, call.HasFailures());
}
