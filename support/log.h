// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The trace log: lines of text in a file that is opened and closed for each of them. What was
// logged before a crash is therefore on the disk. A file that does not open loses the line
// silently.
#pragma once

#include "app/state/sizes.h"

#include <cstdio>

/// A log file. Not to be copied: each object ends its log with a line of its own.
class CLog
{
public:
    /// Starts the log at path with the line "plotvw VERSION"; see Init.
    CLog(const char* path, int append);
    /// Writes the last line, "~", with the prefix in front.
    ~CLog();
    CLog(const CLog&) = delete;
    CLog& operator=(const CLog&) = delete;

    /// Takes path for all later lines, empties the prefix and writes header as a line: after what
    /// the file holds when append is non-zero, otherwise to an emptied file. A path of more than
    /// kPathSize - 1 bytes is reported on standard error, and nothing is logged then.
    void Init(const char* path, const char* header, int append);

    /// Writes the prefix, msg and a line end. A msg that begins with a line feed puts an empty line
    /// in front instead; one that ends in a line feed is followed by an empty line.
    void Log(const char* msg);

    /// Writes msg as above, but only when level equals gdwDebug: exactly, it is no threshold.
    void Log(unsigned long level, const char* msg);

    /// Takes prefix for this and all later lines and writes it, msg and a line end. A line feed at
    /// the start of msg stays where it is, behind the prefix. A prefix of more than kPathSize - 1
    /// bytes is reported on standard error, and the present one is kept.
    void LogPrefix(const char* prefix, const char* msg);

private:
    void WriteLine(bool append, const char* lead, const char* text);

    // In this order: part of the record's layout, asserted in the constructor.
    FILE* fp = nullptr; // open only while a line is written
    char szLogFile[kPathSize] = "";
    char szPrefix[kPathSize] = "";
};

/// Opens the program's log, gpLog, in append mode: gszExePath followed by "tmp/vwrtrace.log",
/// deliberately without a separator, so that the log of /opt/plotvw goes to /opt/plotvwtmp.
/// Nothing in the program calls it. An object that gpLog already held is forgotten, neither ended
/// nor freed: call UnInitLogFile first.
/// Returns false, with gpLog null, when gdwDebug is 0 or the path does not fit kPathSize; true
/// otherwise, even if the file does not open. Throws std::bad_alloc when memory runs out.
bool InitLogFile();

/// Ends and frees the program's log; does nothing when there is none.
void UnInitLogFile();
