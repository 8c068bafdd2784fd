// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/common/graphfile.h"

#include "meta/plfgraph.h"
#include "support/files.h"

#include <cstdio>
#include <cstring>

namespace tools {

bool IsGraph(const QByteArray& name)
{
    const FilePtr file(OpenForReading(name.constData()));
    char start[kPlfHeaderSize] = "";
    return file != nullptr && fread(start, sizeof start, 1, file.get()) == 1 &&
           memcmp(start, gszPlfhdr, sizeof start) == 0;
}

} // namespace tools
