// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/common/graphsearch.h"

#include "tools/common/filename.h"
#include "tools/common/graphfile.h"
#include "tools/common/naturalorder.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <system_error>

namespace tools {

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

fs::path PathOf(const QString& name)
{
    return EncodeName(name).toStdString();
}

QString NameOf(const fs::path& path)
{
    return DecodeName(QByteArray::fromStdString(path.string()));
}

// A file without an extension is looked into.
bool IsGraphFile(const fs::path& file)
{
    if (HasGraphName(NameOf(file)))
        return true;
    return file.extension().empty() && IsGraph(QByteArray::fromStdString(file.string()));
}

// Goes through one folder that was named.
class Search
{
public:
    Search(const QString& folder, bool isRecursive) : root(PathOf(folder)), recursive(isRecursive)
    {
        Look(root);
    }

    std::vector<FoundGraph> Sorted()
    {
        std::sort(found.begin(), found.end(), [](const FoundGraph& a, const FoundGraph& b) {
            return IsNaturallyBefore(EncodeName(a.name), EncodeName(b.name));
        });
        return std::move(found);
    }

private:
    // Links to folders may lead in a circle. Pipes and devices are left out, as reading them may
    // never end.
    void Look(const fs::path& folder)
    {
        std::error_code error;
        fs::directory_iterator entry(folder, error);
        for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
            std::error_code ignored; // of a file that vanished meanwhile
            if (recursive && entry->symlink_status(ignored).type() == fs::file_type::directory)
                Look(entry->path());
            else if (entry->is_regular_file(ignored) && IsGraphFile(entry->path()))
                Add(entry->path());
        }
        if (error)
            found.push_back({NameOf(folder), QString::fromStdString(error.message()), {}});
    }

    void Add(const fs::path& file)
    {
        const fs::path below = file.parent_path().lexically_relative(root / "").relative_path();
        const QString subfolder = NameOf(below);
        const bool isDirect = subfolder.isEmpty() || subfolder == u".";
        found.push_back({NameOf(file), {}, isDirect ? QString() : subfolder + u'/'});
    }

    fs::path root;
    bool recursive;
    std::vector<FoundGraph> found;
};

} // namespace

bool IsFolder(const QString& name)
{
    std::error_code ignored;
    return name != QLatin1StringView(kStandardStream) && fs::is_directory(PathOf(name), ignored);
}

std::vector<FoundGraph> FindGraphs(const QString& folder, bool isRecursive)
{
    return Search(folder, isRecursive).Sorted();
}

std::vector<FoundGraph> GraphsIn(const QString& folder, bool isRecursive)
{
    std::vector<FoundGraph> graphs = FindGraphs(folder, isRecursive);
    if (graphs.empty())
        graphs.push_back({folder, QStringLiteral("contains no graph"), {}});
    return graphs;
}

} // namespace tools
