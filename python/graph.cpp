// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "python/graph.h"

#include "meta/packed/gunzip.h"
#include "python/failure.h"
#include "support/files.h"
#include "tools/common/filename.h"
#include "tools/common/source.h"
#include "tools/info/inspector.h"
#include "tools/info/summaryjson.h"

#include <QJsonDocument>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <iterator>
#include <new>
#include <utility>

namespace python {

namespace {

constexpr char kNoGraph[] = "not a PLF graph";

// Of the first byte that a graph would not have; that after the last one for a short file.
size_t OffsetOfProblem(std::string_view bytes)
{
    const auto differ =
        std::mismatch(bytes.begin(), bytes.end(), std::begin(gszPlfhdr), std::end(gszPlfhdr));
    return static_cast<size_t>(differ.first - bytes.begin());
}

void CheckHeader(std::string_view bytes)
{
    if (bytes.empty())
        throw GraphFailure{kNoBytes, 0};
    const size_t offset = OffsetOfProblem(bytes);
    if (offset < kPlfHeaderSize)
        throw GraphFailure{kNoGraph, offset};
}

void CheckDamage(const PlfDamageMap& damage)
{
    const PlfDamageMap::value_type* first = nullptr;
    for (const auto& noted : damage) {
        if (IsLoss(noted.first) && (first == nullptr || noted.second.offset < first->second.offset))
            first = &noted;
    }
    if (first != nullptr)
        throw GraphFailure{DamageWord(first->first), first->second.offset};
}

Graph Read(std::string name, PlfGraph source, bool strict)
{
    Graph graph;
    graph.name = std::move(name);
    graph.source = std::move(source);
    DamageObserver observer;
    observer.Begin(graph.source.Bytes());
    graph.drawing = ReadDrawing(graph.source.Bytes(), observer);
    graph.damage = observer.Damage();
    if (strict)
        CheckDamage(graph.damage);
    return graph;
}

[[noreturn]] void ThrowSystem(int error, const std::string& path)
{
    throw SystemFailure{error, path};
}

// What the system refuses, which the loader's texts say to people only.
void CheckFile(const std::string& path, struct stat* info)
{
    if (stat(path.c_str(), info) != 0)
        ThrowSystem(errno, path);
    if (S_ISDIR(info->st_mode))
        ThrowSystem(EISDIR, path);
    if (access(path.c_str(), R_OK) != 0)
        ThrowSystem(errno, path);
}

// What the loader says of a packed file or a pipe, where nobody knows the offset.
void CheckLoaded(const QString& problem)
{
    if (problem == QLatin1StringView(kNotAGraph))
        throw GraphFailure{kNoGraph, 0};
    if (!problem.isEmpty())
        throw GraphFailure{problem.toStdString(), 0};
}

bool IsPacked(std::string_view bytes)
{
    return bytes.size() >= kGzipMagicSize && IsGzip(bytes.data());
}

// Where a file differs from a graph, unless it is a packed one.
void CheckStart(const std::string& path)
{
    char start[kPlfHeaderSize] = "";
    const FilePtr file(OpenForReading(path.c_str()));
    if (file == nullptr)
        ThrowSystem(errno, path);
    const size_t size = fread(start, 1, sizeof start, file.get());
    if (!IsPacked({start, size}))
        CheckHeader({start, size});
}

// A file may have the name that stands for the standard input.
QByteArray LocalName(const std::string& path)
{
    const QByteArray local = QByteArray::fromStdString(path);
    return local == tools::kStandardStream ? "./" + local : local;
}

PlfGraph Copy(std::string_view bytes)
{
    CheckHeader(bytes);
    const char* problem = nullptr;
    PlfGraph source = PlfGraph::FromBytes(bytes, &problem);
    if (problem != nullptr)
        throw std::bad_alloc();
    return source;
}

PlfGraph Unpack(std::string_view packed)
{
    PlfGraph source;
    CheckLoaded(LoadPacked(packed, &source));
    return source;
}

} // namespace

Graph ReadFile(const std::string& path, bool strict)
{
    struct stat info = {};
    CheckFile(path, &info);
    PlfGraph source;
    int error = 0;
    const QString problem = tools::LoadGraph(LocalName(path), &source, &error);
    if (error != 0 && !problem.isEmpty())
        ThrowSystem(error, path);
    if (!problem.isEmpty() && S_ISREG(info.st_mode))
        CheckStart(path);
    CheckLoaded(problem);
    return Read(path, std::move(source), strict);
}

Graph ReadBytes(std::string_view bytes, bool strict)
{
    return Read(tools::kStandardStream, IsPacked(bytes) ? Unpack(bytes) : Copy(bytes), strict);
}

QByteArray Info(const Graph& graph)
{
    const info::Summary summary = info::Inspector().Inspect(graph.source.Bytes());
    return QJsonDocument(info::SummaryJson(summary)).toJson(QJsonDocument::Compact);
}

} // namespace python
