// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/info/damageline.h"

#include <QByteArrayList>

namespace info {

namespace {

QByteArray Count(PlfDamage kind, uint64_t count)
{
    const bool isBytes = kind == PlfDamage::kDataAfterTheEnd;
    if (count == 1 && !isBytes)
        return {};
    return " (" + QByteArray::number(static_cast<qulonglong>(count)) +
           (isBytes ? " bytes)" : " times, the first)");
}

} // namespace

QByteArray DamageLine(const QByteArray& name, const PlfDamageMap& damage)
{
    QByteArrayList kinds;
    for (const auto& [kind, noted] : LossesOf(damage))
        kinds += DamageWord(kind) +
                 (" at byte " + QByteArray::number(static_cast<qulonglong>(noted.offset))) +
                 Count(kind, noted.count);
    return name + ": " + kinds.join(", ") + '\n';
}

} // namespace info
