// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Message boxes. Texts may hold file names, so they are always shown as plain text.
#pragma once

#include <QString>

#include <cstddef>

class QWidget;

/// Shows a modal critical box with one OK button and returns when it is closed.
/// @param parent  the box's parent, or null
void ShowError(QWidget* parent, const QString& title, const QString& text);

/// Tells that a text does not fit its buffer and is therefore not used.
/// @param what    names the text at the start of a sentence ("The file name")
/// @param length  its length in bytes
/// @param limit   the most bytes that fit
void ShowTooLong(QWidget* parent, const QString& what, size_t length, size_t limit);
