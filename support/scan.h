// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Comma-separated integers, read as the C library's "%ld,%ld,..." reads them.
#pragma once

#include <initializer_list>

/// Reads integers that are separated by commas: white space and a sign may stand before each, none
/// before a comma. Stops at the first field that does not match; it and those behind it keep their
/// values. Numbers outside the range of long saturate.
/// @return the number of fields read
int ScanLongs(const char* text, std::initializer_list<long*> fields);
