// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The options of the viewer's command line, which hosts send too.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

/// In the order in which the viewer searches for them.
enum class ViewerOption {
    kWindowPlace,
    kOrientation,
    kPrint,
    kExport,
    kExportName,
    kServerName,
    kQuit,
    kTemporary,
    kWorkingDir,
    kUsage,
    kNone // a file name
};

constexpr size_t kViewerOptionCount = static_cast<size_t>(ViewerOption::kNone);

/// Their texts; a value follows '='. Hosts rely on the order and on the search inside the whole
/// word: the first option that occurs in a word counts, so a path such as /data/run-plot.plf
/// requests a print, and "-h" is a file name.
constexpr std::array<std::string_view, kViewerOptionCount> kViewerOptions = {
    "-wp=",      // kWindowPlace
    "-po=",      // kOrientation
    "-p",        // kPrint
    "-c=",       // kExport
    "-cf=",      // kExportName
    "-svrname=", // kServerName
    "-q",        // kQuit
    "-tmp",      // kTemporary
    "-cwd=",     // kWorkingDir
    "-?",        // kUsage: the words after it are ignored
};

constexpr std::string_view TextOf(ViewerOption option)
{
    return option == ViewerOption::kNone ? std::string_view()
                                         : kViewerOptions[static_cast<size_t>(option)];
}

/// The option that the viewer recognizes in a word, or kNone if the word is a file name.
constexpr ViewerOption OptionIn(std::string_view word)
{
    size_t i = 0;
    while (i < kViewerOptionCount && word.find(kViewerOptions[i]) == std::string_view::npos)
        ++i;
    return static_cast<ViewerOption>(i);
}
