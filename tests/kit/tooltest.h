// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A program as people call it, in a test: a process of its own, which has no display.
#pragma once

#include "tests/kit/files.h"

#include <QByteArray>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include <csignal>
#include <optional>

constexpr int kTimeout = 120000; // milliseconds; sanitizers on a busy machine are slow

/// The exit code of a call that ended because nobody read its output.
constexpr int kEndedByPipe = 128 + SIGPIPE;

/// How a call ended.
struct Call {
    int code = -1; // -1 when it did not end by itself
    QByteArray output;
    QByteArray errors;
};

/// A base of tests that call a program, each in a directory of its own.
class ToolTest
{
protected:
    explicit ToolTest(const char* program) : tool(Text(program)) {}

    /// Makes the directory. Nothing of a desktop is there.
    void Begin();
    [[nodiscard]] QString Path(const QString& name) const { return folder->filePath(name); }
    [[nodiscard]] QString Path(const char* name) const { return Path(Text(name)); }
    /// Writes a file; a name that is no path is in the directory. Fails the test when that fails.
    void Write(const QString& name, QByteArrayView bytes) const;
    void Write(const char* name, QByteArrayView bytes) const { Write(Text(name), bytes); }
    /// Gives a process the directory and the environment.
    void Prepare(QProcess* process) const;
    void Start(QProcess* process, const QStringList& arguments) const;
    static Call Finish(QProcess* process);
    Call Run(const QStringList& arguments, const QByteArray& input = {}) const;
    /// The same with arguments that spaces separate.
    Call Run(const char* arguments, const QByteArray& input = {}) const;

    /// The same with a standard output on which nothing can be written.
    Call RunWithFullOutput(const QStringList& arguments) const;
    /// The same with one that nobody reads any more.
    [[nodiscard]] Call RunUnread(const QString& arguments) const;
    /// Runs a line of bash, in which "$0" is the program.
    Call RunLine(const QString& line) const;

    const QString tool;
    std::optional<QTemporaryDir> folder; // the current one of each call
    QProcessEnvironment environment;
};
