// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Writing text into fixed buffers. Every path and name of the program lives in one, and a path
// that was cut short names another file; so a text that does not fit is refused, never cut.
#pragma once

#include <cstddef>

/// Copies src with its terminating NUL into dst, which holds size bytes. src may lie within dst.
/// Returns false, and leaves dst as it was, when src does not fit.
bool CopyText(char* dst, size_t size, const char* src);

/// The same for an array, whose size need not be repeated.
template <size_t N> bool CopyText(char (&dst)[N], const char* src)
{
    return CopyText(dst, N, src);
}

/// Formats as printf does into dst, which holds size bytes. No argument may point into dst.
/// Not for floating-point numbers: their decimal point follows the process's locale.
/// Returns false, and leaves dst as it was, when the text and its NUL do not fit.
[[gnu::format(printf, 3, 4)]] bool FormatText(char* dst, size_t size, const char* format, ...);

/// FormatText into a path buffer of kPathSize bytes, which also reports a text that does not fit
/// (see ReportTooLong). what names the path as the subject of a sentence: "the home directory".
[[gnu::format(printf, 3, 4)]] bool FormatPath(char* dst, const char* what, const char* format, ...);

/// Says on standard error that a text was too long and is not used: for the routines that have no
/// other way to tell. what is the subject of the sentence, length and limit count bytes without
/// the NUL.
void ReportTooLong(const char* what, size_t length, size_t limit);
