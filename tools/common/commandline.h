// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The command line of every tool: a table of options, --help and --version, and how wrong usage is
// refused.
#pragma once

#include "tools/common/exitcode.h"

#include <QCommandLineParser>
#include <QString>
#include <QStringList>

#include <optional>
#include <utility>
#include <vector>

namespace tools {

/// The values that a call gives to one option. The functions store what they mean and return what
/// is wrong, empty when nothing is. Where only one value can count, it is the last one.
class OptionValues
{
public:
    OptionValues(QString optionName, QStringList optionValues)
        : name(std::move(optionName)), values(std::move(optionValues))
    {
    }

    /// For an option that takes no value.
    QString Flag(bool* target) const;
    /// Any text.
    template <typename Target> QString Text(Target* target) const
    {
        *target = values.last();
        return {};
    }
    /// The texts of an option that may be repeated.
    QString Texts(QStringList* target) const;
    /// A whole number.
    /// @param unit  follows the range in the message, such as " seconds"
    template <typename Target>
    QString Integer(int least, int most, Target* target, const char* unit = "") const
    {
        const std::optional<int> value = IntegerIn(least, most);
        if (!value)
            return WrongInteger(least, most, unit);
        *target = *value;
        return {};
    }
    /// @param parse     makes an optional value of a text; nothing of one that is wrong
    /// @param expected  what it accepts, for the message
    template <typename Parse, typename Target>
    QString Parsed(Parse parse, const QString& expected, Target* target) const
    {
        const auto value = parse(values.last());
        if (!value)
            return Wrong(expected);
        *target = *value;
        return {};
    }
    [[nodiscard]] const QString& Last() const { return values.last(); }
    [[nodiscard]] const QStringList& All() const { return values; }
    /// The message about the last value.
    [[nodiscard]] QString Wrong(const QString& expected) const;

private:
    [[nodiscard]] std::optional<int> IntegerIn(int least, int most) const;
    [[nodiscard]] QString WrongInteger(int least, int most, const char* unit) const;

    QString name;
    QStringList values;
};

/// One option of a tool.
template <typename Options> struct OptionRow {
    const char* names; // separated by blanks, the long one last
    const char* value; // what stands for its value in the help; null = it takes none
    QString text;      // of the help
    /// Stores the values in the options; returns what is wrong with them, see OptionValues.
    QString (*read)(const OptionValues& values, Options* options);
};

/// Not defined: the class of a member, for what follows.
template <typename Class, typename Member> Class OwnerOf(Member Class::*member);

/// For rows whose option is one member.
template <auto kMember>
QString ReadFlag(const OptionValues& values, decltype(OwnerOf(kMember))* options)
{
    return values.Flag(&(options->*kMember));
}
template <auto kMember>
QString ReadText(const OptionValues& values, decltype(OwnerOf(kMember))* options)
{
    return values.Text(&(options->*kMember));
}
template <auto kMember>
QString ReadTexts(const OptionValues& values, decltype(OwnerOf(kMember))* options)
{
    return values.Texts(&(options->*kMember));
}

/// An argument that is no option, for the help.
struct ArgumentHelp {
    const char* name;
    const char* text;
};

/// What a tool's help says besides the options.
struct ToolHelp {
    QString description;
    std::vector<ArgumentHelp> arguments;
    const char* optionHint = ""; // after the message about an unknown option
};

/// The command line of a tool.
template <typename Options> struct Syntax {
    ToolHelp help;
    std::vector<OptionRow<Options>> rows; // without --help and --version, which every tool has
    /// Stores the arguments that are no options and checks the whole; returns what is wrong. Called
    /// when each option is right by itself.
    QString (*complete)(const QStringList& arguments, Options* options);
};

/// What to print instead of doing the work.
struct Reply {
    QString text; // the help or the version; or what is wrong
    bool isWrong = false;
};

/// The result of reading a command line: options, or a reply when there are none.
template <typename Options> struct CommandLine {
    std::optional<Options> options;
    Reply reply;
};

/// The part of the reading that is the same for every table.
class OptionParser
{
public:
    explicit OptionParser(const ToolHelp& help);

    void Add(const char* names, const char* value, const QString& text);
    /// To be called when every option is added.
    /// @param arguments  the first is the program's name
    /// @return what to print instead, if there is anything
    std::optional<Reply> Parse(const QStringList& arguments);
    /// @param names  those of the row
    [[nodiscard]] bool IsSet(const char* names) const;
    [[nodiscard]] OptionValues ValuesOf(const char* names) const;
    [[nodiscard]] QStringList Arguments() const { return parser.positionalArguments(); }

private:
    QCommandLineParser parser;
    const char* optionHint;
};

/// Reads a command line; the first thing that is wrong is the reply. The application object exists.
/// @param arguments  the first is the program's name
template <typename Options>
CommandLine<Options> ReadCommandLine(const Syntax<Options>& syntax, const QStringList& arguments)
{
    OptionParser parser(syntax.help);
    for (const auto& row : syntax.rows)
        parser.Add(row.names, row.value, row.text);
    if (const auto reply = parser.Parse(arguments))
        return {{}, *reply};
    Options options;
    QString problem;
    for (const auto& row : syntax.rows) {
        if (problem.isEmpty() && parser.IsSet(row.names))
            problem = row.read(parser.ValuesOf(row.names), &options);
    }
    if (problem.isEmpty())
        problem = syntax.complete(parser.Arguments(), &options);
    if (!problem.isEmpty())
        return {{}, {problem, true}};
    return {std::move(options), {}};
}

/// Names the program in its messages, its help and its version.
void SetProgramName(const char* name);

/// The words of a call as Qt's characters, also those that are no text in any locale.
QStringList DecodeArguments(int argc, char** argv);

/// Prints a message on standard error, after the program's name.
/// @param text  printable
void PrintError(const QByteArray& text);

/// Prints why the program ends with a code, and returns the code.
int Fail(ExitCode code, const QString& reason);

/// Writes what was printed on the standard output. If that, or an earlier write, failed, it prints
/// so. Where SIGPIPE was ignored in between, an output that nobody reads ends the process here.
/// @param earlier  the errno of the earlier write, where somebody has noted it
/// @return whether all has been written
bool FinishOutput(int earlier = 0);

/// Prints a reply and returns the exit code.
int PrintReply(const Reply& reply);

/// The help's sentence about the exit codes.
/// @param notStarted  null when the tool cannot end so
QString ExitCodeHelp(const char* done, const char* failed, const char* notStarted = nullptr);

} // namespace tools
