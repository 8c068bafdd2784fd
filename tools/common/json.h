// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What the tools say as JSON, in one way.
#pragma once

#include "meta/damage.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QString>

namespace tools {

/// Adds a file name: one that is not UTF-8 cannot be a text of JSON, and has its bytes in Base64
/// beside it.
/// @param key   of the name; that of its bytes has "Base64" behind it
/// @param name  see DecodeName
void PutName(const char* key, const QString& name, QJsonObject* object);

/// An object with "kind", "offset" and "count" for each kind of damage.
QJsonArray DamageArray(const PlfDamageMap& damage);

/// JSON in which nothing is left that a terminal would obey, except for line ends between values.
QByteArray VisibleJson(const QByteArray& json);

} // namespace tools
