// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/inputs.h"

#include "support/files.h"
#include "tools/common/filename.h"
#include "tools/common/graphsearch.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iterator>

namespace convert {

namespace {

Input Failed(const QString& name, const QString& problem)
{
    return {name, problem, {}};
}

void AddNamed(const QString& name, bool recursive, std::vector<Input>* inputs)
{
    if (!tools::IsFolder(name)) {
        inputs->push_back({name, {}, {}});
        return;
    }
    std::vector<Input> graphs = tools::GraphsIn(name, recursive);
    std::move(graphs.begin(), graphs.end(), std::back_inserter(*inputs));
}

// All of a file, or of the standard input.
bool ReadList(const QString& name, QByteArray* list)
{
    const bool isStream = name == QLatin1StringView(tools::kStandardStream);
    const FilePtr file(isStream ? nullptr : fopen(tools::EncodeName(name).constData(), "re"));
    FILE* stream = isStream ? stdin : file.get();
    if (stream == nullptr)
        return false;
    constexpr size_t kBlock = size_t{64} * 1024;
    QByteArray block(kBlock, Qt::Uninitialized);
    for (size_t count = 1; count > 0;) {
        count = fread(block.data(), 1, kBlock, stream);
        list->append(block.constData(), static_cast<qsizetype>(count));
    }
    return ferror(stream) == 0;
}

void AddListed(const Options& options, std::vector<Input>* inputs)
{
    QByteArray list;
    if (!ReadList(options.listFile, &list)) {
        inputs->push_back(Failed(options.listFile, QString::fromLocal8Bit(strerror(errno))));
        return;
    }
    // No name has a zero byte: each "line" would be many names.
    if (!options.nullSeparated && list.contains('\0')) {
        inputs->push_back(
            Failed(options.listFile, QStringLiteral("the names end with zero bytes; add -0")));
        return;
    }
    for (const QByteArray& name : list.split(options.nullSeparated ? '\0' : '\n')) {
        if (!name.isEmpty())
            AddNamed(tools::DecodeName(name), options.recursive, inputs);
    }
}

} // namespace

std::vector<Input> CollectInputs(const Options& options)
{
    std::vector<Input> inputs;
    for (const QString& name : options.inputs)
        AddNamed(name, options.recursive, &inputs);
    if (!options.listFile.isEmpty())
        AddListed(options, &inputs);
    return inputs;
}

} // namespace convert
