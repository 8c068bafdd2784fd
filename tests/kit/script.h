// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The decoder scripts of tests/data/decoder and their byte notation. Words are separated by blanks:
//   ESC GS BEL CR LF FF US NUL   that control character
//   "text"                       the text as it is (no quotes or blanks inside)
//   x1F                          a byte in hexadecimal; several digits pairs give several bytes
//   @X,Y                         the five address bytes of a point, y upward
//   #N                           N in the integer code of the parameters
//   *N WORD                      the next word N times
//   _                            a blank
#pragma once

#include "tests/kit/graph.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

/// The bytes of a text in that notation. Fails the test at a word that it does not know.
QByteArray ScriptBytes(const QString& text);

/// A case of a decoder script.
struct ScriptCase {
    QString name;
    Pass pass;
    QByteArray file;        // the graph's bytes, header included
    QStringList operations; // what must be painted
    int vectors = -1;       // how many vectors must be drawn; -1 = the case does not say
};

/// The cases of a script, in their order. Fails the test at a word that it does not know.
QList<ScriptCase> ReadScript(const QString& path);
