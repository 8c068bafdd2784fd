// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/progress.h"

#include "support/visible.h"
#include "tools/common/commandline.h"
#include "tools/common/filename.h"

#include <QStringList>

#include <unistd.h>

#include <cstdint>
#include <cstdio>

namespace convert {

namespace {

constexpr int kBarWidth = 40;     // characters
constexpr int kBarInterval = 100; // milliseconds; drawing it costs a write
constexpr int kPercent = 100;

} // namespace

Progress::Progress(int files, bool isQuiet)
    : count(files), quiet(isQuiet), hasBar(files > 1 && !isQuiet && isatty(STDERR_FILENO) == 1)
{
}

void Progress::Add(const QByteArray& input, const Outcome& outcome)
{
    converted += outcome.kind == Outcome::kConverted ? 1 : 0;
    skipped += outcome.kind == Outcome::kSkipped ? 1 : 0;
    failed += outcome.kind == Outcome::kFailed ? 1 : 0;
    const bool isOnlySkip = outcome.kind == Outcome::kSkipped && count == 1 && !quiet;
    if (isOnlySkip)
        Print(input, QStringLiteral("skipped: output exists"));
    if (!outcome.text.isEmpty())
        Print(input, outcome.text);
    DrawBar();
}

void Progress::Print(const QByteArray& input, const QString& text) const
{
    const bool isStream = input == tools::kStandardStream;
    const QByteArray name = isStream ? QByteArray("standard input") : VisibleName(input);
    ClearBar();
    for (const QString& line : text.split(u'\n'))
        tools::PrintError(name + ": " + line.toLocal8Bit());
}

void Progress::ClearBar() const
{
    if (hasBar)
        fputs("\r\033[K", stderr);
}

void Progress::DrawBar()
{
    if (!hasBar || (lastBar.isValid() && !lastBar.hasExpired(kBarInterval)))
        return;
    lastBar.start();
    const int64_t done = int64_t{converted} + skipped + failed;
    const auto filled = static_cast<int>(done * kBarWidth / count);
    const QByteArray bar = QByteArray(filled, '#').leftJustified(kBarWidth, '.');
    fprintf(stderr, "\r[%s] %lld/%d %3d%%", bar.constData(), static_cast<long long>(done), count,
            static_cast<int>(done * kPercent / count));
}

QByteArray Progress::Summary() const
{
    QByteArray text =
        QByteArray::number(count) + " files: " + QByteArray::number(converted) + " converted, ";
    if (skipped > 0)
        text += QByteArray::number(skipped) + " skipped, ";
    return text + QByteArray::number(failed) + " failed";
}

void Progress::Finish()
{
    ClearBar();
    if (count > 1 && !quiet)
        printf("%s\n", Summary().constData());
}

} // namespace convert
