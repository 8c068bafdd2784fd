// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Graphs that were packed with gzip.
#pragma once

#include "meta/plfgraph.h"

#include <QString>

#include <memory>

namespace tools {

/// Most bytes that are unpacked: a packed megabyte may hold a gigabyte of anything.
constexpr size_t kMostUnpacked = size_t{1} << 30;

/// Whether data begins as gzip's does.
/// @param start  at least kGzipMagicSize bytes
bool IsGzip(const char* start);
constexpr size_t kGzipMagicSize = 2;

/// Unpacks a stream, piece by piece. Several packed files in a row are one; what follows them is
/// ignored, as gzip does.
class Gunzip
{
public:
    explicit Gunzip(PlfGraph::Reader packedReader);
    ~Gunzip();
    Gunzip(const Gunzip&) = delete;
    Gunzip& operator=(const Gunzip&) = delete;

    /// A PlfGraph::Reader.
    ssize_t Read(char* block, size_t size);
    /// Why Read failed; empty if what it reads from did.
    [[nodiscard]] const QString& Problem() const { return problem; }

private:
    struct Stream;

    bool Refill();
    bool BeginNext();
    ssize_t Fail(const char* reason);

    PlfGraph::Reader read;
    std::unique_ptr<Stream> stream;
    size_t unpacked = 0;
    bool isDone = false;
    QString problem;
};

} // namespace tools
