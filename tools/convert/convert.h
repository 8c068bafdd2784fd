// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// One conversion from the graph's file to the picture's.
#pragma once

#include "tools/convert/job.h"
#include "tools/convert/picturesettings.h"

#include <QByteArray>
#include <QString>

namespace convert {

/// How a conversion went.
struct Outcome {
    enum Kind : int { kConverted, kSkipped, kFailed };
    Kind kind = kFailed;
    QString text; // lines: why it failed, or what is worth saying although it did not
};

/// How outputs are treated.
struct OutputRules {
    bool keepExisting = false; // a job whose output exists is skipped
    bool makeFolders = false;  // missing directories of an output are created
    QByteArray token;          // makes the names of temporary files those of this call
};

/// Makes the picture of a job.
/// @param number  tells the temporary file from those of other jobs of the call
Outcome Convert(const Job& job, int number, const PictureSettings& settings,
                const OutputRules& rules);

/// Removes what a conversion that ended in its middle left behind.
void RemoveLeftovers(const Job& job, int number, const OutputRules& rules);

} // namespace convert
