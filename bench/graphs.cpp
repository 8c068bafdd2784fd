// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "bench/graphs.h"

#include "meta/plfarea.h"
#include "meta/plfbuffer.h"

#include <QFile>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>

#include <cstdio>
#include <cstdlib>

namespace {

// Collects the lines of a pass.
class LineCollector : public QPaintDevice, public QPaintEngine
{
public:
    LineCollector() : QPaintEngine(AllFeatures) {}
    [[nodiscard]] QPaintEngine* paintEngine() const override
    {
        return const_cast<LineCollector*>(this);
    }
    bool begin(QPaintDevice* /*device*/) override { return true; }
    bool end() override { return true; }
    void updateState(const QPaintEngineState& /*state*/) override {}
    void drawPixmap(const QRectF& /*r*/, const QPixmap& /*pm*/, const QRectF& /*sr*/) override {}
    void drawRects(const QRect* /*rects*/, int /*count*/) override {}
    void drawLines(const QLine* drawn, int count) override
    {
        lines.insert(lines.end(), drawn, drawn + count);
    }
    [[nodiscard]] Type type() const override { return User; }

    std::vector<QLine> lines;

protected:
    [[nodiscard]] int metric(PaintDeviceMetric metric) const override
    {
        if (metric == PdmWidth)
            return kPlfWidth;
        if (metric == PdmHeight)
            return kPlfHeight;
        if (metric == PdmDevicePixelRatio)
            return 1;
        if (metric == PdmDevicePixelRatioScaled)
            return static_cast<int>(devicePixelRatioFScale());
        return 96;
    }
};

} // namespace

void Fail(const std::string& file, const char* reason)
{
    fprintf(stderr, "%s: %s\n", file.c_str(), reason);
    exit(1);
}

std::string GraphFolder(int argc, char** argv, int most, const char* usage)
{
    const char* folder = argc > 1 ? argv[1] : getenv("PLOTVW_STREAMS");
    if (folder == nullptr || argc > most) {
        fprintf(stderr, "usage: %s\n", usage);
        exit(2);
    }
    return folder;
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

std::vector<QLine> CollectLines()
{
    LineCollector collector;
    QPainter painter(&collector);
    Draw(&painter, 0);
    painter.end();
    return collector.lines;
}

std::string WithWidth(std::string graph, int width)
{
    const std::string thin = "\x1bGT0";
    const size_t at = graph.find(thin);
    if (at == std::string::npos)
        Fail("graph", "has no width command to replace.");
    const std::string integer = {static_cast<char>(64 + width / 16),
                                 static_cast<char>(48 + width % 16)};
    return graph.replace(at, thin.size(), "\x1bGT" + integer);
}
