// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/info/output.h"

#include "tools/common/filename.h"
#include "tools/info/damageline.h"
#include "tools/info/dump.h"
#include "tools/info/inspector.h"
#include "tools/info/jsonoutput.h"
#include "tools/info/summarytext.h"
#include "tools/info/vectorscsv.h"

#include <cstdio>

namespace info {

namespace {

using tools::VisibleText;

class TextOutput : public Output
{
public:
    bool Graph(const QString& name, const PlfBytes& graph) override
    {
        const Summary summary = Inspector().Inspect(graph);
        Write(SummaryText(VisibleText(name), summary));
        return HasLoss(summary.damage);
    }
};

class CheckOutput : public Output
{
public:
    bool Graph(const QString& name, const PlfBytes& graph) override
    {
        const PlfDamageMap damage = FindDamage(graph);
        const bool isDamaged = HasLoss(damage);
        if (isDamaged)
            Write(DamageLine(VisibleText(name), damage));
        return isDamaged;
    }
};

class DumpOutput : public Output
{
public:
    explicit DumpOutput(bool hasNames) : hasTitles(hasNames) {}

    bool Graph(const QString& name, const PlfBytes& graph) override
    {
        if (hasTitles)
            Write("# " + VisibleText(name) + '\n');
        Inspector inspector([](const Item& item) { Write(DumpLine(item)); });
        return HasLoss(inspector.Inspect(graph).damage);
    }

private:
    bool hasTitles;
};

} // namespace

std::unique_ptr<Output> MakeOutput(const Options& options, bool hasNames)
{
    if (options.asJson)
        return std::make_unique<JsonOutput>();
    if (options.asJsonLines)
        return std::make_unique<JsonLinesOutput>();
    if (options.asVectors)
        return std::make_unique<VectorsCsv>(hasNames, options.isCheck);
    if (options.asDump)
        return std::make_unique<DumpOutput>(hasNames);
    if (options.isCheck)
        return std::make_unique<CheckOutput>();
    return std::make_unique<TextOutput>();
}

void Write(QByteArrayView bytes)
{
    fwrite(bytes.data(), 1, static_cast<size_t>(bytes.size()), stdout);
}

} // namespace info
