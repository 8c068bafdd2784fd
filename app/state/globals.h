// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The program-wide state: paths, settings, the current file. Only the GUI thread reads and writes
// it, so there are no locks.
#pragma once

#include "app/state/rect.h"
#include "app/state/sizes.h"

#include <cstdint>

class QApplication;
class AppWindow;
class DrawView;
class CLog;

// The host's command-line jobs, as bits of giCmdArg.
constexpr int kJobPrint = 1; // -p
constexpr int kJobJpeg = 2;  // -c=1
constexpr int kJobEps = 4;   // -c=2

// Paths and names: local 8-bit text, NUL-terminated.
extern char gszPlffileOrig[kPathSize];             // full path of the current file; "" = none
extern char gszPlffileName[kPathSize];             // its name without the directory
extern char gszCurdir[kPathSize];                  // working directory at start-up
extern char gszCurrentWorkingDir[kWorkingDirSize]; // -cwd=: directory of exported files
extern char gszExePath[kPathSize];                 // directory of the executable
extern char gszExename[kPathSize];                 // kept, not used
extern char gszHomedir[kPathSize];                 // $HOME
extern char gszTmppath[kPathSize];                 // temporary directory
extern char gszCvtFilenameBase[kPathSize];         // base name of exported files (-cf=)
extern char gszCvtFilename[kPathSize];             // full name of the file being exported
extern char gszCvtSavePath[kPathSize];             // work buffer of MakeCvtSavePath
extern char gszKrvServerName[kPathSize];           // -svrname=: the host's local server

// Settings and state.
extern char gszVersion[kVersionSize];     // program version
extern char gszFileVersion[kVersionSize]; // version stamp of the settings file
extern Rect grWinPos;                     // window position and client size
extern int gfCmdlineWndpos;               // 1 = -wp= was given
extern bool gbBkClrWhite;                 // white background instead of the file's own
extern int giCmdArg;                      // pending jobs (kJobPrint | kJobJpeg | kJobEps)
extern bool gbCmdQuit;                    // -q: quit when no job is pending
extern int giCmdPrintOrientation;         // 0 landscape, 1 portrait
extern int giCmdPrintPapertype;           // 0 Letter, 2 A4, anything else Legal
extern bool gbIsTempFile;                 // the current file is the host's temporary copy
extern int giAutosave;                    // 1 = write the settings file on closing
extern int giExportQuality;               // JPEG quality in tenths (10 = 100)
extern int giPrtMinLineWidth;             // minimum printed pen width
extern int giPageX, giPageY;              // shift of the printed page, printer pixels
extern double gdPageSizeX, gdPageSizeY;   // size factors of the printed page
extern int gfEpsUseBkClr;                 // EPS: fill the background
extern int gfEpsCvt2Blk;                  // EPS: all lines black
extern double gdEpsCvtScale;              // EPS: scale of the output
extern int giEpsMinLineWidth;             // EPS: minimum line width
extern unsigned long gdwBackClrEPS;       // EPS: palette index of the background
extern int gfPrtWht2Blk;                  // print white lines black; nothing sets it
extern unsigned long gdwLineClrFlag;      // 0 own colors, 1 all black, 2 through gwLineClrMap
extern uint16_t gwLineClrMap[16];         // line color map, identity
extern unsigned long gdwDebug;            // trace level to write
extern unsigned long gdwDrawMode;         // kept, not used
extern unsigned long gdwHpglNumPens;      // kept, not used
extern uint16_t gwHpglClrMap[16];         // kept, not used

// The loaded file.
extern char* gpPlfmembuf;          // its bytes and a zero tail; malloc'ed, null = none
extern unsigned long gdwFilesize;  // data bytes in gpPlfmembuf
extern unsigned long gdwBkClrFile; // background palette index of the last pass, 0..16
extern unsigned long gdwVectorCnt; // vectors drawn by the last pass

// The objects of the running program; null until main has created them.
extern QApplication* gpAppMain; // not read anywhere
extern AppWindow* gpMainwnd;
extern DrawView* gpDraw;
extern CLog* gpLog; // start-up does not open a log
