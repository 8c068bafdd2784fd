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
    QString output;                    // of the only graph; empty when there may be more
    QString outputFolder;              // of many pictures; empty = the current one
    std::optional<QString> pattern;    // of their names, see namepattern.h
    std::optional<Format> namedFormat; // by --format; without it the name of the output decides
    Format format = Format::kPng;
    bool keepExisting = false;
    bool quiet = false;
    int timeout = 0; // seconds for each graph; 0 = no limit
    int memory = 0;  // megabytes for each worker; 0 = no limit
    int workers = 0; // 0 while it is not known; in the result at least 1

    /// The pattern of the names, also where none is given.
    [[nodiscard]] QString Pattern() const;
};

using CommandLine = tools::CommandLine<Options>;

/// Reads the arguments, of which the first is the program's name. The application object exists.
CommandLine ReadCommandLine(const QStringList& arguments);

} // namespace convert
