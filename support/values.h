// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The values of configuration lines. Numbers are read the same in every locale, so that a
// configuration file means the same for every user. A blank is a blank, tab, newline, vertical tab,
// form feed or carriage return. Malformed values are not reported: they give 0.
#pragma once

/// The integer at the start of s, after blanks: an optional sign and decimal digits; the rest is
/// ignored. 0 if there is none; values outside the int range saturate.
int TextToInt(const char* s);

/// Stores the number at the start of s, after blanks, in *out: all forms of the C library's strtod
/// ("-1.5", "1e3", ".5", "0x1p4", "inf", "nan"); the rest is ignored. 0 if there is none; values
/// outside the range of double give an infinity or 0.
void GetDouble(char* s, double* out);

/// Stores two numbers separated by a comma, each as GetDouble reads it; anything between the first
/// and the comma is skipped. Without a comma *b keeps its value.
void GetDoublePair(char* s, double* a, double* b);

/// Stores two integers separated by a comma, each as TextToInt reads it; anything between the
/// first and the comma is skipped. Without a comma *b keeps its value. Returns *b.
int GetIntPair(char* s, int* a, int* b);

/// Stores 1 in *out if the first character of s after blanks is 'Y' or 'y', otherwise 0: "1" and
/// "true" count as no.
void GetIntYesNo(char* s, int* out);
