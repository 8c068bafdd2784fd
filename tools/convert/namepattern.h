// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The pattern with placeholders that names pictures when one call makes many.
#pragma once

#include "tools/convert/format.h"

#include <QString>

namespace convert {

/// The pattern when none is given.
constexpr char kDefaultPattern[] = "{sub}{name}.{ext}";

/// What the placeholders of a pattern stand for.
struct NameParts {
    QString input; // name of the graph, with its directory
    Format format = Format::kPng;
    int number = 1; // place of the graph in the call, from 1
    int count = 1;  // graphs in the call; {number} has as many digits as it
    QString subfolder =
        {}; // of the graph below the folder of the call, with '/' at its end; or empty
};

/// What is wrong with a pattern; empty when nothing is.
QString PatternProblem(const QString& pattern);

/// The name of a picture: {name}, {dir}, {sub}, {ext} and {number} are replaced, "{{" and "}}" are
/// braces.
/// @param pattern  one that PatternProblem finds nothing wrong with
QString ExpandPattern(const QString& pattern, const NameParts& parts);

} // namespace convert
