// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// One conversion from the graph's file to the picture's.
#pragma once

#include "meta/damage.h"
#include "tools/convert/job.h"
#include "tools/convert/picturesettings.h"

#include <QByteArray>
#include <QString>

namespace convert {

/// How a conversion went.
struct Outcome {
    enum Kind : int { kConverted, kSkipped, kFailed };
    Kind kind = kFailed;
    QString text;             // lines: why it failed, or what is worth saying although it did not
    PlfDamageMap damage = {}; // of the graph, only what counts as a loss
    qint64 bytes = 0;         // of the picture
    double seconds = 0;       // from the moment that a worker got the job
};

/// "damaged: no end mark at byte 5000", with every kind.
QString DamageText(const PlfDamageMap& damage);

/// How outputs are treated.
struct OutputRules {
    bool keepExisting = false; // a job whose output exists is skipped
    bool onlyNewer = false;    // a job whose output is newer than its input is skipped
    bool strict = false;       // a damaged graph gets no picture
    bool makeFolders = false;  // missing directories of an output are created
    QByteArray token;          // makes the names of temporary files those of this call
};

/// What a picture of a graph is called inside it: the graph's name, without its folder.
/// @param input  local name, or tools::kStandardStream for a graph without one
QString TitleOf(const QByteArray& input);

/// Why the output of a job is not to be written, a line; empty if it may be. The input may have no
/// name.
QString OutputProblem(const Job& job);

/// Makes the picture of a job.
/// @param number  of the job in the call, for the name of the temporary file
Outcome Convert(const Job& job, int number, const PictureSettings& settings,
                const OutputRules& rules);

/// Removes the temporary file of a conversion that did not end by itself.
void RemoveLeftovers(const Job& job, int number, const OutputRules& rules);

} // namespace convert
