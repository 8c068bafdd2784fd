// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "support/text.h"

#include "app/state/sizes.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include <QtGlobal>

namespace {

bool Fits(int length, size_t size)
{
    return length >= 0 && static_cast<size_t>(length) < size;
}

// Returns the length of the whole text; negative if it cannot be formatted. The text is measured
// first, because vsnprintf alone would leave a cut text in dst.
int FormatIfItFits(char* dst, size_t size, const char* format, va_list args)
{
    va_list measured;
    va_copy(measured, args);
    // clang-tidy misses the va_copy if it has read another file before this one.
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized)
    const int length = std::vsnprintf(nullptr, 0, format, measured);
    va_end(measured);
    if (Fits(length, size))
        std::vsnprintf(dst, size, format, args);
    return length;
}

} // namespace

bool CopyText(char* dst, size_t size, const char* src)
{
    const size_t bytes = std::strlen(src) + 1;
    if (bytes > size)
        return false;
    std::memmove(dst, src, bytes); // a name is often copied from within the same buffer
    return true;
}

bool FormatText(char* dst, size_t size, const char* format, ...)
{
    va_list args;
    va_start(args, format);
    const int length = FormatIfItFits(dst, size, format, args);
    va_end(args);
    return Fits(length, size);
}

bool FormatPath(char* dst, const char* what, const char* format, ...)
{
    va_list args;
    va_start(args, format);
    const int length = FormatIfItFits(dst, kPathSize, format, args);
    va_end(args);
    if (Fits(length, kPathSize))
        return true;
    if (length >= 0)
        ReportTooLong(what, static_cast<size_t>(length), kPathSize - 1);
    return false;
}

void ReportTooLong(const char* what, size_t length, size_t limit)
{
    qWarning("plotvw: %s is too long (%zu bytes, limit %zu) and was ignored", what, length, limit);
}
