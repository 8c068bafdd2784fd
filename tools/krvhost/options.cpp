// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/krvhost/options.h"

namespace krvhost {

namespace {

using tools::OptionValues;

constexpr int kMillisecondsPerSecond = 1000;

QString Text(const char* text)
{
    return QString::fromUtf8(text);
}

tools::ToolHelp Help()
{
    return {Text("Plays the KORVEL process for the viewer.\n\n") +
                tools::ExitCodeHelp("every command was acknowledged",
                                    "the viewer did not greet, answer or quit as it should, or a "
                                    "file could not be copied",
                                    "no server, viewer or script"),
            {{"[COMMAND...]",
              "Command lines for the viewer, one an argument; '!' before one that the viewer does "
              "not acknowledge. Put -- before commands that start with '-'."}},
            "; put -- before commands that start with '-'"};
}

// The options, in the order of the help. Each is known from here alone.
std::vector<tools::OptionRow<Options>> Rows()
{
    return {
        {"viewer", "PROGRAM", Text("Viewer to start (default: the one installed with krvhost)."),
         tools::ReadText<&Options::viewer>},
        {"arg", "ARGUMENT", Text("Argument for the viewer; may be repeated."),
         tools::ReadTexts<&Options::viewerArguments>},
        {"name", "NAME", Text("Name of the local server (default: a new one)."),
         tools::ReadText<&Options::serverName>},
        {"script", "FILE", Text("Command lines from a file, - for standard input."),
         tools::ReadText<&Options::script>},
        {"timeout", "SECONDS",
         QStringLiteral("Longest wait for the viewer, 1 to %1 (default %2).")
             .arg(kLongestTimeout)
             .arg(kDefaultTimeout),
         [](const OptionValues& values, Options* options) {
             return values.Integer(1, kLongestTimeout, &options->timeout);
         }},
        {"no-start", nullptr, Text("Wait for a viewer that is started by hand."),
         tools::ReadFlag<&Options::noStart>},
        {"tmp", nullptr, Text("Hand over temporary copies of the files, with -tmp."),
         tools::ReadFlag<&Options::temporary>},
        {"stay", nullptr, Text("When done, wait until the viewer is closed."),
         tools::ReadFlag<&Options::stay>},
        {"leave", nullptr, Text("When done, leave the viewer running."),
         tools::ReadFlag<&Options::leave>},
    };
}

QString Complete(const QStringList& arguments, Options* options)
{
    options->commands = arguments;
    if (options->stay && options->leave)
        return Text("--stay and --leave cannot be combined");
    return {};
}

} // namespace

int Options::Milliseconds() const
{
    return timeout * kMillisecondsPerSecond;
}

tools::CommandLine<Options> ReadCommandLine(const QStringList& arguments)
{
    return tools::ReadCommandLine<Options>({Help(), Rows(), Complete}, arguments);
}

} // namespace krvhost
