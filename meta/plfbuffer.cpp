// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/plfbuffer.h"

#include "app/state/globals.h"
#include "meta/palette.h"
#include "support/text.h"

#include <cstdlib>
#include <cstring>
#include <limits>
#include <utility>

namespace {

// Frees the previous graph first, so that both need not fit into memory.
void Begin(char* message)
{
    CopyText(message, kLoadMessageSize, kCannotOpenGraph);
    FreePlfBuffer();
}

// After a successful load, message contains the text that is written at the start.
int Finish(PlfGraph graph, const char* problem, char* message)
{
    gpPlfmembuf = graph.Release();
    if (gpPlfmembuf != nullptr)
        return 0;
    CopyText(message, kLoadMessageSize, problem);
    return -1;
}

} // namespace

void FreePlfBuffer()
{
    free(gpPlfmembuf);
    gpPlfmembuf = nullptr;
}

int LoadPlfFile(char* path, char* message)
{
    const char* problem = nullptr;
    Begin(message);
    PlfGraph graph = PlfGraph::FromFile(path, &problem, &gdwFilesize);
    return Finish(std::move(graph), problem, message);
}

int LoadPlfBytes(std::string_view bytes, char* message)
{
    const char* problem = nullptr;
    Begin(message);
    gdwFilesize = bytes.size();
    PlfGraph graph = PlfGraph::FromBytes(bytes, &problem);
    return Finish(std::move(graph), problem, message);
}

PlfBytes LoadedPlf()
{
    return {gpPlfmembuf, gpPlfmembuf == nullptr ? 0 : gdwFilesize};
}

int GetPlfBackGroundColor(char* buf)
{
    constexpr size_t kUnknown = std::numeric_limits<size_t>::max(); // long enough, as required
    if (gbBkClrWhite)
        return kWhite;
    return NamedBackground({buf, buf == gpPlfmembuf ? LoadedPlf().size : kUnknown});
}

char* MakeMetafileName(char* name)
{
    char* dot = strchr(name, '.');
    if (dot == nullptr)
        dot = name + strlen(name);
    memcpy(dot, ".emf", 5);
    return name;
}
