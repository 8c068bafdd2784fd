// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A damaged graph in one line.
#pragma once

#include "meta/damage.h"

#include <QByteArray>

namespace info {

/// The line for a graph, with its line end: its name and each kind of damage that is a loss, such
/// as "a.plf: no end mark at byte 1234".
/// @param name    what the graph is called, printable
/// @param damage  has at least one loss
QByteArray DamageLine(const QByteArray& name, const PlfDamageMap& damage);

} // namespace info
