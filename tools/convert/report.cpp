// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/report.h"

#include "tools/convert/names.h"

#include <QStringList>

#include <unistd.h>

#include <cstdint>
#include <cstdio>

namespace {

constexpr int kBarWidth = 40;     // characters
constexpr int kBarInterval = 100; // milliseconds; drawing it costs a write
constexpr int kPercent = 100;

} // namespace

Report::Report(int files, bool isQuiet)
    : count(files), quiet(isQuiet), hasBar(files > 1 && !isQuiet && isatty(STDERR_FILENO) == 1)
{
}

void Report::Add(const QByteArray& input, const Outcome& outcome)
{
    converted += outcome.kind == Outcome::kConverted ? 1 : 0;
    skipped += outcome.kind == Outcome::kSkipped ? 1 : 0;
    failed += outcome.kind == Outcome::kFailed ? 1 : 0;
    const bool lonelySkip = outcome.kind == Outcome::kSkipped && count == 1 && !quiet;
    if (lonelySkip)
        Print(input, QStringLiteral("left alone: the picture is there already"));
    if (!outcome.text.isEmpty())
        Print(input, outcome.text);
    DrawBar();
}

void Report::Print(const QByteArray& input, const QString& text) const
{
    const QByteArray name = input == kStandardStream ? "standard input" : VisibleName(input);
    ClearBar();
    for (const QString& line : text.split(u'\n'))
        fprintf(stderr, "plfconvert: %s: %s\n", name.constData(), qPrintable(line));
}

void Report::ClearBar() const
{
    if (hasBar)
        fputs("\r\033[K", stderr);
}

void Report::DrawBar()
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

QByteArray Report::Summary() const
{
    QByteArray text =
        QByteArray::number(count) + " files: " + QByteArray::number(converted) + " converted, ";
    if (skipped > 0)
        text += QByteArray::number(skipped) + " skipped, ";
    return text + QByteArray::number(failed) + " failed";
}

void Report::Finish()
{
    ClearBar();
    if (count > 1 && !quiet)
        printf("%s\n", Summary().constData());
    fflush(stdout);
}
