// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The messages of the host link, except for the command lines that a host sends.
#pragma once

#include <QString>

/// The viewer's greeting, and its acknowledgement of each command line that named a file.
inline const QString kAccept = QStringLiteral("krv-accept-connect");
