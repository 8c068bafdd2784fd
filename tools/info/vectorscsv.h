// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The vectors of graphs as comma-separated values, a row for each.
#pragma once

#include "tools/info/output.h"

#include <QByteArray>

#include <array>

struct VectorRecord;

namespace info {

class VectorsCsv : public Output
{
public:
    /// @param hasNames  whether the first column is the graph's name
    /// @param isCheck   whether damage is looked for
    VectorsCsv(bool hasNames, bool isCheck) : hasFiles(hasNames), checks(isCheck) {}

    void Begin() override;
    bool Graph(const QString& name, const PlfBytes& graph) override;
    void End() override { Flush(); }

private:
    void Put(QByteArrayView bytes);
    void PutRow(const VectorRecord& vector);
    void Flush();

    bool hasFiles;
    bool checks;
    std::array<char, 64 * 1024> block; // of what is printed next: a call for each row takes longer
    size_t filled = 0;
};

} // namespace info
