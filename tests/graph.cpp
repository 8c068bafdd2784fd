// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/graph.h"

#include "app/state/globals.h"
#include "meta/plfbuffer.h"
#include "meta/plfmeta.h"
#include "tests/recorder.h"

#include <QPainter>
#include <QTest>

QByteArray PlfHeader()
{
    return {gszPlfhdr, kPlfHeaderSize};
}

void LoadBytes(const QByteArray& file)
{
    char message[kLoadMessageSize] = "";
    QVERIFY2(LoadPlfBytes({file.constData(), static_cast<size_t>(file.size())}, message) == 0,
             message);
}

QStringList Record(const Pass& pass)
{
    gbBkClrWhite = pass.whiteBackground;
    Recorder recorder;
    QPainter painter(&recorder);
    Rect zoom = pass.zoom;
    Rect full = {};
    SetRect(&full, 0, 0, kPlfWidth, kPlfHeight);
    char name[] = "test.plf";
    CPlfMeta meta(name, &painter, nullptr, pass.widthScale, 0);
    meta.DrawPlf(&zoom, &full);
    return recorder.Operations();
}

QStringList Drawn(const QStringList& operations)
{
    QStringList drawn;
    for (const QString& operation : operations) {
        if (operation.startsWith(u"line ") || operation.startsWith(u"text "))
            drawn += operation;
    }
    return drawn;
}
