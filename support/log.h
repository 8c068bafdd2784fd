// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The trace log: lines of text in a file that is opened and closed for each of them. Therefore
// everything logged before a crash is on the disk. If the file cannot be opened, the line is lost
// silently.
#pragma once

#include "app/state/sizes.h"

#include <cstdio>

/// A log file. Not copyable: each object writes a last line to its log.
class CLog
{
public:
    /// Starts the log at path with the line "plotvw VERSION"; see Init.
    CLog(const char* path, int append);
    /// Writes the last line, "~", with the prefix before it.
    ~CLog();
    CLog(const CLog&) = delete;
    CLog& operator=(const CLog&) = delete;

    /// Uses path for all later lines, empties the prefix and writes header as a line, after
    /// truncating the file unless append is non-zero. A path of more than kPathSize - 1 bytes is
    /// reported on standard error, and nothing is logged.
    void Init(const char* path, const char* header, int append);

    /// Writes the prefix, msg and a line end. If msg begins with a line feed, an empty line is
    /// written first instead; if it ends with one, an empty line follows.
    void Log(const char* msg);

    /// Writes msg as above, but only if level equals gdwDebug: an exact match, not a threshold.
    void Log(unsigned long level, const char* msg);

    /// Uses prefix for this and all later lines and writes it, msg and a line end. A line feed at
    /// the start of msg is written unchanged, after the prefix. A prefix of more than kPathSize - 1
    /// bytes is reported on standard error, and the current one is kept.
    void LogPrefix(const char* prefix, const char* msg);

private:
    void WriteLine(bool append, const char* lead, const char* text);

    // In this order: part of the record's layout, asserted in the constructor.
    FILE* fp = nullptr; // open only while a line is written
    char szLogFile[kPathSize] = "";
    char szPrefix[kPathSize] = "";
};

/// Opens the program's log, gpLog, in append mode: gszExePath followed by "tmp/vwrtrace.log",
/// deliberately without a separator, so that the log of /opt/plotvw goes to /opt/plotvwtmp. Nothing
/// in the program calls it. An object that gpLog already points to is neither destroyed nor freed:
/// call UnInitLogFile first. Returns false, with gpLog null, if gdwDebug is 0 or the path does not
/// fit kPathSize; true otherwise, even if the file cannot be opened. Throws std::bad_alloc if
/// memory runs out.
bool InitLogFile();

/// Destroys the program's log; does nothing if there is none.
void UnInitLogFile();
