// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What the user sees of a call: errors, a progress bar on a terminal, and the count at the end.
#pragma once

#include "tools/convert/convert.h"

#include <QByteArray>
#include <QElapsedTimer>

namespace convert {

/// Counts the outcomes of a call and prints them.
class Progress
{
public:
    /// @param count  files of the call
    /// @param quiet  print errors only
    Progress(int count, bool quiet);

    /// Counts an outcome and prints what there is to say about it.
    void Add(const QByteArray& input, const Outcome& outcome);
    /// Takes the bar away and prints the count, when there is more than one file.
    void Finish();

    [[nodiscard]] int FailureCount() const { return failed; }
    /// "3 files: 1 converted, 1 skipped, 1 failed"; those skipped only when there are any.
    [[nodiscard]] QByteArray Summary() const;

private:
    void Print(const QByteArray& input, const QString& text) const;
    void ClearBar() const;
    void DrawBar();

    int count;
    bool quiet;
    bool hasBar;
    int converted = 0;
    int skipped = 0;
    int failed = 0;
    QElapsedTimer lastBar;
};

} // namespace convert
