// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Which pictures a call makes, known before it makes the first.
#pragma once

#include "tools/convert/job.h"
#include "tools/convert/options.h"

#include <QString>

#include <vector>

namespace convert {

/// A job, or why there is none for that input.
struct PlannedJob {
    Job job;
    QString problem;
    QString title; // of the graph in a document, printable
};

/// One entry per graph, in the order of the call; a directory stands for the files in it whose
/// names end in ".plf". An input whose picture would have the name of an earlier one has a problem.
/// @param folder  where pictures go that are bound to one output; else not used
std::vector<PlannedJob> MakePlan(const Options& options, const QString& folder = {});

} // namespace convert
