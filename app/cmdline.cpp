// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "app/cmdline.h"

#include "app/globals.h"
#include "app/messages.h"
#include "support/scan.h"
#include "support/text.h"

#include <QCoreApplication>
#include <QMessageBox>

#include <cstdint>
#include <cstring>

namespace {

QString Tr(const char* text)
{
    return QCoreApplication::translate("Cmdline", text);
}

// The buffer keeps what it held when the text does not fit.
template <size_t size> bool Store(char (&buffer)[size], const char* text, const char* what)
{
    const bool fits = CopyText(buffer, text);
    if (!fits)
        ShowTooLong(nullptr, Tr(what), strlen(text), size - 1);
    return fits;
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

void ConvertName(const char* value)
{
    Store(gszCvtFilenameBase, value, "The name for exported files (-cf=)");
}

void ServerName(const char* value)
{
    Store(gszKrvServerName, value, "The server name (-svrname=)");
}

void Quit(const char* /*value*/)
{
    gbCmdQuit = true;
}

void TemporaryFile(const char* /*value*/)
{
    gbIsTempFile = true;
}

void WorkingDirectory(const char* value)
{
    Store(gszCurrentWorkingDir, value, "The working directory (-cwd=)");
}

// The last one wins, so one that does not fit leaves none: it must not let an earlier one through.
void FileName(const char* name)
{
    if (!Store(gszPlffileOrig, name, "The file name"))
        gszPlffileOrig[0] = 0;
}

// An option, and what it does with the text behind it. The text is taken as many characters from
// the argument's start as the option is long, wherever in the argument the option stands.
struct Option {
    const char* text;
    void (*apply)(const char* value);
};

// Hosts rely on this order and on the search inside the whole argument: the first row that occurs
// in an argument decides, so that a path such as /data/run-plot.plf asks for a print, and "-h",
// which the usage box promises, is a file name.
constexpr Option kOptions[] = {
    {"-wp=", WindowPosition},
    {"-po=", PrintOrientation},
    {"-p", Print},
    {"-c=", Convert},
    {"-cf=", ConvertName},
    {"-svrname=", ServerName},
    {"-q", Quit},
    {"-tmp", TemporaryFile},
    {"-cwd=", WorkingDirectory},
    {"-?", nullptr}, // shows the usage box and ends the parsing
};

const Option* FindOption(const char* argument)
{
    for (const Option& option : kOptions) {
        if (strstr(argument, option.text) != nullptr)
            return &option;
    }
    return nullptr;
}

void ShowUsage()
{
    QMessageBox box(QMessageBox::NoIcon, Tr("PLOTVW Usage"),
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
        const Option* option = FindOption(argv[i]);
        if (option == nullptr) {
            FileName(argv[i]);
        } else if (option->apply == nullptr) {
            ShowUsage();
            return -1;
        } else {
            option->apply(argv[i] + strlen(option->text));
        }
    }
    return 0;
}
