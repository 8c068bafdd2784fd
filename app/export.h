// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// File names of saved copies and exports, and two file helpers.
#pragma once

#include <QString>

/// Appends ext to name, unless name ends with it or its last component (after the last '/', or the
/// last '\' if there is no '/') contains a '.'.
/// @param ext  extension with its dot, such as ".jpg"
void AppendFileExt(QString& name, const char* ext);

/// Copies a file. The caller passes a readable source and a writable destination; if one of them
/// cannot be opened, nothing is copied and the result is 0. Nothing in the program calls it.
/// @return the number of bytes copied, or 1 if there is not enough memory
long copyFile(const char* dst, const char* src);

/// Copies path into gszCvtSavePath and cuts it at the first occurrence of marker. Nothing in the
/// program calls it.
/// @return the position of the cut; null if path does not fit or marker does not occur
char* MakeCvtSavePath(const char* path, const char* marker);
