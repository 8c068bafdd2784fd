// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A picture's file, which appears under its name only when it is whole.
#pragma once

#include "support/files.h"

#include <QByteArray>
#include <QIODevice>
#include <QString>

namespace convert {

/// Where the picture really goes: the file at the end of a chain of links, so that the link stays.
QByteArray FinalName(const QByteArray& name);

/// The name of the unfinished picture: in the same directory, hidden, with the token.
QByteArray TemporaryName(const QByteArray& name, const QByteArray& token);

/// What is written goes into the temporary file, which Commit gives its name. A pipe or a device,
/// and the standard output, are written to directly.
class Output : public QIODevice
{
public:
    /// @param name   local name, or tools::kStandardStream
    /// @param token  see TemporaryName; no two outputs that are open at a time may share it
    Output(const QByteArray& name, const QByteArray& token);
    /// Removes the temporary file unless it was committed.
    ~Output() override;

    /// @return empty, or why nothing can be written
    QString Open();
    /// Finishes the file and gives it its name, with the permissions of a file that it replaces.
    /// @param keepExisting  replace no file
    /// @return empty, or why that failed; a write that failed before is reported here
    QString Commit(bool keepExisting);
    [[nodiscard]] bool isSequential() const override { return true; }

protected:
    qint64 readData(char* data, qint64 size) override;
    qint64 writeData(const char* data, qint64 size) override;

private:
    [[nodiscard]] bool IsReplacing() const;
    QString Rename(bool keepExisting);

    QByteArray target;
    QByteArray temporary; // empty when there is none
    FilePtr file;
    int firstError = 0; // errno
};

} // namespace convert
