// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The byte notation of the decoder scripts in tests/data/decoder. Words are separated by blanks:
//   ESC GS BEL CR LF FF US NUL   that control character
//   "text"                       the text as it is (no quotes or blanks inside)
//   x1F                          a byte in hexadecimal; several digits pairs give several bytes
//   @X,Y                         the five address bytes of a point, y upward
//   #N                           N in the integer code of the parameters
//   *N WORD                      the next word N times
//   _                            a blank
#pragma once

#include <QByteArray>
#include <QString>

/// The bytes of a text in that notation. Fails the test at a word that it does not know.
QByteArray ScriptBytes(const QString& text);

/// The bytes of one address, all five parts.
QByteArray AddressBytes(int x, int y);

/// An integer in the parameters' code.
QByteArray IntegerBytes(int value);
