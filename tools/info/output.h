// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What a call prints on the standard output, graph by graph, so that nothing piles up however many
// there are.
#pragma once

#include "meta/damage.h"
#include "meta/plfgraph.h"
#include "tools/info/options.h"

#include <QByteArrayView>
#include <QString>

#include <memory>

namespace info {

class Output
{
public:
    Output() = default;
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;
    virtual ~Output() = default;

    /// What comes before the first graph.
    virtual void Begin() {}
    /// @param name  as the call has it, or as it was found in a folder
    /// @return whether the graph is damaged, see HasLoss; kinds of output that do not come across
    ///         damage look for it only if the call checks graphs
    virtual bool Graph(const QString& name, const PlfBytes& graph) = 0;
    /// A graph that could not be read; the message about it has been printed.
    virtual void Problem(const QString& /*name*/, const QString& /*problem*/) {}
    /// What comes after the last graph.
    virtual void End() {}
};

/// The output that a call asks for.
/// @param hasNames  whether the call may name several graphs, so that each needs its name
std::unique_ptr<Output> MakeOutput(const Options& options, bool hasNames);

/// Prints bytes on the standard output. Failures show at its end.
void Write(QByteArrayView bytes);

} // namespace info
