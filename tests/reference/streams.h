// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors

// Seeded PLF streams and views to compare interpreters with. The same seed gives the same bytes and
// the same view with every compiler and on every platform.

#pragma once

#include <string>

#include "reference.h"

namespace streams {

// A whole file: the header, then a plausible graph, a hostile stream, random bytes or a damaged
// graph, as the seed has it.
std::string Make(unsigned seed);

reference::View MakeView(unsigned seed);

} // namespace streams
