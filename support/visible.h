// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Names in messages. A name may hold anything, and a terminal obeys what it can hold: it moves the
// cursor, changes earlier lines or the order of letters.
#pragma once

#include <QByteArray>
#include <QByteArrayView>

/// Whether a character must not reach a terminal: controls, also those above ASCII, changes of the
/// writing direction, and separators of lines and paragraphs.
bool IsHidden(char32_t character);

/// A name for a message: each byte of a hidden character, and each that is not part of UTF-8, as
/// "\xNN", and a backslash as two. So it stays on its line, and the name can be got back.
QByteArray VisibleName(QByteArrayView name);
