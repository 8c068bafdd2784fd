// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "support/paths.h"

#include "app/state/globals.h"
#include "support/text.h"

#include <charconv>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string_view>

#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr char kTmpDirectory[] = "/tmp";
// All three on every system: a name may come from a system that uses the other two.
constexpr std::string_view kSeparators = "/\\:";
constexpr size_t kGroup = 3;           // digits between commas
constexpr size_t kLongestInteger = 20; // "-9223372036854775808"
constexpr size_t kMostCommas = (kLongestInteger - 1) / kGroup;
static_assert(kFormattedIntegerSize == kLongestInteger + kMostCommas + 1);

bool IsDirectory(const char* path)
{
    struct stat info = {};
    return stat(path, &info) == 0 && S_ISDIR(info.st_mode);
}

// Where the name without its path begins; 0 if it has no path.
size_t StartOfName(std::string_view name)
{
    const size_t last = name.find_last_of(kSeparators);
    return last == std::string_view::npos || last == 0 ? 0 : last + 1;
}

} // namespace

char* GetHomeDir(char* dst)
{
    const char* home = std::getenv("HOME");
    if (home == nullptr || !FormatPath(dst, "the home directory", "%s", home))
        *dst = '\0';
    return dst;
}

char* GetTmpPath(char* dst)
{
    return GetTmpPathOr(kTmpDirectory, dst);
}

char* GetTmpPathOr(const char* preferred, char* dst)
{
    const char* candidates[] = {IsDirectory(preferred) ? preferred : nullptr, std::getenv("TMP"),
                                std::getenv("TEMP"), "."};
    for (const char* candidate : candidates) {
        if (candidate != nullptr && FormatPath(dst, "the temporary directory", "%s", candidate))
            break;
    }
    return dst;
}

char* TempName(const char* prefix, char* dst)
{
    if (!FormatTempName(dst, prefix, static_cast<unsigned>(getpid()), std::time(nullptr)))
        *dst = '\0';
    return dst;
}

bool FormatTempName(char* dst, const char* prefix, unsigned processId, int64_t seconds)
{
    const auto lowByte = static_cast<signed char>(seconds); // keeps the low 8 bits
    return FormatPath(dst, "the name of a temporary file", "%s/%s%x%2x.tmp", gszTmppath, prefix,
                      processId, static_cast<unsigned>(int{lowByte}));
}

int FilenameHasPath(const char* name)
{
    return StartOfName(name) > 0 ? 1 : 0;
}

char* GetFilenameNoPath(char* name)
{
    return name + StartOfName(name);
}

int StripFileExt(char* name, const char* ext)
{
    const size_t nameLength = std::strlen(name);
    const size_t extLength = std::strlen(ext);
    if (nameLength <= extLength)
        return static_cast<int>(extLength);
    char* end = name + (nameLength - extLength);
    const int difference = std::strcmp(end, ext);
    if (difference == 0)
        *end = '\0';
    return difference;
}

char* FormatInteger(unsigned long value, char* buf)
{
    char digits[kLongestInteger] = {};
    const auto printed = std::to_chars(digits, digits + sizeof digits, static_cast<long>(value));
    char* out = buf;
    for (const char* in = digits; in != printed.ptr; ++in) {
        const bool startsGroup = static_cast<size_t>(printed.ptr - in) % kGroup == 0;
        if (startsGroup && in != digits)
            *out++ = ',';
        *out++ = *in;
    }
    *out = '\0';
    return buf;
}
