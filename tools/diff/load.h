// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Reading the graphs of a call.
#pragma once

#include "tools/diff/pair.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace diff {

/// The name under which programs for versions pass a graph that is not there: it draws nothing.
constexpr char kNoGraph[] = "/dev/null";

/// Reads what a graph draws.
/// @param input  has the name, empty for no graph; receives the rest
/// @return empty, or why it was not read
QString Load(Input* input);

/// What is lost by damage, for a message; empty if nothing is.
QString DamageText(const Input& input);

/// Whether there is anything of that name.
bool IsThere(const QString& name);

/// The graphs in two directories, each by its name below them.
struct FolderGraphs {
    QStringList names;    // in natural order
    QStringList problems; // lines about what could not be searched
};

/// @param isRecursive  whether the directories in them are searched too
FolderGraphs GraphsInBoth(const QString& first, const QString& second, bool isRecursive);

} // namespace diff
