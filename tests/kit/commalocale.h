// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A locale with a decimal comma for as long as the object lives. It is made anew, so that a test
// does not depend on which ones the system has.
#pragma once

#include <QProcess>
#include <QTemporaryDir>
#include <QtGlobal>

#include <clocale>
#include <cstdio>

class CommaLocale
{
public:
    CommaLocale()
    {
        QProcess localedef;
        localedef.start(QStringLiteral("localedef"),
                        {QStringLiteral("--no-archive"), QStringLiteral("-i"),
                         QStringLiteral("de_DE"), QStringLiteral("-f"), QStringLiteral("UTF-8"),
                         folder.filePath(QStringLiteral("de_DE.UTF-8"))});
        localedef.waitForFinished();
        qputenv("LOCPATH", folder.path().toLocal8Bit());
        std::setlocale(LC_ALL, "de_DE.UTF-8");
    }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;
    ~CommaLocale()
    {
        std::setlocale(LC_ALL, "C");
        oldPath.isNull() ? qunsetenv("LOCPATH") : qputenv("LOCPATH", oldPath);
    }

    /// False when the locale could not be made; the package "locales" is missing then.
    [[nodiscard]] static bool IsInForce()
    {
        char number[4] = "";
        std::snprintf(number, sizeof number, "%.1f", 0.5);
        return qstrcmp(number, "0,5") == 0;
    }

private:
    QTemporaryDir folder;
    QByteArray oldPath = qgetenv("LOCPATH");
};
