// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "support/streams.h"

#include <fcntl.h>
#include <unistd.h>

#include <initializer_list>

void TakeClosedStreams()
{
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        const int how = stream == STDIN_FILENO ? O_WRONLY : O_RDONLY;
        // The lowest free number is given first, and those before this one are taken.
        if (fcntl(stream, F_GETFD) == -1)
            open("/dev/null", how);
    }
}
