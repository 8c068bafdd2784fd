// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "support/scan.h"

#include <cstdlib>

int ScanLongs(const char* text, std::initializer_list<long*> fields)
{
    int read = 0;
    for (long* field : fields) {
        if (read > 0 && *text++ != ',')
            break;
        char* end = nullptr;
        const long number = strtol(text, &end, 10);
        if (end == text)
            break;
        *field = number;
        text = end;
        ++read;
    }
    return read;
}
