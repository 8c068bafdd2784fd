// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The converter as people call it, in a test: a process of its own, which has no display.
#pragma once

#include "tests/kit/files.h"

#include <QByteArray>
#include <QProcess>
#include <QSize>
#include <QStringList>
#include <QTemporaryDir>

#include <optional>

/// How large a picture is that nobody gave a size.
constexpr QSize kDefaultSize(640, 487);

constexpr int kTimeout = 120000; // milliseconds; sanitizers on a busy machine are slow

/// How a call ended.
struct Call {
    int code = -1; // -1 when it did not end by itself
    QByteArray output;
    QByteArray errors;
};

/// Writes a file. Fails the test when that fails.
void Write(const QString& name, const QByteArray& bytes);

/// The bytes of a sample.
QByteArray Sample(const QString& name);

/// A graph that is one line.
QByteArray SmallGraph(int x = 4095);

/// A base of tests that call the converter, each in a directory of its own.
class ConverterTest
{
protected:
    /// Nothing of a desktop is there.
    void Begin();
    void End();

    /// A row for each of the samples.
    static void SampleRows();
    [[nodiscard]] QString Path(const QString& name) const { return folder->filePath(name); }
    [[nodiscard]] QString Path(const char* name) const { return Path(Text(name)); }
    void Start(QProcess* process, const QStringList& arguments) const;
    Call Finish(QProcess* process) const;
    Call Convert(const QStringList& arguments, const QByteArray& input = {}) const;
    Call Convert(const char* arguments, const QByteArray& input = {}) const;
    /// Fails the test when the call does or complains.
    void ConvertWell(const char* arguments) const;

    std::optional<QTemporaryDir> folder; // the current one of each call
    QProcessEnvironment environment;
};
