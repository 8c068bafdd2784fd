// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/converter.h"

#include "meta/plfbuffer.h"
#include "tests/kit/epsfile.h"
#include "tests/kit/plf.h"

#include <QDir>
#include <QTest>

void Write(const QString& name, const QByteArray& bytes)
{
    QVERIFY(WriteFile(name, bytes));
}

QByteArray Sample(const QString& name)
{
    return ReadFile(Text(PLOTVW_SAMPLES "/") + name);
}

QByteArray SmallGraph(int x)
{
    return QByteArray::fromStdString(plf::Start() + plf::Line(0, 0, x, 3119) + plf::End());
}

void ConverterTest::Begin()
{
    folder.emplace();
    QVERIFY(folder->isValid());
    environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "XDG_RUNTIME_DIR"})
        environment.remove(Text(name));
    ResetEpsOptions();
}

void ConverterTest::End()
{
    FreePlfBuffer();
}

void ConverterTest::Start(QProcess* process, const QStringList& arguments) const
{
    process->setWorkingDirectory(folder->path());
    process->setProcessEnvironment(environment);
    process->start(Text(PLFCONVERT_PROGRAM), arguments);
    QVERIFY(process->waitForStarted());
}

Call ConverterTest::Finish(QProcess* process) const
{
    Call call;
    if (process->waitForFinished(kTimeout) && process->exitStatus() == QProcess::NormalExit)
        call.code = process->exitCode();
    call.output = process->readAllStandardOutput();
    call.errors = process->readAllStandardError();
    return call;
}

Call ConverterTest::Convert(const QStringList& arguments, const QByteArray& input) const
{
    QProcess process;
    Start(&process, arguments);
    process.write(input);
    process.closeWriteChannel();
    return Finish(&process);
}

Call ConverterTest::Convert(const char* arguments, const QByteArray& input) const
{
    return Convert(Text(arguments).split(u' '), input);
}

void ConverterTest::ConvertWell(const char* arguments) const
{
    const Call call = Convert(arguments);
    QCOMPARE(call.errors, QByteArray());
    QCOMPARE(call.code, 0);
}

void ConverterTest::SampleRows()
{
    QTest::addColumn<QString>("sample");
    for (const QString& name : QDir(Text(PLOTVW_SAMPLES)).entryList({Text("*.plf")}))
        QTest::newRow(qPrintable(name)) << name;
}
