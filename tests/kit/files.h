// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Files in a test, read and written whole.
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <string>

/// A text in UTF-8, a path for example.
inline QString Text(const std::string& text)
{
    return QString::fromStdString(text);
}

inline QString Text(const char* text)
{
    return QString::fromUtf8(text);
}

/// The bytes of a file; "(no file)" when it cannot be read.
QByteArray ReadFile(const QString& path);
QByteArray ReadFile(const std::string& path);

/// Writes bytes as a file, replacing one that is there. Returns whether that worked.
[[nodiscard]] bool WriteFile(const QString& path, QByteArrayView bytes);
/// The same with a name that need not be a text.
[[nodiscard]] bool WriteFile(const std::string& path, QByteArrayView bytes);

/// Whether something of that name is there.
[[nodiscard]] bool Exists(const std::string& path);
