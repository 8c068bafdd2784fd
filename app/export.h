// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// File names of what is saved and exported, and two file helpers.
#pragma once

#include <QString>

/// Appends ext to name, unless name ends with it or its last component (behind the last '/', or
/// the last '\' when there is no '/') holds a '.' anywhere.
/// @param ext  extension with its dot, ".jpg"
void AppendFileExt(QString& name, const char* ext);

/// Copies a file whole. The caller passes a readable source and a writable destination; where one
/// does not open nothing is copied and the result is 0. Nothing in the program calls it.
/// @return bytes copied, or 1 when there is no memory for them
long copyFile(const char* dst, const char* src);

/// Copies path into gszCvtSavePath and cuts it at the first occurrence of marker. Nothing in the
/// program calls it.
/// @return where it was cut; null when path does not fit or marker does not occur
char* MakeCvtSavePath(const char* path, const char* marker);
