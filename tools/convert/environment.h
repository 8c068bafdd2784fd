// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What the converter's process must look like before Qt and other processes see it.
#pragma once

#include <QDateTime>
#include <QString>

#include <memory>
#include <optional>

namespace convert {

/// To be called before anything of Qt: takes a UTF-8 locale, and the messages of Qt and of the
/// interpreter.
void PrepareProcess();

/// Limits the memory that this process may have from here on.
/// @param megabytes  0 = no limit
void LimitMemory(int megabytes);

/// Creates the application object, without which there are no fonts, on a platform that needs no
/// display. It lives as long as what is returned.
std::shared_ptr<void> StartQt(char** argv);

/// The time that files shall name instead of that of their making, so that two calls make the same
/// bytes: SOURCE_DATE_EPOCH of the environment. UTC. None where it is not set, empty or wrong.
std::optional<QDateTime> SourceDate();

/// What is wrong with SOURCE_DATE_EPOCH; empty when nothing is. A wrong one is refused: whoever
/// sets it relies on it.
QString SourceDateProblem();

/// Keeps the messages of Qt and of the interpreter while it lives, which otherwise go to standard
/// error. One at a time.
class MessageKeeper
{
public:
    MessageKeeper();
    MessageKeeper(const MessageKeeper&) = delete;
    MessageKeeper& operator=(const MessageKeeper&) = delete;
    ~MessageKeeper();

    /// The messages so far, one a line.
    [[nodiscard]] const QString& Messages() const { return messages; }

private:
    QString messages;
};

} // namespace convert
