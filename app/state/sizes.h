// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Sizes of the buffers that paths and versions are kept in.
#pragma once

#include <cstddef>

/// Bytes in a path buffer, with the terminating NUL.
constexpr size_t kPathSize = 1024;
/// Bytes in the working-directory buffer of the "-cwd=" option, with the terminating NUL.
constexpr size_t kWorkingDirSize = 2048;
/// Bytes in a version text, NUL-padded; the settings file stores all of them.
constexpr size_t kVersionSize = 10;
