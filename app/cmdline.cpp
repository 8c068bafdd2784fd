// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "app/cmdline.h"

#include "app/messages.h"
#include "app/state/globals.h"
#include "app/widebox.h"
#include "hostlink/vieweroptions.h"
#include "support/paths.h"
#include "support/scan.h"
#include "support/text.h"

#include <QCoreApplication>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>

namespace {

QString Tr(const char* text)
{
    return QCoreApplication::translate("Cmdline", text);
}

int64_t WrapSum(int64_t a, int64_t b)
{
    return static_cast<int64_t>(static_cast<uint64_t>(a) + static_cast<uint64_t>(b));
}

// Fields that are missing or not numbers keep their values.
void WindowPosition(const char* value)
{
    ScanLongs(value, {&grWinPos.left, &grWinPos.top, &grWinPos.width, &grWinPos.height});
    grWinPos.right = WrapSum(grWinPos.left, grWinPos.width);
    grWinPos.bottom = WrapSum(grWinPos.top, grWinPos.height);
    gfCmdlineWndpos = 1;
}

void PrintOrientation(const char* value)
{
    if (value[0] == 'p')
        giCmdPrintOrientation = 1;
}

void Print(const char* /*value*/)
{
    giCmdArg |= kJobPrint;
}

// Assigns instead of adding: an earlier "-p" is discarded, a later one is kept. Deliberate.
void Convert(const char* value)
{
    if (value[0] == '1')
        giCmdArg = kJobJpeg;
    else if (value[0] == '2')
        giCmdArg = kJobEps;
}

void Quit(const char* /*value*/)
{
    gbCmdQuit = true;
}

void TemporaryFile(const char* /*value*/)
{
    gbIsTempFile = true;
}

// The buffer that an option's text is copied to, and its name in an error box.
struct Place {
    char* buffer;
    size_t size;
    const char* name;
};

// Whether this many bytes fit. Shows a box if not.
bool Fits(const Place& place, size_t length)
{
    if (length < place.size)
        return true;
    ShowTooLong(nullptr, Tr(place.name), length, place.size - 1);
    return false;
}

// Leaves the buffer unchanged if the text does not fit.
bool Store(const Place& place, const char* text)
{
    return Fits(place, strlen(text)) && CopyText(place.buffer, place.size, text);
}

// An option, and what it does with its value. The value begins as many characters after the
// argument's start as the option is long, wherever in the argument the option is.
struct Action {
    ViewerOption option;
    void (*apply)(const char* value); // null: the value is stored
    Place place = {};
};

// clang-format off
constexpr Action kActions[] = {
    {ViewerOption::kWindowPlace, WindowPosition},
    {ViewerOption::kOrientation, PrintOrientation},
    {ViewerOption::kPrint,       Print},
    {ViewerOption::kExport,      Convert},
    {ViewerOption::kExportName,  nullptr, {gszCvtFilenameBase, kPathSize, "The name for exported files (-cf=)"}},
    {ViewerOption::kServerName,  nullptr, {gszKrvServerName, kPathSize, "The server name (-svrname=)"}},
    {ViewerOption::kQuit,        Quit},
    {ViewerOption::kTemporary,   TemporaryFile},
    {ViewerOption::kWorkingDir,  nullptr, {gszCurrentWorkingDir, kWorkingDirSize, "The working directory (-cwd=)"}},
    {ViewerOption::kUsage,       nullptr}, // ends the parsing
    {ViewerOption::kNone,        nullptr, {gszPlffileOrig, kPathSize, "The file name"}},
};
// clang-format on

constexpr bool IsComplete()
{
    size_t i = 0;
    while (i < std::size(kActions) && static_cast<size_t>(kActions[i].option) == i)
        ++i;
    return i == kViewerOptionCount + 1;
}
static_assert(IsComplete(), "one row for each option, in their order");

// An argument: its option and the value of that.
struct Argument {
    const Action& action;
    const char* value;

    [[nodiscard]] bool IsFileName() const { return action.option == ViewerOption::kNone; }
    [[nodiscard]] bool IsUsage() const { return action.option == ViewerOption::kUsage; }
};

Argument TakeApart(const char* argument)
{
    const ViewerOption option = OptionIn(argument);
    return {kActions[static_cast<size_t>(option)], argument + TextOf(option).size()};
}

// The working directory is prepended to relative file names.
size_t FullLength(const Argument& argument)
{
    const char* value = argument.value;
    const bool isJoined = argument.IsFileName() && value[0] != 0 && FilenameHasPath(value) == 0;
    return strlen(value) + (isJoined ? strlen(gszCurdir) + 1 : 0);
}

// The last file name wins. A name that does not fit clears the file name, so that no earlier one is
// used instead.
void Apply(const Argument& argument)
{
    if (argument.action.apply != nullptr)
        argument.action.apply(argument.value);
    else if (!Store(argument.action.place, argument.value) && argument.IsFileName())
        gszPlffileOrig[0] = 0;
}

void ShowUsage()
{
    WideBox box(QMessageBox::NoIcon, Tr("PLOTVW Usage"),
                Tr("plotvw plffile [-wp=x,y,wid,ht] [-p] [-po=orientation] [-?] [-h]\n\n"
                   "-wp=x,y,wid,ht:\twindow position\n"
                   "-p:\t\tprint graph\n"
                   "-q:\t\tquit after cmd processing is complete"
                   "-po=[l,p]:\tprint orientaton, l=landscape (default), p=portrait\n"
                   "[-?,-h]:\t\tprint this help\n"),
                QMessageBox::Ok, nullptr, Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

} // namespace

int ProcessCmdline(int argc, char** argv, int first)
{
    gszPlffileOrig[0] = 0;
    gszCurrentWorkingDir[0] = 0;
    gbIsTempFile = false;
    for (int i = first; i < argc; ++i) {
        const Argument argument = TakeApart(argv[i]);
        if (argument.IsUsage()) {
            ShowUsage();
            return -1;
        }
        Apply(argument);
    }
    return 0;
}

bool CmdlineFits(int argc, char** argv, int first)
{
    for (int i = first; i < argc; ++i) {
        const Argument argument = TakeApart(argv[i]);
        if (argument.IsUsage())
            return true;
        const Place& place = argument.action.place;
        if (place.buffer != nullptr && !Fits(place, FullLength(argument)))
            return false;
    }
    return true;
}
