// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "app/state/globals.h"

char gszPlffileOrig[kPathSize] = "";
char gszPlffileName[kPathSize] = "";
char gszCurdir[kPathSize] = "";
char gszCurrentWorkingDir[kWorkingDirSize] = "";
char gszExePath[kPathSize] = "";
char gszExename[kPathSize] = "";
char gszHomedir[kPathSize] = "";
char gszTmppath[kPathSize] = "";
char gszCvtFilenameBase[kPathSize] = "";
char gszCvtFilename[kPathSize] = "";
char gszCvtSavePath[kPathSize] = "";
char gszKrvServerName[kPathSize] = "";

char gszVersion[kVersionSize] = PLOTVW_VERSION;
char gszFileVersion[kVersionSize] = "1.0";
Rect grWinPos = {200, 200, 840, 687, 640, 487};
int gfCmdlineWndpos = 0;
bool gbBkClrWhite = true;
int giCmdArg = 0;
bool gbCmdQuit = false;
int giCmdPrintOrientation = 0;
int giCmdPrintPapertype = 0;
bool gbIsTempFile = false;
int giAutosave = 0;
int giExportQuality = 10;
int giPrtMinLineWidth = 2;
int giPageX = 0;
int giPageY = 0;
double gdPageSizeX = 1.0;
double gdPageSizeY = 1.0;
int gfEpsUseBkClr = 0;
int gfEpsCvt2Blk = 0;
double gdEpsCvtScale = 0.25;
int giEpsMinLineWidth = 5;
unsigned long gdwBackClrEPS = 0;
int gfPrtWht2Blk = 0;
unsigned long gdwLineClrFlag = 0;
uint16_t gwLineClrMap[16] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};
unsigned long gdwDebug = 1;
unsigned long gdwDrawMode = 0;
unsigned long gdwHpglNumPens = 8;
uint16_t gwHpglClrMap[16] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};

char* gpPlfmembuf = nullptr;
unsigned long gdwFilesize = 0;
unsigned long gdwBkClrFile = 0;
unsigned long gdwVectorCnt = 0;

QApplication* gpAppMain = nullptr;
AppWindow* gpMainwnd = nullptr;
DrawView* gpDraw = nullptr;
CLog* gpLog = nullptr;
