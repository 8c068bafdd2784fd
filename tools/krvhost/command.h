// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What the viewer finds in a command line.
#pragma once

#include "hostlink/vieweroptions.h"

#include <QString>

namespace krvhost {

/// Whether the viewer takes one of the words for that option.
bool HasOption(const QString& command, ViewerOption option);

/// The file that a command line names: the last one counts. Empty without one.
QString FileIn(const QString& command);

/// Whether a command line can name that file: its words end at blanks.
bool IsFileName(const QString& name);

/// The option as a word of a command line.
QString WordFor(ViewerOption option);

} // namespace krvhost
