// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Graphs that were packed with gzip.
#pragma once

#include "meta/plfgraph.h"

#include <QString>

#include <memory>
#include <string_view>

/// Most bytes that are unpacked: a packed megabyte may hold a gigabyte of anything.
constexpr size_t kMostUnpacked = size_t{1} << 30;

/// Whether data begins as gzip's does.
/// @param start  at least kGzipMagicSize bytes
bool IsGzip(const char* start);
constexpr size_t kGzipMagicSize = 2;

/// How much of a packed file is enough to unpack the header of a graph: gzip's own header with a
/// name of 255 bytes, the codes of the first block, and the header in them.
constexpr size_t kPackedStartSize = 1024;
/// Whether data begins as a packed graph does.
/// @param start  kPackedStartSize bytes, or all that there are
bool IsPackedGraph(std::string_view start);

/// Loads a packed graph. What is no graph is refused after its first bytes; of one that is cut or
/// damaged, what can be unpacked is loaded.
/// @param read   delivers the packed data
/// @param graph  receives it
/// @param most   bytes that are unpacked; more are a failure
/// @return empty, or why it was not loaded
QString LoadPacked(const PlfGraph::Reader& read, PlfGraph* graph, size_t most = kMostUnpacked);
/// The same, of data in memory.
QString LoadPacked(std::string_view packed, PlfGraph* graph);

/// Unpacks a stream, piece by piece. Several packed files in a row are one; what follows them is
/// ignored, as gzip does. Data that is cut or damaged ends where it cannot be unpacked any more.
class Gunzip
{
public:
    /// @param mostUnpacked  bytes; more are a failure
    explicit Gunzip(PlfGraph::Reader packedReader, size_t mostUnpacked = kMostUnpacked);
    ~Gunzip();
    Gunzip(const Gunzip&) = delete;
    Gunzip& operator=(const Gunzip&) = delete;

    /// A PlfGraph::Reader.
    ssize_t Read(char* block, size_t size);
    /// Why Read failed; empty if what it reads from did.
    [[nodiscard]] const QString& Problem() const { return problem; }
    /// What is wrong with the data, once its end was read; empty if nothing is.
    [[nodiscard]] const QString& Damage() const { return damage; }

private:
    struct Stream;

    bool Refill();
    bool BeginNext();
    void Unpack();
    ssize_t Fail(const QString& reason);
    void EndWith(const QString& reason);

    PlfGraph::Reader read;
    size_t most;
    std::unique_ptr<Stream> stream;
    size_t unpacked = 0;
    bool isDone = false;
    bool hasFailed = false; // what it reads from
    QString problem;
    QString damage;
};
