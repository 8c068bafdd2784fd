// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/converter.h"

#include "meta/plfbuffer.h"
#include "tests/kit/epsfile.h"
#include "tests/kit/plf.h"

#include <QDir>
#include <QTest>

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
    ToolTest::Begin();
    ResetEpsOptions();
}

void ConverterTest::End()
{
    FreePlfBuffer();
}

void ConverterTest::ConvertWell(const char* arguments) const
{
    const Call call = Run(arguments);
    QCOMPARE(call.errors, QByteArray());
    QCOMPARE(call.code, 0);
}

void ConverterTest::SampleRows()
{
    QTest::addColumn<QString>("sample");
    for (const QString& name : QDir(Text(PLOTVW_SAMPLES)).entryList({Text("*.plf")}))
        QTest::newRow(qPrintable(name)) << name;
}
