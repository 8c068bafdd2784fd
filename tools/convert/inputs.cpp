// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/inputs.h"

#include "support/files.h"
#include "tools/common/filename.h"
#include "tools/common/naturalorder.h"
#include "tools/convert/graphfile.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <system_error>

namespace convert {

namespace {

namespace fs = std::filesystem;

constexpr const char* kGraphExtensions[] = {".plf", ".plf.gz"};

bool HasGraphName(const QString& name)
{
    return std::any_of(std::begin(kGraphExtensions), std::end(kGraphExtensions),
                       [&name](const char* extension) {
                           return name.endsWith(QLatin1StringView(extension), Qt::CaseInsensitive);
                       });
}

// A file without an extension is looked into.
bool IsGraphFile(const fs::path& file)
{
    const QByteArray name = QByteArray::fromStdString(file.string());
    if (HasGraphName(tools::DecodeName(name)))
        return true;
    return file.extension().empty() && IsGraph(name);
}

fs::path PathOf(const QString& name)
{
    return tools::EncodeName(name).toStdString();
}

Input Failed(const QString& name, const QString& problem)
{
    return {name, problem, {}};
}

// The graphs of one folder that was named.
class Folder
{
public:
    Folder(QString folderName, bool isRecursive)
        : name(std::move(folderName)), root(PathOf(name)), recursive(isRecursive)
    {
    }

    std::vector<Input> Graphs()
    {
        Search(root);
        std::sort(graphs.begin(), graphs.end(), [](const Input& a, const Input& b) {
            return tools::IsNaturallyBefore(tools::EncodeName(a.name), tools::EncodeName(b.name));
        });
        if (graphs.empty())
            graphs.push_back(Failed(name, QStringLiteral("contains no graph")));
        return std::move(graphs);
    }

private:
    // Links to files are followed, those to folders are not: they may lead in a circle. Pipes and
    // devices are left out, as reading them may never end.
    void Search(const fs::path& folder)
    {
        std::error_code error;
        fs::directory_iterator entry(folder, error);
        for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
            std::error_code ignored; // of a file that vanished meanwhile
            if (recursive && entry->symlink_status(ignored).type() == fs::file_type::directory)
                Search(entry->path());
            else if (entry->is_regular_file(ignored) && IsGraphFile(entry->path()))
                Add(entry->path());
        }
        if (error)
            graphs.push_back(Failed(Decoded(folder), QString::fromStdString(error.message())));
    }

    void Add(const fs::path& file)
    {
        const fs::path below = file.parent_path().lexically_relative(root / "").relative_path();
        const QString subfolder = Decoded(below);
        graphs.push_back({Decoded(file),
                          {},
                          subfolder.isEmpty() || subfolder == u"." ? QString() : subfolder + u'/'});
    }

    static QString Decoded(const fs::path& path)
    {
        return tools::DecodeName(QByteArray::fromStdString(path.string()));
    }

    QString name;
    fs::path root;
    bool recursive;
    std::vector<Input> graphs;
};

void AddNamed(const QString& name, bool recursive, std::vector<Input>* inputs)
{
    std::error_code error;
    if (!fs::is_directory(PathOf(name), error)) {
        inputs->push_back({name, {}, {}});
        return;
    }
    std::vector<Input> graphs = Folder(name, recursive).Graphs();
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
    for (const QByteArray& name : list.split(options.nullSeparated ? '\0' : '\n')) {
        const QString decoded = tools::DecodeName(name);
        if (name.contains('\0'))
            inputs->push_back(Failed(options.listFile, QStringLiteral("contains a name with a zero "
                                                                      "byte; use --null")));
        else if (!name.isEmpty())
            AddNamed(decoded, options.recursive, inputs);
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
