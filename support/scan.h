// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Comma-separated integers, read like "%ld,%ld,..." of the C library.
#pragma once

#include <initializer_list>

/// Reads integers that are separated by commas. White space and a sign are allowed before each
/// integer, but not before a comma. Stops at the first field that does not match; it and the
/// following ones keep their values. Numbers outside the range of long saturate.
/// @return the number of fields read
int ScanLongs(const char* text, std::initializer_list<long*> fields);
