// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "support/log.h"

#include "app/state/globals.h"
#include "support/files.h"
#include "support/text.h"

#include <cstddef>

CLog::CLog(const char* path, int append)
{
    static_assert(offsetof(CLog, fp) == 0 && offsetof(CLog, szLogFile) == sizeof(FILE*) &&
                  offsetof(CLog, szPrefix) == sizeof(FILE*) + kPathSize);
    char header[sizeof "plotvw " + kVersionSize] = "";
    FormatText(header, sizeof header, "plotvw %s", gszVersion);
    Init(path, header, append);
}

CLog::~CLog()
{
    Log("~");
}

void CLog::Init(const char* path, const char* header, int append)
{
    szPrefix[0] = '\0';
    szLogFile[0] = '\0'; // no file has this name; it remains if the path is refused
    FormatPath(szLogFile, "the path of the log file", "%s", path);
    WriteLine(append != 0, "", header);
}

void CLog::Log(const char* msg)
{
    const bool startsWithLineFeed = msg[0] == '\n';
    WriteLine(true, startsWithLineFeed ? "\n" : "", startsWithLineFeed ? msg + 1 : msg);
}

void CLog::Log(unsigned long level, const char* msg)
{
    if (level == gdwDebug)
        Log(msg);
}

void CLog::LogPrefix(const char* prefix, const char* msg)
{
    FormatPath(szPrefix, "a prefix of the log", "%s", prefix);
    WriteLine(true, "", msg);
}

void CLog::WriteLine(bool append, const char* lead, const char* text)
{
    fp = OpenForWriting(szLogFile, append);
    if (fp == nullptr)
        return;
    std::fprintf(fp, "%s%s%s\n", lead, szPrefix, text);
    std::fclose(fp);
    fp = nullptr;
}

bool InitLogFile()
{
    gpLog = nullptr;
    char path[kPathSize];
    if (gdwDebug == 0 ||
        !FormatPath(path, "the path of the log file", "%stmp/vwrtrace.log", gszExePath))
        return false;
    gpLog = new CLog(path, 1);
    return true;
}

void UnInitLogFile()
{
    delete gpLog;
    gpLog = nullptr;
}
