// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The converter as people call it, in a test: a process of its own, which has no display.
#pragma once

#include "tests/kit/tooltest.h"

#include <QSize>

/// How large a picture is that nobody gave a size.
constexpr QSize kDefaultSize(640, 487);

/// The bytes of a sample.
QByteArray Sample(const QString& name);

/// A graph that is one line.
QByteArray SmallGraph(int x = 4095);

/// A base of tests that call the converter, each in a directory of its own.
class ConverterTest : protected ToolTest
{
protected:
    ConverterTest() : ToolTest(PLFCONVERT_PROGRAM) {}

    void Begin();
    void End();

    /// A row for each of the samples.
    static void SampleRows();
    /// Fails the test when the call does or complains.
    void ConvertWell(const char* arguments) const;
};
