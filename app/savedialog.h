// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Asks the user for the name of a file to write.
#pragma once

#include <QString>

class QWidget;

/// What the dialog of one action shows, and how it completes names.
struct SaveQuestion {
    const char* objectName;
    QString caption;
    QString filter;
    const char* extension; // with its dot, for names without one
};

/// Runs the dialog, which asks before a file is replaced: the one that will be written, which is
/// the one with the extension.
/// @return the name as AppendFileExt completes it; empty when the user cancels
QString AskSaveName(QWidget* parent, const SaveQuestion& question);
