// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "meta/packed/gunzip.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <limits>
#include <utility>

namespace {

constexpr char kMagic[] = {'\x1f', '\x8b'};
static_assert(sizeof kMagic == kGzipMagicSize);
// The largest window, and gzip's header before the data.
constexpr int kWindow = MAX_WBITS + 16;
constexpr size_t kMegabyte = size_t{1} << 20;

// What reads bytes in memory, and shortens the view by what it has read.
PlfGraph::Reader ReaderOf(std::string_view* rest)
{
    return [rest](char* block, size_t size) {
        const size_t count = rest->copy(block, size);
        rest->remove_prefix(count);
        return static_cast<ssize_t>(count);
    };
}

} // namespace

bool IsGzip(const char* start)
{
    return std::equal(std::begin(kMagic), std::end(kMagic), start);
}

struct Gunzip::Stream {
    z_stream state = {};
    std::array<char, size_t{64}* 1024> packed = {};
};

Gunzip::Gunzip(PlfGraph::Reader packedReader, size_t mostUnpacked)
    : read(std::move(packedReader)), most(mostUnpacked), stream(std::make_unique<Stream>())
{
    if (inflateInit2(&stream->state, kWindow) != Z_OK)
        Fail(QString::fromLatin1(kNoMemory));
}

Gunzip::~Gunzip()
{
    inflateEnd(&stream->state);
}

ssize_t Gunzip::Fail(const QString& reason)
{
    problem = reason;
    return -1;
}

void Gunzip::EndWith(const QString& reason)
{
    isDone = true;
    damage = reason;
}

// Returns false at the end of the packed data, or if it cannot be read.
bool Gunzip::Refill()
{
    z_stream& state = stream->state;
    if (state.avail_in > 0)
        return true;
    const ssize_t count = read(stream->packed.data(), stream->packed.size());
    hasFailed = count < 0;
    if (count <= 0)
        return false;
    state.next_in = reinterpret_cast<Bytef*>(stream->packed.data());
    state.avail_in = static_cast<uInt>(count);
    return true;
}

// After the end of one packed file. Returns whether another one follows.
bool Gunzip::BeginNext()
{
    z_stream& state = stream->state;
    const bool follows = Refill() && *state.next_in == static_cast<Bytef>(kMagic[0]);
    return follows && inflateReset(&state) == Z_OK;
}

void Gunzip::Unpack()
{
    const int result = inflate(&stream->state, Z_NO_FLUSH);
    if (result == Z_STREAM_END)
        isDone = !BeginNext();
    else if (result == Z_MEM_ERROR)
        Fail(QString::fromLatin1(kNoMemory));
    else if (result != Z_OK)
        EndWith(QStringLiteral("is damaged, as gzip data"));
}

ssize_t Gunzip::Read(char* block, size_t size)
{
    z_stream& state = stream->state;
    state.next_out = reinterpret_cast<Bytef*>(block);
    state.avail_out = static_cast<uInt>(std::min<size_t>(size, std::numeric_limits<uInt>::max()));
    const uInt wanted = state.avail_out;
    while (problem.isEmpty() && !hasFailed && !isDone && state.avail_out == wanted) {
        if (Refill())
            Unpack();
        else if (!hasFailed)
            EndWith(QStringLiteral("is cut off, as gzip data"));
    }
    const auto count = static_cast<size_t>(wanted - state.avail_out);
    unpacked += count;
    if (!problem.isEmpty() || hasFailed)
        return -1;
    if (unpacked > most)
        return Fail(
            QStringLiteral("unpacks to more than %1 MB; unpack it first").arg(most / kMegabyte));
    return static_cast<ssize_t>(count);
}

bool IsPackedGraph(std::string_view start)
{
    if (start.size() < kGzipMagicSize || !IsGzip(start.data()))
        return false;
    Gunzip gunzip(ReaderOf(&start));
    std::array<char, kPlfHeaderSize> header = {};
    for (size_t filled = 0; filled < header.size();) {
        const ssize_t count = gunzip.Read(header.data() + filled, header.size() - filled);
        if (count <= 0)
            return false;
        filled += static_cast<size_t>(count);
    }
    return std::equal(header.begin(), header.end(), std::begin(gszPlfhdr));
}

QString LoadPacked(const PlfGraph::Reader& read, PlfGraph* graph, size_t most)
{
    Gunzip gunzip(read, most);
    const char* reason = nullptr;
    *graph = PlfGraph::FromReader(
        [&gunzip](char* block, size_t size) { return gunzip.Read(block, size); }, 0, &reason);
    if (graph->IsLoaded()) {
        if (!gunzip.Damage().isEmpty())
            graph->SetCut();
        return {};
    }
    for (const QString& problem : {gunzip.Damage(), gunzip.Problem()}) {
        if (!problem.isEmpty())
            return problem;
    }
    return reason == nullptr ? QString::fromLocal8Bit(strerror(errno))
                             : QString::fromLatin1(reason);
}

QString LoadPacked(std::string_view packed, PlfGraph* graph)
{
    return LoadPacked(ReaderOf(&packed), graph);
}
