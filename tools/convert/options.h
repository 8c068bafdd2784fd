// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The converter's command line.
#pragma once

#include "tools/convert/settings.h"

#include <QString>
#include <QStringList>

#include <optional>

/// What a call asks for.
struct Options {
    PictureSettings picture;
    QStringList inputs;   // graphs, or folders of them
    QString output;       // of the only graph; empty when there may be more
    QString outputFolder; // of many pictures; empty = the current one
    QString pattern;      // of their names, see naming.h
    Format format = Format::kPng;
    bool keepExisting = false;
    bool quiet = false;
    int workers = 1;
};

/// The result of reading a command line: options, or a text to print instead.
struct CommandLine {
    std::optional<Options> options;
    QString text; // the help or the version; or what is wrong, when isWrong
    bool isWrong = false;
};

/// Reads the arguments, of which the first is the program's name. The application object exists.
CommandLine ReadCommandLine(const QStringList& arguments);
