// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/epsfile.h"

#include "app/state/globals.h"
#include "meta/plfmeta.h"
#include "support/text.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

void ResetEpsOptions()
{
    gdEpsCvtScale = 0.25;
    giEpsMinLineWidth = 5;
    gfEpsCvt2Blk = 0;
    gfEpsUseBkClr = 0;
    gdwBackClrEPS = 0;
}

void WriteEps(const QString& path, const Pass& pass, QPainter* painter)
{
    QVERIFY(CopyText(gszCvtFilename, QFile::encodeName(path).constData()));
    gbBkClrWhite = pass.whiteBackground;
    Rect zoom = pass.zoom;
    Rect full = {};
    SetRect(&full, 0, 0, kPlfWidth, kPlfHeight);
    char name[] = "test.plf";
    CPlfMeta meta(name, painter, nullptr, pass.widthScale, kConvertEps);
    QCOMPARE(meta.DrawPlf(&zoom, &full), 1);
}

QByteArray Eps(const Pass& pass, QPainter* painter)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("graph.eps")));
    WriteEps(file.fileName(), pass, painter);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
}
