// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/kit/settingsfile.h"

#include "app/state/globals.h"
#include "support/settings.h"
#include "tests/kit/globals.h"

namespace fixture {

Rect Place(int64_t left, int64_t top, int64_t width, int64_t height)
{
    return {left, top, left + width, top + height, width, height};
}

bool WriteSettings(const Rect& place, bool white)
{
    grWinPos = place;
    gbBkClrWhite = white;
    const bool written = WriteSettingsFile() == 0;
    ResetGlobals();
    return written;
}

bool ReadBackSettings()
{
    gfCmdlineWndpos = 0;
    grWinPos = {};
    return ReadSettingsFile() == 0;
}

} // namespace fixture
