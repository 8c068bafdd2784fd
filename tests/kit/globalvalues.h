// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The values of all the variables of the program, to compare.
#pragma once

#include "support/rect.h"

#include <QMap>
#include <QString>
#include <QStringList>

namespace fixture {

/// Every variable by its name, as text.
using Globals = QMap<QString, QString>;

/// What they are now.
Globals AllGlobals();

/// A rectangle as it stands there.
QString RectText(const Rect& r);

/// "name=value" for every variable that is not what it was, sorted by name.
QStringList Changes(const Globals& before);

} // namespace fixture
