// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Which seeds a test takes.
#pragma once

#include <QByteArray>
#include <QList>

/// Consecutive seeds.
struct Seeds {
    unsigned first;
    unsigned count;

    [[nodiscard]] unsigned End() const { return first + count; }
};

/// Those that PLOTVW_SEEDS=FIRST:COUNT in the environment chooses, or the first few.
inline Seeds ChosenSeeds(unsigned few)
{
    const QList<QByteArray> range = qgetenv("PLOTVW_SEEDS").split(':');
    return range.size() == 2 ? Seeds{range[0].toUInt(), range[1].toUInt()} : Seeds{0, few};
}
