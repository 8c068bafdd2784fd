// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Graphs as JSON: one document, or a line for each graph. docs/plfinfo.schema.json describes both.
#pragma once

#include "tools/info/output.h"

class QJsonObject;

namespace info {

/// The version of both forms. It changes when a program that reads them would go wrong: not when
/// something is added, but when a key goes or means something else.
constexpr int kJsonVersion = 1;

/// What both forms have in common: an object for each graph.
class JsonObjects : public Output
{
public:
    bool Graph(const QString& name, const PlfBytes& graph) override;
    void Problem(const QString& name, const QString& problem) override;

private:
    virtual void Object(const QJsonObject& object) = 0;
};

/// One object with a list of the graphs' objects.
class JsonOutput : public JsonObjects
{
public:
    void Begin() override;
    void End() override;

private:
    void Object(const QJsonObject& object) override;

    bool isFirst = true;
};

/// An object on a line of its own for each graph.
class JsonLinesOutput : public JsonObjects
{
private:
    void Object(const QJsonObject& object) override;
};

} // namespace info
