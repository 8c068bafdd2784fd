// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/kit/globals.h"

#include "app/state/globals.h"
#include "meta/plfbuffer.h"
#include "support/text.h"

#include <algorithm>
#include <iterator>

void ResetEpsOptions()
{
    gdEpsCvtScale = 0.25;
    giEpsMinLineWidth = 5;
    gfEpsCvt2Blk = 0;
    gfEpsUseBkClr = 0;
    gdwBackClrEPS = 0;
}

void ResetGlobals()
{
    FreePlfBuffer();
    for (char* text : {gszPlffileOrig, gszPlffileName, gszCurrentWorkingDir, gszExename,
                       gszCvtFilenameBase, gszCvtFilename, gszCvtSavePath, gszKrvServerName})
        text[0] = 0;
    std::fill(std::begin(gszFileVersion), std::end(gszFileVersion), '\0');
    CopyText(gszFileVersion, "1.0");
    grWinPos = {200, 200, 840, 687, 640, 487};
    gfCmdlineWndpos = giCmdArg = giCmdPrintOrientation = giCmdPrintPapertype = giAutosave = 0;
    gbBkClrWhite = true;
    gbCmdQuit = gbIsTempFile = false;
    giExportQuality = 10;
    giPrtMinLineWidth = 2;
    giPageX = giPageY = 0;
    gdPageSizeX = gdPageSizeY = 1.0;
    ResetEpsOptions();
    gdwFilesize = gdwBkClrFile = gdwVectorCnt = 0;
    gpMainwnd = nullptr;
    gpDraw = nullptr;
}
