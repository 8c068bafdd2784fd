// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/plfgraph.h"

#include "meta/palette.h"
#include "support/files.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

// As a command this is the color map entry 0 with hue, lightness and saturation 0, followed by
// the start of entry 1.
const char gszPlfhdr[kPlfHeaderSize] = {'\x1b', 'T',    'G', '1', '4', '0', '0', '0',
                                        '0',    '\x1b', 'T', 'G', '1', '4', '1', '0'};

const int gBkClrEsc[] = {' ', '4', '3', '5', '2', '6', '8', '?',
                         '>', ';', '9', ':', '=', '<', '7', '1'};
static_assert(std::size(gBkClrEsc) == kPaletteSize);

const char kCannotOpenGraph[] = "Error opening file.";
const char kNotAGraph[] = "File is not a recognized PLF graphic format.";
const char kNoBytes[] = "is empty";
const char kNoMemory[] = "not enough memory";

namespace {

// A pipe or a device has no size, and reading it might never end.
bool IsRegularFile(FILE* file)
{
    struct stat info = {};
    return fstat(fileno(file), &info) == 0 && S_ISREG(info.st_mode);
}

bool MeasureFile(FILE* file, unsigned long* size)
{
    if (fseek(file, 0, SEEK_END) != 0)
        return false;
    const long end = ftell(file);
    if (end < 0 || fseek(file, 0, SEEK_SET) != 0)
        return false;
    *size = static_cast<unsigned long>(end);
    return true;
}

} // namespace

PlfGraph PlfGraph::Allocate(size_t size)
{
    PlfGraph graph;
    graph.size = size;
    if (graph.Grow(size))
        graph.ClearTail();
    return graph;
}

// Resizes the block to this number of bytes and the zero bytes.
bool PlfGraph::Grow(size_t capacity)
{
    void* grown = realloc(block.get(), capacity + kPlfTailSize);
    if (grown == nullptr)
        return false;
    static_cast<void>(block.release()); // realloc freed or kept it
    block.reset(static_cast<char*>(grown));
    return true;
}

// Clears all of it, including the byte directly after the data, so that no old memory is ever
// decoded.
void PlfGraph::ClearTail()
{
    memset(block.get() + size, 0, kPlfTailSize);
}

bool PlfGraph::HasHeader() const
{
    return memcmp(block.get(), gszPlfhdr, kPlfHeaderSize) == 0;
}

// For a graph shorter than the header, the zero bytes differ from it.
PlfGraph PlfGraph::Checked(PlfGraph graph, const char** problem)
{
    if (graph.HasHeader())
        return graph;
    *problem = kNotAGraph;
    return {};
}

PlfGraph PlfGraph::FromBytes(std::string_view bytes, const char** problem)
{
    PlfGraph graph = Allocate(bytes.size());
    if (!graph.IsLoaded() || bytes.empty()) {
        *problem = kCannotOpenGraph;
        return {};
    }
    memcpy(graph.block.get(), bytes.data(), bytes.size());
    return Checked(std::move(graph), problem);
}

PlfGraph PlfGraph::FromFile(const char* path, const char** problem, unsigned long* measured)
{
    unsigned long ignored = 0;
    unsigned long* size = measured == nullptr ? &ignored : measured;
    const FilePtr file(OpenForReading(path));
    if (file != nullptr && IsRegularFile(file.get()) && MeasureFile(file.get(), size)) {
        PlfGraph graph = Allocate(*size);
        // An empty file fails here: nothing is read.
        if (graph.IsLoaded() && fread(graph.block.get(), *size, 1, file.get()) == 1)
            return Checked(std::move(graph), problem);
    }
    *problem = kCannotOpenGraph;
    return {};
}

// Reads until there are so many bytes.
PlfGraph::Filled PlfGraph::Fill(const Reader& read, size_t capacity)
{
    if (!Grow(capacity))
        return Filled::kNoMemory;
    while (size < capacity) {
        const ssize_t count = read(block.get() + size, capacity - size);
        if (count <= 0)
            return count == 0 ? Filled::kAtEnd : Filled::kFailed;
        size += static_cast<size_t>(count);
    }
    return Filled::kFull;
}

// There is memory for the rest only after a look at the header. One byte more than there will be
// finds the end.
PlfGraph PlfGraph::FromReader(const Reader& read, size_t expected, const char** problem)
{
    constexpr size_t kFirstBlock = size_t{64} * 1024;
    PlfGraph graph;
    Filled filled = graph.Fill(read, kPlfHeaderSize);
    const bool isOther = filled == Filled::kFull && !graph.HasHeader();
    for (size_t capacity = std::max(expected + 1, kFirstBlock); filled == Filled::kFull && !isOther;
         capacity *= 2)
        filled = graph.Fill(read, capacity);
    if (filled == Filled::kNoMemory || filled == Filled::kFailed) {
        *problem = filled == Filled::kNoMemory ? kNoMemory : nullptr;
        return {};
    }
    if (graph.size == 0) {
        *problem = kNoBytes;
        return {};
    }
    graph.ClearTail();
    return Checked(std::move(graph), problem);
}

PlfGraph PlfGraph::FromStream(int descriptor, const char** problem)
{
    const auto readStream = [descriptor](char* bytes, size_t count) {
        return read(descriptor, bytes, count);
    };
    const char* reason = nullptr;
    PlfGraph graph = FromReader(readStream, 0, &reason);
    if (!graph.IsLoaded())
        *problem = reason == nullptr ? strerror(errno) : reason;
    return graph;
}

const char* FindPlfBackGround(const PlfBytes& graph)
{
    if (graph.data == nullptr || graph.size < kBackgroundScanStart)
        return nullptr;
    // Only the second match counts.
    const char* match = strstr(graph.data + kBackgroundScanStart, "RA1");
    if (match != nullptr)
        match = strstr(match + 3, "RA1");
    return match == nullptr ? nullptr : match + 3;
}

int NamedBackground(const PlfBytes& graph)
{
    const char* named = FindPlfBackGround(graph);
    if (named == nullptr)
        return kWhite;
    const auto* found = std::find(std::begin(gBkClrEsc), std::end(gBkClrEsc), *named);
    return found == std::end(gBkClrEsc) ? kNoBackground
                                        : static_cast<int>(found - std::begin(gBkClrEsc));
}
