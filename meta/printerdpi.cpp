// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/printerdpi.h"

#include <QPrinter>

Resolution PrinterResolution(const QPrinter* printer)
{
    return {printer->logicalDpiX(), printer->logicalDpiY()};
}
