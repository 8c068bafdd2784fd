// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "bench/graphs.h"

#include "meta/plfarea.h"
#include "meta/plfbuffer.h"

#include <QFile>

#include <cstdio>
#include <cstdlib>

void Fail(const std::string& file, const char* reason)
{
    fprintf(stderr, "%s: %s\n", file.c_str(), reason);
    exit(1);
}

void Load(std::string path)
{
    char message[kLoadMessageSize];
    if (LoadPlfFile(path.data(), message) != 0)
        Fail(path, message);
}

void LoadBytes(const std::string& graph)
{
    char message[kLoadMessageSize];
    if (LoadPlfBytes(graph, message) != 0)
        Fail("graph", message);
}

std::string ReadBytes(const std::string& path)
{
    QFile file(QFile::decodeName(path.c_str()));
    if (!file.open(QIODevice::ReadOnly))
        Fail(path, "cannot be read.");
    return file.readAll().toStdString();
}

void Draw(QPainter* painter, int mode, Rect zoom)
{
    Rect whole = kWholeArea;
    char name[] = "benchmark.plf";
    CPlfMeta meta(name, painter, nullptr, 1.0, mode);
    meta.DrawPlf(&zoom, &whole);
}
