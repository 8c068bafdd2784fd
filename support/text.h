// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Writing text into fixed buffers, where the program keeps all paths and names. A cut path is the
// path of another file, so a text that does not fit is refused, never cut.
#pragma once

#include <cstddef>

/// Copies src with its terminating NUL into dst, a buffer of size bytes. src may be a part of dst.
/// Returns false, with dst unchanged, if src does not fit.
bool CopyText(char* dst, size_t size, const char* src);

/// The same for an array, whose size need not be repeated.
template <size_t N> bool CopyText(char (&dst)[N], const char* src)
{
    return CopyText(dst, N, src);
}

/// Formats as printf does into dst, a buffer of size bytes. No argument may point into dst. Not for
/// floating-point numbers: their decimal point depends on the process's locale. Returns false, with
/// dst unchanged, if the text and its NUL do not fit.
[[gnu::format(printf, 3, 4)]] bool FormatText(char* dst, size_t size, const char* format, ...);

/// FormatText into a path buffer of kPathSize bytes. Also reports a text that does not fit (see
/// ReportTooLong); what names the path at the start of that message: "the home directory".
[[gnu::format(printf, 3, 4)]] bool FormatPath(char* dst, const char* what, const char* format, ...);

/// Reports on standard error that a text was too long and was ignored, for routines that cannot
/// report it in another way. what names the text at the start of the message; length and limit
/// count bytes without the NUL.
void ReportTooLong(const char* what, size_t length, size_t limit);
