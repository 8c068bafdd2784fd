// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/kit/epsfile.h"

#include "app/state/globals.h"
#include "meta/plfarea.h"
#include "meta/plfmeta.h"
#include "support/text.h"
#include "tests/kit/files.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

void WriteEps(const QString& path, const Pass& pass, QPainter* painter)
{
    QVERIFY(CopyText(gszCvtFilename, QFile::encodeName(path).constData()));
    gbBkClrWhite = pass.whiteBackground;
    Rect zoom = pass.zoom;
    Rect full = kWholeArea;
    char name[] = "test.plf";
    CPlfMeta meta(name, painter, nullptr, pass.widthScale, kConvertEps);
    QCOMPARE(meta.DrawPlf(&zoom, &full), 1);
}

QByteArray Eps(const Pass& pass, QPainter* painter)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("graph.eps"));
    WriteEps(path, pass, painter);
    return ReadFile(path);
}
