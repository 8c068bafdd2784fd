// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/environment.h"

#include "tools/common/commandline.h"
#include "tools/common/filename.h"

#include <QGuiApplication>

#include <langinfo.h>
#include <sys/resource.h>

#include <algorithm>
#include <clocale>
#include <cstring>
#include <mutex>

namespace convert {

namespace {

constexpr char kSourceDate[] = "SOURCE_DATE_EPOCH";
constexpr qint64 kLatestDate = 253'402'300'799; // the end of 9999: years have four digits

bool IsDigit(char character)
{
    return character >= '0' && character <= '9';
}

// Of the keeper that lives.
QString* kept = nullptr;

void HandleMessage(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& text)
{
    // A conversion has no use for the user's runtime directory.
    if (text.startsWith(QLatin1StringView("QStandardPaths: ")))
        return;
    static std::mutex mutex; // several threads may draw
    const std::lock_guard lock(mutex);
    const QByteArray visible = tools::VisibleText(text); // it may name a font of the graph
    if (kept == nullptr)
        tools::PrintError(visible);
    else
        *kept += (kept->isEmpty() ? QString() : QStringLiteral("\n")) + QString::fromUtf8(visible);
}

// Qt warns of any other character set and uses this one.
void UseUtf8()
{
    std::setlocale(LC_CTYPE, "");
    if (strcmp(nl_langinfo(CODESET), "UTF-8") != 0)
        qputenv("LC_ALL", "C.UTF-8");
}

void SetDefault(const char* variable, const char* value)
{
    if (qEnvironmentVariableIsEmpty(variable))
        qputenv(variable, value);
}

} // namespace

void PrepareProcess()
{
    UseUtf8();
    qInstallMessageHandler(HandleMessage);
}

// Of data, not of addresses: what threads reserve and never use does not count.
void LimitMemory(int megabytes)
{
    if (megabytes == 0)
        return;
    constexpr rlim_t kMegabyte = 1 << 20;
    const rlim_t bytes = static_cast<rlim_t>(megabytes) * kMegabyte;
    const rlimit limit = {bytes, bytes};
    setrlimit(RLIMIT_DATA, &limit);
}

// Whatever a desktop asks of its programs: pictures need no display and no theme.
std::shared_ptr<void> StartQt(char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qunsetenv("QT_QPA_PLATFORMTHEME");
    SetDefault("XDG_RUNTIME_DIR", "/dev/null"); // or Qt creates one in /tmp
    if (SourceDate())
        qputenv("TZ", "UTC"); // the same zone everywhere, too
    static int count = 1;
    return std::make_shared<QGuiApplication>(count, argv);
}

std::optional<QDateTime> SourceDate()
{
    const QByteArray text = qgetenv(kSourceDate);
    const bool isNumber = std::all_of(text.begin(), text.end(), IsDigit);
    bool fits = false; // an empty text never does
    const qint64 seconds = text.toLongLong(&fits);
    if (!isNumber || !fits || seconds > kLatestDate)
        return std::nullopt;
    return QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC);
}

QString SourceDateProblem()
{
    const QString text = tools::DecodeName(qgetenv(kSourceDate));
    if (text.isEmpty() || SourceDate())
        return {};
    return QStringLiteral("%1 '%2': expected a number of seconds since 1970, at most %3")
        .arg(QLatin1StringView(kSourceDate), text, QString::number(kLatestDate));
}

MessageKeeper::MessageKeeper()
{
    kept = &messages;
}

MessageKeeper::~MessageKeeper()
{
    kept = nullptr;
}

} // namespace convert
