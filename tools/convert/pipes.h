// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Pipes between processes.
#pragma once

#include "support/descriptor.h"

namespace convert {

/// Creates a pipe that programs started from here do not get.
/// @return false when there is none
bool MakePipe(Fd* readEnd, Fd* writeEnd);

} // namespace convert
