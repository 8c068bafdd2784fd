// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Which graphs a name on a command line stands for.
#pragma once

#include <QString>

#include <vector>

namespace tools {

/// A graph, or why there is none of that name.
struct FoundGraph {
    QString name;
    QString problem;   // empty for a graph
    QString subfolder; // below the folder that was searched, with '/' at its end; or empty
};

/// Whether a name is that of a folder, and not kStandardStream.
bool IsFolder(const QString& name);

/// Searches a folder for graphs: files with their extension, packed or not, in any case, and files
/// without an extension that begin as graphs do. Links to files count, links to folders do not.
/// @param isRecursive  whether the folders in it are searched too
/// @return the graphs in natural order, and what could not be searched; maybe empty
std::vector<FoundGraph> FindGraphs(const QString& folder, bool isRecursive);

/// The same, but for a call in which a folder without graphs is a problem.
/// @return never empty
std::vector<FoundGraph> GraphsIn(const QString& folder, bool isRecursive);

} // namespace tools
