// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Two graphs that a call compares.
#pragma once

#include "meta/damage.h"
#include "meta/drawing.h"
#include "tools/diff/changes.h"

#include <QString>

namespace diff {

/// One graph of a pair.
struct Input {
    QString name; // empty where the other directory has no such graph
    PlfDrawing drawing;
    PlfDamageMap damage;
};

/// How a comparison ended.
enum class Outcome { kEqual, kDifferent, kTrouble };

/// Two graphs and how they differ.
struct Pair {
    QString title; // of a graph in directories; else empty
    Input inputs[2];
    QString problem; // why they were not compared; else empty
    Comparison comparison;
    Outcome outcome = Outcome::kEqual;

    /// Whether only one of two directories has the graph.
    [[nodiscard]] bool IsMissing() const
    {
        return inputs[0].name.isEmpty() || inputs[1].name.isEmpty();
    }
};

} // namespace diff
