// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The viewer as a child that this program ends, or as one that outlives it.
#pragma once

#include "tools/krvhost/options.h"

#include <QProcess>

namespace krvhost {

class ViewerProcess
{
public:
    /// @param program     its file
    /// @param serverName  the server to connect to
    /// @return whether it was started
    bool Start(const QString& program, const QString& serverName, const Options& options);
    /// Ends the viewer, unless it outlives this program.
    /// @param wait  until its user closes it
    void End(bool wait);

private:
    QProcess process;
};

/// The viewer of the same build or installation, or the one in the search path.
QString DefaultViewer();

} // namespace krvhost
