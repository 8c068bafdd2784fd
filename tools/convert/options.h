// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The converter's command line.
#pragma once

#include "tools/common/commandline.h"
#include "tools/convert/format.h"
#include "tools/convert/picturesettings.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace convert {

/// What a call asks for.
struct Options {
    PictureSettings picture;
    QStringList inputs;                // graphs, or directories of them
    bool recursive = false;            // folders in folders, too
    QString listFile;                  // of more names, or "-"; may be empty
    bool nullSeparated = false;        // the names in it end with zero bytes
    QString output;                    // of the only graph, or of all; empty when each has its own
    bool merge = false;                // the output is a document of all graphs
    std::optional<QSize> grid;         // the output is sheets of so many columns and rows
    QString outputFolder;              // of many pictures; empty = the current one
    std::optional<QString> pattern;    // of their names, see namepattern.h
    std::optional<Format> namedFormat; // by --format; without it the name of the output decides
    Format format = Format::kPng;
    bool keepExisting = false;
    bool onlyNewer = false; // convert only graphs that are newer than their pictures
    bool strict = false;    // damaged graphs fail
    bool quiet = false;
    bool report = false; // a line of JSON for each graph
    QString reportFile;  // where to; empty = the standard output
    int timeout = 0;     // seconds for each graph; 0 = no limit
    int memory = 0;      // megabytes for each worker; 0 = no limit
    int workers = 0;     // 0 while it is not known; in the result at least 1

    /// The pattern of the names, also where none is given.
    [[nodiscard]] QString Pattern() const;
    /// Whether many graphs have one output.
    [[nodiscard]] bool IsBound() const { return merge || grid; }
    /// Whether there is one picture or document, which goes to the standard output.
    [[nodiscard]] bool WritesToOutput() const;
    /// Whether the report, if there is one, goes to the standard output.
    [[nodiscard]] bool ReportsToOutput() const;
};

using CommandLine = tools::CommandLine<Options>;

/// Reads the arguments, of which the first is the program's name. The application object exists.
CommandLine ReadCommandLine(const QStringList& arguments);

} // namespace convert
