// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What a test of the windows watches of Qt: requests to quit, and what is to be translated.
#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QTranslator>

#include <utility>

namespace fixture {

/// Counts the quit requests that the application gets.
class QuitCounter : public QObject
{
public:
    QuitCounter() { qApp->installEventFilter(this); }
    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (object == qApp && event->type() == QEvent::Quit)
            ++count;
        return false;
    }
    int count = 0;
};

/// Marks what is translated in one context: "~" comes before it.
class Marker : public QTranslator
{
public:
    explicit Marker(const char* marked) : context(QLatin1String(marked))
    {
        QCoreApplication::installTranslator(this);
    }
    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char* asked, const char* text, const char* /*hint*/,
                                    int /*n*/) const override
    {
        return QLatin1String(asked) == context ? QStringLiteral("~") + QLatin1String(text)
                                               : QString();
    }

private:
    QLatin1String context;
};

} // namespace fixture
