// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/kit/graph.h"

#include "app/state/globals.h"
#include "meta/plfarea.h"
#include "meta/plfbuffer.h"
#include "meta/plfmeta.h"
#include "tests/kit/recorder.h"

#include <QPainter>
#include <QTest>

Rect MakeRect(int left, int top, int right, int bottom)
{
    Rect rect = {};
    return *SetRect(&rect, left, top, right, bottom);
}

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
    Rect full = kWholeArea;
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
