// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/common/commandline.h"

#include "support/descriptor.h"
#include "tools/common/filename.h"
#include "tools/common/integer.h"

#include <QCoreApplication>

#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

namespace tools {

namespace {

constexpr char kHelpNames[] = "h help";
constexpr char kVersionNames[] = "v version";

// The long one, by which a parser knows the option.
QString LongName(const char* names)
{
    return QString::fromLatin1(names).section(u' ', -1);
}

// Qt's sentences as messages are written here: "unknown option 'x'".
QString PlainMessage(QString sentence)
{
    if (sentence.endsWith(u'.'))
        sentence.chop(1);
    return sentence.left(1).toLower() + sentence.mid(1);
}

QByteArray ProgramName()
{
    return QCoreApplication::applicationName().toLatin1();
}

} // namespace

QString OptionValues::Flag(bool* target) const
{
    *target = true;
    return {};
}

QString OptionValues::Texts(QStringList* target) const
{
    *target = values;
    return {};
}

QString OptionValues::Wrong(const QString& expected) const
{
    return QStringLiteral("--%1 '%2': expected %3").arg(name, values.last(), expected);
}

std::optional<int> OptionValues::IntegerIn(int least, int most) const
{
    return ParseInteger(values.last(), least, most);
}

QString OptionValues::WrongInteger(int least, int most, const char* unit) const
{
    return Wrong(QStringLiteral("a whole number from %1 to %2%3")
                     .arg(QString::number(least), QString::number(most), QLatin1StringView(unit)));
}

OptionParser::OptionParser(const ToolHelp& help) : optionHint(help.optionHint)
{
    parser.setApplicationDescription(help.description);
    for (const ArgumentHelp& argument : help.arguments)
        parser.addPositionalArgument(QString::fromUtf8(argument.name),
                                     QString::fromUtf8(argument.text));
}

void OptionParser::Add(const char* names, const char* value, const QString& text)
{
    QCommandLineOption option(QString::fromLatin1(names).split(u' '), text);
    if (value != nullptr)
        option.setValueName(QString::fromLatin1(value));
    parser.addOption(option);
}

std::optional<Reply> OptionParser::Parse(const QStringList& arguments)
{
    Add(kHelpNames, nullptr, QStringLiteral("Print this help."));
    Add(kVersionNames, nullptr, QStringLiteral("Print the version."));
    if (!parser.parse(arguments))
        return Reply{PlainMessage(parser.errorText()) + QLatin1StringView(optionHint), true};
    if (IsSet(kHelpNames))
        return Reply{parser.helpText()};
    if (IsSet(kVersionNames))
        return Reply{QStringLiteral("%1 %2\n").arg(QCoreApplication::applicationName(),
                                                   QCoreApplication::applicationVersion())};
    return {};
}

bool OptionParser::IsSet(const char* names) const
{
    return parser.isSet(LongName(names));
}

OptionValues OptionParser::ValuesOf(const char* names) const
{
    const QString name = LongName(names);
    return {name, parser.values(name)};
}

void SetProgramName(const char* name)
{
    QCoreApplication::setApplicationName(QString::fromLatin1(name));
    QCoreApplication::setApplicationVersion(QStringLiteral(PLOTVW_VERSION));
}

QStringList DecodeArguments(int argc, char** argv)
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments += DecodeName(argv[i]);
    return arguments;
}

void PrintError(const QByteArray& text)
{
    fprintf(stderr, "%s: %s\n", ProgramName().constData(), text.constData());
}

int Fail(ExitCode code, const QString& reason)
{
    PrintError(VisibleText(reason));
    return code;
}

bool FinishOutput(int earlier)
{
    errno = 0;
    const bool flushed = fflush(stdout) == 0 && CloseCopy(STDOUT_FILENO);
    if (flushed && ferror(stdout) == 0)
        return true;
    const int error = earlier != 0 ? earlier : errno;
    if (error == EPIPE)
        raise(SIGPIPE);
    const char* reason = error == 0 ? "an earlier write failed" : strerror(error);
    PrintError(QByteArray("cannot write output: ") + reason);
    return false;
}

int PrintReply(const Reply& reply)
{
    if (!reply.isWrong) {
        fputs(reply.text.toUtf8().constData(), stdout);
        return FinishOutput() ? kDone : kFailed;
    }
    Fail(kWrongUsage, reply.text);
    fprintf(stderr, "Try '%s --help'.\n", ProgramName().constData());
    return kWrongUsage;
}

QString ExitCodeHelp(const char* done, const char* failed, const char* notStarted)
{
    QString text = QStringLiteral("Exit codes: %1 %2, %3 %4, %5 wrong usage")
                       .arg(kDone)
                       .arg(QLatin1StringView(done))
                       .arg(kFailed)
                       .arg(QLatin1StringView(failed))
                       .arg(kWrongUsage);
    if (notStarted != nullptr)
        text += QStringLiteral(", %1 %2").arg(kNotStarted).arg(QLatin1StringView(notStarted));
    return text + u'.';
}

} // namespace tools
