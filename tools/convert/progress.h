// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What the user sees of a call: errors, a progress bar on a terminal, and the count at the end.
#pragma once

#include "tools/convert/bar.h"
#include "tools/convert/convert.h"

#include <QByteArray>

namespace convert {

/// Counts the outcomes of a call and prints them.
class Progress
{
public:
    /// How a call ended; kUnread: its output lost the reader, which nobody needs to be told.
    enum class End { kDone, kInterrupted, kUnread, kNotStarted };
    /// Where the count goes.
    enum class CountTo { kNowhere, kOutput, kErrors };

    /// @param count   files of the call
    /// @param quiet   print errors only: no warnings, no count, no bar
    /// @param target  of the count, if it is printed
    Progress(int count, bool quiet, CountTo target = CountTo::kOutput);

    /// Counts an outcome and prints what there is to say about it.
    void Add(const QByteArray& input, const Outcome& outcome);
    /// Takes the bar away and prints the count, when there is more than one file. Files of a call
    /// that could not start have failed.
    void Finish(End end = End::kDone);

    [[nodiscard]] int FailureCount() const { return failed; }
    /// "3 files: 1 converted, 1 skipped, 1 failed; 1 damaged"; without those skipped and those
    /// damaged if there are none. After an interrupt it begins with "interrupted after 2 of 3".
    [[nodiscard]] QByteArray Summary(End end = End::kDone) const;

private:
    [[nodiscard]] int DoneCount() const { return converted + skipped + failed; }
    void Print(const QByteArray& input, const QString& text) const;
    void Warn(const QByteArray& input, const PlfDamageMap& damage) const;

    int count;
    bool quiet;
    CountTo target;
    Bar bar;
    int converted = 0;
    int skipped = 0;
    int failed = 0;
    int damaged = 0;
};

} // namespace convert
