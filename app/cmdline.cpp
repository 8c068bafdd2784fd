// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "app/cmdline.h"

#include "app/messages.h"
#include "app/state/globals.h"
#include "app/widebox.h"
#include "support/paths.h"
#include "support/scan.h"
#include "support/text.h"

#include <QCoreApplication>

#include <cstdint>
#include <cstring>

namespace {

QString Tr(const char* text)
{
    return QCoreApplication::translate("Cmdline", text);
}

int64_t WrapSum(int64_t a, int64_t b)
{
    return static_cast<int64_t>(static_cast<uint64_t>(a) + static_cast<uint64_t>(b));
}

// Fields that are missing or no numbers keep their values.
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

// Assigns instead of adding: a "-p" before it is discarded, one behind it is kept. Deliberate.
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

// Whether that many bytes fit. Shows a box if they do not.
bool Fits(const Place& place, size_t length)
{
    if (length < place.size)
        return true;
    ShowTooLong(nullptr, Tr(place.name), length, place.size - 1);
    return false;
}

// Leaves the buffer unchanged when the text does not fit.
bool Store(const Place& place, const char* text)
{
    return Fits(place, strlen(text)) && CopyText(place.buffer, place.size, text);
}

// An option, and what it does with the text behind it. The text is taken as many characters from
// the argument's start as the option is long, wherever in the argument the option stands.
struct Option {
    const char* text;
    void (*apply)(const char* value); // null: the text is stored
    Place place = {};
};

// Hosts rely on this order and on the search inside the whole argument: the first row that occurs
// in an argument decides, so that a path such as /data/run-plot.plf asks for a print, and "-h",
// which the usage box promises, is a file name.
constexpr Option kOptions[] = {
    {"-wp=", WindowPosition},
    {"-po=", PrintOrientation},
    {"-p", Print},
    {"-c=", Convert},
    {"-cf=", nullptr, {gszCvtFilenameBase, kPathSize, "The name for exported files (-cf=)"}},
    {"-svrname=", nullptr, {gszKrvServerName, kPathSize, "The server name (-svrname=)"}},
    {"-q", Quit},
    {"-tmp", TemporaryFile},
    {"-cwd=", nullptr, {gszCurrentWorkingDir, kWorkingDirSize, "The working directory (-cwd=)"}},
    {"-?", nullptr}, // shows the usage box and ends the parsing
};

// An argument without an option in it.
constexpr Option kFileName = {"", nullptr, {gszPlffileOrig, kPathSize, "The file name"}};

const Option& FindOption(const char* argument)
{
    for (const Option& option : kOptions) {
        if (strstr(argument, option.text) != nullptr)
            return option;
    }
    return kFileName;
}

bool IsUsage(const Option& option)
{
    return option.apply == nullptr && option.place.buffer == nullptr;
}

// The working directory is put before relative file names.
size_t FullLength(const Option& option, const char* value)
{
    const bool isJoined = &option == &kFileName && value[0] != 0 && FilenameHasPath(value) == 0;
    return strlen(value) + (isJoined ? strlen(gszCurdir) + 1 : 0);
}

// The last file name wins. One that does not fit clears the name, so that no earlier one is used
// instead.
void Apply(const Option& option, const char* value)
{
    if (option.apply != nullptr)
        option.apply(value);
    else if (!Store(option.place, value) && &option == &kFileName)
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
        const Option& option = FindOption(argv[i]);
        if (IsUsage(option)) {
            ShowUsage();
            return -1;
        }
        Apply(option, argv[i] + strlen(option.text));
    }
    return 0;
}

bool CmdlineFits(int argc, char** argv, int first)
{
    for (int i = first; i < argc; ++i) {
        const Option& option = FindOption(argv[i]);
        if (IsUsage(option))
            return true;
        const char* value = argv[i] + strlen(option.text);
        if (option.place.buffer != nullptr && !Fits(option.place, FullLength(option, value)))
            return false;
    }
    return true;
}
