// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/common/gunzip.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

namespace tools {

namespace {

constexpr char kMagic[] = {'\x1f', '\x8b'};
static_assert(sizeof kMagic == kGzipMagicSize);
// The largest window, and gzip's header before the data.
constexpr int kWindow = MAX_WBITS + 16;

} // namespace

bool IsGzip(const char* start)
{
    return std::equal(std::begin(kMagic), std::end(kMagic), start);
}

struct Gunzip::Stream {
    z_stream state = {};
    std::array<char, size_t{64}* 1024> packed = {};
};

Gunzip::Gunzip(PlfGraph::Reader packedReader)
    : read(std::move(packedReader)), stream(std::make_unique<Stream>())
{
    if (inflateInit2(&stream->state, kWindow) != Z_OK)
        Fail(kNoMemory);
}

Gunzip::~Gunzip()
{
    inflateEnd(&stream->state);
}

ssize_t Gunzip::Fail(const char* reason)
{
    problem = QString::fromLatin1(reason);
    return -1;
}

// Returns false at the end of the packed data, or if it cannot be read.
bool Gunzip::Refill()
{
    z_stream& state = stream->state;
    if (state.avail_in > 0)
        return true;
    const ssize_t count = read(stream->packed.data(), stream->packed.size());
    if (count <= 0) {
        if (count == 0)
            Fail("is cut off, as gzip data");
        return false;
    }
    state.next_in = reinterpret_cast<Bytef*>(stream->packed.data());
    state.avail_in = static_cast<uInt>(count);
    return true;
}

// After the end of one packed file. Returns whether another one follows.
bool Gunzip::BeginNext()
{
    z_stream& state = stream->state;
    const bool follows = Refill() && *state.next_in == static_cast<Bytef>(kMagic[0]);
    problem.clear();
    return follows && inflateReset(&state) == Z_OK;
}

ssize_t Gunzip::Read(char* block, size_t size)
{
    z_stream& state = stream->state;
    state.next_out = reinterpret_cast<Bytef*>(block);
    state.avail_out = static_cast<uInt>(std::min<size_t>(size, std::numeric_limits<uInt>::max()));
    const uInt wanted = state.avail_out;
    while (problem.isEmpty() && !isDone && state.avail_out == wanted) {
        if (!Refill())
            return -1;
        const int result = inflate(&state, Z_NO_FLUSH);
        if (result == Z_STREAM_END)
            isDone = !BeginNext();
        else if (result != Z_OK)
            return Fail(result == Z_MEM_ERROR ? kNoMemory : "is damaged, as gzip data");
    }
    const auto count = static_cast<size_t>(wanted - state.avail_out);
    unpacked += count;
    if (!problem.isEmpty())
        return -1;
    if (unpacked > kMostUnpacked)
        return Fail("unpacks to more than 1 GB; unpack it first");
    return static_cast<ssize_t>(count);
}

} // namespace tools
