// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Asks the user for the name of a file to write.
#pragma once

#include <QString>

class QWidget;

/// The texts of the dialog of one action, and the extension that it adds.
struct SaveQuestion {
    const char* objectName;
    QString caption;
    QString filter;
    const char* extension; // with its dot; added to names without an extension
};

/// Runs the dialog, which asks before a file is replaced, under the name that will be written, with
/// its extension.
/// @return the name as AppendFileExt completes it; empty if the user cancels
QString AskSaveName(QWidget* parent, const SaveQuestion& question);
