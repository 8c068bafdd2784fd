// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What the viewer says and understands on its link.
#pragma once

#include <QByteArray>
#include <QString>

namespace krvhost {

/// What the viewer sends: its greeting and each acknowledgement.
inline const QString kAccept = QStringLiteral("krv-accept-connect");

/// Takes a whole frame from the bytes that came.
/// @return false when there is none yet
bool TakeFrame(QByteArray* received, QString* message);

/// Whether a command line holds an option, as the viewer reads it.
bool HasOption(const QString& command, const char* option);

/// The file that a command line names: the last one counts. Empty without one.
QString FileIn(const QString& command);

/// Whether a command line can name that file: its words end at blanks.
bool IsFileName(const QString& name);

} // namespace krvhost
