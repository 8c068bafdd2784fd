// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// How each graph went, for programs: a JSON object a line.
#pragma once

#include "support/files.h"
#include "tools/convert/convert.h"

#include <QByteArray>
#include <QString>

namespace convert {

/// The line for a graph, with its line end.
QByteArray ReportLine(const Job& job, const Outcome& outcome);

/// Writes the lines, each as soon as the graph is done.
class Report
{
public:
    Report() = default;
    /// @param name  local name, or tools::kStandardStream
    /// @return empty, or why nothing can be written; a graph is never overwritten
    QString Open(const QByteArray& name);
    /// Does nothing unless it is open.
    void Add(const Job& job, const Outcome& outcome);
    /// @return empty, or why not everything was written to its file. The standard output is its
    ///         owner's to finish.
    QString Close();
    /// The errno of the first line that could not be written; 0 without one.
    [[nodiscard]] int Error() const { return error; }

private:
    int error = 0;
    FilePtr file;
    FILE* stream = nullptr;
};

} // namespace convert
