// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "support/config.h"

#include "app/state/globals.h"
#include "support/files.h"
#include "support/text.h"
#include "support/values.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

// Longer lines are read as several lines, in pieces of 1023 characters.
constexpr int kLineSize = 1024;

struct ConfigKey {
    const char* name;
    void (*apply)(char* value);
};

// The first key of this table that occurs in a line counts, so the order is part of the
// format; new keys go last.
// clang-format off
constexpr ConfigKey kKeys[] = {
    // key                     value
    {"printer_min_linewidth",  [](char* s) { giPrtMinLineWidth = TextToInt(s); }},
    {"printer_page_shift",     [](char* s) { GetIntPair(s, &giPageX, &giPageY); }},
    {"printer_page_size",      [](char* s) { GetDoublePair(s, &gdPageSizeX, &gdPageSizeY); }},
    {"printer_paper_type",     [](char* s) { giCmdPrintPapertype = TextToInt(s); }},
    {"export_quality",         [](char* s) { giExportQuality = TextToInt(s); }},
    {"eps_cvt_lines_to_black", [](char* s) { GetIntYesNo(s, &gfEpsCvt2Blk); }},
    {"eps_include_background", [](char* s) { GetIntYesNo(s, &gfEpsUseBkClr); }},
    {"eps_scalefactor",        [](char* s) { GetDouble(s, &gdEpsCvtScale); }},
    {"autosave",               [](char* s) { GetIntYesNo(s, &giAutosave); }},
};
// clang-format on

// A key is recognized anywhere in a line, even inside a longer word, and the value follows the
// first '=' of the line, whatever is before it: deliberate, both are part of the file's format. A
// key without '=' has no value and is ignored.
void ApplyLine(char* line)
{
    if (line[0] == '#')
        return;
    const auto occurs = [line](const ConfigKey& key) { return std::strstr(line, key.name); };
    const auto* key = std::find_if(std::begin(kKeys), std::end(kKeys), occurs);
    char* equals = std::strchr(line, '=');
    if (key != std::end(kKeys) && equals != nullptr)
        key->apply(equals + 1);
}

FilePtr OpenCfgFile(const char* directory)
{
    char path[kPathSize];
    return FilePtr(GetCfgPath(path, directory) ? OpenForReading(path) : nullptr);
}

} // namespace

int ReadCfgFile()
{
    FilePtr file = OpenCfgFile(gszHomedir);
    if (!file)
        file = OpenCfgFile(gszExePath);
    if (!file)
        return -1;
    char line[kLineSize];
    while (std::fgets(line, sizeof line, file.get()) != nullptr)
        ApplyLine(line);
    return 0;
}

bool GetCfgPath(char* dst, const char* directory)
{
    return FormatPath(dst, "the path of the configuration file", "%s/plotvw.cfg", directory);
}
