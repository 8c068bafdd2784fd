// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/info/jsonoutput.h"

#include "tools/common/json.h"
#include "tools/info/inspector.h"
#include "tools/info/summaryjson.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace info {

namespace {

// The depth of the graphs' objects, indented as Qt indents JSON.
constexpr char kObjectIndent[] = "\n        ";

} // namespace

bool JsonObjects::Graph(const QString& name, const PlfBytes& graph)
{
    const Summary summary = Inspector().Inspect(graph);
    QJsonObject object = SummaryJson(summary);
    tools::PutName("file", name, &object);
    Object(object);
    return HasLoss(summary.damage);
}

void JsonObjects::Problem(const QString& name, const QString& problem)
{
    QJsonObject object = {{QStringLiteral("error"), problem}};
    tools::PutName("file", name, &object);
    Object(object);
}

void JsonOutput::Begin()
{
    Write("{\n    \"version\": " + QByteArray::number(kJsonVersion) + ",\n    \"graphs\": [");
}

// No line end is part of a text.
void JsonOutput::Object(const QJsonObject& object)
{
    const QByteArray json = tools::VisibleJson(QJsonDocument(object).toJson()).trimmed();
    Write((isFirst ? kObjectIndent : ',' + QByteArray(kObjectIndent)) +
          QByteArray(json).replace('\n', kObjectIndent));
    isFirst = false;
}

void JsonOutput::End()
{
    Write("\n    ]\n}\n");
}

void JsonLinesOutput::Object(const QJsonObject& object)
{
    QJsonObject line = object;
    line[QStringLiteral("version")] = kJsonVersion;
    Write(tools::VisibleJson(QJsonDocument(line).toJson(QJsonDocument::Compact)) + '\n');
}

} // namespace info
