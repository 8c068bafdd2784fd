// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/kit/tooltest.h"

#include <QDir>
#include <QTest>

void ToolTest::Begin()
{
    folder.emplace();
    QVERIFY(folder->isValid());
    environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "XDG_RUNTIME_DIR"})
        environment.remove(Text(name));
}

void ToolTest::Write(const QString& name, QByteArrayView bytes) const
{
    QVERIFY(WriteFile(QDir(folder->path()).filePath(name), bytes));
}

void ToolTest::Prepare(QProcess* process) const
{
    process->setWorkingDirectory(folder->path());
    process->setProcessEnvironment(environment);
}

void ToolTest::Start(QProcess* process, const QStringList& arguments) const
{
    Prepare(process);
    process->start(tool, arguments);
    QVERIFY(process->waitForStarted());
}

Call ToolTest::Finish(QProcess* process)
{
    Call call;
    if (process->waitForFinished(kTimeout) && process->exitStatus() == QProcess::NormalExit)
        call.code = process->exitCode();
    call.output = process->readAllStandardOutput();
    call.errors = process->readAllStandardError();
    return call;
}

Call ToolTest::Run(const QStringList& arguments, const QByteArray& input) const
{
    QProcess process;
    Start(&process, arguments);
    process.write(input);
    process.closeWriteChannel();
    return Finish(&process);
}

Call ToolTest::Run(const char* arguments, const QByteArray& input) const
{
    return Run(Text(arguments).split(u' ', Qt::SkipEmptyParts), input);
}

Call ToolTest::RunWithFullOutput(const QStringList& arguments) const
{
    QProcess process;
    process.setStandardOutputFile(Text("/dev/full"));
    Start(&process, arguments);
    return Finish(&process);
}

// The reader has ended before the program begins; the shell says by which signal that ends.
Call ToolTest::RunUnread(const QString& arguments) const
{
    return RunLine(Text("exec 3> >(true); wait $!; \"$0\" %1 >&3; exit $?").arg(arguments));
}

Call ToolTest::RunLine(const QString& line) const
{
    QProcess shell;
    Prepare(&shell);
    shell.start(Text("bash"), {Text("-c"), line, tool});
    return Finish(&shell);
}
