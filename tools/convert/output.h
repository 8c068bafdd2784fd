// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A picture's file, which appears under its name only when it is whole.
#pragma once

#include "support/wholefile.h"

#include <QByteArray>
#include <QIODevice>
#include <QString>

namespace convert {

/// The name of the unfinished picture where it needs one: in the same directory, hidden, with the
/// token.
QByteArray TemporaryName(const QByteArray& name, const QByteArray& token);

/// A WholeFile that Qt can write to. It is never written in place: a failure costs no older
/// picture. The standard output, like a pipe, is written to directly.
class Output : public QIODevice
{
public:
    /// @param name   local name, or tools::kStandardStream
    /// @param token  see TemporaryName; no two outputs that are open at a time may share it
    Output(const QByteArray& name, const QByteArray& token);

    /// @return empty, or why nothing can be written
    QString Open();
    /// Finishes the file and gives it its name.
    /// @param keepExisting  replace no file
    /// @return empty, or why that failed; a write that failed before is reported here
    QString Commit(bool keepExisting);
    /// The errno of the failure that Open or Commit reported; 0 without one.
    [[nodiscard]] int Error() const { return error; }
    /// How many bytes were given so far.
    [[nodiscard]] qint64 WrittenBytes() const { return written; }
    [[nodiscard]] bool isSequential() const override { return true; }

protected:
    qint64 readData(char* data, qint64 size) override;
    qint64 writeData(const char* data, qint64 size) override;

private:
    bool isStandardOutput;
    int error = 0;
    WholeFile file;
    qint64 written = 0;
};

} // namespace convert
