// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/plfbuffer.h"

#include "app/globals.h"
#include "meta/palette.h"
#include "support/files.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include <sys/stat.h>

// As a command this is the colour map entry 0 with hue, lightness and saturation 0, followed by
// the start of entry 1.
const char gszPlfhdr[kPlfHeaderSize] = {'\x1b', 'T',    'G', '1', '4', '0', '0', '0',
                                        '0',    '\x1b', 'T', 'G', '1', '4', '1', '0'};

const int gBkClrEsc[] = {' ', '4', '3', '5', '2', '6', '8', '?',
                         '>', ';', '9', ':', '=', '<', '7', '1'};
static_assert(std::size(gBkClrEsc) == kPaletteSize);

namespace {

constexpr char kCannotOpen[] = "Error opening file.";
constexpr char kNotPlf[] = "File is not a recognized PLF graphic format.";
static_assert(sizeof kCannotOpen <= kLoadMessageSize && sizeof kNotPlf <= kLoadMessageSize);

// A pipe or a device has no size and could keep its reader waiting for ever.
bool IsRegularFile(FILE* file)
{
    struct stat info = {};
    return fstat(fileno(file), &info) == 0 && S_ISREG(info.st_mode);
}

bool MeasureFile(FILE* file)
{
    if (fseek(file, 0, SEEK_END) != 0)
        return false;
    const long size = ftell(file);
    if (size < 0 || fseek(file, 0, SEEK_SET) != 0)
        return false;
    gdwFilesize = static_cast<unsigned long>(size);
    return true;
}

bool ReadWhole(FILE* file)
{
    gpPlfmembuf = static_cast<char*>(malloc(gdwFilesize + kPlfTailSize));
    if (gpPlfmembuf == nullptr)
        return false;
    // The tail is cleared whole, the byte directly behind the data included, so that nothing left
    // in memory is ever decoded as data.
    memset(gpPlfmembuf + gdwFilesize, 0, kPlfTailSize);
    return fread(gpPlfmembuf, gdwFilesize, 1, file) == 1;
}

} // namespace

void FreePlfBuffer()
{
    free(gpPlfmembuf);
    gpPlfmembuf = nullptr;
}

int LoadPlfFile(char* path, char* message)
{
    memcpy(message, kCannotOpen, sizeof kCannotOpen);
    FreePlfBuffer();
    const FilePtr file(OpenForReading(path));
    if (file == nullptr || !IsRegularFile(file.get()) || !MeasureFile(file.get()))
        return -1;
    if (!ReadWhole(file.get())) {
        FreePlfBuffer();
        return -1;
    }
    // A file shorter than the header meets the tail here, which differs.
    if (memcmp(gpPlfmembuf, gszPlfhdr, kPlfHeaderSize) != 0) {
        memcpy(message, kNotPlf, sizeof kNotPlf);
        FreePlfBuffer();
        return -1;
    }
    return 0;
}

const char* FindPlfBackGround(const char* buf)
{
    if (buf == nullptr || (buf == gpPlfmembuf && gdwFilesize < kBackgroundScanStart))
        return nullptr;
    // Only the second match counts.
    const char* match = strstr(buf + kBackgroundScanStart, "RA1");
    if (match != nullptr)
        match = strstr(match + 3, "RA1");
    return match == nullptr ? nullptr : match + 3;
}

int GetPlfBackGroundColor(char* buf)
{
    const char* named = gbBkClrWhite ? nullptr : FindPlfBackGround(buf);
    if (named == nullptr)
        return kWhite;
    const auto* found = std::find(std::begin(gBkClrEsc), std::end(gBkClrEsc), *named);
    return found == std::end(gBkClrEsc) ? kNoBackground
                                        : static_cast<int>(found - std::begin(gBkClrEsc));
}

char* MakeMetafileName(char* name)
{
    char* dot = strchr(name, '.');
    if (dot == nullptr)
        dot = name + strlen(name);
    memcpy(dot, ".emf", 5);
    return name;
}
