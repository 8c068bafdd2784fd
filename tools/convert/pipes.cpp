// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/pipes.h"

#include <fcntl.h>

namespace convert {

bool MakePipe(Fd* readEnd, Fd* writeEnd)
{
    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC) != 0)
        return false;
    *readEnd = Fd(ends[0]);
    *writeEnd = Fd(ends[1]);
    return true;
}

} // namespace convert
