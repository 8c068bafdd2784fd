// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/progress.h"

#include "support/visible.h"
#include "tools/common/commandline.h"
#include "tools/common/filename.h"

#include <QStringList>

#include <cstdio>

namespace convert {

Progress::Progress(int files, bool isQuiet, CountTo countTarget)
    : count(files), quiet(isQuiet), target(isQuiet || files <= 1 ? CountTo::kNowhere : countTarget),
      bar(files, files > 1 && !isQuiet)
{
}

void Progress::Add(const QByteArray& input, const Outcome& outcome)
{
    converted += outcome.kind == Outcome::kConverted ? 1 : 0;
    skipped += outcome.kind == Outcome::kSkipped ? 1 : 0;
    failed += outcome.kind == Outcome::kFailed ? 1 : 0;
    damaged += outcome.damage.empty() ? 0 : 1;
    if (outcome.kind == Outcome::kSkipped) {
        if (count == 1 && !quiet)
            Print(input, QStringLiteral("skipped: ") + outcome.text);
    } else if (!outcome.text.isEmpty()) {
        Print(input, outcome.text);
    }
    if (outcome.kind == Outcome::kConverted && !outcome.damage.empty())
        Warn(input, outcome.damage);
    bar.Draw(DoneCount());
}

void Progress::Print(const QByteArray& input, const QString& text) const
{
    const bool isStream = input == tools::kStandardStream;
    const QByteArray name = isStream ? QByteArray("standard input") : VisibleName(input);
    bar.Clear();
    for (const QString& line : text.split(u'\n'))
        tools::PrintError(name + ": " + line.toLocal8Bit());
}

void Progress::Warn(const QByteArray& input, const PlfDamageMap& damage) const
{
    if (!quiet)
        Print(input, QStringLiteral("warning: ") + DamageText(damage));
}

QByteArray Progress::Summary(End end) const
{
    QByteArray text = QByteArray::number(count) + " files: ";
    if (end == End::kInterrupted)
        text = "interrupted after " + QByteArray::number(DoneCount()) + " of " + text;
    text += QByteArray::number(converted) + " converted, ";
    if (skipped > 0)
        text += QByteArray::number(skipped) + " skipped, ";
    text += QByteArray::number(failed) + " failed";
    return damaged > 0 ? text + "; " + QByteArray::number(damaged) + " damaged" : text;
}

void Progress::Finish(End end)
{
    if (end == End::kNotStarted)
        failed += count - DoneCount();
    bar.Clear();
    if (target != CountTo::kNowhere && end != End::kUnread)
        fprintf(target == CountTo::kOutput ? stdout : stderr, "%s\n", Summary(end).constData());
}

} // namespace convert
