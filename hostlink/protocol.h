// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What viewer and host say to each other. A host sends command lines; all else is here.
#pragma once

#include <QString>

/// The viewer's greeting, and its acknowledgement of each command line that named a file.
inline const QString kAccept = QStringLiteral("krv-accept-connect");
