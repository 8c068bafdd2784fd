// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "support/settings.h"

#include "app/state/globals.h"
#include "support/files.h"
#include "support/text.h"
#include "support/wholefile.h"

#include <algorithm>
#include <array>

namespace {

constexpr size_t kWhiteAt = kVersionSize;
constexpr size_t kRectAt = kWhiteAt + 1;
constexpr size_t kSettingsSize = kRectAt + sizeof(Rect);
static_assert(kSettingsSize == 59, "the file's size is part of its format");

constexpr int64_t Rect::*kRectFields[] = {&Rect::left,   &Rect::top,   &Rect::right,
                                          &Rect::bottom, &Rect::width, &Rect::height};
static_assert(sizeof(Rect) == std::size(kRectFields) * sizeof(int64_t), "every field is stored");

using SettingsImage = std::array<unsigned char, kSettingsSize>;

void PutLittleEndian(int64_t value, unsigned char* bytes)
{
    for (size_t i = 0; i < sizeof value; ++i)
        bytes[i] = static_cast<unsigned char>(static_cast<uint64_t>(value) >> (8 * i));
}

int64_t GetLittleEndian(const unsigned char* bytes)
{
    uint64_t value = 0;
    for (size_t i = 0; i < sizeof value; ++i)
        value |= uint64_t{bytes[i]} << (8 * i);
    return static_cast<int64_t>(value);
}

SettingsImage ImageOfSettings()
{
    SettingsImage image = {};
    std::copy_n(gszFileVersion, kVersionSize, image.begin());
    image[kWhiteAt] = gbBkClrWhite ? 1 : 0;
    unsigned char* field = &image[kRectAt];
    for (const auto member : kRectFields) {
        PutLittleEndian(grWinPos.*member, field);
        field += sizeof(int64_t);
    }
    return image;
}

void ApplyImage(const SettingsImage& image)
{
    std::copy_n(image.begin(), kVersionSize, gszFileVersion);
    gbBkClrWhite = image[kWhiteAt] != 0; // the byte may have any value, a bool has two
    if (gfCmdlineWndpos != 0)
        return;
    const unsigned char* field = &image[kRectAt];
    for (const auto member : kRectFields) {
        grWinPos.*member = GetLittleEndian(field);
        field += sizeof(int64_t);
    }
}

} // namespace

int ReadSettingsFile()
{
    char path[kPathSize];
    const FilePtr file(GetSettingsPath(path) ? OpenForReading(path) : nullptr);
    if (!file)
        return -1;
    // The file is read over the current values, so a short file leaves the rest of each field
    // unchanged. The number of bytes read is deliberately not checked.
    SettingsImage image = ImageOfSettings();
    [[maybe_unused]] const size_t count = std::fread(image.data(), 1, image.size(), file.get());
    ApplyImage(image);
    return 0;
}

int WriteSettingsFile()
{
    char path[kPathSize];
    if (!GetSettingsPath(path))
        return -1;
    WholeFile file(path);
    if (file.Open() != 0)
        return -1;
    const SettingsImage image = ImageOfSettings();
    file.Write(image.data(), image.size());
    return file.Commit() == 0 ? 0 : -1;
}

bool GetSettingsPath(char* dst)
{
    return FormatPath(dst, "the path of the settings file", "%s/.plotvwsettings", gszHomedir);
}
