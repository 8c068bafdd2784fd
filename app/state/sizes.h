// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Sizes of the buffers for paths and versions.
#pragma once

#include <cstddef>

/// Bytes of a path buffer, including the terminating NUL.
constexpr size_t kPathSize = 1024;
/// Bytes of the buffer for the "-cwd=" option, including the terminating NUL.
constexpr size_t kWorkingDirSize = 2048;
/// Bytes of a version text, padded with NULs; the settings file contains all of them.
constexpr size_t kVersionSize = 10;
