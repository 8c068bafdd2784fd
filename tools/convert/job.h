// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// One graph and the picture to make of it.
#pragma once

#include "tools/convert/format.h"

#include <QByteArray>

namespace convert {

struct Job {
    QByteArray input;  // local name, or tools::kStandardStream
    QByteArray output; // local name, or tools::kStandardStream
    Format format = Format::kPng;
};

} // namespace convert
